#ifndef KTX_VORTIME_TRACEFILE_H
#define KTX_VORTIME_TRACEFILE_H

#include <string>

#include "output/OutputFile.h"
#include "replay/EstimateSink.h"

namespace KTX::VORTIME {

/// Writes one line for each step of the estimator, in the form that the library's log has on its
/// channel "TimeEstimatorData": labels and values, each followed by a tab.
class TraceFileC : public EstimateSinkI {
 public:
  bool create(std::string const& path) { return file.create(path); }
  bool close() { return file.close(); }
  std::string errorText() const { return file.errorText(); }

  void onEstimate(TIM::TimeEstimateStepC const& step) override;

  /// The line of one step, with its line end.
  static void appendLine(std::string& text, TIM::TimeEstimateStepC const& step);

 private:
  OutputFileC file;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TRACEFILE_H
