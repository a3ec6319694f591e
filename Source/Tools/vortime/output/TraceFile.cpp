#include "output/TraceFile.h"

#include <cstdint>

#include "output/TextFormat.h"

namespace KTX::VORTIME {
namespace {

constexpr FileMarkC MARK{"STT-D:\t", "\t\n"};
constexpr double MS_PER_DAY = 8.64e7;
constexpr int DAY_DECIMALS = 15;

void appendDays(std::string& text, char const* label, double days) {
  text += label;
  text += '\t';
  appendFixed(text, days, DAY_DECIMALS);
  text += '\t';
}

void appendMs(std::string& text, char const* label, double days) {
  text += label;
  text += '\t';
  appendSigned(text, static_cast<std::int64_t>(days * MS_PER_DAY));
  text += '\t';
}

}  // namespace

bool TraceFileC::open(std::string const& path, OutputGuardC& guard) {
  return guard.open(place, path, MARK) &&
         (file.create(place.partPath()) || guard.fail(path, file.errorText()));
}

bool TraceFileC::close() {
  return file.close() && place.commit();
}

std::string TraceFileC::errorText() const {
  return file.hasFailed() ? file.errorText() : place.errorText();
}

void TraceFileC::onEstimate(TIM::TimeEstimateStepC const& step) {
  appendLine(file.buffer(), step);
  file.commit();
}

void TraceFileC::appendLine(std::string& text, TIM::TimeEstimateStepC const& step) {
  text += "STT-D:\t";
  appendSigned(text, step.steadyMs - step.startSteadyMs);
  text += '\t';
  appendDays(text, "OBS-A:", step.observedMjd);
  appendMs(text, "OBS-R:", step.observedMjd - step.startMjd);
  appendMs(text, "OBS-N:", step.observedSigma);
  appendDays(text, "PRE-A:", step.predictedMjd);
  appendMs(text, "PRE-R:", step.predictedMjd - step.startMjd);
  appendDays(text, "UPD-A:", step.estimatedMjd);
  appendMs(text, "UPD-R:", step.estimatedMjd - step.startMjd);
  appendMs(text, "UPD-N:", step.estimatedSigma);
  appendMs(text, "UPD-D:", step.correction);
  appendMs(text, "RES-A:", step.observedMjd - step.estimatedMjd);
  text += '\n';
}

}  // namespace KTX::VORTIME
