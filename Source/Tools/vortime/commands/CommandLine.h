#ifndef KTX_VORTIME_COMMANDLINE_H
#define KTX_VORTIME_COMMANDLINE_H

#include <functional>
#include <string>
#include <vector>

#include "system/ExitCode.h"

namespace KTX::VORTIME {

/// What the command line asks for.
struct CommandLineC {
  /// Runs the command; results go to the descriptor. Empty when nothing is to be run.
  std::function<ExitCodeE(int resultDescriptor)> command;
  ExitCodeE exitCode = EXIT_DONE;  ///< with nothing to run
  std::string helpText;            ///< for standard output
  std::string errorText;           ///< for standard error
};

/// Reads the arguments behind the program's name.
CommandLineC readCommandLine(std::vector<std::string> arguments);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_COMMANDLINE_H
