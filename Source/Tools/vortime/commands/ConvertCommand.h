#ifndef KTX_VORTIME_CONVERTCOMMAND_H
#define KTX_VORTIME_CONVERTCOMMAND_H

#include <string>
#include <vector>

#include "commands/TimeForm.h"
#include "system/ExitCode.h"

namespace KTX::VORTIME {

struct ConvertCommandOptionsC {
  std::vector<std::string> values;  ///< none: one a line from standard input
  TimeFormSpecC from;
  TimeFormSpecC to;  ///< TIMEFORMAT_AUTOMATIC: all forms, or ISO for standard input
  bool isJson = false;
};

/// Converts times between forms and time bases by the library's leap second in force.
ExitCodeE runConvert(ConvertCommandOptionsC const& options, int resultDescriptor);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_CONVERTCOMMAND_H
