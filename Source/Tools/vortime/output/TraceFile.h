#ifndef KTX_VORTIME_TRACEFILE_H
#define KTX_VORTIME_TRACEFILE_H

#include <string>

#include "KTX/RCV/KTX_RCV_EstimateSink.h"
#include "output/OutputFile.h"
#include "output/OutputGuard.h"
#include "output/ReplacedFile.h"

namespace KTX::VORTIME {

/// Writes one line for each step of the estimator, in the form that the library's log has on its
/// channel "TimeEstimatorData": labels and values, each followed by a tab.
class TraceFileC : public RCV::EstimateSinkI {
 public:
  /// Begins the file. False, with the error of guard, when it must not be written or cannot be.
  bool open(std::string const& path, OutputGuardC& guard);
  /// Puts the file in its place. False after any failure.
  bool close();
  std::string errorText() const;

  void onEstimate(TIM::TimeEstimateStepC const& step) override;

  /// The line of one step, with its line end.
  static void appendLine(std::string& text, TIM::TimeEstimateStepC const& step);

 private:
  ReplacedFileC place;
  OutputFileC file;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TRACEFILE_H
