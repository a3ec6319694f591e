#ifndef KTX_DBG_LOGDESCRIPTOR_H
#define KTX_DBG_LOGDESCRIPTOR_H

#include <string_view>

namespace KTX::DBG {

/// Writes the whole text to an open descriptor: 0, or the error number. A write that a signal
/// interrupts is tried again. Where the reader of a pipe has gone it gives EPIPE and no SIGPIPE,
/// which would end the program.
int writeToDescriptor(int descriptor, std::string_view text);

}  // namespace KTX::DBG

#endif  // KTX_DBG_LOGDESCRIPTOR_H
