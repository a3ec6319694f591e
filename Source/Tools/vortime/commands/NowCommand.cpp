#include "commands/NowCommand.h"

#include <string>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "commands/Results.h"
#include "commands/TimeForm.h"
#include "output/JsonLine.h"
#include "output/RecordText.h"
#include "system/FileName.h"
#include "system/StandardStreams.h"
#include "system/VisibleText.h"

namespace KTX::VORTIME {
namespace {

// The present in the three time bases.
struct PresentTextsC {
  std::string gps;
  std::string utc;
  std::string local;
  double mjd = 0;  // in UTC
};

bool readPresent(TIM::GpsTimeC const& now, PresentTextsC& texts, std::string& reason) {
  TIM::GpsTimeC utc;
  if (!appendTime(texts.gps, now, TimeFormSpecC{TIMEFORMAT_ISO, TIM::TIMEBASE_GPS}, reason) ||
      !appendTime(texts.utc, now, TimeFormSpecC{TIMEFORMAT_ISO, TIM::TIMEBASE_UTC}, reason) ||
      !appendTime(texts.local, now, TimeFormSpecC{TIMEFORMAT_ISO, TIM::TIMEBASE_LOCAL}, reason) ||
      !inBase(now, TIM::TIMEBASE_UTC, utc, reason)) {
    return false;
  }
  texts.mjd = TIM::MjdTimeC(utc).getDayNumber();
  return true;
}

}  // namespace

ExitCodeE runNow(bool isJson, int resultDescriptor) {
  TIM::GpsTimeC const now(TIM::GpsC::currentTime());
  TIM::UtcLeapSecondRecord record{};
  TIM::getUtcLeapSecondAt(now, record);
  std::wstring zone;
  TIM::getTimeZoneInstance().getTimeZone(zone);
  PresentTextsC present;
  std::string reason;
  if (!readPresent(now, present, reason)) {
    printError("the present cannot be shown: " + reason);
    return EXIT_NOTHING_FOUND;
  }
  std::string text;
  if (isJson) {
    text = JsonLineC()
               .number("week", now.getWeek())
               .number("ms", now.getMsOfWeek())
               .text("gps", present.gps)
               .text("utc", present.utc)
               .text("local", present.local)
               .decimal("mjd", present.mjd)
               .number("leap_seconds", record.current)
               .text("leap_record", recordText(record))
               .text("zone", narrowText(zone))
               .str();
  } else {
    text = "GPS          week " + std::to_string(now.getWeek()) + ", " +
           std::to_string(now.getMsOfWeek()) + " ms\nGPS          " + present.gps +
           "\nUTC          " + present.utc + "\nlocal        " + present.local + "  " +
           visible(narrowText(zone)) + "\nMJD (UTC)    " + std::to_string(present.mjd) +
           "\nleap second  " + recordText(record);
  }
  return writeResults(text + '\n', resultDescriptor);
}

}  // namespace KTX::VORTIME
