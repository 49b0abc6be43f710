// The names of the families as a user reads and types them.
//
// They are written by hand, here and nowhere else, since a test that took them from the driver
// table would agree with whatever stands there. So are the words around them: the whole sentences,
// lines and titles that tests expect.
#pragma once

namespace tonewright {

constexpr const char *Dx7Name = "Yamaha DX7, TX7, Korg Volca FM";
constexpr const char *RefaceName = "Yamaha reface DX";

} // namespace tonewright
