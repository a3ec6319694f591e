#ifndef KTX_DBG_LOGFAULT_H
#define KTX_DBG_LOGFAULT_H

#include <atomic>

namespace KTX::DBG {

/// Writes "KTX_LOG: " and both texts to standard error, as one line whatever they hold. Throws
/// nothing and allocates nothing.
void tellFault(char const* text, char const* detail);

/// Tells of the first fault and keeps silent about those that follow. Thread-safe.
class LogFaultC {
 public:
  void tellOnce(char const* text, char const* detail);

 private:
  std::atomic<bool> isTold{false};
};

}  // namespace KTX::DBG

#endif  // KTX_DBG_LOGFAULT_H
