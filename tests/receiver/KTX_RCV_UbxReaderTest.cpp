#include <string>

#include <gtest/gtest.h>

#include "receiver/KTX_RCV_MessageRecorder.h"
#include "receiver/KTX_RCV_UbxFrame.h"

namespace KTX::RCV::TEST {
namespace {

UbxFrameC timeGps() {
  UbxFrameC frame(0x01, 0x20, 16);
  return frame.set(0, 4, 237887000)
      .set(4, 4, -127757)
      .set(8, 2, 2146)
      .set(10, 1, 18)
      .set(11, 1, 7)
      .set(12, 4, 31);
}

UbxFrameC timeUtc() {
  UbxFrameC frame(0x01, 0x21, 20);
  return frame.set(0, 4, 237887000)
      .set(4, 4, 1031)
      .set(8, 4, 321732)
      .set(12, 2, 2021)
      .set(14, 1, 2)
      .set(15, 1, 23)
      .set(16, 1, 18)
      .set(17, 1, 4)
      .set(18, 1, 29)
      .set(19, 1, 0xF7);
}

UbxFrameC pvt() {
  UbxFrameC frame(0x01, 0x07, 92);
  return frame.set(0, 4, 163178000)
      .set(4, 2, 2019)
      .set(6, 1, 4)
      .set(7, 1, 22)
      .set(8, 1, 21)
      .set(9, 1, 19)
      .set(10, 1, 20)
      .set(11, 1, 0x37)
      .set(12, 4, 26)
      .set(16, 4, -127759)
      .set(20, 1, 3);
}

UbxFrameC timeLs() {
  UbxFrameC frame(0x01, 0x26, 24);
  return frame.set(8, 1, 2)
      .set(9, 1, 17)
      .set(10, 1, 2)
      .set(11, 1, 1)
      .set(12, 4, 1000)
      .set(16, 2, 1929)
      .set(18, 2, 7)
      .set(23, 1, 3);
}

ReceiverMessageC only(UbxFrameC const& frame) {
  WholeReadingC const reading(frame.bytes());
  EXPECT_EQ(1U, reading.events().size());
  ReceiverMessageC event = reading.event(0);
  event.name = {};
  return event;
}

std::int64_t raw(ReceiverMessageC const& event, std::string const& name) {
  for (std::size_t i = 0; i < event.rawCount; ++i) {
    if (name == event.raw[i].name) {
      return event.raw[i].value;
    }
  }
  ADD_FAILURE() << "no field " << name;
  return 0;
}

TEST(UbxReader, ReadsTimeGps) {
  ReceiverMessageC const event = only(timeGps());
  EXPECT_EQ(MESSAGE_TIME, event.kind);
  EXPECT_EQ(FORMAT_UBX, event.format);
  EXPECT_EQ(REFUSAL_NONE, event.refusal);
  EXPECT_EQ(TIMEFORM_GPS, event.timeForm);
  EXPECT_EQ(2146, event.week);
  EXPECT_EQ(237887000000000 - 127757, event.nanosecondOfWeek);
  EXPECT_EQ(31, event.accuracyNs);
  EXPECT_TRUE(event.leap.hasCount);
  EXPECT_FALSE(event.leap.hasEffectivity);
  EXPECT_EQ(18, event.leap.current);
  EXPECT_EQ(237887000, raw(event, "itow"));
  EXPECT_EQ(-127757, raw(event, "ftow"));
  EXPECT_EQ(7, raw(event, "valid"));
}

TEST(UbxReader, RefusesTimeGpsWithoutItsFlags) {
  struct {
    int valid;
    RefusalE refusal;
    std::uint32_t signs;
  } const cases[] = {{7, REFUSAL_NONE, WARNING_NONE},
                     {3, REFUSAL_NONE, WARNING_LEAP_UNKNOWN},
                     {6, REFUSAL_NOT_VALID, WARNING_NONE},
                     {5, REFUSAL_NOT_VALID, WARNING_NONE},
                     {0, REFUSAL_NOT_VALID, WARNING_LEAP_UNKNOWN}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.valid);
    ReceiverMessageC const event = only(timeGps().set(11, 1, c.valid));
    EXPECT_EQ(c.refusal, event.refusal);
    EXPECT_EQ(c.signs, event.warnings);
    EXPECT_EQ(TIMEFORM_GPS, event.timeForm);
    EXPECT_EQ((c.valid & 4) != 0, event.leap.hasCount);
  }
}

TEST(UbxReader, RefusesTimeGpsOutsideItsRanges) {
  EXPECT_EQ(REFUSAL_NONE, only(timeGps().set(0, 4, 604799999)).refusal);
  EXPECT_EQ(REFUSAL_BAD_TIME, only(timeGps().set(0, 4, 604800000)).refusal);
  EXPECT_EQ(REFUSAL_BAD_TIME, only(timeGps().set(8, 2, -1)).refusal);
  EXPECT_EQ(REFUSAL_NONE, only(timeGps().set(4, 4, 1000000)).refusal);
  EXPECT_EQ(REFUSAL_BAD_TIME, only(timeGps().set(4, 4, 1000001)).refusal);
  EXPECT_EQ(REFUSAL_BAD_TIME, only(timeGps().set(4, 4, -1000001)).refusal);
}

TEST(UbxReader, SignsAnUnknownAccuracy) {
  EXPECT_EQ(WARNING_NO_ACCURACY, only(timeGps().set(12, 4, 0xFFFFFFFF)).warnings);
  EXPECT_EQ(WARNING_NONE, only(timeGps().set(12, 4, 0xFFFFFFFE)).warnings);
  EXPECT_EQ(WARNING_NO_ACCURACY, only(timeUtc().set(4, 4, 0xFFFFFFFF)).warnings);
  EXPECT_EQ(WARNING_NO_ACCURACY, only(pvt().set(12, 4, 0xFFFFFFFF)).warnings);
}

TEST(UbxReader, ReadsTimeUtc) {
  ReceiverMessageC const event = only(timeUtc());
  EXPECT_EQ(REFUSAL_NONE, event.refusal);
  EXPECT_EQ(TIMEFORM_UTC, event.timeForm);
  EXPECT_EQ("2021-02-23T18:04:29.000321732Z", isoText(event.utc));
  EXPECT_EQ(1031, event.accuracyNs);
  EXPECT_EQ(0xF7, raw(event, "valid"));
  EXPECT_FALSE(event.leap.hasCount);
}

TEST(UbxReader, RefusesTimeUtcThatIsNotValidOrNoTime) {
  EXPECT_EQ(REFUSAL_NOT_VALID, only(timeUtc().set(19, 1, 0xF3)).refusal);
  EXPECT_EQ(REFUSAL_BAD_DATE, only(timeUtc().set(14, 1, 13)).refusal);
  EXPECT_EQ(REFUSAL_BAD_DATE, only(timeUtc().set(15, 1, 29)).refusal);
  EXPECT_EQ(REFUSAL_BAD_DATE, only(timeUtc().set(12, 2, 0)).refusal);
  EXPECT_EQ(REFUSAL_BAD_TIME, only(timeUtc().set(16, 1, 24)).refusal);
  EXPECT_EQ(REFUSAL_BAD_TIME, only(timeUtc().set(17, 1, 60)).refusal);
  EXPECT_EQ(REFUSAL_BAD_TIME, only(timeUtc().set(18, 1, 61)).refusal);
  EXPECT_EQ(REFUSAL_LEAP_SECOND, only(timeUtc().set(18, 1, 60)).refusal);
  EXPECT_EQ(REFUSAL_BAD_TIME, only(timeUtc().set(8, 4, 1000000000)).refusal);
  EXPECT_EQ(REFUSAL_NONE, only(timeUtc().set(8, 4, -999999999)).refusal);
}

TEST(UbxReader, ReadsPvtOfBothLengths) {
  ReceiverMessageC const event = only(pvt());
  EXPECT_EQ(REFUSAL_NONE, event.refusal);
  EXPECT_EQ(2019, event.utc.year);
  EXPECT_EQ(20, event.utc.second);
  EXPECT_EQ(-127759, event.utc.nanosecond);
  EXPECT_EQ(26, event.accuracyNs);
  EXPECT_EQ(WARNING_NONE, event.warnings);
  EXPECT_EQ(3, raw(event, "fix"));

  UbxFrameC shorter(0x01, 0x07, 84);
  shorter.set(4, 2, 2019).set(6, 1, 4).set(7, 1, 22).set(11, 1, 7);
  EXPECT_EQ(REFUSAL_NONE, only(shorter).refusal);
  EXPECT_EQ(WARNING_NO_FIX, only(shorter).warnings);
}

TEST(UbxReader, RefusesPvtUnlessDateAndTimeAreFullyResolved) {
  for (int const valid : {0, 1, 2, 3, 4, 5, 6}) {
    SCOPED_TRACE(valid);
    EXPECT_EQ(REFUSAL_NOT_VALID, only(pvt().set(11, 1, valid)).refusal);
  }
  EXPECT_EQ(REFUSAL_NONE, only(pvt().set(11, 1, 7)).refusal);
}

TEST(UbxReader, ReadsAnAnnouncedLeapSecond) {
  ReceiverMessageC const event = only(timeLs());
  EXPECT_EQ(MESSAGE_LEAP, event.kind);
  EXPECT_EQ(REFUSAL_NONE, event.refusal);
  EXPECT_TRUE(event.leap.hasCount);
  EXPECT_TRUE(event.leap.hasEffectivity);
  EXPECT_EQ(LEAPSYSTEM_GPS, event.leap.system);
  EXPECT_EQ(17, event.leap.current);
  EXPECT_EQ(18, event.leap.future);
  EXPECT_EQ(1929, event.leap.week);
  EXPECT_EQ(7, event.leap.day);
}

TEST(UbxReader, CountsAPastLeapSecondAsTheCurrentOne) {
  ReceiverMessageC const event = only(timeLs().set(9, 1, 18).set(12, 4, -1000));
  EXPECT_EQ(17, event.leap.current);
  EXPECT_EQ(18, event.leap.future);
  ReceiverMessageC const none = only(timeLs().set(9, 1, 18).set(11, 1, 0).set(12, 4, -1000));
  EXPECT_EQ(18, none.leap.current);
  EXPECT_EQ(18, none.leap.future);
}

TEST(UbxReader, TakesOnlyWhatTheLeapFlagsAllow) {
  EXPECT_EQ(REFUSAL_LEAP_NOT_VALID, only(timeLs().set(23, 1, 0)).refusal);
  EXPECT_EQ(REFUSAL_LEAP_NOT_VALID, only(timeLs().set(23, 1, 2)).refusal);
  ReceiverMessageC const countAlone = only(timeLs().set(23, 1, 1));
  EXPECT_TRUE(countAlone.leap.hasCount);
  EXPECT_FALSE(countAlone.leap.hasEffectivity);
  ReceiverMessageC const noSource = only(timeLs().set(10, 1, 0));
  EXPECT_TRUE(noSource.leap.hasCount);
  EXPECT_FALSE(noSource.leap.hasEffectivity);
}

TEST(UbxReader, NamesTheSystemOfALeapSecondAndCountsItsDaysFromOne) {
  struct {
    int source;
    LeapSystemE system;
    int day;
  } const cases[] = {{2, LEAPSYSTEM_GPS, 1},     {3, LEAPSYSTEM_SBAS, 1},
                     {4, LEAPSYSTEM_BEIDOU, 2},  {5, LEAPSYSTEM_GALILEO, 1},
                     {6, LEAPSYSTEM_GLONASS, 2}, {255, LEAPSYSTEM_UNKNOWN, 1}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.source);
    ReceiverMessageC const event = only(timeLs().set(10, 1, c.source).set(18, 2, 1));
    EXPECT_EQ(c.system, event.leap.system);
    EXPECT_EQ(c.day, event.leap.day);
    EXPECT_EQ(1, raw(event, "day"));
  }
}

TEST(UbxReader, RefusesAWrongChecksumAndFindsTheNextFrame) {
  std::string bad = timeGps().bytes();
  bad[10] = static_cast<char>(bad[10] ^ 1);
  WholeReadingC const reading(bad + timeUtc().bytes());
  ASSERT_EQ(2U, reading.events().size());
  EXPECT_EQ(REFUSAL_BAD_CHECKSUM, reading.event(0).refusal);
  EXPECT_EQ("NAV-TIMEGPS", reading.event(0).name);
  EXPECT_EQ(REFUSAL_NONE, reading.event(1).refusal);
  EXPECT_EQ(24U, reading.event(1).place.offset);
  EXPECT_EQ(1U, reading.counts.badChecksums);
  EXPECT_EQ(2U, reading.counts.frames);
}

TEST(UbxReader, FindsAFrameBehindADamagedLength) {
  std::string bad = timeGps().bytes();
  bad[4] = '\x40';
  WholeReadingC const reading(bad + timeUtc().bytes() + pvt().bytes());
  ASSERT_EQ(3U, reading.events().size());
  EXPECT_EQ(REFUSAL_BAD_CHECKSUM, reading.event(0).refusal);
  EXPECT_EQ("NAV-TIMEUTC", reading.event(1).name);
  EXPECT_EQ("NAV-PVT", reading.event(2).name);
}

TEST(UbxReader, RefusesALengthThatNoMessageHas) {
  std::string bad = timeGps().bytes();
  bad[5] = '\x21';
  WholeReadingC const reading(bad + timeUtc().bytes());
  ASSERT_EQ(2U, reading.events().size());
  EXPECT_EQ(REFUSAL_MALFORMED, reading.event(0).refusal);
  EXPECT_EQ(REFUSAL_NONE, reading.event(1).refusal);
}

TEST(UbxReader, RefusesAFrameThatEndsTooEarly) {
  std::string const whole = timeGps().bytes();
  for (std::size_t length = 2; length < whole.size(); ++length) {
    SCOPED_TRACE(length);
    WholeReadingC const reading(whole.substr(0, length));
    ASSERT_EQ(1U, reading.events().size());
    EXPECT_EQ(REFUSAL_CUT, reading.event(0).refusal);
  }
}

TEST(UbxReader, RefusesAPayloadThatIsTooShortAndPassesOverPolls) {
  WholeReadingC const tooShort(UbxFrameC(0x01, 0x20, 15).bytes());
  ASSERT_EQ(1U, tooShort.events().size());
  EXPECT_EQ(REFUSAL_MALFORMED, tooShort.event(0).refusal);
  WholeReadingC const poll(UbxFrameC(0x01, 0x20, 0).bytes());
  EXPECT_TRUE(poll.events().empty());
  EXPECT_EQ(1U, poll.counts.frames);
}

TEST(UbxReader, PassesOverOtherMessages) {
  WholeReadingC const reading(UbxFrameC(0x02, 0x13, 40).bytes());
  EXPECT_TRUE(reading.events().empty());
  EXPECT_EQ(1U, reading.counts.messageCount("UBX-other"));
}

}  // namespace
}  // namespace KTX::RCV::TEST
