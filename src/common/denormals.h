// Numbers too small for the usual form of a float, which a processor may take a hundred times as
// long for: what dies away would cost more and more.
#pragma once

namespace tonewright {

// From now on this thread takes them for 0. Nothing where the processor is none of those known.
void TakeDenormalsForZero();

} // namespace tonewright
