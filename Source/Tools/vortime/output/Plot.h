#ifndef KTX_VORTIME_PLOT_H
#define KTX_VORTIME_PLOT_H

#include <memory>
#include <string>
#include <vector>

#include "KTX/RCV/KTX_RCV_EstimateSink.h"
#include "output/OutputFile.h"
#include "output/OutputGuard.h"
#include "output/PictureMark.h"
#include "output/ReplacedFile.h"

namespace KTX::VORTIME {

/// Keeps the steps of the estimator in a table and has gnuplot draw them: observations, estimate,
/// its uncertainty, and the present with its corrections, all against the PC's own clock.
class PlotC : public RCV::EstimateSinkI {
 public:
  /// path names the pictures: one that ends in .png or .svg is drawn alone, else both are, with the
  /// endings added. The table stands beside them with the ending .tsv.
  explicit PlotC(std::string const& path);

  /// Why nothing can be drawn under this name: another ending, or no name at all. Empty when it
  /// can.
  static std::string problemOf(std::string const& path);

  /// Begins the files. False, with the error of guard, when one must not be written or cannot be.
  bool open(OutputGuardC& guard);
  void onEstimate(TIM::TimeEstimateStepC const& step) override;
  /// Puts the table in its place, draws, and puts the pictures in theirs. False when that fails.
  bool draw();

  std::vector<std::string> picturePaths() const;
  /// What went wrong.
  std::string const& errorText() const { return error; }
  /// It was gnuplot that failed, or that is missing.
  bool hasProgramFailed() const { return programFailed; }

 private:
  struct PictureC {
    std::string path;
    PictureFormatE format;
    std::unique_ptr<ReplacedFileC> place;
  };

  void addPicture(std::string const& path, PictureFormatE format);
  std::string script() const;
  bool runGnuplot();

  std::string table;
  ReplacedFileC tablePlace;
  std::vector<PictureC> pictures;
  std::string error;
  bool programFailed = false;
  OutputFileC file;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_PLOT_H
