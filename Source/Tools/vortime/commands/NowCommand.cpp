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
#include "system/VisibleText.h"

namespace KTX::VORTIME {
namespace {

std::string isoText(TIM::GpsTimeC const& time, TIM::TimeBaseE base) {
  std::string text;
  appendTime(text, time, TimeFormSpecC{TIMEFORMAT_ISO, base});
  return text;
}

}  // namespace

ExitCodeE runNow(bool isJson, int resultDescriptor) {
  TIM::GpsTimeC const now(TIM::GpsC::currentTime());
  TIM::UtcLeapSecondRecord record{};
  TIM::getUtcLeapSecondAt(now, record);
  std::wstring zone;
  TIM::getTimeZoneInstance().getTimeZone(zone);
  double const mjd = TIM::MjdTimeC(inBase(now, TIM::TIMEBASE_UTC)).getDayNumber();
  std::string text;
  if (isJson) {
    text = JsonLineC()
               .number("week", now.getWeek())
               .number("ms", now.getMsOfWeek())
               .text("gps", isoText(now, TIM::TIMEBASE_GPS))
               .text("utc", isoText(now, TIM::TIMEBASE_UTC))
               .text("local", isoText(now, TIM::TIMEBASE_LOCAL))
               .decimal("mjd", mjd)
               .number("leap_seconds", record.current)
               .text("leap_record", recordText(record))
               .text("zone", narrowText(zone))
               .str();
  } else {
    text = "GPS          week " + std::to_string(now.getWeek()) + ", " +
           std::to_string(now.getMsOfWeek()) + " ms\nGPS          " +
           isoText(now, TIM::TIMEBASE_GPS) + "\nUTC          " + isoText(now, TIM::TIMEBASE_UTC) +
           "\nlocal        " + isoText(now, TIM::TIMEBASE_LOCAL) + "  " +
           visible(narrowText(zone)) + "\nMJD (UTC)    " + std::to_string(mjd) + "\nleap second  " +
           recordText(record);
  }
  return writeResults(text + '\n', resultDescriptor);
}

}  // namespace KTX::VORTIME
