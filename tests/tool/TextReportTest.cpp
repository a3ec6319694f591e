#include "output/TextReport.h"

#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "KTX/RCV/KTX_RCV_LeapHistory.h"
#include "KTX/RCV/KTX_RCV_Observation.h"
#include "output/JsonReport.h"

namespace KTX::VORTIME::TEST {
namespace {

RCV::ReceiverMessageC eventAt(std::string_view message) {
  RCV::ReceiverMessageC event;
  event.name = message;
  event.timeForm = RCV::TIMEFORM_UTC;
  event.utc = {2017, 1, 1, 0, 0, 0, 0};
  return event;
}

class TextReport : public ::testing::Test {
 protected:
  // The line of an observation without its line end.
  std::string observationLine(RCV::ReceiverMessageC const& event, double differenceMs) {
    out.buffer().clear();
    RCV::ObservationC const observation(event);
    report.onObservation(RCV::MessageReportC{event, RCV::WARNING_NONE, &observation},
                         {10, differenceMs, 0});
    std::string line = out.buffer();
    EXPECT_EQ('\n', line.back());
    line.pop_back();
    return line;
  }

  OutputFileC out;
  TextReportC report{out, false, false};
};

TEST_F(TextReport, SeparatesTheColumnsOfWideValues) {
  RCV::ReceiverMessageC event = eventAt("NAV-TIMEUTC+");
  event.format = RCV::FORMAT_UBX;
  event.place.offset = std::numeric_limits<std::uint64_t>::max();
  event.utc = {3235, 12, 31, 23, 59, 59, 999000000};
  for (char const* const difference :
       {"0", "-12345678", "-123456789", "1234567890", "-9223372036854775808"}) {
    std::istringstream columns(observationLine(event, std::stod(difference)));
    std::string place, message, utc, week, ms, mjd, change, more;
    columns >> place >> message >> utc >> week >> ms >> mjd >> change;
    EXPECT_EQ("@18446744073709551615", place);
    EXPECT_EQ("NAV-TIMEUTC+", message);
    EXPECT_EQ("3235-12-31T23:59:59.999Z", utc);
    EXPECT_EQ("65534", week);
    EXPECT_EQ("172817999", ms);
    EXPECT_EQ(difference, change);
    EXPECT_FALSE(columns >> more);
  }
}

TEST_F(TextReport, RoundsTheDifferenceToTheNearestMillisecond) {
  struct {
    double differenceMs;
    char const* shown;
  } const cases[] = {{0.0, "0"},     {0.4999, "0"},    {-0.4999, "0"},  {0.5, "1"},
                     {-0.5, "-1"},   {0.999, "1"},     {-0.999, "-1"},  {1.4999, "1"},
                     {299.9, "300"}, {-299.9, "-300"}, {-299.4, "-299"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.differenceMs);
    std::string const line = observationLine(eventAt("GPRMC"), c.differenceMs);
    EXPECT_EQ(c.shown, line.substr(line.rfind(' ') + 1));
  }
}

// GPS time by a history that has 15 s before the leap second at the end of June 2012, 16 s after
// it.
TEST_F(TextReport, ShowsALeapSecondAsSecond60) {
  struct {
    std::int32_t second, nanosecond;
    char const* utc;
    char const* week;
  } const cases[] = {{59, 999000000, "2012-06-30T23:59:59.999Z", "1695       14999"},
                     {59, 999999999, "2012-07-01T00:00:00.000Z", "1695       16000"},
                     {60, 0, "2012-06-30T23:59:60.000Z", "1695       15000"},
                     {60, 400000000, "2012-06-30T23:59:60.400Z", "1695       15400"},
                     {60, 999000000, "2012-06-30T23:59:60.999Z", "1695       15999"},
                     {60, 999600000, "2012-07-01T00:00:00.000Z", "1695       16000"}};
  RCV::LeapHistoryC history;
  report.setLeapSeconds(history);
  for (auto const& c : cases) {
    out.buffer().clear();
    RCV::ReceiverMessageC event = eventAt("GPZDA");
    event.utc = {2012, 6, 30, 23, 59, c.second, c.nanosecond};
    RCV::ObservationC const observation(event);
    report.onRefusal(RCV::MessageReportC{event, RCV::WARNING_NONE, &observation},
                     RCV::REFUSAL_LEAP_SECOND);
    std::string const line = out.buffer();
    EXPECT_NE(std::string::npos,
              line.find(std::string("  GPZDA        ") + c.utc + "   " + c.week + "  "))
        << line;
  }
}

TEST_F(TextReport, SeparatesALongMessageNameFromItsTime) {
  EXPECT_NE(std::string::npos, observationLine(eventAt("PGM / RUN BY / DATE"), 0)
                                   .find("  PGM / RUN BY / DATE 2017-01-01T00:00:00.000Z  "));
}

TEST_F(TextReport, ShowsTheNameOfAnInputWithoutControlCharacters) {
  report.onInput(
      "log\x1B[2J\n\xC2\x9B"
      "0m\x80.txt");
  std::string const shown = out.buffer();
  EXPECT_EQ("log\\u001b[2J\\u000a\\u009b0m\\x80.txt", shown.substr(0, shown.find('\n')));
}

RCV::ClockStepC clockStep(RCV::ClockOutcomeE outcome, bool isFirst) {
  return {outcome, isFirst, -5, RCV::ObservationC(eventAt("RMC")).utc()};
}

TEST_F(TextReport, TellsWhatBecameOfThePcsClock) {
  struct {
    RCV::ClockOutcomeE outcome;
    char const* line;
  } const cases[] = {
      {RCV::CLOCK_SET, "          clock set    2017-01-01T00:00:00.000Z  changed by -5 ms\n"},
      {RCV::CLOCK_REFUSED,
       "          clock kept   2017-01-01T00:00:00.000Z was refused by the system: it takes the "
       "right to set the time, as root has\n"},
      {RCV::CLOCK_STEP_TOO_LARGE,
       "          clock kept   2017-01-01T00:00:00.000Z is -5 ms away: more than --max-step\n"}};
  for (auto const& c : cases) {
    out.buffer().clear();
    report.onClock(clockStep(c.outcome, false));
    EXPECT_EQ(c.line, out.buffer());
  }
}

TEST_F(TextReport, TellsTheHoursWithoutACorrection) {
  report.onOldMapping(90000000);
  EXPECT_EQ(
      "          warning      no correction for 25 hours: the present rests on the PC's steady "
      "clock "
      "(reported once)\n",
      out.buffer());
}

TEST(JsonReport, TellsWhatBecameOfThePcsClock) {
  struct {
    RCV::ClockOutcomeE outcome;
    bool isFirst;
    char const* fields;
  } const cases[] = {
      {RCV::CLOCK_SET, true, R"("clock_set":true,"first":true,)"},
      {RCV::CLOCK_REFUSED, true, R"("clock_set":false,"reason":"refused","first":true,)"},
      {RCV::CLOCK_STEP_TOO_LARGE, false,
       R"("clock_set":false,"reason":"step-too-large","first":false,)"}};
  for (auto const& c : cases) {
    OutputFileC out;
    JsonReportC report(out, false, false);
    report.onClock(clockStep(c.outcome, c.isFirst));
    EXPECT_EQ(std::string(R"({"type":"clock",)") + c.fields +
                  R"("step_ms":-5,"clock_utc":"2017-01-01T00:00:00.000Z"})" + "\n",
              out.buffer());
  }
}

TEST(JsonReport, QuotesTheNameOfAMessage) {
  OutputFileC out;
  JsonReportC report(out, false, false);
  RCV::ReceiverMessageC event = eventAt("G\"\\MC");
  event.timeForm = RCV::TIMEFORM_NONE;
  report.onInput("a");
  report.onRefusal(RCV::MessageReportC{event, RCV::WARNING_NONE, nullptr},
                   RCV::REFUSAL_BAD_CHECKSUM);
  EXPECT_NE(std::string::npos, out.buffer().find(R"("message":"G\"\\MC")")) << out.buffer();
}

}  // namespace
}  // namespace KTX::VORTIME::TEST
