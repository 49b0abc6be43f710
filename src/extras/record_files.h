// Our own files of records: banks and voices of the reface DX, and catalogues.
#pragma once

#include "extras/dump_output.h"
#include "extras/dump_stream.h"

namespace tonewright {

// At the start of a file: reads its records if it is such a file, and leaves what is behind them.
void ReadRecordFile(DumpStream &stream, DumpOutput &output);

} // namespace tonewright
