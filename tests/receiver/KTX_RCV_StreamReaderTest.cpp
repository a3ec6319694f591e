#include "readers/KTX_RCV_StreamReader.h"

#include <string>

#include <gtest/gtest.h>

#include "readers/KTX_RCV_HostTime.h"
#include "receiver/KTX_RCV_MessageRecorder.h"
#include "receiver/KTX_RCV_UbxFrame.h"

namespace KTX::RCV::TEST {
namespace {

constexpr char const* ZDA = "$GPZDA,222449,25,10,2010,00,00*46\r\n";

std::string timeGpsFrame() {
  return UbxFrameC(0x01, 0x20, 16).set(8, 2, 2146).set(11, 1, 7).bytes();
}

TEST(StreamReader, ReadsSentencesFramesAndReportsInOneStream) {
  WholeReadingC const reading(
      std::string(ZDA) + timeGpsFrame() + ZDA +
      "{\"class\":\"TPV\",\"mode\":3,\"time\":\"2021-02-23T18:04:30.000Z\"}\n" + ZDA);
  ASSERT_EQ(5U, reading.events().size());
  MessageFormatE const formats[] = {FORMAT_NMEA, FORMAT_UBX, FORMAT_NMEA, FORMAT_GPSD, FORMAT_NMEA};
  for (std::size_t i = 0; i < 5; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(formats[i], reading.event(i).format);
    EXPECT_EQ(REFUSAL_NONE, reading.event(i).refusal);
  }
}

TEST(StreamReader, PassesOverComments) {
  WholeReadingC const reading(std::string("# $GPZDA,222449,25,10,2010,00,00*46\n#\n") + ZDA +
                              "# end");
  ASSERT_EQ(1U, reading.events().size());
  EXPECT_EQ(3U, reading.event(0).place.line);
}

TEST(StreamReader, FindsAFrameBehindANumberSignThatIsNoComment) {
  WholeReadingC const reading(std::string("\n#\x01") + timeGpsFrame());
  ASSERT_EQ(1U, reading.events().size());
  EXPECT_EQ(FORMAT_UBX, reading.event(0).format);
}

TEST(StreamReader, ReadsTheHostsTimeInBothForms) {
  std::string const sentence = "$GPZDA,222449,25,10,2010,00,00*46";
  struct {
    std::string line;
    std::int64_t unixMs;
  } const cases[] = {
      {"2014-08-01T00:00:00.124000Z " + sentence + "\n", 1406851200124},
      {"2014-08-01T00:00:00.124999Z " + sentence + "\r\n", 1406851200124},
      {"2014-08-01 00:00:00\t" + sentence + "\n", 1406851200000},
      {"NMEA," + sentence + ",1699400577561\n", 1699400577561},
      {"NMEA," + sentence + ",0\r\n", 0},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.line);
    WholeReadingC const reading(c.line);
    ASSERT_EQ(1U, reading.events().size());
    EXPECT_EQ(REFUSAL_NONE, reading.event(0).refusal);
    EXPECT_TRUE(reading.event(0).place.hasHostTime);
    EXPECT_EQ(c.unixMs, reading.event(0).place.hostUnixMs);
  }
}

TEST(StreamReader, ForgetsTheHostsTimeAtTheEndOfTheLine) {
  WholeReadingC const reading(std::string("2014-08-01T00:00:00Z ") + ZDA + ZDA);
  ASSERT_EQ(2U, reading.events().size());
  EXPECT_TRUE(reading.event(0).place.hasHostTime);
  EXPECT_FALSE(reading.event(1).place.hasHostTime);
}

TEST(StreamReader, ReadsLinesThatOnlyLookLikeAHostsTimeAsTheyStand) {
  for (std::string const prefix :
       {"2014-13-01T00:00:00Z ", "2014-08-01T25:00:00Z ", "2014-08-01T00:00:60Z ",
        "2014-08-01T00:00:00Z", "20140801T000000Z ", "NMEA,", "N", "5"}) {
    SCOPED_TRACE(prefix);
    WholeReadingC const reading(prefix + ZDA);
    ASSERT_EQ(1U, reading.events().size());
    EXPECT_FALSE(reading.event(0).place.hasHostTime);
    EXPECT_EQ(REFUSAL_NONE, reading.event(0).refusal);
  }
}

TEST(StreamReader, TakesNoLoggersNumberForAFieldOfTheSentence) {
  WholeReadingC const reading("NMEA,$GPZDA,222449,25,10,2010,,1699400577561\n");
  ASSERT_EQ(1U, reading.events().size());
  EXPECT_EQ(1699400577561, reading.event(0).place.hostUnixMs);
  EXPECT_EQ(REFUSAL_NONE, reading.event(0).refusal);
}

TEST(StreamReader, GivesTheSameEventsWhereverTheInputIsCut) {
  std::string const data =
      std::string("# comment\n") + ZDA + timeGpsFrame() + "2014-08-01T00:00:00.5Z " + ZDA +
      "{\"class\":\"TPV\",\"mode\":3,\"time\":\"2021-02-23T18:04:30.000Z\"}\n$GPGSV,1" + ZDA +
      "noise \xB5 noise\n" + timeGpsFrame() +
      "NMEA,$GPZDA,222449,25,10,2010,00,00*46,12\n$GPZDA,22";
  WholeReadingC const whole(data);
  ASSERT_EQ(9U, whole.events().size());
  for (std::size_t step = 1; step < data.size(); ++step) {
    SCOPED_TRACE(step);
    MessageRecorderC recorder;
    ReadCountsC counts;
    StreamReaderC reader(recorder, counts);
    std::size_t done = 0;
    for (std::size_t end = step; end < data.size(); end += step) {
      done += reader.read(std::string_view(data).substr(done, end - done), false);
      ASSERT_LE(done, end);
    }
    done += reader.read(std::string_view(data).substr(done), true);
    EXPECT_EQ(data.size(), done);
    EXPECT_EQ(whole.counts.bytes, counts.bytes);
    EXPECT_EQ(whole.counts.lines, counts.lines);
    ASSERT_EQ(whole.events().size(), recorder.events.size());
    for (std::size_t i = 0; i < recorder.events.size(); ++i) {
      EXPECT_EQ(whole.event(i).place.offset, recorder.events[i].place.offset);
      EXPECT_EQ(whole.event(i).place.line, recorder.events[i].place.line);
      EXPECT_EQ(whole.event(i).name, recorder.events[i].name);
      EXPECT_EQ(whole.event(i).refusal, recorder.events[i].refusal);
      EXPECT_EQ(whole.event(i).place.hasHostTime, recorder.events[i].place.hasHostTime);
    }
  }
}

TEST(StreamReader, HoldsNothingBackForALineThatNeverEnds) {
  MessageRecorderC recorder;
  ReadCountsC counts;
  StreamReaderC reader(recorder, counts);
  for (std::string const& start :
       {std::string("$GP"), std::string("2"), std::string("#"), std::string("{")}) {
    SCOPED_TRACE(start);
    std::string const data = "\n" + start + std::string(70000, 'x');
    EXPECT_LT(data.size() - reader.read(data, false), 1100U);
  }
}

TEST(StreamReader, CountsLinesAndBytes) {
  struct {
    char const* text;
    std::uint64_t lines;
  } const cases[] = {{"", 0}, {"x", 1}, {"x\n", 1}, {"x\ny", 2}, {"\n\n", 2}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    WholeReadingC const reading(c.text);
    EXPECT_EQ(c.lines, reading.counts.lines);
    EXPECT_EQ(std::string(c.text).size(), reading.counts.bytes);
  }
}

TEST(GpsdReader, ReadsTheTimeOfTpv) {
  WholeReadingC const reading(
      "{\"class\":\"TPV\",\"mode\":3,\"time\":\"2021-02-23T18:04:30.250Z\",\"leapseconds\":18,"
      "\"ept\":0.005}");
  ASSERT_EQ(1U, reading.events().size());
  ReceiverMessageC const& event = reading.event(0);
  EXPECT_EQ("TPV", event.name);
  EXPECT_EQ(TIMEFORM_UTC, event.timeForm);
  EXPECT_EQ("2021-02-23T18:04:30.250000000Z", isoText(event.utc));
  EXPECT_EQ(5000000, event.accuracyNs);
  EXPECT_TRUE(event.leap.hasCount);
  EXPECT_EQ(18, event.leap.current);
  EXPECT_EQ(WARNING_NONE, event.warnings);
}

TEST(GpsdReader, NamesWhyAReportIsRefused) {
  struct {
    char const* text;
    RefusalE refusal;
    std::uint32_t signs;
  } const cases[] = {
      {"{\"class\":\"TPV\",\"mode\":1}", REFUSAL_NO_TIME, WARNING_NO_FIX},
      {"{\"class\":\"TPV\"}", REFUSAL_NO_TIME, WARNING_NONE},
      {"{\"class\":\"TPV\",\"time\":5}", REFUSAL_BAD_TIME, WARNING_NONE},
      {"{\"class\":\"TPV\",\"time\":\"2021-02-30T18:04:30Z\"}", REFUSAL_BAD_TIME, WARNING_NONE},
      {"{\"class\":\"TPV\",\"time\":\"2021-02-20T18:04:30\"}", REFUSAL_BAD_TIME, WARNING_NONE},
      {"{\"class\":\"TPV\",\"time\":\"2021-02-20T18:04:30+01:00\"}", REFUSAL_BAD_TIME,
       WARNING_NONE},
      {"{\"class\":\"TPV\",\"mode\":0,\"time\":\"2021-02-20T18:04:30Z\"}", REFUSAL_NONE,
       WARNING_NO_FIX},
      {"{\"class\":\"TPV\",\"mode\":2,\"time\":\"2021-02-20T18:04:30Z\"}", REFUSAL_NONE,
       WARNING_NONE},
      {"{\"class\":\"TPV\",\"time\":\"2021-02-20T18:04:30Z\",\"leapseconds\":1e9}", REFUSAL_NONE,
       WARNING_LEAP_UNKNOWN},
      {"{\"class\":\"TPV\",\"time\":\"2021-02-20T18:04:30Z\",\"leapseconds\":99999999999999999999}",
       REFUSAL_NONE, WARNING_LEAP_UNKNOWN},
      {"{\"class\":\"TPV\",\"time\":\"2021-02-20T18:04:30Z\",\"ept\":\"x\"}", REFUSAL_NONE,
       WARNING_NONE},
      {"{\"class\":5}", REFUSAL_MALFORMED, WARNING_NONE},
      {"{}", REFUSAL_MALFORMED, WARNING_NONE},
      {"{\"class\":\"TPV\",\"time\":", REFUSAL_MALFORMED, WARNING_NONE},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    WholeReadingC const reading(c.text);
    ASSERT_EQ(1U, reading.events().size());
    EXPECT_STREQ(refusalName(c.refusal), refusalName(reading.event(0).refusal));
    EXPECT_EQ(c.signs, reading.event(0).warnings);
    EXPECT_FALSE(reading.event(0).leap.hasCount);
  }
}

TEST(GpsdReader, CountsReportsOfOtherClasses) {
  WholeReadingC const reading("{\"class\":\"SKY\"}\n{\"class\":\"VERSION\"}\n");
  EXPECT_TRUE(reading.events().empty());
  EXPECT_EQ(2U, reading.counts.reports);
}

TEST(HostTime, LeavesItsResultAloneForOtherLines) {
  HostTimeC hostTime{5, 6, 7};
  for (char const* const line :
       {"", "NMEA,", "NMEA,x", "NMEA,x,", "NMEA,x,1y", "NMEA,x,999999999999999", "2014-08-01",
        "2014-08-01T00:00:00", "2014-08-01T00:00:00Z"}) {
    SCOPED_TRACE(line);
    EXPECT_FALSE(readHostTime(line, hostTime));
    EXPECT_EQ(5, hostTime.unixMs);
    EXPECT_EQ(6U, hostTime.begin);
    EXPECT_EQ(7U, hostTime.end);
  }
}

}  // namespace
}  // namespace KTX::RCV::TEST
