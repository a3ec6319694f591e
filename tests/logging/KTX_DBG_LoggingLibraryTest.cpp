// The built logging library as a program sees it, set up by its environment.
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX_DBG_LogLines.h"
#include "KTX_DBG_ProbeRun.h"
#include "common/KTX_TIM_TempFolder.h"

namespace KTX::DBG::TEST {
namespace {

using ::testing::ElementsAre;

TEST(LoggingLibrary, ShowsOnlyLevelSixWithoutASetting) {
  auto const run =
      runProbe(nullptr, R"(line Time 5 detail line KTX_TIM_AssertLogger 6 "file 15: Assertion!")");
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("", run.output);
  EXPECT_THAT(logLines(run.errors),
              ElementsAre("Early 6 before main", "KTX_TIM_AssertLogger 6 file 15: Assertion!"));
}

TEST(LoggingLibrary, ObeysTheSetting) {
  TIM::TEST::TempFolderC const folder;
  auto const file = folder.path() / "vortime.log";
  auto const setting =
      "Time=3,TimeEstimator=1,Early=off,Off=off,*=6;file=" + file.u8string() + ";size=1M;files=2";
  auto const run = runProbe(setting.c_str(),
                            "line Time 3 a line Time 1 no line TimeEstimator 1 b "
                            "line TimeEstimator 0 no line Other 4 no line Other 6 c "
                            "text Other d line Off 6 no text Off no");
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("", run.errors);
  EXPECT_THAT(logLines(folder.read("vortime.log")),
              ElementsAre("Time 3 a", "TimeEstimator 1 b", "Other 6 c", "Other - d"));
}

TEST(LoggingLibrary, AnswersWhichLevelsAreEnabled) {
  auto const run = runProbe("Time=3,Off=off",
                            "enabled Time 2 enabled Time 3 enabled Time 4 enabled Other 5 "
                            "enabled Other 6 enabled Off 6");
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("011010", run.output);
}

TEST(LoggingLibrary, ObeysTheProgramsSettingWithoutOneOfTheEnvironment) {
  std::string const lines = "line Time 2 no line Time 3 a line Other 5 no line Other 6 b";
  for (char const* const setting : {static_cast<char const*>(nullptr), ""}) {
    auto const run = runProbeWithSetting(setting, lines);
    EXPECT_EQ(0, run.status);
    EXPECT_THAT(logLines(run.errors), ElementsAre("Time 3 a", "Other 6 b"));
  }
  auto const run = runProbeWithSetting("Other=5,*=6", lines);
  EXPECT_EQ(0, run.status);
  EXPECT_THAT(logLines(run.errors), ElementsAre("Early 6 before main", "Other 5 no", "Other 6 b"));
}

TEST(LoggingLibrary, TellsAWrongSettingOnce) {
  auto const run = runProbe("Time=high", "line Time 6 a line Time 3 no");
  EXPECT_EQ(0, run.status);
  EXPECT_THAT(logLines(run.errors),
              ElementsAre("KTX_LOG: the default is used (level 6 of every channel to standard "
                          "error): level \"high\" of channel \"Time\" is not 0 to 6 or off",
                          "Early 6 before main", "Time 6 a"));
}

TEST(LoggingLibrary, ServesBeforeMainAndAfterIt) {
  TIM::TEST::TempFolderC const folder;
  auto const setting = "file=" + (folder.path() / "a.log").u8string();
  auto const run = runProbe(setting.c_str(), "end NewAtTheEnd late line Time 6 main");
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("", run.errors);
  EXPECT_THAT(logLines(folder.read("a.log")),
              ElementsAre("Early 6 before main", "Time 6 main", "NewAtTheEnd 6 late",
                          "Early 6 after main"));
}

TEST(LoggingLibrary, TakesAFileNameBeyondAsciiFromTheEnvironment) {
  TIM::TEST::TempFolderC const folder;
  auto const name = std::filesystem::u8path(u8"Zeit-\u00dc-\u6642.log");
  auto const setting = "file=" + (folder.path() / name).u8string();
  auto const run = runProbe(setting.c_str(), "line Time 6 a");
  EXPECT_EQ(0, run.status);
  EXPECT_THAT(logLines(folder.read(name)), ElementsAre("Early 6 before main", "Time 6 a"));
}

}  // namespace
}  // namespace KTX::DBG::TEST
