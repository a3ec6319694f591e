#include <cstdio>
#include <exception>

#include "commands/CommandLine.h"
#include "output/OutputFile.h"
#include "system/Arguments.h"
#include "system/StandardStreams.h"

namespace {

int run(int count, char const* const* values) {
  using namespace KTX::VORTIME;
  int const results = reserveStandardOutput();
  CommandLineC const commandLine = readCommandLine(commandLineArguments(count, values));
  if (commandLine.command) {
    return commandLine.command(results);
  }
  OutputFileC out;
  out.takeOver(results);
  out.write(commandLine.helpText);
  std::fputs(commandLine.errorText.c_str(), stderr);
  return out.close() ? commandLine.exitCode : EXIT_BAD_OUTPUT;
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
