#include "commands/RunOutput.h"

#include "commands/Results.h"
#include "output/JsonReport.h"
#include "output/TextReport.h"
#include "system/StandardStreams.h"
#include "system/VisibleText.h"

namespace KTX::VORTIME {

RunOutputC::RunOutputC(RunOutputOptionsC const& outputOptions, int resultDescriptor, bool isLive)
    : options(outputOptions), resultsDescriptor(resultDescriptor), isFlushed(isLive) {
  out.takeOver(resultDescriptor);
  if (options.isJson) {
    runReport = std::make_unique<JsonReportC>(out, options.isQuiet, isLive);
  } else {
    runReport = std::make_unique<TextReportC>(out, options.isQuiet, isLive);
  }
}

RunOutputC::~RunOutputC() = default;

bool RunOutputC::open(std::vector<std::string> const& inputs) {
  OutputGuardC guard(inputs, resultsDescriptor, options.isForced);
  bool isOpen = true;
  if (!options.tracePath.empty() && !tracesToResults()) {
    trace = std::make_unique<TraceFileC>();
    isOpen = trace->open(options.tracePath, guard);
  }
  if (isOpen && !options.plotPath.empty()) {
    plot = std::make_unique<PlotC>(options.plotPath);
    isOpen = plot->open(guard);
  }
  if (!isOpen) {
    printError(guard.errorText());
  }
  return isOpen;
}

bool RunOutputC::tracesToResults() const {
  return options.tracePath == "-";
}

RCV::EstimateSinkI* RunOutputC::estimates() {
  return trace || plot || tracesToResults() ? this : nullptr;
}

void RunOutputC::setLeapSeconds(TIM::LeapSecondProviderI& provider) {
  runReport->setLeapSeconds(provider);
}

void RunOutputC::onEstimate(TIM::TimeEstimateStepC const& step) {
  if (tracesToResults()) {
    TraceFileC::appendLine(out.buffer(), step);
    if (isFlushed) {
      out.flush();
    } else {
      out.commit();
    }
  }
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
