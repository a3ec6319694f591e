#ifndef KTX_VORTIME_WATCHCOMMAND_H
#define KTX_VORTIME_WATCHCOMMAND_H

#include <cstdint>
#include <string>

#include "KTX/RCV/KTX_RCV_ClockSetter.h"
#include "KTX/RCV/KTX_RCV_ReceiverSession.h"
#include "commands/ReplayCommand.h"
#include "system/ExitCode.h"

namespace KTX::VORTIME {

struct WatchCommandOptionsC {
  std::string source;
  int baud = 0;  ///< 0: as the device is set
  bool setsClock = false;
  bool isTrusting = false;  ///< with setsClock: uses messages with a warning sign too
  std::int64_t maxStepS = RCV::ClockSetterC::DEFAULT_MAX_STEP_MS / 1000;  ///< of the PC's clock
  RCV::SessionOptionsC engine;
  RunOutputOptionsC output;
};

/// Follows a receiver on the real clocks until its input ends or Ctrl-C comes. It is done when
/// Ctrl-C ended it and something usable came.
ExitCodeE runWatch(WatchCommandOptionsC const& options, int resultDescriptor);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_WATCHCOMMAND_H
