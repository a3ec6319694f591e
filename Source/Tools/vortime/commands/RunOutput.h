#ifndef KTX_VORTIME_RUNOUTPUT_H
#define KTX_VORTIME_RUNOUTPUT_H

#include <memory>
#include <string>
#include <vector>

#include "KTX/RCV/KTX_RCV_EstimateSink.h"
#include "KTX/RCV/KTX_RCV_ReceiverSession.h"
#include "KTX/RCV/KTX_RCV_SessionListener.h"
#include "commands/ReplayCommand.h"
#include "output/OutputFile.h"
#include "output/Plot.h"
#include "output/TraceFile.h"
#include "system/ExitCode.h"

namespace KTX::VORTIME {

/// Everything that a run writes: the report, the trace, the plot.
class RunOutputC : public RCV::EstimateSinkI {
 public:
  /// isLive: every line is written at once.
  RunOutputC(RunOutputOptionsC const& outputOptions, int resultDescriptor, bool isLive);
  ~RunOutputC() override;

  /// Opens what is written to files; says what cannot be opened. inputs: the names of what the run
  /// reads, none of which is written.
  bool open(std::vector<std::string> const& inputs);
  RCV::SessionListenerI& report() { return *runReport; }
  OutputFileC& results() { return out; }
  /// Null when nobody wants the estimator's steps.
  RCV::EstimateSinkI* estimates();
  void setLeapSeconds(TIM::LeapSecondProviderI& provider);

  void onEstimate(TIM::TimeEstimateStepC const& step) override;

  /// True once the results can no longer be written, so that a run may end early.
  bool hasFailed() const { return out.hasFailed(); }
  /// Writes what is left and draws the plot; says what failed.
  ExitCodeE finish();

 private:
  bool tracesToResults() const;
  ExitCodeE drawPlot();

  RunOutputOptionsC const options;
  int const resultsDescriptor;
  bool const isFlushed;  ///< after each line
  OutputFileC out;
  std::unique_ptr<RCV::SessionListenerI> runReport;
  std::unique_ptr<TraceFileC> trace;
  std::unique_ptr<PlotC> plot;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_RUNOUTPUT_H
