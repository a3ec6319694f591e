#include "output/ProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "output/TextFormat.h"

namespace KTX::VORTIME {
namespace {

constexpr std::size_t WIDTH = 40;

}  // namespace

ProgressBarC::ProgressBarC(std::uint64_t totalBytes) : total(totalBytes) {}

ProgressBarC::~ProgressBarC() {
  clear();
}

void ProgressBarC::show(std::uint64_t doneBytes) {
  if (total == 0) {
    return;
  }
  double const share = std::min(1.0, static_cast<double>(doneBytes) / static_cast<double>(total));
  int const percent = static_cast<int>(share * 100);
  if (percent == shownPercent) {
    return;
  }
  shownPercent = percent;
  std::size_t const full = WIDTH * static_cast<std::size_t>(percent) / 100;
  std::string text = "\r[" + std::string(full, '#') + std::string(WIDTH - full, ' ') + "] ";
  appendRight(text, std::to_string(percent), 3);
  text += "% ";
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
}

void ProgressBarC::clear() {
  if (shownPercent >= 0) {
    std::fputs(("\r" + std::string(WIDTH + 8, ' ') + "\r").c_str(), stderr);
    std::fflush(stderr);
    shownPercent = -1;
  }
}

}  // namespace KTX::VORTIME
