#include <string>

#include <gtest/gtest.h>

#include "receiver/KTX_RCV_MessageRecorder.h"

namespace KTX::RCV::TEST {
namespace {

std::string header(std::string content, std::string const& label) {
  content.resize(60, ' ');
  return content + label + "\n";
}

std::string file(std::string const& leapLine, std::string const& system = "E: GALILEO") {
  return header("     3.04           N: GNSS NAV DATA    " + system, "RINEX VERSION / TYPE") +
         header("NetR9 5.01          Receiver Operator   20150620 000000 UTC",
                "PGM / RUN BY / DATE") +
         (leapLine.empty() ? "" : header(leapLine, "LEAP SECONDS")) + header("", "END OF HEADER") +
         "E12 2015 06 19 02 10 00 -.138392508961D-02 -.131464616970D-09  .000000000000D+00\n" +
         "$GPZDA,222449,25,10,2010,00,00*46\n";
}

TEST(RinexReader, ReadsAnAnnouncedLeapSecondBehindTheTimeOfTheFile) {
  WholeReadingC const reading(file("    16    17  1851     3"));
  ASSERT_EQ(2U, reading.events().size());
  EXPECT_EQ(MESSAGE_FILE_DATE, reading.event(0).kind);
  EXPECT_EQ("first epoch", reading.event(0).name);
  EXPECT_EQ("2015-06-19T02:10:00.000000000Z", isoText(reading.event(0).utc));
  ReceiverMessageC const& event = reading.event(1);
  EXPECT_EQ(MESSAGE_LEAP, event.kind);
  EXPECT_EQ(FORMAT_RINEX, event.format);
  EXPECT_EQ(3U, event.place.line);
  EXPECT_EQ(REFUSAL_NONE, event.refusal);
  EXPECT_TRUE(event.leap.hasCount);
  EXPECT_TRUE(event.leap.hasEffectivity);
  EXPECT_EQ(LEAPSYSTEM_GPS, event.leap.system);
  EXPECT_EQ(16, event.leap.current);
  EXPECT_EQ(17, event.leap.future);
  EXPECT_EQ(1851, event.leap.week);
  EXPECT_EQ(3, event.leap.day);
  EXPECT_EQ(4U, event.rawCount);
  EXPECT_EQ(6U, reading.counts.lines);
  EXPECT_EQ(0U, reading.counts.sentences);
}

TEST(RinexReader, ReadsLeapSecondRecordsOfEveryShape) {
  struct {
    char const* line;
    RefusalE refusal;
    bool hasCount;
    bool hasEffectivity;
  } const cases[] = {
      {"    18", REFUSAL_NONE, true, false},
      {"    18                  GPS", REFUSAL_NONE, true, false},
      {"    18    18  2185     7GPS", REFUSAL_NONE, true, true},
      {"    16     0     0     0", REFUSAL_NONE, true, false},
      {"    15    15  1573    64", REFUSAL_NONE, true, true},
      {"    16        1694     7", REFUSAL_LEAP_INCOMPLETE, false, false},
      {"          18  1929     7", REFUSAL_LEAP_INCOMPLETE, false, false},
      {"", REFUSAL_LEAP_INCOMPLETE, false, false},
      {"    1x    18  1929     7", REFUSAL_MALFORMED, false, false},
      {"    18    18  1 29     7", REFUSAL_MALFORMED, false, false},
      {"   -18   -18  1929     7", REFUSAL_NONE, true, true},
      {"999999    18  1929     7", REFUSAL_MALFORMED, false, false},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.line);
    std::string const line = c.line[0] == '\0' ? " " : c.line;
    WholeReadingC const reading(file(line));
    ASSERT_EQ(2U, reading.events().size());
    EXPECT_STREQ(refusalName(c.refusal), refusalName(reading.event(1).refusal));
    EXPECT_EQ(c.hasCount, reading.event(1).leap.hasCount);
    EXPECT_EQ(c.hasEffectivity, reading.event(1).leap.hasEffectivity);
  }
}

TEST(RinexReader, TurnsBeiDouCountsAndWeeksIntoThoseOfGps) {
  WholeReadingC const reading(file("     4     4   573     6BDS", "C: BEIDOU"));
  LeapStatementC const& leap = reading.event(1).leap;
  EXPECT_EQ(LEAPSYSTEM_BEIDOU, leap.system);
  EXPECT_EQ(18, leap.current);
  EXPECT_EQ(18, leap.future);
  EXPECT_EQ(1929, leap.week);
  EXPECT_EQ(7, leap.day);
  EXPECT_EQ(WARNING_NONE, reading.event(1).warnings);
}

TEST(RinexReader, SignsUnmarkedCountsOfABeiDouFile) {
  WholeReadingC const reading(file("     4     4   573     6", "C: BEIDOU"));
  EXPECT_EQ(WARNING_LEAP_SYSTEM, reading.event(1).warnings);
  EXPECT_EQ(4, reading.event(1).leap.current);
}

TEST(RinexReader, ReadsTheFirstEpochOfEveryVersion) {
  struct {
    char const* line;
    char const* time;
  } const cases[] = {
      {" 1 15 10  7  0  0  0.0 0.187428668141D-05 0.795807864051D-12", "2015-10-07T00:00:00"},
      {"14 16  9  7  0  0  0.0 0.370793044567D-03", "2016-09-07T00:00:00"},
      {" 3 99 12 31 23 45  0.0 2.833176404238D-05", "1999-12-31T23:45:00"},
      {"E 5 2024 07 27 23 40 00 0.476985424757D-02", "2024-07-27T23:40:00"},
      {"> STO C21 CNVX\n    2023 03 12 00 00 00 BDGA", "2023-03-12T00:00:00"},
      {"> 2023 09 05 05 28 30.0000000  0  4", "2023-09-05T05:28:30"},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.line);
    WholeReadingC const reading(header("     3.04", "RINEX VERSION / TYPE") +
                                header("", "END OF HEADER") + c.line + "\n");
    ASSERT_EQ(1U, reading.events().size());
    EXPECT_EQ(std::string(c.time) + ".000000000Z", isoText(reading.event(0).utc));
  }
}

TEST(RinexReader, FallsBackOnTheDateTheFileWasMade) {
  struct {
    char const* date;
    char const* time;
  } const cases[] = {{"20150619 000000 UTC", "2015-06-19"},
                     {"08-OCT-15 17:31", "2015-10-08"},
                     {"23-Jan-99 22:34 UTC", "1999-01-23"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.date);
    WholeReadingC const reading(header("     2", "RINEX VERSION / TYPE") +
                                header(std::string(40, ' ') + c.date, "PGM / RUN BY / DATE") +
                                header("", "END OF HEADER"));
    ASSERT_EQ(1U, reading.events().size());
    EXPECT_EQ("PGM / RUN BY / DATE", reading.event(0).name);
    EXPECT_EQ(std::string(c.time) + "T00:00:00.000000000Z", isoText(reading.event(0).utc));
  }
}

TEST(RinexReader, GivesWhatItHasForAFileThatEndsInItsHeader) {
  std::string const whole = file("    16    17  1851     3");
  WholeReadingC const reading(whole.substr(0, whole.find("END OF") - 60));
  ASSERT_EQ(2U, reading.events().size());
  EXPECT_EQ(MESSAGE_FILE_DATE, reading.event(0).kind);
  EXPECT_EQ(MESSAGE_LEAP, reading.event(1).kind);
}

TEST(RinexReader, TakesAFileForRinexByItsFirstLineOnly) {
  WholeReadingC const reading("\n" + file("    16    17  1851     3"));
  ASSERT_EQ(1U, reading.events().size());
  EXPECT_EQ(FORMAT_NMEA, reading.event(0).format);
}

}  // namespace
}  // namespace KTX::RCV::TEST
