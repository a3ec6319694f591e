#ifndef KTX_VORTIME_RESULTS_H
#define KTX_VORTIME_RESULTS_H

#include <string_view>

#include "output/OutputFile.h"
#include "system/ExitCode.h"

namespace KTX::VORTIME {

/// Writes what is left of a command's results and closes them. Returns code, or EXIT_BAD_OUTPUT
/// when the results could not be written: it says so, unless the reader of a pipe has gone.
ExitCodeE closeResults(OutputFileC& results, ExitCodeE code);

/// Writes the whole result of a command to an open descriptor, which it closes. Returns as
/// closeResults().
ExitCodeE writeResults(std::string_view text, int resultDescriptor, ExitCodeE code = EXIT_DONE);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_RESULTS_H
