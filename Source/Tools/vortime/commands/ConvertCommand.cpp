#include "commands/ConvertCommand.h"

#include <cstdint>
#include <cstring>
#include <string_view>

#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "commands/Results.h"
#include "output/JsonLine.h"
#include "output/OutputFile.h"
#include "output/TextFormat.h"
#include "replay/LeapHistory.h"
#include "system/InputFile.h"
#include "system/StandardStreams.h"

namespace KTX::VORTIME {
namespace {

constexpr std::size_t CHUNK_SIZE = 1 << 18;
constexpr std::uint16_t LAST_LEAP_WEEK = 1929;

constexpr TimeFormSpecC ISO_GPS{TIMEFORMAT_ISO, TIM::TIMEBASE_GPS};
constexpr TimeFormSpecC ISO_UTC{TIMEFORMAT_ISO, TIM::TIMEBASE_UTC};
constexpr TimeFormSpecC ISO_LOCAL{TIMEFORMAT_ISO, TIM::TIMEBASE_LOCAL};
constexpr TimeFormSpecC WEEK_GPS{TIMEFORMAT_WEEK, TIM::TIMEBASE_GPS};
constexpr TimeFormSpecC MJD_UTC{TIMEFORMAT_MJD, TIM::TIMEBASE_UTC};
constexpr TimeFormSpecC UNIX_UTC{TIMEFORMAT_UNIX, TIM::TIMEBASE_UTC};
constexpr TimeFormSpecC FAT_LOCAL{TIMEFORMAT_FAT, TIM::TIMEBASE_LOCAL};

std::string textOf(TIM::GpsTimeC const& time, TimeFormSpecC const& spec) {
  std::string text;
  appendTime(text, time, spec);
  return text;
}

class ConverterC {
 public:
  ConverterC(ConvertCommandOptionsC const& convertOptions, OutputFileC& output)
      : options(convertOptions), out(output) {}

  void convert(std::string_view value) {
    TIM::GpsTimeC time;
    if (!readTime(value, options.from, time)) {
      refuse(value);
      return;
    }
    noteHistory(time);
    if (options.isJson) {
      convertToJson(value, time);
    } else if (options.to.format == TIMEFORMAT_AUTOMATIC) {
      convertToAll(time);
    } else {
      appendTime(out.buffer(), time, options.to);
      out.buffer() += '\n';
    }
    out.commit();
  }

  bool hasRefused() const { return refusals != 0; }
  std::uint64_t historicCount() const { return historic; }

 private:
  void refuse(std::string_view value) {
    ++refusals;
    if (options.isJson) {
      out.write(JsonLineC().text("input", value).text("error", "not a time").str() + "\n");
    } else {
      out.write("invalid\n");
    }
    printError("not a time: " + std::string(value.substr(0, 80)));
  }

  // The library knows the last leap second alone; of earlier dates the user should know that.
  void noteHistory(TIM::GpsTimeC const& time) {
    if (time.getWeek() <= LAST_LEAP_WEEK) {
      TIM::GpsTimeC const gps = inBase(time, TIM::TIMEBASE_GPS);
      historic += LeapHistoryC::statementAt(gps).future != gps.getLeapSeconds() ? 1U : 0U;
    }
  }

  void convertToAll(TIM::GpsTimeC const& time) {
    std::string& text = out.buffer();
    text += "GPS week:ms  " + textOf(time, WEEK_GPS);
    text += "\nGPS          " + textOf(time, ISO_GPS);
    text += "\nUTC          " + textOf(time, ISO_UTC);
    text += "\nlocal        " + textOf(time, ISO_LOCAL);
    text += "\nMJD (UTC)    " + textOf(time, MJD_UTC);
    text += "\nUnix         " + textOf(time, UNIX_UTC);
    text += "\nFAT (local)  " + textOf(time, FAT_LOCAL);
    text += "\nleap seconds " + std::to_string(inBase(time, TIM::TIMEBASE_GPS).getLeapSeconds());
    text += '\n';
  }

  void convertToJson(std::string_view value, TIM::GpsTimeC const& time) {
    JsonLineC line;
    line.text("input", value);
    if (options.to.format != TIMEFORMAT_AUTOMATIC) {
      line.text("output", textOf(time, options.to));
    } else {
      TIM::GpsTimeC const gps = inBase(time, TIM::TIMEBASE_GPS);
      line.number("week", gps.getWeek()).number("ms", gps.getMsOfWeek());
      line.text("gps", textOf(time, ISO_GPS)).text("utc", textOf(time, ISO_UTC));
      line.text("local", textOf(time, ISO_LOCAL));
      line.decimal("mjd", TIM::MjdTimeC(inBase(time, TIM::TIMEBASE_UTC)).getDayNumber());
      line.text("unix", textOf(time, UNIX_UTC)).text("fat", textOf(time, FAT_LOCAL));
      line.number("leap_seconds", gps.getLeapSeconds());
    }
    out.buffer() += line.str();
    out.buffer() += '\n';
  }

  ConvertCommandOptionsC const& options;
  OutputFileC& out;
  std::uint64_t refusals = 0;
  std::uint64_t historic = 0;
};

std::string_view trimmed(std::string_view line) {
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) {
    line.remove_suffix(1);
  }
  while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) {
    line.remove_prefix(1);
  }
  return line;
}

void convertLine(std::string_view line, ConverterC& converter) {
  std::string_view const value = trimmed(line);
  if (!value.empty()) {
    converter.convert(value);
  }
}

void convertInput(InputFileC& input, ConverterC& converter, OutputFileC const& out) {
  std::vector<char> buffer(CHUNK_SIZE);
  std::size_t held = 0;
  while (!input.isAtEnd() && !out.hasFailed()) {
    if (held == buffer.size()) {
      buffer.resize(buffer.size() * 2);
    }
    std::size_t const size = held + input.read(buffer.data() + held, buffer.size() - held);
    std::string_view rest(buffer.data(), size);
    for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
      convertLine(rest.substr(0, end), converter);
      rest.remove_prefix(end + 1);
    }
    if (input.isAtEnd()) {
      convertLine(rest, converter);
    }
    held = rest.size();
    std::memmove(buffer.data(), rest.data(), held);
  }
}

bool convertStandardInput(ConverterC& converter, OutputFileC const& out) {
  InputFileC input;
  if (input.open("-")) {
    convertInput(input, converter, out);
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
    used.to = ISO_UTC;
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
