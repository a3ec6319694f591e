#ifndef KTX_RCV_HOSTPC_H
#define KTX_RCV_HOSTPC_H

#include <cstdint>
#include <optional>
#include <string_view>

namespace KTX::RCV {

/// What the clocks of the PC read at one moment.
struct PcReadingC {
  std::int64_t systemUnixMs = 0;  ///< calendar clock, ms since 1970-01-01 UTC
  std::int64_t steadyMs = 0;      ///< steady clock
  bool hasRunBack = false;        ///< the recorded calendar clock ran back
  bool isCalendarKnown = false;   ///< systemUnixMs was read from a clock, not made up
};

/// When a message arrives.
struct ArrivalC {
  std::int64_t statedUnixMs = 0;  ///< the time that the message states, UTC
  bool hasHostTime = false;       ///< hostUnixMs means something
  std::int64_t hostUnixMs = 0;    ///< the PC's calendar clock as a logger wrote it down
  std::string_view message;       ///< its kind
  bool isFirst = false;           ///< nothing was used yet: the PC's time begins with this message
  bool isNewInput = false;        ///< first of its input: any time may lie between
};

/// The PC that receives the messages.
class HostPcI {
 public:
  virtual ~HostPcI() = default;
  /// Lets time pass until a message arrives and reads the clocks. Empty, and no time has passed,
  /// where the clocks cannot show that time.
  virtual std::optional<PcReadingC> arrive(ArrivalC const& arrival) = 0;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_HOSTPC_H
