#include <ctime>
#include <sstream>

#include "KTX/TIM/KTX_TIM_DefaultCurrentTimeProvider.h"
#include "KTX/TIM/KTX_TIM_GpsLocal.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_PresentWarning.h"
#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"
#include "KTX/TIM/KTX_TIM_SimTime.h"
#include "KTX/TIM/KTX_TIM_SysTime.h"
#include "KTX/TIM/KTX_TIM_TickCount.h"
#include "KTX/TIM/KTX_TIM_TimeKind.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "faults/KTX_TIM_FaultOperation.h"

namespace KTX::TIM::TEST {
namespace {

GPSTimeC const INSTANT(2304, 1000);

// The protected setter, as a class of the application reaches it.
class OwnInstantC : public GPSTimeC {
 public:
  OwnInstantC() { setRaw(3, MS_PER_WEEK + 1); }
};

void calculate() {
  GPSTimeC time(2304, 1000);
  GPSTimeC const other(1, 604799999);
  GPSTimeC copy(time);
  copy = GPSTimeC();
  copy = OwnInstantC();
  time += other;
  time -= other;
  time = time + other - other + std::int64_t{5} - std::int64_t{7};
  time += std::int64_t{-1};
  time -= std::int64_t{-1};
  time.addSeconds(-604801);
  GPSTimeC const distance(time, other);
  differenceMs(time, distance);
  time.toMilliseconds32();
  time.toMilliseconds64();
}

template <class T>
int compareOrder(T const& a, T const& b) {
  return (a < b) + (a <= b) + (a > b) + (a >= b);
}

template <class T>
int compareEquality(T const& a, T const& b) {
  return (a == b) + (a != b);
}

int compare() {
  GPSTimeC const other(2304, 1001);
  UtcLeapSecondRecord const record = defaultLeapSecondRecord();
  return compareOrder(INSTANT, other) + compareEquality(INSTANT, other) +
         compareOrder(MjdTimeC(60000.0), MjdTimeC(60001.0)) +
         compareEquality(MjdTimeC(60000.0), MjdTimeC(60001.0)) +
         compareEquality(YmdhmsC(INSTANT), YmdhmsC(other)) + compareEquality(record, record);
}

void buildWeekForms() {
  GpsC gps;
  GpsC const copy(gps);
  gps = copy;
  gps = GPSTimeC(1, 2);
  gps = GpsC(3, 4);
  GpsC const converted(INSTANT);
  GpsTimeC time;
  time = GpsTimeC(INSTANT);
  time = GPSTimeC(1, 2);
  GpsTimeC const timeCopy(time);
  GpsLocalC local(getDefaultLeapSecondProvider());
  GpsLocalC const localCopy(local);
  local = localCopy;
  SysTimeC const system;
  SimTimeC const simulated;
}

void shiftByLeapSeconds() {
  GpsC time(2304, 1000);
  time.gpsToUtc();
  time.utcToGps();
  time.getLeapSeconds();
}

void convertDayNumbers() {
  MjdTimeC time(INSTANT);
  time.toUtc();
  time.toGps();
  time.convertTo(TIMEBASE_UTC);
  time.dayOfYear();
  MjdTimeC const further[] = {MjdTimeC(51544.0), MjdTimeC(GpsTimeC(INSTANT)),
                              MjdTimeC(YmdhmsC(INSTANT)),
                              MjdTimeC(std::uint16_t{0x4142}, std::uint16_t{0x5867})};
  GpsTimeC const weeks(further[0]);
  GpsTimeC const fromCalendar{YmdhmsC(INSTANT)};
}

void convertCalendar() {
  YmdhmsC value(INSTANT);
  value = YmdhmsC(GpsTimeC(INSTANT));
  value = YmdhmsC(MjdTimeC(INSTANT), 1);
  value.toUtc();
  value.toGps();
  value.setFrom(MjdTimeC(51544.0));
  value.daysInMonth();
  value.isLeapYear();
  value.isFractionConsistent();
  value.effectiveMilliseconds();
  std::tm brokenDown{};
  value.toTm(&brokenDown);
  value.fromTm(&brokenDown);
  YmdhmsC const fromTm(&brokenDown);
  YmdhmsC local(std::uint16_t{0x4142}, std::uint16_t{0x5867});
  std::uint16_t fatTime = 0;
  std::uint16_t fatDate = 0;
  local.toFatDateTime(fatTime, fatDate);
  local = YmdhmsC::zero();
}

void readLeapSeconds() {
  GpsC const time(2000, 0);
  UtcLeapSecondRecord record = withdrawForcedRecord();
  getUtcLeapSecondAt(time, record);
  getNormalLeapSecond(record);
  getUtcLeapSecondsAt(time);
  leapSecondSourceName(record.source);
  timeBaseToString(TIMEBASE_UTC);
}

FaultOperationC siteOperation() {
  return {"a site value", [](FaultStageC& /*stage*/) {
            auto const provider = std::make_shared<UtcLeapSecondProvider>();
            provider->setSiteLeapSecond(17, 18, 57754);
            return CallC{[provider] {
                           UtcLeapSecondRecord record{};
                           provider->getLeapSecond(GpsC(2000, 0), record);
                           provider->setSiteLeapSecond(18, 19, 57755);
                         },
                         {}};
          }};
}

void lock() {
  Mutex mutex;
  mutex.lock();
  mutex.unlock();
  Guard const guard(mutex);
  Guard const timeGuard(getTimeLock());
  Guard const globalGuard(getGlobalLock());
}

void lockForReadingAndWriting() {
  ReaderWriterSpinLock lock;
  lock.lockRead();
  lock.unlockRead();
  lock.lockWrite();
  lock.isWriteLocked();
  lock.unlockWrite();
  if (lock.tryLockRead()) {
    lock.unlockRead();
  }
  if (lock.tryLockWrite()) {
    lock.unlockWrite();
  }
  { Guard const reading(lock.getReadLock()); }
  Guard const writing(lock.getWriteLock());
}

// Into a buffer that has the room.
void writeTexts(std::stringstream& stream, YmdhmsC& calendar) {
  stream.seekp(0);
  stream << TIMEKIND_UTC << INSTANT << GpsTimeC(INSTANT) << calendar << ' ';
  stream.seekp(0);
  stream << calendar;
  stream.seekg(0);
  stream >> calendar;
}

FaultOperationC textOperation() {
  return {"texts in a stream that has the room", [](FaultStageC& /*stage*/) {
            auto const stream = std::make_shared<std::stringstream>(std::string(500, ' '));
            return CallC{[stream] {
                           YmdhmsC calendar(INSTANT);
                           writeTexts(*stream, calendar);
                         },
                         [stream] { return std::string(stream->good() ? "good" : "bad"); }};
          }};
}

}  // namespace

FaultOperationsT faultlessOperations() {
  return {plain("arithmetic", calculate),
          plain("comparisons", [] { compare(); }),
          plain("values with a week", buildWeekForms),
          plain("leap seconds of a value", shiftByLeapSeconds),
          plain("day numbers", convertDayNumbers),
          plain("calendar values", convertCalendar),
          plain("reads of the leap second", readLeapSeconds),
          siteOperation(),
          plain("locks", lock),
          plain("the lock for readers and writers", lockForReadingAndWriting),
          plain("the switch of the warning", [] { setPresentWarningEnabled(true); }),
          plain("the tick count", [] { getTickCountMs(); }),
          textOperation()};
}

}  // namespace KTX::TIM::TEST
