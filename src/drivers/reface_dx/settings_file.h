// The text file in which a user keeps settings of a reface DX (".crg").
//
//   ;Quillbrook Tonewright - reface DX configuration
//   ;Written Sun Nov 22 11:22:16 2026
//   Tonewright 17.0a revision 1
//   TransCh:0
//   RcvCh:16
//   ...
//   MIDICtrl:1
//
// A key for each byte that is sent, 0 to 14, and behind its colon the byte in decimal. Comments
// begin with a semicolon; lines of no key are passed over. A key is known in any case of its
// letters, the last one of the same key counts, and a byte without a key is zero.
#pragma once

#include "common/line_reader.h"
#include "drivers/reface_dx/settings.h"

#include <string>
#include <vector>

namespace tonewright {

// The file's text for the settings of a block, with line feeds and the present time.
std::string CrgTextOf(const SynthConfigBlock &block);
// Writes that text. 0, the reason in errno, when it is not all there: a file that was begun has
// been deleted then, one that could not be opened, and in careful mode any, is as it was.
int WriteCrgFile(const char *path, const SynthConfigBlock &block);

// Reads the settings in the lines of such a text into a block that is clear. False when the first
// line is another one. `missing` as below.
bool ReadCrgLines(LineReader &reader, SynthConfigBlock &block, std::vector<std::string> *missing);
// Clears the block, driver and ports included, and reads the settings into it. A number is read as
// atoi does, and its low eight bits count. A file without a line is one of zeros. 0, the reason in
// errno and the block cleared, when the file cannot be opened or read to its end, or its first line
// is another one (EINVAL). `missing`, which may be null, becomes the keys that were not in it,
// without colons.
int ReadCrgFile(const char *path, SynthConfigBlock &block,
                std::vector<std::string> *missing = nullptr);

} // namespace tonewright
