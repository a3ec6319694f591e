#include <array>
#include <cstring>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_SystemTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_FakeSystemCalls.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_ScopedSystemCalls.h"
#include "common/KTX_TIM_SystemTimeRoom.h"
#include "support/KTX_TIM_SystemTimeRecord.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;

std::array<int, 8> fieldsOf(SystemTimeRecordC const& time) {
  return {time.year, time.month,  time.dayOfWeek, time.day,
          time.hour, time.minute, time.second,    time.milliseconds};
}

YmdhmsC utcTime() {
  YmdhmsC time = YmdhmsC::zero(TIMEBASE_UTC, 1);
  time.year = 2024;
  time.month = 3;
  time.day = 7;
  time.hour = 8;
  time.minute = 9;
  time.second = 5;
  time.hundredths = 45;
  time.milliseconds = 451;
  time.dayOfWeek = 5;
  return time;
}

class SystemTimeCalls : public ::testing::Test {
 protected:
  LogCaptureC log;
  FakeSystemCallsC calls;
  ScopedSystemCallsC scope{calls};
};

TEST_F(SystemTimeCalls, WrappersPassTheRecordThrough) {
  SystemTimeRecordC const utc{2024, 3, 4, 7, 8, 9, 5, 42};
  SystemTimeRecordC const local{2024, 12, 1, 31, 23, 59, 58, 999};
  calls.setUtc(utc);
  calls.setLocal(local);
  SystemTimeRoomC room;
  getUtcSystemTime(room.asSystemTime());
  EXPECT_EQ(fieldsOf(utc), fieldsOf(room.record));
  getLocalSystemTime(room.asSystemTime());
  EXPECT_EQ(fieldsOf(local), fieldsOf(room.record));
  EXPECT_TRUE(setUtcSystemTime(room.asSystemTime()));
  ASSERT_EQ(1u, calls.setTimes().size());
  EXPECT_EQ(fieldsOf(local), fieldsOf(calls.setTimes().front()));
}

TEST_F(SystemTimeCalls, ARefusedSettingIsReported) {
  SystemTimeRoomC room;
  calls.failOnce(CALL_SETSYSTEMTIME, 1);
  EXPECT_FALSE(setUtcSystemTime(room.asSystemTime()));
  EXPECT_TRUE(setUtcSystemTime(room.asSystemTime()));
}

TEST_F(SystemTimeCalls, AppliesEachField) {
  EXPECT_TRUE(utcTime().applyToCurrentSystemTime());
  ASSERT_EQ(1u, calls.setTimes().size());
  EXPECT_THAT(fieldsOf(calls.setTimes().front()), ElementsAre(2024, 3, 4, 7, 8, 9, 5, 451));
}

TEST_F(SystemTimeCalls, AppliesTheEffectiveFraction) {
  struct {
    std::uint8_t hundredths;
    std::int64_t milliseconds;
    int applied;
  } const cases[] = {{45, 451, 451}, {45, 300, 450}, {45, 460, 450}, {45, 449, 450},
                     {0, 0, 0},      {99, 999, 999}, {0, -5, 65531}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.milliseconds);
    YmdhmsC time = utcTime();
    time.hundredths = c.hundredths;
    time.milliseconds = c.milliseconds;
    time.applyToCurrentSystemTime();
    EXPECT_EQ(c.applied, calls.setTimes().back().milliseconds);
  }
}

TEST_F(SystemTimeCalls, ADayOfWeekThatIsNotSetWraps) {
  YmdhmsC time = utcTime();
  time.dayOfWeek = 0;
  time.applyToCurrentSystemTime();
  EXPECT_EQ(65535, calls.setTimes().back().dayOfWeek);
  time.dayOfWeek = 1;
  time.applyToCurrentSystemTime();
  EXPECT_EQ(0, calls.setTimes().back().dayOfWeek);
}

TEST_F(SystemTimeCalls, RefusesEveryBaseButUtcWithoutACall) {
  for (TimeBaseE const base :
       {TIMEBASE_INV, TIMEBASE_GPS, TIMEBASE_LOCAL, static_cast<TimeBaseE>(7)}) {
    SCOPED_TRACE(base);
    log.clear();
    YmdhmsC time = utcTime();
    time.timeBase = base;
    EXPECT_FALSE(time.applyToCurrentSystemTime());
    EXPECT_THAT(log.assertionTexts(),
                ::testing::ElementsAre("System clock can only be set to a UTC value!"));
    EXPECT_EQ(1u, log.count());
  }
  EXPECT_EQ(0u, calls.useCount(CALL_SETSYSTEMTIME));
}

// Success is the answer 1 alone.
class OddAnswerC final : public FakeSystemCallsC {
 public:
  std::int32_t setSystemTime(SystemTimeRecordC const& utc) override {
    FakeSystemCallsC::setSystemTime(utc);
    return answer;
  }
  std::int32_t answer = 0;
};

TEST_F(SystemTimeCalls, OnlyTheAnswerOneIsSuccess) {
  OddAnswerC odd;
  ScopedSystemCallsC const oddScope(odd);
  struct {
    std::int32_t answer;
    bool isSet;
  } const cases[] = {{0, false}, {1, true}, {2, false}, {-1, false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.answer);
    odd.answer = c.answer;
    EXPECT_EQ(c.isSet, utcTime().applyToCurrentSystemTime());
  }
}

TEST_F(SystemTimeCalls, LogsBothForms) {
  utcTime().applyToCurrentSystemTime();
  ASSERT_EQ(1u, log.count());
  auto const entry = log.entries().front();
  EXPECT_EQ("TimeYmdhms", entry.channel);
  EXPECT_EQ(3, entry.level);
  EXPECT_EQ(
      "KTX::TIM::YmdhmsC::applyToCurrentSystemTime: Ymdhms: 2024-03-07T08:09:05.45Z -> "
      "SYSTEMTIME: 2024-03-07T08:09:05.451\n",
      entry.text);
  EXPECT_EQ(entry.text, entry.format);
}

TEST_F(SystemTimeCalls, SetsTheClockAlsoWhenNothingIsLogged) {
  log.setThreshold("TimeYmdhms", 4);
  EXPECT_TRUE(utcTime().applyToCurrentSystemTime());
  EXPECT_EQ(0u, log.count());
  EXPECT_EQ(0u, log.unaskedCount());
  EXPECT_EQ(1u, calls.setTimes().size());
}

}  // namespace
}  // namespace KTX::TIM::TEST
