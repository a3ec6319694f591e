#ifndef KTX_VORTIME_TEXTREPORT_H
#define KTX_VORTIME_TEXTREPORT_H

#include <cstdint>
#include <string>

#include "KTX/RCV/KTX_RCV_SessionListener.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "output/OutputFile.h"

namespace KTX::VORTIME {

/// Writes a run for people: a line for every dated message, then the summary.
class TextReportC : public RCV::SessionListenerI {
 public:
  /// output must outlive the report. isQuiet: leaves out observations and refusals. isLive: every
  /// line is written at once.
  TextReportC(OutputFileC& output, bool isQuiet, bool isLive);
  ~TextReportC() override;

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
  void beginLine(RCV::MessageReportC const& message);
  void appendTime(RCV::MessageReportC const& message);
  void appendSigns(std::uint32_t signs);
  void endLine();
  void warnOnce(RCV::MessageReportC const& message);

  OutputFileC& out;
  bool const quiet;
  bool const live;
  TIM::LeapSecondProviderI* leapSeconds;
  std::uint32_t signsWarnedOf = 0;
  bool hasLastLeap = false;
  RCV::LeapReportC lastLeap;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TEXTREPORT_H
