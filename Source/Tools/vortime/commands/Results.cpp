#include "commands/Results.h"

#include "system/StandardStreams.h"

namespace KTX::VORTIME {

ExitCodeE closeResults(OutputFileC& results, ExitCodeE code) {
  if (results.close()) {
    return code;
  }
  if (!results.isBrokenPipe()) {
    printError("cannot write the results: " + results.errorText());
  }
  return EXIT_BAD_OUTPUT;
}

ExitCodeE writeResults(std::string_view text, int resultDescriptor, ExitCodeE code) {
  OutputFileC results;
  results.takeOver(resultDescriptor);
  results.write(text);
  return closeResults(results, code);
}

}  // namespace KTX::VORTIME
