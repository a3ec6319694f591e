#include "commands/RunOutput.h"

#include "commands/Results.h"
#include "output/JsonReport.h"
#include "output/TextReport.h"
#include "system/StandardStreams.h"
#include "system/VisibleText.h"

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
  if (!options.tracePath.empty()) {
    trace = std::make_unique<TraceFileC>();
    if (!trace->create(options.tracePath)) {
      printError("cannot write " + options.tracePath + ": " + trace->errorText());
      return false;
    }
  }
  if (!options.plotPath.empty()) {
    plot = std::make_unique<PlotC>(options.plotPath);
    if (!plot->open()) {
      printError(plot->errorText());
      return false;
    }
  }
  return true;
}

EstimateSinkI* RunOutputC::estimates() {
  return trace || plot ? this : nullptr;
}

void RunOutputC::setLeapSeconds(TIM::LeapSecondProviderI& provider) {
  runReport->setLeapSeconds(provider);
}

void RunOutputC::onEstimate(TIM::TimeEstimateStepC const& step) {
  if (trace) {
    trace->onEstimate(step);
  }
  if (plot) {
    plot->onEstimate(step);
  }
}

ExitCodeE RunOutputC::finish() {
  ExitCodeE code = EXIT_DONE;
  if (trace && !trace->close()) {
    printError("cannot write " + options.tracePath + ": " + trace->errorText());
    code = EXIT_BAD_OUTPUT;
  }
  if (plot) {
    ExitCodeE const drawn = drawPlot();
    code = code == EXIT_DONE ? drawn : code;
  }
  return closeResults(out, code);
}

ExitCodeE RunOutputC::drawPlot() {
  if (!plot->draw()) {
    printError(plot->errorText());
    return plot->hasProgramFailed() ? EXIT_NO_PROGRAM : EXIT_BAD_OUTPUT;
  }
  if (!options.isJson) {
    for (std::string const& picture : plot->picturePaths()) {
      out.write("plot             " + visible(picture) + '\n');
    }
  }
  return EXIT_DONE;
}

}  // namespace KTX::VORTIME
