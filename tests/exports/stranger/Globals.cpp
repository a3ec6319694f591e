#include <string>

#include "Areas.h"
#include "Check.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace {

// Built before main(), by the time the library has been loaded.
KTX::TIM::GpsC const startOfProgram = KTX::TIM::GpsC::currentTime();
KTX::TIM::YmdhmsC const calendarOfProgram;
std::int8_t const leapSecondsAtStart = KTX::TIM::getUtcLeapSecondsAt(startOfProgram);
std::wstring const zoneAtStart = KTX::TIM::getTimeZoneInstance().getDefaultTimeZone();

}  // namespace

void useGlobals() {
  CHECK(startOfProgram.getWeek() > 2300);
  CHECK(calendarOfProgram.timeBase == KTX::TIM::TIMEBASE_GPS);
  CHECK(leapSecondsAtStart == 18);
  CHECK(zoneAtStart == L"GMT Standard Time");
}
