#include "commands/Converter.h"

#include "KTX/RCV/KTX_RCV_LeapHistory.h"
#include "commands/TimeForm.h"
#include "commands/TimeReading.h"
#include "system/StandardStreams.h"

namespace KTX::VORTIME {
namespace {

constexpr std::uint16_t LAST_LEAP_WEEK = 1929;

constexpr TimeFormSpecC ISO_GPS{TIMEFORMAT_ISO, TIM::TIMEBASE_GPS};
constexpr TimeFormSpecC ISO_UTC{TIMEFORMAT_ISO, TIM::TIMEBASE_UTC};
constexpr TimeFormSpecC ISO_LOCAL{TIMEFORMAT_ISO, TIM::TIMEBASE_LOCAL};
constexpr TimeFormSpecC WEEK_GPS{TIMEFORMAT_WEEK, TIM::TIMEBASE_GPS};
constexpr TimeFormSpecC MJD_UTC{TIMEFORMAT_MJD, TIM::TIMEBASE_UTC};
constexpr TimeFormSpecC UNIX_UTC{TIMEFORMAT_UNIX, TIM::TIMEBASE_UTC};
constexpr TimeFormSpecC FAT_LOCAL{TIMEFORMAT_FAT, TIM::TIMEBASE_LOCAL};

std::string shortened(std::string_view value) {
  return std::string(value.substr(0, ConverterC::MAX_SHOWN)) +
         (value.size() > ConverterC::MAX_SHOWN ? "..." : "");
}

// Day numbers and seconds are numbers, the other forms texts.
bool addTime(JsonLineC& line,
             std::string_view name,
             TIM::GpsTimeC const& time,
             TimeFormSpecC const& spec,
             std::string& reason) {
  std::string text;
  bool const isWritten = appendTime(text, time, spec, reason);
  if (isWritten && (spec.format == TIMEFORMAT_MJD || spec.format == TIMEFORMAT_UNIX)) {
    line.literal(name, text);
  } else if (isWritten) {
    line.text(name, text);
  }
  return isWritten;
}

void addTimeOrNull(JsonLineC& line,
                   std::string_view name,
                   TIM::GpsTimeC const& time,
                   TimeFormSpecC const& spec) {
  std::string reason;
  if (!addTime(line, name, time, spec, reason)) {
    line.literal(name, "null");
  }
}

bool addOverview(JsonLineC& line, TIM::GpsTimeC const& time, std::string& reason) {
  TIM::GpsTimeC gps;
  if (!inBase(time, TIM::TIMEBASE_GPS, gps, reason)) {
    return false;
  }
  line.number("week", gps.getWeek()).number("ms", gps.getMsOfWeek());
  if (!addTime(line, "gps", time, ISO_GPS, reason) ||
      !addTime(line, "utc", time, ISO_UTC, reason)) {
    return false;
  }
  addTimeOrNull(line, "local", time, ISO_LOCAL);
  addTime(line, "mjd", time, MJD_UTC, reason);
  addTime(line, "unix", time, UNIX_UTC, reason);
  addTimeOrNull(line, "fat", time, FAT_LOCAL);
  line.number("leap_seconds", gps.getLeapSeconds());
  return true;
}

}  // namespace

void ConverterC::convert(std::string_view value) {
  std::string reason;
  TIM::GpsTimeC time;
  std::size_t const begin = out.buffer().size();
  if (readTime(value, options.from, time, reason) && appendResult(value, time, reason)) {
    noteHistory(time);
    out.commit();
  } else {
    out.buffer().resize(begin);
    refuse(value, reason);
  }
}

void ConverterC::refuse(std::string_view value, std::string const& reason) {
  ++refusals;
  if (options.isJson) {
    out.write(JsonLineC().text("input", value).text("error", reason).str() + "\n");
  } else {
    out.write("invalid\n");
  }
  printError("cannot convert " + shortened(value) + ": " + reason);
}

// The library knows the last leap second alone; of earlier dates the user should know that.
void ConverterC::noteHistory(TIM::GpsTimeC const& time) {
  std::string reason;
  TIM::GpsTimeC gps;
  if (time.getWeek() <= LAST_LEAP_WEEK && inBase(time, TIM::TIMEBASE_GPS, gps, reason)) {
    historic += RCV::LeapHistoryC::statementAt(gps).future != gps.getLeapSeconds() ? 1U : 0U;
  }
}

// Appends the time as the options ask for. False, and why in reason, when that cannot be.
bool ConverterC::appendResult(std::string_view value,
                              TIM::GpsTimeC const& time,
                              std::string& reason) {
  if (options.isJson) {
    return appendJson(value, time, reason);
  }
  if (options.to.format == TIMEFORMAT_AUTOMATIC) {
    return appendOverview(time, reason);
  }
  bool const isWritten = appendTime(out.buffer(), time, options.to, reason);
  out.buffer() += '\n';
  return isWritten;
}

// Local time and FAT do not reach as far as the others: where they have no value, the overview
// says so.
bool ConverterC::appendOverview(TIM::GpsTimeC const& time, std::string& reason) {
  static constexpr struct {
    char const* label;
    TimeFormSpecC spec;
    bool isOptional;
  } ROWS[] = {{"GPS week:ms  ", WEEK_GPS, false}, {"GPS          ", ISO_GPS, false},
              {"UTC          ", ISO_UTC, false},  {"local        ", ISO_LOCAL, true},
              {"MJD (UTC)    ", MJD_UTC, false},  {"Unix         ", UNIX_UTC, false},
              {"FAT (local)  ", FAT_LOCAL, true}};
  std::string& text = out.buffer();
  for (auto const& row : ROWS) {
    text += row.label;
    if (!appendTime(text, time, row.spec, reason)) {
      if (!row.isOptional) {
        return false;
      }
      text += "none: " + reason;
    }
    text += '\n';
  }
  TIM::GpsTimeC gps;
  inBase(time, TIM::TIMEBASE_GPS, gps, reason);
  text += "leap seconds " + std::to_string(gps.getLeapSeconds()) + '\n';
  return true;
}

bool ConverterC::appendJson(std::string_view value,
                            TIM::GpsTimeC const& time,
                            std::string& reason) {
  JsonLineC line;
  line.text("input", value);
  bool const isWhole = options.to.format == TIMEFORMAT_AUTOMATIC
                           ? addOverview(line, time, reason)
                           : addTime(line, "output", time, options.to, reason);
  out.buffer() += line.str();
  out.buffer() += '\n';
  return isWhole;
}

}  // namespace KTX::VORTIME
