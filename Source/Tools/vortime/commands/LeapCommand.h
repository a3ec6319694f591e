#ifndef KTX_VORTIME_LEAPCOMMAND_H
#define KTX_VORTIME_LEAPCOMMAND_H

#include <string>

#include "system/ExitCode.h"

namespace KTX::VORTIME {

/// Shows the leap second in force and the one held besides a forced one.
ExitCodeE runLeapShow(bool isJson, int resultDescriptor);

/// Tells what a leap second file, or a published list of leap seconds, says.
ExitCodeE runLeapCheck(std::string const& path, bool isJson, int resultDescriptor);

/// Forces the leap second of a leap second file in this process and shows what changed. A file
/// whose last line has no line end may have been cut, and is refused unless isForced.
ExitCodeE runLeapLoad(std::string const& path, bool isForced, bool isJson, int resultDescriptor);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_LEAPCOMMAND_H
