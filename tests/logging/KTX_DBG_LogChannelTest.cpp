#include "KTX_DBG_LogChannel.h"

#include <climits>
#include <cstdarg>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX_DBG_LogLines.h"
#include "common/KTX_TIM_TempFolder.h"

namespace KTX::DBG::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

class LogChannel : public ::testing::Test {
 protected:
  static LogSettingsC settings(std::filesystem::path const& file) {
    LogSettingsC settings;
    settings.file = file.u8string();
    settings.isToStandardError = false;
    return settings;
  }

  KTX_DBG_PRINTF(3, 4) void print(std::int32_t level, char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    channel.print(level, format, arguments);
    va_end(arguments);
  }

  std::vector<std::string> lines() const { return logLines(folder.read("a.log")); }

  TIM::TEST::TempFolderC folder;
  LogOutputC output{settings(folder.path() / "a.log")};
  LogChannelC channel{"Time", 3, output};
};

TEST_F(LogChannel, EnablesItsThresholdAndAbove) {
  struct {
    std::int64_t threshold;
    std::int32_t level;
    bool isEnabled;
  } const cases[] = {
      {0, -1, false}, {0, 0, true},        {0, 6, true},       {3, 2, false},
      {3, 3, true},   {3, 4, true},        {6, 5, false},      {6, 6, true},
      {6, 7, true},   {6, INT_MIN, false}, {6, INT_MAX, true}, {LogSettingsC::OFF, INT_MAX, false},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(c.isEnabled, LogChannelC("C", c.threshold, output).isEnabled(c.level))
        << c.threshold << ' ' << c.level;
  }
}

TEST_F(LogChannel, FormatsAsPrintf) {
  print(6, "%s %d: Assertion! %s", "file", 20, "text with %s");
  print(3, "%s %d %ld %u %02u %%\n", "text", -1, -2147483647L, 4294967295U, 7U);
  print(0, "%lld %llu %c %x %5.1f|%-4d|%+d", -9223372036854775807LL, 18446744073709551615ULL, 'c',
        255U, 1.25, 5, 6);
  print(-7, "%s", "");
  EXPECT_THAT(lines(),
              ElementsAre("Time 6 file 20: Assertion! text with %s",
                          "Time 3 text -1 -2147483647 4294967295 07 %",
                          "Time 0 -9223372036854775807 18446744073709551615 c ff   1.2|5   |+6",
                          "Time -7 "));
}

TEST_F(LogChannel, FormatsLinesOfAnyLength) {
  for (std::size_t const length : {1022U, 1023U, 1024U, 1025U, 100000U}) {
    print(3, "%s%d\n", std::string(length - 1, 'x').c_str(), 7);
  }
  auto const written = lines();
  ASSERT_EQ(5U, written.size());
  EXPECT_EQ("Time 3 " + std::string(1021, 'x') + '7', written[0]);
  EXPECT_EQ("Time 3 " + std::string(1022, 'x') + '7', written[1]);
  EXPECT_EQ("Time 3 " + std::string(1023, 'x') + '7', written[2]);
  EXPECT_EQ("Time 3 " + std::string(1024, 'x') + '7', written[3]);
  EXPECT_EQ("Time 3 " + std::string(99999, 'x') + '7', written[4]);
}

TEST_F(LogChannel, WritesATextAsItIs) {
  channel.writeText("100%s %n\n");
  channel.writeText("");
  EXPECT_THAT(lines(), ElementsAre("Time - 100%s %n", "Time - "));
}

TEST_F(LogChannel, WritesATextWhateverTheThresholdUnlessItIsOff) {
  LogChannelC("Strict", 6, output).writeText("written");
  LogChannelC("Off", LogSettingsC::OFF, output).writeText("not written");
  EXPECT_THAT(lines(), ElementsAre("Strict - written"));
}

TEST_F(LogChannel, NamesANullText) {
  channel.writeText(nullptr);
  EXPECT_THAT(lines(), ElementsAre("Time - (null)"));
}

TEST_F(LogChannel, NamesANullFormatAndTellsTheFirst) {
  char const* const null = nullptr;
  CaptureStderr();
  print(3, null);
  print(4, null);
  EXPECT_EQ("KTX_LOG: a line cannot be formatted (told once): (null)\n", GetCapturedStderr());
  EXPECT_THAT(lines(), ElementsAre("Time 3 (null)", "Time 4 (null)"));
}

}  // namespace
}  // namespace KTX::DBG::TEST
