#ifndef KTX_VORTIME_SIMULATEDPC_H
#define KTX_VORTIME_SIMULATEDPC_H

#include <cstdint>
#include <string>

#include "replay/HostPc.h"

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
class SimulatedPcC : public HostPcI {
 public:
  /// The longest forward step of the receiver that is taken for time that passed.
  static constexpr std::int64_t MAX_GAP_MS = 86400000;
  /// What the steady clock reads at the first message.
  static constexpr std::int64_t STEADY_START_MS = 1000000;

  explicit SimulatedPcC(SimulatedPcOptionsC const& pcOptions);

  PcReadingC arrive(ArrivalC const& arrival) override;

 private:
  PcReadingC arriveByHost(ArrivalC const& arrival);
  PcReadingC arriveByReceiver(ArrivalC const& arrival);
  void pass(ArrivalC const& arrival);
  double nextDelayMs();

  SimulatedPcOptionsC const options;
  std::uint64_t randomState;
  bool runsByHost = false;
  std::int64_t startUnixMs = 0;  ///< calendar clock at the first message
  std::int64_t lastUnixMs = 0;   ///< host time or stated time of the message before
  std::string lastMessage;       ///< kind of the message that time last passed with
  std::int64_t usualStepMs = 0;  ///< last step that was one of a running receiver
  std::int64_t passedMs = 0;     ///< true time since the first message
  std::int64_t elapsedMs = 0;    ///< the same by the PC's clocks
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_SIMULATEDPC_H
