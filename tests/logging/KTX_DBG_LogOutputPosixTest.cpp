// What only a POSIX system can be brought to do to a log file.
#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX_DBG_LogLines.h"
#include "KTX_DBG_LogOutput.h"
#include "common/KTX_TIM_TempFolder.h"

namespace KTX::DBG::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

class LogOutputPosix : public ::testing::Test {
 protected:
  LogOutputPosix() {
    settings.isToStandardError = false;
    settings.fileBytes = 1024;
  }

  TIM::TEST::TempFolderC folder;
  LogSettingsC settings;
};

TEST_F(LogOutputPosix, LosesLinesOnAFullDiskAndSaysSoOnce) {
  settings.file = "/dev/full";
  LogOutputC output(settings);
  std::string fault;
  ASSERT_TRUE(output.openFile(fault)) << fault;
  CaptureStderr();
  for (int i = 0; i < 100; ++i) {
    output.writeLine("C", "6", "lost");
  }
  std::string const told = GetCapturedStderr();
  EXPECT_THAT(told, HasSubstr("/dev/full: No space left on device"));
  EXPECT_EQ(1, std::count(told.begin(), told.end(), '\n'));
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(LogOutputPosix, NeverPutsADeviceAside) {
  auto const device = folder.path() / "device";
  std::filesystem::create_symlink("/dev/null", device);
  settings.file = device.string();
  LogOutputC output(settings);
  for (int i = 0; i < 100; ++i) {
    output.writeLine("C", "6", "a line that is longer than ten bytes");
  }
  EXPECT_TRUE(std::filesystem::is_symlink(device));
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "device.1"));
}

TEST_F(LogOutputPosix, WritesToAPipeWithoutABreak) {
  auto const pipe = folder.path() / "pipe";
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  std::string received;
  // Reads until the pipe is closed for the first time.
  std::thread reader([&] { received = folder.read("pipe"); });
  {
    settings.file = pipe.string();
    LogOutputC output(settings);
    std::string fault;
    EXPECT_TRUE(output.openFile(fault)) << fault;
    for (int i = 0; i < 50; ++i) {
      output.writeLine("C", "6", "a line that is longer than twenty bytes");
    }
  }
  reader.join();
  EXPECT_EQ(50U, logLines(received).size());
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(LogOutputPosix, SurvivesAFailedChangeOfFiles) {
  auto const logs = folder.path() / "logs";
  settings.file = (logs / "a.log").string();
  LogOutputC output(settings);
  output.writeLine("C", "6", std::string(900, 'x'));
  std::filesystem::rename(logs, folder.path() / "moved");
  folder.write("logs", "now a file");

  CaptureStderr();
  output.writeLine("C", "6", std::string(900, 'y'));
  output.writeLine("C", "6", "short");
  std::string const told = GetCapturedStderr();
  EXPECT_THAT(told, HasSubstr("KTX_LOG: log lines are lost (told once): "));
  EXPECT_EQ(1, std::count(told.begin(), told.end(), '\n'));

  std::filesystem::remove(logs);
  output.writeLine("C", "6", "again");
  EXPECT_THAT(logLines(folder.read("logs/a.log")), ElementsAre("C 6 again"));
}

}  // namespace
}  // namespace KTX::DBG::TEST
