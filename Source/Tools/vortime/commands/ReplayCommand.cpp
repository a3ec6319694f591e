#include "commands/ReplayCommand.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "commands/RunOutput.h"
#include "output/ProgressBar.h"
#include "readers/StreamReader.h"
#include "system/FileName.h"
#include "system/InputFile.h"
#include "system/Interrupt.h"
#include "system/StandardStreams.h"

namespace KTX::VORTIME {
namespace {

constexpr std::size_t CHUNK_SIZE = 1 << 20;
constexpr std::uint64_t LONG_LOG = 4 << 20;

using InputsT = std::vector<std::unique_ptr<InputFileC>>;

bool openAll(std::vector<std::string> const& logs, InputsT& inputs) {
  for (std::string const& log : logs) {
    inputs.push_back(std::make_unique<InputFileC>());
    if (!inputs.back()->open(log)) {
      printError("cannot read " + log + ": " + inputs.back()->errorText());
      return false;
    }
  }
  return true;
}

std::uint64_t barLength(ReplayCommandOptionsC const& options,
                        InputsT const& inputs,
                        int resultDescriptor) {
  std::uint64_t total = 0;
  for (auto const& input : inputs) {
    total += input->size();
  }
  bool const isWanted =
      options.progress == PROGRESS_ALWAYS ||
      (options.progress == PROGRESS_AUTOMATIC && total >= LONG_LOG && isTerminal(STANDARD_ERROR) &&
       (options.output.isQuiet || !isTerminal(resultDescriptor)));
  return isWanted ? total : 0;
}

// Reads one input to its end. False when it fails or the run is to stop.
bool readInput(InputFileC& input,
               StreamReaderC& reader,
               std::vector<char>& buffer,
               ProgressBarC& bar,
               std::uint64_t doneBefore,
               RunOutputC& output) {
  std::size_t held = 0;
  std::uint64_t done = doneBefore;
  while (!input.isAtEnd() && !InterruptC::isRequested() && !output.hasFailed()) {
    if (held == buffer.size()) {
      buffer.resize(buffer.size() * 2);
    }
    std::size_t const count = input.read(buffer.data() + held, buffer.size() - held);
    std::size_t const size = held + count;
    std::size_t const used = reader.read(std::string_view(buffer.data(), size), input.isAtEnd());
    held = size - used;
    std::memmove(buffer.data(), buffer.data() + used, held);
    done += count;
    bar.show(done);
  }
  return !input.hasFailed();
}

}  // namespace

ExitCodeE runReplay(ReplayCommandOptionsC const& options, int resultDescriptor) {
  InputsT inputs;
  if (!openAll(options.logs, inputs)) {
    return EXIT_BAD_INPUT;
  }
  RunOutputC output(options.output, resultDescriptor, false);
  if (!output.open()) {
    return EXIT_BAD_OUTPUT;
  }
  if (!options.leapFile.empty() &&
      TIM::loadLeapSecondFile(wideFileName(options.leapFile), false) != TIM::RC_OK) {
    printError("no leap second can be set from " + options.leapFile);
    return EXIT_BAD_INPUT;
  }
  InterruptC const interrupt;
  SimulatedPcC pc(options.pc);
  ReplayEngineC engine(pc, options.engine, output.report(), output.estimates());
  output.setLeapSeconds(engine.leapSeconds());
  ReadCountsC counts;
  ProgressBarC bar(barLength(options, inputs, resultDescriptor));
  std::vector<char> buffer(CHUNK_SIZE);
  bool isRead = true;
  std::uint64_t done = 0;
  for (std::size_t i = 0; i < inputs.size() && isRead; ++i) {
    engine.beginInput(options.logs[i]);
    StreamReaderC reader(engine, counts);
    isRead = readInput(*inputs[i], reader, buffer, bar, done, output);
    done += inputs[i]->size();
    if (!isRead) {
      bar.clear();
      printError("cannot read " + options.logs[i] + ": " + inputs[i]->errorText());
    }
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
