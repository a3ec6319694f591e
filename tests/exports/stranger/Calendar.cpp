#include <cstring>
#include <ctime>
#include <sstream>

#if defined(_WIN32)
#include <windows.h>
#endif

#include <boost/date_time/gregorian/greg_year.hpp>

#include "Areas.h"
#include "Check.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_SystemTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

using namespace KTX::TIM;

namespace {

void useDayNumber() {
  MjdTimeC const epoch(44244.0);
  CHECK(epoch == MjdTimeC(44244.0) && epoch != MjdTimeC(1.0));
  CHECK(epoch > MjdTimeC(1.0) && epoch >= MjdTimeC(1.0) && MjdTimeC(1.0) < epoch);
  CHECK(MjdTimeC(1.0) <= epoch && epoch.dayOfYear() == 6);
  CHECK(MjdTimeC(GPSTimeC(1, 0)).getDayNumber() == 44251.0);
  CHECK(MjdTimeC(GpsTimeC(GPSTimeC(1, 0))).getTimeBase() == TIMEBASE_GPS);
  CHECK(MjdTimeC(YmdhmsC(epoch)).getDayNumber() == 44244.0);
  CHECK(MjdTimeC(std::uint16_t{0}, std::uint16_t{0x0021}).getTimeBase() == TIMEBASE_LOCAL);
  MjdTimeC there(58000.0, TIMEBASE_GPS);
  there.toUtc();
  CHECK(there.getTimeBase() == TIMEBASE_UTC);
  there.utcToLocal();
  there.localToUtc();
  there.toGps();
  CHECK(there.convertTo(TIMEBASE_GPS) && !there.convertTo(TIMEBASE_INV));
  CHECK(there.getDayNumber() > 57999.9999 && there.getDayNumber() < 58000.0001);
}

void useCalendarForms() {
  YmdhmsC date = YmdhmsC::zero(TIMEBASE_UTC, 1);
  std::istringstream input("2024-03-07T08:09:05.42Z");
  input >> date;
  CHECK(date.timeBase == TIMEBASE_UTC && date.effectiveMilliseconds() == 420);
  std::ostringstream output;
  output << date;
  CHECK(output.str() == "2024-03-07T08:09:05.42Z");
  CHECK(date.daysInMonth() == 31 && date.isLeapYear() && date.isFractionConsistent());
  std::tm brokenDown{};
  date.toTm(&brokenDown);
  YmdhmsC back(&brokenDown);
  back.fromTm(&brokenDown);
  CHECK(back.hour == 8 && back.timeBase == TIMEBASE_LOCAL);
  std::uint16_t fatTime = 0;
  std::uint16_t fatDate = 0;
  back.toFatDateTime(fatTime, fatDate);
  CHECK(YmdhmsC(fatTime, fatDate).year == 2024);
  YmdhmsC moved(date);
  moved.toGps();
  moved.toUtc();
  moved.utcToLocal();
  moved.localToUtc();
  CHECK(moved.second == 5 && moved.timeBase == TIMEBASE_UTC);
  CHECK(YmdhmsC(GpsTimeC(GPSTimeC(1, 0))).day == 13 && !(moved != moved) && moved == moved);
  moved.setFrom(MjdTimeC(44244.0));
  CHECK(moved.year == 1980);
  CHECK_THROWS(boost::gregorian::bad_year, YmdhmsC(MjdTimeC(2973484.0)));
}

void useSystemTime() {
  SYSTEMTIME time;
  std::memset(&time, 0, sizeof time);
  getUtcSystemTime(time);
  CHECK(time.wYear >= 2024 && time.wMonth >= 1);
  getLocalSystemTime(time);
  CHECK(time.wYear >= 2024);
  SYSTEMTIME fixed;
  std::memset(&fixed, 0, sizeof fixed);
  fixed.wYear = 2024;
  fixed.wMonth = 3;
  fixed.wDay = 7;
  fixed.wMilliseconds = 42;
  CHECK(systemTimeToString(fixed) == "2024-03-07T00:00:00.042");
  std::ostringstream output;
  output << fixed;
  CHECK(output.str() == systemTimeToString(fixed));
  // No such month: every system refuses it, so no clock is set.
  fixed.wMonth = 13;
  CHECK(!setUtcSystemTime(fixed));
}

}  // namespace

void useCalendar() {
  useDayNumber();
  useCalendarForms();
  useSystemTime();
}
