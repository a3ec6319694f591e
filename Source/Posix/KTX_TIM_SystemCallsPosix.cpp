#include "support/KTX_TIM_SystemCalls.h"

#include <ctime>
#include <sys/time.h>

#include "Posix/KTX_TIM_ZoneTree.h"
#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

namespace {

constexpr std::int64_t NS_PER_MS = 1000000;

std::uint16_t narrow(int field) {
  return static_cast<std::uint16_t>(field);
}

SystemTimeRecordC recordOf(std::tm const& fields, std::timespec const& time) {
  SystemTimeRecordC record{};
  record.year = narrow(fields.tm_year + 1900);
  record.month = narrow(fields.tm_mon + 1);
  record.dayOfWeek = narrow(fields.tm_wday);
  record.day = narrow(fields.tm_mday);
  record.hour = narrow(fields.tm_hour);
  record.minute = narrow(fields.tm_min);
  record.second = narrow(fields.tm_sec);
  record.milliseconds = static_cast<std::uint16_t>(time.tv_nsec / NS_PER_MS);
  return record;
}

std::timespec realTime() {
  std::timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  return time;
}

/// False where SetSystemTime would refuse the fields; the day of the week is ignored.
bool toTimespec(SystemTimeRecordC const& utc, std::timespec& time) {
  constexpr std::uint16_t FIRST_YEAR = 1601;
  constexpr std::uint16_t LAST_YEAR = 30827;
  if (utc.year < FIRST_YEAR || utc.year > LAST_YEAR || utc.month < 1 || utc.month > 12 ||
      utc.day < 1 || utc.hour > 23 || utc.minute > 59 || utc.second > 59 ||
      utc.milliseconds > 999) {
    return false;
  }
  std::tm fields{};
  fields.tm_year = utc.year - 1900;
  fields.tm_mon = utc.month - 1;
  fields.tm_mday = utc.day;
  fields.tm_hour = utc.hour;
  fields.tm_min = utc.minute;
  fields.tm_sec = utc.second;
  time.tv_sec = timegm(&fields);
  time.tv_nsec = utc.milliseconds * NS_PER_MS;
  return fields.tm_mday == utc.day;  // a day past the end of its month has moved on
}

class PosixSystemCallsC : public SystemCallsI {
 public:
  PosixSystemCallsC() { zones.keepUsableAfterFork(); }

  void getSystemTime(SystemTimeRecordC& utc) override {
    std::timespec const time = realTime();
    std::tm fields{};
    gmtime_r(&time.tv_sec, &fields);
    utc = recordOf(fields, time);
  }

  void getLocalTime(SystemTimeRecordC& local) override {
    std::timespec const time = realTime();
    std::tm fields{};
    tzset();  // localtime_r alone does not notice a change of the zone
    localtime_r(&time.tv_sec, &fields);
    local = recordOf(fields, time);
  }

  std::int32_t setSystemTime(SystemTimeRecordC const& utc) override {
    std::timespec time{};
    return toTimespec(utc, time) && clock_settime(CLOCK_REALTIME, &time) == 0 ? 1 : 0;
  }

  std::uint32_t getTimeZoneInformation(TimeZoneInformationC& information) override {
    return zones.getTimeZoneInformation(information);
  }

  std::int32_t openKey(KeyHandleT parent, std::u16string const& path, KeyHandleT& key) override {
    return zones.openKey(parent, path, key);
  }

  std::int32_t enumerateKey(KeyHandleT key,
                            std::uint32_t index,
                            char16_t* name,
                            std::uint32_t& nameLength) override {
    return zones.enumerateKey(key, index, name, nameLength);
  }

  std::int32_t queryValue(KeyHandleT key,
                          std::u16string const& name,
                          void* data,
                          std::uint32_t& sizeBytes) override {
    return zones.queryValue(key, name, data, sizeBytes);
  }

  void closeKey(KeyHandleT key) override { zones.closeKey(key); }

 private:
  ZoneTreeC zones;
};

}  // namespace

SystemCallsI& operatingSystemCalls() {
  static ProcessObjectC<PosixSystemCallsC> calls;
  return *calls;
}

}  // namespace KTX::TIM
