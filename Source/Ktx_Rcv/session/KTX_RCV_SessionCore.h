#ifndef KTX_RCV_SESSIONCORE_H
#define KTX_RCV_SESSIONCORE_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "KTX/RCV/KTX_RCV_ClockSetter.h"
#include "KTX/RCV/KTX_RCV_EstimateSink.h"
#include "KTX/RCV/KTX_RCV_HostPc.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"
#include "KTX/RCV/KTX_RCV_ReceiverMessage.h"
#include "KTX/RCV/KTX_RCV_SessionCounts.h"
#include "KTX/RCV/KTX_RCV_SessionListener.h"
#include "KTX/RCV/KTX_RCV_SessionOptions.h"
#include "evidence/KTX_RCV_WarningDetector.h"
#include "session/KTX_RCV_HeldClock.h"
#include "session/KTX_RCV_PresentEvents.h"
#include "session/KTX_RCV_SessionLeapSeconds.h"

namespace KTX::RCV {

/// What ReceiverSessionC does.
class SessionCoreC {
 public:
  SessionCoreC(HostPcI& hostPc,
               SessionOptionsC const& sessionOptions,
               SessionListenerI& sessionListener,
               EstimateSinkI* estimateSink);
  ~SessionCoreC();
  SessionCoreC(SessionCoreC const&) = delete;
  SessionCoreC& operator=(SessionCoreC const&) = delete;

  void setClockSetter(ClockSetterC& setter);
  void beginInput(std::string const& name);
  void onMessage(ReceiverMessageC const& message);
  void finish(ReadCountsC const& read, bool isInterrupted);
  SessionCountsC const& counts() const { return sessionCounts; }
  TIM::LeapSecondProviderI& leapSeconds() { return leap.provider(); }

 private:
  void onTime(ReceiverMessageC const& message);
  void onLeap(ReceiverMessageC const& message);
  void onFileDate(ReceiverMessageC const& message);
  std::optional<PcReadingC> arrive(ReceiverMessageC const& message, std::int64_t unixMs);
  void startClocks();
  void useObservation(MessageReportC const& report, PcReadingC const& reading);
  ObservationEffectC observe(ObservationC const& observation, std::int64_t noiseMs);
  void leaveOut(MessageReportC const& report, ArrivedTimeC const& time);
  void refuse(MessageReportC const& report, RefusalE refusal);
  void countWarnings(std::uint32_t warnings);
  void reportOldMapping();
  std::int64_t noiseOf(ReceiverMessageC const& message) const;

  HostPcI& pc;
  SessionOptionsC const options;
  SessionListenerI& listener;
  SessionCountsC sessionCounts;
  boost::shared_ptr<HeldClockC> const systemClock;
  boost::shared_ptr<HeldClockC> const steadyClock;
  WarningDetectorC detector;
  PresentEventsC events;
  SessionLeapSecondsC leap;
  ClockSetterC* clockSetter = nullptr;
  std::vector<std::string> inputs;
  bool isNewInput = true;
  bool hasClocks = false;
  std::int64_t latestUnixMs = 0;
  bool hasToldOldMapping = false;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_SESSIONCORE_H
