#include "commands/WatchCommand.h"

#include <array>
#include <memory>

#include "KTX/RCV/KTX_RCV_LivePc.h"
#include "KTX/RCV/KTX_RCV_MessageReader.h"
#include "commands/RunOutput.h"
#include "system/Interrupt.h"
#include "system/LiveInput.h"
#include "system/StandardStreams.h"

namespace KTX::VORTIME {
namespace {

constexpr char const* GPSD_SCHEME = "gpsd://";
constexpr char const* GPSD_PORT = "2947";

std::unique_ptr<LiveInputI> openSource(WatchCommandOptionsC const& options, std::string& error) {
  std::string const scheme = GPSD_SCHEME;
  if (options.source.compare(0, scheme.size(), scheme) != 0) {
    return openLiveInput(options.source, options.baud, error);
  }
  std::string host = options.source.substr(scheme.size());
  std::string port = GPSD_PORT;
  std::size_t const colon = host.rfind(':');
  if (colon != std::string::npos) {
    port = host.substr(colon + 1);
    host.resize(colon);
  }
  return openGpsd(host.empty() ? "localhost" : host, port, error);
}

void readAll(LiveInputI& input, RCV::MessageReaderC& reader, RunOutputC const& output) {
  std::array<char, 65536> chunk;
  while (!input.isAtEnd() && !InterruptC::isRequested() && !output.hasFailed()) {
    reader.read(std::string_view(chunk.data(), input.read(chunk.data(), chunk.size())));
  }
  reader.finish();
}

// What a user who has not ended the run must know; empty when all is well.
std::string endText(std::string const& source, bool hasFound) {
  std::string text;
  if (!InterruptC::isRequested()) {
    text = "the source has ended: " + source;
  }
  if (!hasFound) {
    text += (text.empty() ? "" : "; ") + ("nothing usable came from " + source);
  }
  return text;
}

}  // namespace

ExitCodeE runWatch(WatchCommandOptionsC const& options, int resultDescriptor) {
  std::string error;
  std::unique_ptr<LiveInputI> const input = openSource(options, error);
  if (!input) {
    printError("cannot read " + options.source + ": " + error);
    return EXIT_BAD_INPUT;
  }
  RunOutputC output(options.output, resultDescriptor, true);
  if (!output.open({options.source})) {
    return EXIT_BAD_OUTPUT;
  }
  InterruptC const interrupt;
  RCV::LivePcC pc;
  RCV::SessionOptionsC engineOptions = options.engine;
  engineOptions.usesLeapHistory = false;
  // A message that shows a warning sign must not set a clock unless the user asks for it.
  engineOptions.isStrict = engineOptions.isStrict || (options.setsClock && !options.isTrusting);
  RCV::ReceiverSessionC engine(pc, engineOptions, output.report(), output.estimates());
  RCV::ClockSetterC clockSetter(pc, options.maxStepS * 1000);
  if (options.setsClock) {
    engine.setClockSetter(clockSetter);
  }
  output.setLeapSeconds(engine.leapSeconds());
  RCV::ReadCountsC counts;
  RCV::MessageReaderC reader(engine, counts);
  engine.beginInput(options.source);
  readAll(*input, reader, output);
  engine.finish(counts, InterruptC::isRequested());
  ExitCodeE const written = output.finish();
  if (!input->errorText().empty()) {
    printError("cannot read " + options.source + ": " + input->errorText());
    return EXIT_BAD_INPUT;
  }
  if (written != EXIT_DONE) {
    return written;
  }
  std::string const ended =
      endText(options.source, engine.counts().used + engine.counts().leapStatements > 0);
  if (!ended.empty()) {
    printError(ended);
    return EXIT_NOTHING_FOUND;
  }
  return EXIT_DONE;
}

}  // namespace KTX::VORTIME
