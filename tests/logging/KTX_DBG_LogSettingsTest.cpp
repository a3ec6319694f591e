#include "KTX_DBG_LogSettings.h"

#include <gtest/gtest.h>

namespace KTX::DBG::TEST {
namespace {

LogSettingsC parsed(std::string const& text) {
  LogSettingsC settings;
  std::string fault;
  EXPECT_TRUE(parseLogSettings(text, settings, fault)) << text;
  EXPECT_EQ("", fault) << text;
  return settings;
}

TEST(LogSettings, AreQuietByDefault) {
  for (auto const* const text : {"", " ", ";", " ; \t;"}) {
    SCOPED_TRACE(text);
    auto const settings = parsed(text);
    EXPECT_EQ(6, settings.thresholdOf("Time"));
    EXPECT_EQ("", settings.file);
    EXPECT_TRUE(settings.isToStandardError);
  }
}

TEST(LogSettings, GiveEachChannelItsThreshold) {
  auto const settings = parsed("Time=3,TimeEstimator=0,TimeYmdhms=off,*=4");
  EXPECT_EQ(3, settings.thresholdOf("Time"));
  EXPECT_EQ(0, settings.thresholdOf("TimeEstimator"));
  EXPECT_EQ(LogSettingsC::OFF, settings.thresholdOf("TimeYmdhms"));
  EXPECT_EQ(4, settings.thresholdOf("TimeEstimatorData"));
  EXPECT_EQ(4, settings.thresholdOf("time"));
  EXPECT_EQ(4, settings.thresholdOf(""));
}

TEST(LogSettings, LeaveUnnamedChannelsAtTheDefault) {
  EXPECT_EQ(6, parsed("Time=0").thresholdOf("TimeEstimator"));
}

TEST(LogSettings, TakeSectionsInAnyOrderWithBlanks) {
  auto const settings =
      parsed(" files = 2 ; Time = 3 , A b=1 ;; file = dir/my log.txt ;B=2; size=2K ");
  EXPECT_EQ(3, settings.thresholdOf("Time"));
  EXPECT_EQ(1, settings.thresholdOf("A b"));
  EXPECT_EQ(2, settings.thresholdOf("B"));
  EXPECT_EQ("dir/my log.txt", settings.file);
  EXPECT_EQ(2048U, settings.fileBytes);
  EXPECT_EQ(2U, settings.fileCount);
}

TEST(LogSettings, WriteToStandardErrorOnlyWhereAskedOnceThereIsAFile) {
  EXPECT_TRUE(parsed("*=3").isToStandardError);
  EXPECT_TRUE(parsed("*=3;stderr").isToStandardError);
  EXPECT_FALSE(parsed("file=a").isToStandardError);
  EXPECT_TRUE(parsed("file=a;stderr").isToStandardError);
  EXPECT_TRUE(parsed("stderr;file=a").isToStandardError);
}

TEST(LogSettings, HaveRoomForCommasAndEqualSigns) {
  EXPECT_EQ("a,b=c.log", parsed("file=a,b=c.log").file);
  EXPECT_EQ(3, parsed("a=b=3").thresholdOf("a=b"));
  // After a comma an option's name is a channel's.
  EXPECT_EQ(2, parsed("Time=3,file=2").thresholdOf("file"));
}

TEST(LogSettings, ReadSizes) {
  struct {
    char const* text;
    std::size_t bytes;
  } const cases[] = {{"1024", 1024},           {"1K", 1024},      {"1M", 1048576},
                     {"2G", 2147483648U},      {"0001025", 1025}, {"2147483648", 2147483648U},
                     {"2097152K", 2147483648U}};
  for (auto const& c : cases) {
    EXPECT_EQ(c.bytes, parsed(std::string("file=a;size=") + c.text).fileBytes) << c.text;
  }
}

TEST(LogSettings, ReadNumbersOfFiles) {
  EXPECT_EQ(1U, parsed("file=a;files=1").fileCount);
  EXPECT_EQ(100U, parsed("file=a;files=100").fileCount);
}

TEST(LogSettings, NameTheFault) {
  struct {
    char const* text;
    char const* fault;
  } const cases[] = {
      {"Time", R"("Time" is neither CHANNEL=LEVEL nor an option)"},
      {"Time=3,", R"("" is neither CHANNEL=LEVEL nor an option)"},
      {"stdout", R"("stdout" is neither CHANNEL=LEVEL nor an option)"},
      {"=3", R"("=3" names no channel)"},
      {"Time=", R"(level "" of channel "Time" is not 0 to 6 or off)"},
      {"Time=7", R"(level "7" of channel "Time" is not 0 to 6 or off)"},
      {"Time=-1", R"(level "-1" of channel "Time" is not 0 to 6 or off)"},
      {"Time=+1", R"(level "+1" of channel "Time" is not 0 to 6 or off)"},
      {"Time=3x", R"(level "3x" of channel "Time" is not 0 to 6 or off)"},
      {"Time=0x3", R"(level "0x3" of channel "Time" is not 0 to 6 or off)"},
      {"Time=Off", R"(level "Off" of channel "Time" is not 0 to 6 or off)"},
      {"Time=99999999999999999999",
       R"(level "99999999999999999999" of channel "Time" is not 0 to 6 or off)"},
      {"*=6,Time=3,Time=3", R"(channel "Time" stands twice)"},
      {"*=6;*=5", R"(channel "*" stands twice)"},
      {"File=a", R"(level "a" of channel "File" is not 0 to 6 or off)"},
      {"file", "file has no name"},
      {"file=", "file has no name"},
      {"file=a;file=b", "file stands twice"},
      {"stderr=1", "stderr takes no value"},
      {"stderr=", "stderr takes no value"},
      {"stderr;stderr", "stderr stands twice"},
      {"file=a;size=", R"(size "" is not 1K to 2G)"},
      {"file=a;size=1023", R"(size "1023" is not 1K to 2G)"},
      {"file=a;size=2147483649", R"(size "2147483649" is not 1K to 2G)"},
      {"file=a;size=3G", R"(size "3G" is not 1K to 2G)"},
      {"file=a;size=K", R"(size "K" is not 1K to 2G)"},
      {"file=a;size=1k", R"(size "1k" is not 1K to 2G)"},
      {"file=a;size=18014398509481985K", R"(size "18014398509481985K" is not 1K to 2G)"},
      {"file=a;files=0", R"(files "0" is not 1 to 100)"},
      {"file=a;files=101", R"(files "101" is not 1 to 100)"},
      {"file=a;files", R"(files "" is not 1 to 100)"},
      {"size=1M", "size and files need a file"},
      {"*=3;files=2", "size and files need a file"},
  };
  for (auto const& c : cases) {
    LogSettingsC settings;
    settings.defaultThreshold = 2;
    std::string fault;
    EXPECT_FALSE(parseLogSettings(c.text, settings, fault)) << c.text;
    EXPECT_EQ(c.fault, fault) << c.text;
    EXPECT_EQ(2, settings.defaultThreshold) << c.text;
    EXPECT_EQ("", settings.file) << c.text;
    EXPECT_TRUE(settings.thresholds.empty()) << c.text;
  }
}

}  // namespace
}  // namespace KTX::DBG::TEST
