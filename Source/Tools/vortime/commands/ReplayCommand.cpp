#include "commands/ReplayCommand.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "KTX/RCV/KTX_RCV_MessageReader.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "commands/RunOutput.h"
#include "output/ProgressBar.h"
#include "system/FileName.h"
#include "system/InputFile.h"
#include "system/Interrupt.h"
#include "system/StandardStreams.h"

namespace KTX::VORTIME {
namespace {

constexpr std::size_t CHUNK_SIZE = 1 << 20;
constexpr std::uint64_t LONG_LOG = 4 << 20;

struct LogC {
  std::string name;
  std::unique_ptr<InputFileC> file;
};
using LogsT = std::vector<LogC>;

// Those that can be opened; says which cannot.
LogsT openLogs(std::vector<std::string> const& names) {
  LogsT logs;
  for (std::string const& name : names) {
    auto file = std::make_unique<InputFileC>();
    if (file->open(name)) {
      logs.push_back(LogC{name, std::move(file)});
    } else {
      printError("cannot read " + name + ": " + file->errorText());
    }
  }
  return logs;
}

std::uint64_t barLength(ReplayCommandOptionsC const& options,
                        LogsT const& logs,
                        int resultDescriptor) {
  std::uint64_t total = 0;
  for (LogC const& log : logs) {
    total += log.file->size();
  }
  bool const isWanted =
      options.progress == PROGRESS_ALWAYS ||
      (options.progress == PROGRESS_AUTOMATIC && total >= LONG_LOG && isTerminal(STANDARD_ERROR) &&
       (options.output.isQuiet || !isTerminal(resultDescriptor)));
  return isWanted ? total : 0;
}

// Reads one input to its end, or until the run is to stop. False when reading fails.
bool readInput(InputFileC& input,
               RCV::MessageReaderC& reader,
               std::vector<char>& buffer,
               ProgressBarC& bar,
               std::uint64_t doneBefore,
               RunOutputC& output) {
  std::uint64_t done = doneBefore;
  while (!input.isAtEnd() && !InterruptC::isRequested() && !output.hasFailed()) {
    std::size_t const count = input.read(buffer.data(), buffer.size());
    reader.read(std::string_view(buffer.data(), count));
    done += count;
    bar.show(done);
  }
  if (input.isAtEnd()) {
    reader.finish();
  }
  return !input.hasFailed();
}

}  // namespace

ExitCodeE runReplay(ReplayCommandOptionsC const& options, int resultDescriptor) {
  LogsT const logs = openLogs(options.logs);
  if (logs.empty()) {
    return EXIT_BAD_INPUT;
  }
  RunOutputC output(options.output, resultDescriptor, false);
  std::vector<std::string> inputs = options.logs;
  inputs.push_back(options.leapFile);
  if (!output.open(inputs)) {
    return EXIT_BAD_OUTPUT;
  }
  if (!options.leapFile.empty() &&
      TIM::loadLeapSecondFile(wideFileName(options.leapFile), false) != TIM::RC_OK) {
    printError("no leap second can be set from " + options.leapFile);
    return EXIT_BAD_INPUT;
  }
  InterruptC const interrupt;
  SimulatedPcC pc(options.pc);
  RCV::ReceiverSessionC engine(pc, options.engine, output.report(), output.estimates());
  output.setLeapSeconds(engine.leapSeconds());
  RCV::ReadCountsC counts;
  ProgressBarC bar(barLength(options, logs, resultDescriptor));
  std::vector<char> buffer(CHUNK_SIZE);
  bool isRead = logs.size() == options.logs.size();
  std::uint64_t done = 0;
  for (LogC const& log : logs) {
    engine.beginInput(log.name);
    RCV::MessageReaderC reader(engine, counts);
    if (!readInput(*log.file, reader, buffer, bar, done, output)) {
      bar.clear();
      printError("cannot read " + log.name + ": " + log.file->errorText());
      isRead = false;
    }
    if (InterruptC::isRequested() || output.hasFailed()) {
      break;
    }
    done += log.file->size();
  }
  bar.clear();
  engine.finish(counts, InterruptC::isRequested());
  ExitCodeE const written = output.finish();
  if (!isRead) {
    return EXIT_BAD_INPUT;
  }
  if (written != EXIT_DONE) {
    return written;
  }
  if (InterruptC::isRequested()) {
    return EXIT_INTERRUPTED;
  }
  bool const hasFound = engine.counts().used + engine.counts().leapStatements > 0;
  return hasFound ? EXIT_DONE : EXIT_NOTHING_FOUND;
}

}  // namespace KTX::VORTIME
