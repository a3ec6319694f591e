#ifndef KTX_RCV_RECEIVERSESSION_H
#define KTX_RCV_RECEIVERSESSION_H

#include <cstdint>
#include <memory>
#include <string>

#include "KTX/RCV/KTX_RCV_Api.h"
#include "KTX/RCV/KTX_RCV_ClockSetter.h"
#include "KTX/RCV/KTX_RCV_EstimateSink.h"
#include "KTX/RCV/KTX_RCV_HostPc.h"
#include "KTX/RCV/KTX_RCV_MessageSink.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"
#include "KTX/RCV/KTX_RCV_SessionCounts.h"
#include "KTX/RCV/KTX_RCV_SessionListener.h"
#include "KTX/RCV/KTX_RCV_SessionOptions.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"

namespace KTX::RCV {

class SessionCoreC;

/// Takes the messages of a receiver, hands their observations and leap second statements to the
/// time library, and tells a listener what became of each.
///
/// The present and the leap second are those of the process: there can be one session at a time,
/// and no other observation should be handed over meanwhile. From its first observation on the
/// library's present runs on the clocks of the session's PC; the end of the session puts the
/// system's clocks back. For one thread.
class KTX_RCV_API ReceiverSessionC : public MessageSinkI {
 public:
  /// The age of the library's mapping above which the listener is told of it, in ms.
  static constexpr std::int64_t OLD_MAPPING_MS = 86400000;
  /// The counts of GPS minus UTC that a receiver is believed, in seconds.
  static constexpr std::int32_t MIN_LEAP_COUNT = 0;
  static constexpr std::int32_t MAX_LEAP_COUNT = 40;  ///< see MIN_LEAP_COUNT

  /// All must outlive the session; estimateSink may be null.
  ReceiverSessionC(HostPcI& hostPc,
                   SessionOptionsC const& options,
                   SessionListenerI& listener,
                   EstimateSinkI* estimateSink);
  ~ReceiverSessionC() override;
  ReceiverSessionC(ReceiverSessionC const&) = delete;
  ReceiverSessionC& operator=(ReceiverSessionC const&) = delete;

  /// Lets the observations set the PC's clock. setter must outlive the session.
  void setClockSetter(ClockSetterC& setter);

  /// Tells that the messages of another input follow.
  void beginInput(std::string const& name);
  void onMessage(ReceiverMessageC const& message) override;
  /// Tells that no message follows; the listener gets the summary, with the counts of the reader.
  void finish(ReadCountsC const& read, bool isInterrupted);

  /// What became of the messages so far.
  SessionCountsC const& counts() const;
  /// The leap seconds by which the session turns stated UTC into GPS time.
  TIM::LeapSecondProviderI& leapSeconds();

 private:
  std::unique_ptr<SessionCoreC> core;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_RECEIVERSESSION_H
