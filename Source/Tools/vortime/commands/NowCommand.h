#ifndef KTX_VORTIME_NOWCOMMAND_H
#define KTX_VORTIME_NOWCOMMAND_H

#include "system/ExitCode.h"

namespace KTX::VORTIME {

/// Shows the library's present.
ExitCodeE runNow(bool isJson, int resultDescriptor);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_NOWCOMMAND_H
