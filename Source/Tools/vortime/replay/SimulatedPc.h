#ifndef KTX_VORTIME_SIMULATEDPC_H
#define KTX_VORTIME_SIMULATEDPC_H

#include <cstdint>
#include <optional>
#include <string>

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "KTX/RCV/KTX_RCV_HostPc.h"

namespace KTX::VORTIME {

/// How the PC differs from the receiver, for logs without the host's time.
struct SimulatedPcOptionsC {
  std::int64_t offsetMs = 0;  ///< calendar clock minus receiver at the first message
  double driftPpm = 0;        ///< how much too fast both clocks run
  std::int64_t jitterMs = 0;  ///< standard deviation of the time a message takes
  std::uint64_t seed = 1;     ///< of the jitter
};

/// A PC whose clocks run by a log: by the host's times where it has them, else by the times that
/// its messages state. No clock of the machine is read, so a log always gives the same result.
///
/// The calendar clock shows RCV::FIRST_CIVIL_UNIX_MS to RCV::LAST_CIVIL_UNIX_MS, the steady clock
/// counts up to MAX_ELAPSED_MS. A message that would arrive later or earlier has no reading.
class SimulatedPcC : public RCV::HostPcI {
 public:
  /// The longest forward step of the receiver that is taken for time that passed.
  static constexpr std::int64_t MAX_GAP_MS = 86400000;
  /// What the steady clock reads at the first message.
  static constexpr std::int64_t STEADY_START_MS = 1000000;
  /// The longest time from the first message to the last.
  static constexpr std::int64_t MAX_ELAPSED_MS = RCV::LAST_CIVIL_UNIX_MS - RCV::FIRST_CIVIL_UNIX_MS;

  explicit SimulatedPcC(SimulatedPcOptionsC const& pcOptions);

  std::optional<RCV::PcReadingC> arrive(RCV::ArrivalC const& arrival) override;

 private:
  struct StateC {
    std::uint64_t random = 0;
    bool runsByHost = false;
    std::int64_t startUnixMs = 0;  ///< calendar clock at the first message
    std::int64_t lastUnixMs = 0;   ///< host time or stated time of the message before
    std::string lastMessage;       ///< kind of the message that time last passed with
    std::int64_t usualStepMs = 0;  ///< last step that was one of a running receiver
    std::int64_t passedMs = 0;     ///< true time since the first message
    std::int64_t elapsedMs = 0;    ///< the same by the PC's clocks
  };

  static RCV::PcReadingC arriveByHost(StateC& state, RCV::ArrivalC const& arrival);
  RCV::PcReadingC arriveByReceiver(StateC& state, RCV::ArrivalC const& arrival) const;
  static void pass(StateC& state, RCV::ArrivalC const& arrival);
  double nextDelayMs(StateC& state) const;

  SimulatedPcOptionsC const options;
  StateC present;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_SIMULATEDPC_H
