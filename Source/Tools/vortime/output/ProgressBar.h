#ifndef KTX_VORTIME_PROGRESSBAR_H
#define KTX_VORTIME_PROGRESSBAR_H

#include <cstdint>

namespace KTX::VORTIME {

/// A bar on standard error that shows how much of the input is read.
class ProgressBarC {
 public:
  /// totalBytes 0 shows no bar.
  explicit ProgressBarC(std::uint64_t totalBytes);
  /// Takes the bar off the terminal.
  ~ProgressBarC();
  ProgressBarC(ProgressBarC const&) = delete;
  ProgressBarC& operator=(ProgressBarC const&) = delete;

  /// Draws the bar when it has changed.
  void show(std::uint64_t doneBytes);
  /// Takes the bar away, so that other output has the line.
  void clear();

 private:
  std::uint64_t const total;
  int shownPercent = -1;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_PROGRESSBAR_H
