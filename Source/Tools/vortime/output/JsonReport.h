#ifndef KTX_VORTIME_JSONREPORT_H
#define KTX_VORTIME_JSONREPORT_H

#include <cstdint>
#include <string>

#include "KTX/RCV/KTX_RCV_SessionListener.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "output/OutputFile.h"

namespace KTX::VORTIME {

/// Writes a run for programs: one JSON object a line.
class JsonReportC : public RCV::SessionListenerI {
 public:
  /// output must outlive the report. isQuiet: leaves out observations and refusals. isLive: every
  /// line is written at once.
  JsonReportC(OutputFileC& output, bool isQuiet, bool isLive);
  ~JsonReportC() override;

  void setLeapSeconds(TIM::LeapSecondProviderI& provider) override { leapSeconds = &provider; }
  void onInput(std::string const& name) override;
  void onObservation(RCV::MessageReportC const& message,
                     RCV::ObservationEffectC const& effect) override;
  void onRefusal(RCV::MessageReportC const& message, RCV::RefusalE refusal) override;
  void onCorrection(RCV::CorrectionReportC const& correction) override;
  void onClock(RCV::ClockStepC const& clock) override;
  void onLeapStatement(RCV::MessageReportC const& message, RCV::LeapReportC const& leap) override;
  void onLeapChange(TIM::UtcLeapSecondRecord const& previous,
                    TIM::UtcLeapSecondRecord const& current) override;
  void onOldMapping(std::int64_t ageMs) override;
  void onSummary(RCV::SummaryReportC const& summary) override;

 private:
  void begin(char const* type);
  void appendMessage(RCV::MessageReportC const& message);
  void appendTime(RCV::MessageReportC const& message);
  void end();

  OutputFileC& out;
  bool const quiet;
  bool const live;
  TIM::LeapSecondProviderI* leapSeconds;
  std::string quotedInput;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_JSONREPORT_H
