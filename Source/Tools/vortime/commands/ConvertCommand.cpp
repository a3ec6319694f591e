#include "commands/ConvertCommand.h"

#include <string_view>

#include "commands/Converter.h"
#include "commands/Results.h"
#include "commands/ValueLines.h"
#include "output/OutputFile.h"
#include "system/InputFile.h"
#include "system/StandardStreams.h"

namespace KTX::VORTIME {
namespace {

std::string_view trimmed(std::string_view line) {
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) {
    line.remove_suffix(1);
  }
  while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) {
    line.remove_prefix(1);
  }
  return line;
}

void convertLine(std::string_view line, bool isTooLong, ConverterC& converter) {
  std::string_view const value = trimmed(line);
  if (isTooLong) {
    converter.refuse(value.substr(0, ConverterC::MAX_SHOWN),
                     "the line has more than " + std::to_string(ValueLinesC::MAX_LINE) + " bytes");
  } else if (!value.empty()) {
    converter.convert(value);
  }
}

bool convertStandardInput(ConverterC& converter, OutputFileC const& out) {
  InputFileC input;
  if (input.open("-")) {
    ValueLinesC lines(input, [&converter](std::string_view line, bool isTooLong) {
      convertLine(line, isTooLong, converter);
    });
    while (!out.hasFailed() && lines.read()) {
    }
  }
  if (input.hasFailed()) {
    printError("cannot read standard input: " + input.errorText());
  }
  return !input.hasFailed();
}

}  // namespace

ExitCodeE runConvert(ConvertCommandOptionsC const& options, int resultDescriptor) {
  OutputFileC out;
  out.takeOver(resultDescriptor);
  ConvertCommandOptionsC used = options;
  bool const readsInput = options.values.empty();
  if (readsInput && used.to.format == TIMEFORMAT_AUTOMATIC && !used.isJson) {
    used.to = TimeFormSpecC{TIMEFORMAT_ISO, TIM::TIMEBASE_UTC};
  }
  ConverterC converter(used, out);
  if (readsInput) {
    if (!convertStandardInput(converter, out)) {
      return EXIT_BAD_INPUT;
    }
  } else {
    for (std::string const& value : options.values) {
      converter.convert(trimmed(value));
    }
  }
  if (converter.historicCount() != 0) {
    printError("note: " + std::to_string(converter.historicCount()) +
               " value(s) of a date with another leap second count than the library's");
  }
  return closeResults(out, converter.hasRefused() ? EXIT_NOTHING_FOUND : EXIT_DONE);
}

}  // namespace KTX::VORTIME
