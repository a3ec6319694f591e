#ifndef KTX_VORTIME_PLOT_H
#define KTX_VORTIME_PLOT_H

#include <string>
#include <vector>

#include "output/OutputFile.h"
#include "replay/EstimateSink.h"

namespace KTX::VORTIME {

/// Keeps the steps of the estimator in a table and has gnuplot draw them: observations, estimate,
/// its uncertainty, and the present with its corrections, all against the PC's own clock.
class PlotC : public EstimateSinkI {
 public:
  /// path names the pictures: one that ends in .png or .svg is drawn alone, else both are, with the
  /// endings added. The table stands beside them with the ending .tsv.
  explicit PlotC(std::string const& path);

  /// Creates the table. False when that fails.
  bool open();
  void onEstimate(TIM::TimeEstimateStepC const& step) override;
  /// Closes the table and draws. False when that fails.
  bool draw();

  std::string const& tablePath() const { return table; }
  std::vector<std::string> const& picturePaths() const { return pictures; }
  /// What went wrong.
  std::string const& errorText() const { return error; }
  /// It was gnuplot that failed, or that is missing.
  bool hasProgramFailed() const { return programFailed; }

 private:
  std::string script() const;

  std::string table;
  std::vector<std::string> pictures;
  std::string error;
  bool programFailed = false;
  OutputFileC file;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_PLOT_H
