#include "commands/LeapCommand.h"

#include <array>
#include <string_view>

#include "KTX/RCV/KTX_RCV_LeapList.h"
#include "KTX/RCV/KTX_RCV_TimeConversion.h"
#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_LeapSecondSource.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "commands/Results.h"
#include "output/JsonLine.h"
#include "output/RecordText.h"
#include "output/TextFormat.h"
#include "system/FileIdentity.h"
#include "system/FileName.h"
#include "system/InputFile.h"
#include "system/StandardStreams.h"
#include "system/VisibleText.h"

namespace KTX::VORTIME {
namespace {

constexpr std::int64_t MS_PER_DAY = 86400000;
constexpr std::int64_t GPS_EPOCH_DAYS = 3657;  // 1980-01-06
constexpr std::size_t MAX_LIST = 1 << 20;

JsonLineC recordJson(TIM::UtcLeapSecondRecord const& record) {
  JsonLineC line;
  line.text("source", TIM::leapSecondSourceName(record.source))
      .number("current", record.current)
      .number("future", record.future)
      .number("week", record.week)
      .number("day", record.day)
      .flag("known", record.effectivityKnown);
  return line;
}

std::string utcText(std::int64_t unixMs) {
  std::string text;
  appendCalendar(text, RCV::utcCalendarOf(unixMs));
  return text + "Z";
}

char const* resultText(std::uint32_t code) {
  switch (code) {
    case TIM::RC_OK:
      return "accepted";
    case TIM::RC_INVALID_LEAPSECOND:
      return "invalid record";
    case TIM::RC_LEAPSECOND_NOT_ACCEPTED:
      return "not accepted";
    default:
      return "cannot be read, or has no usable line";
  }
}

struct LeapFileC {
  std::string beginning;     // the whole file where it has no more than MAX_LIST bytes
  bool isWhole = true;       // beginning is the whole file
  bool isLastEnded = false;  // the last line has its line end
};

// Says on standard error why a file cannot be read.
bool readLeapFile(std::string const& path, LeapFileC& file) {
  InputFileC input;
  bool const isOpen = input.open(path);
  std::array<char, 65536> buffer;
  // What is no regular file, and has no size, can be endless.
  while (isOpen && !input.isAtEnd() && (file.isWhole || input.size() != 0)) {
    std::string_view const chunk(buffer.data(), input.read(buffer.data(), buffer.size()));
    file.isLastEnded = chunk.empty() ? file.isLastEnded : chunk.back() == '\n';
    std::size_t const room = MAX_LIST - file.beginning.size();
    file.beginning += chunk.substr(0, room);
    file.isWhole = file.isWhole && chunk.size() <= room;
  }
  if (input.hasFailed()) {
    printError("cannot read " + path + ": " + input.errorText());
  }
  return !input.hasFailed();
}

// A number at the end of a file that was cut can be read as another number.
bool mayBeCut(LeapFileC const& file) {
  return !file.beginning.empty() && !file.isLastEnded;
}

// The effectivity day of a change: the day before it. False for one before the GPS epoch.
bool effectivityOf(RCV::LeapListEntryC const& entry, std::int64_t& week, std::int64_t& day) {
  std::int64_t const days = entry.unixMs / MS_PER_DAY - GPS_EPOCH_DAYS - 1;
  week = days / 7;
  day = days % 7 + 1;
  return days >= 0;
}

bool agreesWithLibrary(RCV::LeapListEntryC const& last) {
  std::int64_t week = 0;
  std::int64_t day = 0;
  bool const isKnown = effectivityOf(last, week, day);
  TIM::UtcLeapSecondRecord const own = TIM::defaultLeapSecondRecord();
  return isKnown && own.future == last.gpsMinusUtc && own.week == week && own.day == day;
}

std::string listText(RCV::LeapListC const& list, bool isExpired) {
  std::string text = "a list of " + std::to_string(list.entries.size()) + " entries\n";
  for (RCV::LeapListEntryC const& entry : list.entries) {
    std::int64_t week = 0;
    std::int64_t day = 0;
    if (effectivityOf(entry, week, day)) {
      text += utcText(entry.unixMs) + "  GPS-UTC " + std::to_string(entry.gpsMinusUtc) +
              " s after week " + std::to_string(week) + " day " + std::to_string(day) + '\n';
    }
  }
  if (list.hasUpdate) {
    text += "updated " + utcText(list.updateUnixMs) + '\n';
  }
  if (list.hasExpiry) {
    text += (isExpired ? "expired " : "expires ") + utcText(list.expiryUnixMs) + '\n';
  }
  text += agreesWithLibrary(list.entries.back()) ? "the last entry is the library's default\n"
                                                 : "the last entry is not the library's default\n";
  return text;
}

std::string listJson(RCV::LeapListC const& list, bool isExpired) {
  std::string entries;
  for (RCV::LeapListEntryC const& entry : list.entries) {
    std::int64_t week = 0;
    std::int64_t day = 0;
    JsonLineC line;
    line.text("utc", utcText(entry.unixMs)).number("gps_minus_utc", entry.gpsMinusUtc);
    if (effectivityOf(entry, week, day)) {
      line.number("week", week).number("day", day);
    }
    entries += (entries.empty() ? "" : ",") + line.str();
  }
  JsonLineC line;
  line.text("kind", "list");
  if (list.hasUpdate) {
    line.text("updated", utcText(list.updateUnixMs));
  }
  if (list.hasExpiry) {
    line.text("expires", utcText(list.expiryUnixMs)).flag("expired", isExpired);
  }
  line.flag("is_library_default", agreesWithLibrary(list.entries.back()));
  std::string text = line.str();
  text.pop_back();
  return text + ",\"entries\":[" + entries + "]}\n";
}

ExitCodeE checkList(RCV::LeapListC const& list, bool isJson, int resultDescriptor) {
  std::int64_t const nowUnixMs =
      TIM::createClock<boost::milli>(TIM::CLOCKTYPE_POSIX, TIM::CLOCKREF_UTC)->now().count();
  bool const isExpired = list.isExpired(nowUnixMs);
  return writeResults(isJson ? listJson(list, isExpired) : listText(list, isExpired),
                      resultDescriptor);
}

ExitCodeE loadFile(std::string const& path, bool makeCurrent, bool isJson, int resultDescriptor) {
  TIM::UtcLeapSecondRecord before{};
  TIM::UtcLeapSecondRecord after{};
  TIM::getCurrentUtcLeapSecond(before);
  std::uint32_t const code = TIM::loadLeapSecondFile(wideFileName(path), makeCurrent);
  TIM::getCurrentUtcLeapSecond(after);
  std::string text;
  if (isJson) {
    text = JsonLineC()
               .text("kind", "file")
               .text("result", resultText(code))
               .number("code", code)
               .object("before", recordJson(before))
               .object("after", recordJson(after))
               .str() +
           '\n';
  } else {
    text = visible(path) + ": " + resultText(code) + "\nbefore       " + recordText(before) +
           "\nafter        " + recordText(after) + '\n';
  }
  return writeResults(text, resultDescriptor, code == TIM::RC_OK ? EXIT_DONE : EXIT_NOTHING_FOUND);
}

}  // namespace

ExitCodeE runLeapShow(bool isJson, int resultDescriptor) {
  TIM::UtcLeapSecondRecord inForce{};
  TIM::UtcLeapSecondRecord normal{};
  TIM::getCurrentUtcLeapSecond(inForce);
  TIM::getNormalLeapSecond(normal);
  std::string const text = isJson ? JsonLineC()
                                            .number("leap_seconds", inForce.current)
                                            .object("in_force", recordJson(inForce))
                                            .object("normal", recordJson(normal))
                                            .str() +
                                        '\n'
                                  : "now          " + std::to_string(inForce.current) +
                                        " s\nin force     " + recordText(inForce) +
                                        "\nnormal       " + recordText(normal) + '\n';
  return writeResults(text, resultDescriptor);
}

ExitCodeE runLeapCheck(std::string const& path, bool isJson, int resultDescriptor) {
  LeapFileC file;
  if (!readLeapFile(path, file)) {
    return EXIT_BAD_INPUT;
  }
  RCV::LeapListC list;
  if (file.isWhole && RCV::readLeapList(file.beginning, list)) {
    return checkList(list, isJson, resultDescriptor);
  }
  if (mayBeCut(file)) {
    printError("note: the last line of " + path +
               " has no line end; the file may have been cut, and leap load refuses it");
  }
  return loadFile(path, false, isJson, resultDescriptor);
}

ExitCodeE runLeapLoad(std::string const& path, bool isForced, bool isJson, int resultDescriptor) {
  // The library refuses it too, but opening a FIFO that nobody writes to would wait.
  if (identityOfFile(path).kind == FILEKIND_OTHER) {
    printError("cannot read " + path + ": not a regular file");
    return EXIT_BAD_INPUT;
  }
  LeapFileC file;
  if (!readLeapFile(path, file)) {
    return EXIT_BAD_INPUT;
  }
  if (mayBeCut(file) && !isForced) {
    printError("the last line of " + path +
               " has no line end; the file may have been cut, and only --force takes it");
    return EXIT_NOTHING_FOUND;
  }
  return loadFile(path, true, isJson, resultDescriptor);
}

}  // namespace KTX::VORTIME
