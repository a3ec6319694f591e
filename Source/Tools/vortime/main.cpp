#include <cstdio>
#include <exception>

#include "KTX/TIM/KTX_TIM_PresentWarning.h"
#include "commands/CommandLine.h"
#include "commands/Results.h"
#include "system/Arguments.h"
#include "system/StandardStreams.h"

#if defined(_WIN32)
#define KTX_VORTIME_EXPORTED __declspec(dllexport)
#else
#define KTX_VORTIME_EXPORTED __attribute__((visibility("default")))
#endif

// The logging library takes this setting where KTX_LOG is not set: the tool's own messages say what
// the user needs to know.
extern "C" KTX_VORTIME_EXPORTED char const KTX_LOG_DEFAULT[];
char const KTX_LOG_DEFAULT[] = "*=off";

namespace {

int run(int count, char const* const* values) {
  using namespace KTX::VORTIME;
  int const results = reserveStandardOutput();
  // A replay would print the line for each message; the report of a run says it once.
  KTX::TIM::setPresentWarningEnabled(false);
  CommandLineC const commandLine = readCommandLine(commandLineArguments(count, values));
  bool const hasResults = commandLine.command || !commandLine.helpText.empty();
  if (hasResults && results < 0) {
    printError("cannot write the results: standard output is closed");
    return EXIT_BAD_OUTPUT;
  }
  if (commandLine.command) {
    return commandLine.command(results);
  }
  std::fputs(commandLine.errorText.c_str(), stderr);
  return commandLine.helpText.empty() ? commandLine.exitCode
                                      : writeResults(commandLine.helpText, results);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (std::exception const& error) {
    std::fprintf(stderr, "vortime: %s\n", error.what());
    return KTX::VORTIME::EXIT_BAD_INPUT;
  }
}
