#include "KTX_DBG_Log.h"

#include <cstdarg>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX_DBG_LogLines.h"
#include "common/KTX_TIM_TempFolder.h"

namespace KTX::DBG::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

std::string const DEFAULT_TOLD =
    "KTX_LOG: the default is used (level 6 of every channel to standard error): ";

TEST(Log, HandsOutOneChannelForEachName) {
  LogC log("Time=3");
  EXPECT_EQ(&log.channel("Time"), &log.channel("Time"));
  EXPECT_NE(&log.channel("Time"), &log.channel("time"));
  EXPECT_TRUE(log.channel("Time").isEnabled(3));
  EXPECT_FALSE(log.channel("time").isEnabled(5));
  EXPECT_TRUE(log.channel("").isEnabled(6));
}

TEST(Log, WritesToStandardErrorWithoutASetting) {
  CaptureStderr();
  LogC log("");
  log.channel("Time").writeText("text");
  EXPECT_THAT(logLines(GetCapturedStderr()), ElementsAre("Time - text"));
}

TEST(Log, OpensItsFileAtOnce) {
  TIM::TEST::TempFolderC const folder;
  CaptureStderr();
  LogC const log("file=" + (folder.path() / "a.log").u8string());
  EXPECT_EQ("", GetCapturedStderr());
  EXPECT_EQ("", folder.read("a.log"));
}

TEST(Log, TellsAWrongSettingInOneLineAndTakesTheDefaults) {
  TIM::TEST::TempFolderC const folder;
  auto const file = folder.path() / "a.log";
  CaptureStderr();
  LogC log("*=0;file=" + file.u8string() + ";files=x");
  EXPECT_EQ(DEFAULT_TOLD + "files \"x\" is not 1 to 100\n", GetCapturedStderr());
  EXPECT_FALSE(log.channel("Time").isEnabled(5));
  EXPECT_TRUE(log.channel("Time").isEnabled(6));
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(Log, TellsAFileThatCannotBeOpenedAndTakesTheDefaults) {
  TIM::TEST::TempFolderC const folder;
  CaptureStderr();
  LogC log("*=0;file=" + folder.path().u8string());
  log.channel("Time").writeText("text");
  std::string const told = GetCapturedStderr();
  EXPECT_THAT(told, ::testing::StartsWith(DEFAULT_TOLD + "cannot open \""));
  auto const lines = logLines(told);
  ASSERT_EQ(2U, lines.size());
  EXPECT_EQ("Time - text", lines[1]);
  EXPECT_FALSE(log.channel("Time").isEnabled(5));
}

TEST(Log, KeepsItsMessageOneLine) {
  CaptureStderr();
  LogC const log("a\r\nb\x7f");
  EXPECT_EQ(DEFAULT_TOLD + "\"a??b?\" is neither CHANNEL=LEVEL nor an option\n",
            GetCapturedStderr());
}

TEST(Log, CutsAMessageThatIsVeryLong) {
  CaptureStderr();
  LogC const log(std::string(5000, 'x'));
  std::string const told = GetCapturedStderr();
  EXPECT_THAT(told, ::testing::StartsWith(DEFAULT_TOLD + "\"xxx"));
  EXPECT_THAT(told, ::testing::EndsWith("x\n"));
  EXPECT_EQ(1024U, told.size());
}

}  // namespace
}  // namespace KTX::DBG::TEST
