#include "commands/RunOutput.h"

#include "output/JsonReport.h"
#include "output/TextReport.h"
#include "system/StandardStreams.h"

namespace KTX::VORTIME {

RunOutputC::RunOutputC(RunOutputOptionsC const& outputOptions, int resultDescriptor, bool isLive)
    : options(outputOptions) {
  out.takeOver(resultDescriptor);
  if (options.isJson) {
    runReport = std::make_unique<JsonReportC>(out, options.isQuiet, isLive);
  } else {
    runReport = std::make_unique<TextReportC>(out, options.isQuiet, isLive);
  }
}

RunOutputC::~RunOutputC() = default;

bool RunOutputC::open() {
  if (options.tracePath.empty()) {
    return true;
  }
  trace = std::make_unique<TraceFileC>();
  if (!trace->create(options.tracePath)) {
    printError("cannot write " + options.tracePath + ": " + trace->errorText());
    return false;
  }
  return true;
}

EstimateSinkI* RunOutputC::estimates() {
  return trace ? this : nullptr;
}

void RunOutputC::setLeapSeconds(TIM::LeapSecondProviderI& provider) {
  runReport->setLeapSeconds(provider);
}

void RunOutputC::onEstimate(EstimateStepC const& step) {
  if (trace) {
    trace->onEstimate(step);
  }
}

ExitCodeE RunOutputC::finish() {
  ExitCodeE code = EXIT_DONE;
  if (trace && !trace->close()) {
    printError("cannot write " + options.tracePath + ": " + trace->errorText());
    code = EXIT_BAD_OUTPUT;
  }
  if (!out.flush()) {
    if (!out.isBrokenPipe()) {
      printError("cannot write the results: " + out.errorText());
    }
    code = EXIT_BAD_OUTPUT;
  }
  return code;
}

}  // namespace KTX::VORTIME
