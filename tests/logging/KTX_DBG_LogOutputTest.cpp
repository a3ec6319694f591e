#include "KTX_DBG_LogOutput.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/syscall.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <sstream>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX_DBG_LogLines.h"
#include "common/KTX_TIM_TempFolder.h"

namespace KTX::DBG::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

std::string utcNow() {
  std::time_t const now = std::time(nullptr);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S",
                std::gmtime(&now));  // NOLINT(concurrency-mt-unsafe): one thread
  return text;
}

std::uint64_t systemThreadId() {
#ifdef _WIN32
  return GetCurrentThreadId();
#else
  return static_cast<std::uint64_t>(syscall(SYS_gettid));
#endif
}

class LogOutput : public ::testing::Test {
 protected:
  LogSettingsC fileSettings(char const* name) const {
    LogSettingsC settings;
    settings.file = (folder.path() / std::filesystem::u8path(name)).u8string();
    settings.isToStandardError = false;
    return settings;
  }

  TIM::TEST::TempFolderC folder;
};

TEST_F(LogOutput, PutsTimeThreadChannelAndLevelInFront) {
  LogOutputC output(fileSettings("a.log"));
  std::string const before = utcNow();
  output.writeLine("Time", "3", "some text");
  std::string const after = utcNow();

  std::string const line = folder.read("a.log");
  EXPECT_THAT(logLines(line), ElementsAre("Time 3 some text"));
  std::string const stamp = line.substr(0, before.size());
  EXPECT_LE(before, stamp);
  EXPECT_LE(stamp, after);
}

TEST_F(LogOutput, NamesTheThreadByTheSystemsIdInHexadecimal) {
  LogOutputC output(fileSettings("a.log"));
  output.writeLine("C", "3", "x");
  std::ostringstream expected;
  expected << "Z " << std::hex << systemThreadId() << " C 3 x\n";
  EXPECT_THAT(folder.read("a.log"), ::testing::EndsWith(expected.str()));
}

TEST_F(LogOutput, TellsThreadsApart) {
  LogOutputC output(fileSettings("a.log"));
  auto const write = [&] { output.writeLine("C", "3", "x"); };
  write();
  write();
  std::thread(write).join();
  std::string const content = folder.read("a.log");
  std::vector<std::string> ids;
  for (std::size_t i = 0; (i = content.find("Z ", i)) != std::string::npos; ++i) {
    ids.push_back(content.substr(i + 2, content.find(' ', i + 2) - i - 2));
  }
  ASSERT_EQ(3U, ids.size());
  EXPECT_EQ(ids[0], ids[1]);
  EXPECT_NE(ids[1], ids[2]);
}

TEST_F(LogOutput, EndsEachTextWithOneLineEnd) {
  LogOutputC output(fileSettings("a.log"));
  for (auto const* const text : {"without", "with\n", "", "\n", "inner\nend\n", "two\n\n"}) {
    output.writeLine("C", "0", text);
  }
  EXPECT_THAT(logLines(folder.read("a.log")), ElementsAre("C 0 without", "C 0 with", "C 0 ", "C 0 ",
                                                          "C 0 inner", "end", "C 0 two", ""));
  EXPECT_THAT(folder.read("a.log"), ::testing::Not(HasSubstr("\r")));
}

TEST_F(LogOutput, KeepsLongLinesWhole) {
  LogOutputC output(fileSettings("a.log"));
  std::string const text(100000, 'x');
  output.writeLine("C", "0", text);
  EXPECT_THAT(logLines(folder.read("a.log")), ElementsAre("C 0 " + text));
}

TEST_F(LogOutput, AppendsToAFileThatIsThere) {
  folder.write("a.log", "old\n");
  LogOutputC output(fileSettings("a.log"));
  output.writeLine("C", "0", "new");
  EXPECT_THAT(logLines(folder.read("a.log")), ElementsAre("old", "C 0 new"));
}

TEST_F(LogOutput, MakesTheFolderOfTheFile) {
  LogOutputC output(fileSettings("new/sub/a.log"));
  std::string fault;
  EXPECT_TRUE(output.openFile(fault)) << fault;
  output.writeLine("C", "0", "x");
  EXPECT_THAT(logLines(folder.read("new/sub/a.log")), ElementsAre("C 0 x"));
}

TEST_F(LogOutput, TakesFileNamesBeyondAscii) {
  LogSettingsC settings = fileSettings(u8"Zeit-\u00dc-\u6642.log");
  settings.fileBytes = 1024;
  LogOutputC output(settings);
  output.writeLine("C", "0", "x");
  output.writeLine("C", "0", std::string(1000, 'y'));
  EXPECT_THAT(logLines(folder.read(std::filesystem::u8path(u8"Zeit-\u00dc-\u6642.1.log"))),
              ElementsAre("C 0 x"));
}

TEST_F(LogOutput, PutsFullFilesAsideAndDropsTheOldest) {
  LogSettingsC settings = fileSettings("a.log");
  settings.fileBytes = 1024;
  settings.fileCount = 3;
  LogOutputC output(settings);
  constexpr int LAST = 200;
  for (int i = 1; i <= LAST; ++i) {
    output.writeLine("C", "0", std::to_string(i));
  }

  EXPECT_FALSE(std::filesystem::exists(folder.path() / "a.3.log"));
  std::vector<std::string> lines;
  for (auto const* const name : {"a.2.log", "a.1.log", "a.log"}) {
    std::string const content = folder.read(name);
    EXPECT_LE(content.size(), 1024U) << name;
    auto const more = logLines(content);
    lines.insert(lines.end(), more.begin(), more.end());
  }
  // What is kept is the end of what was written, without a gap.
  ASSERT_GT(lines.size(), 40U);
  ASSERT_LT(lines.size(), static_cast<std::size_t>(LAST));
  int number = LAST - static_cast<int>(lines.size());
  for (auto const& line : lines) {
    EXPECT_EQ("C 0 " + std::to_string(++number), line);
  }
}

TEST_F(LogOutput, StartsTheOnlyFileAnewWhenItIsFull) {
  LogSettingsC settings = fileSettings("a.log");
  settings.fileBytes = 1024;
  settings.fileCount = 1;
  LogOutputC output(settings);
  for (int i = 1; i <= 50; ++i) {
    output.writeLine("C", "0", std::to_string(i));
  }
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "a.1.log"));
  auto const lines = logLines(folder.read("a.log"));
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ("C 0 50", lines.back());
  EXPECT_LT(lines.size(), 30U);
}

TEST_F(LogOutput, WritesToStandardErrorAndToTheFile) {
  LogSettingsC settings = fileSettings("a.log");
  settings.isToStandardError = true;
  CaptureStderr();
  LogOutputC output(settings);
  output.writeLine("C", "6", "both");
  EXPECT_THAT(logLines(GetCapturedStderr()), ElementsAre("C 6 both"));
  EXPECT_THAT(logLines(folder.read("a.log")), ElementsAre("C 6 both"));
}

TEST_F(LogOutput, SaysWhyTheFileCannotBeOpened) {
  std::filesystem::create_directory(folder.path() / "taken");
  LogOutputC output(fileSettings("taken"));
  std::string fault;
  EXPECT_FALSE(output.openFile(fault));
  EXPECT_THAT(fault, HasSubstr("cannot open \""));
  EXPECT_THAT(fault, HasSubstr("taken\": "));
}

TEST_F(LogOutput, TellsTheFirstLossOnlyAndGoesOnOnceTheFileCanBeOpened) {
  auto const taken = folder.path() / "taken";
  std::filesystem::create_directory(taken);
  LogOutputC output(fileSettings("taken"));
  CaptureStderr();
  output.writeLine("C", "6", "lost");
  output.writeLine("C", "6", "lost");
  std::string const told = GetCapturedStderr();
  EXPECT_THAT(told, ::testing::StartsWith("KTX_LOG: log lines are lost (told once): "));
  EXPECT_EQ(1, std::count(told.begin(), told.end(), '\n'));

  std::filesystem::remove(taken);
  output.writeLine("C", "6", "written");
  EXPECT_THAT(logLines(folder.read("taken")), ElementsAre("C 6 written"));
}

TEST_F(LogOutput, KeepsLinesOfManyThreadsWhole) {
  constexpr int THREADS = 4;
  constexpr int LINES = 250;
  LogOutputC output(fileSettings("a.log"));
  std::string const tail(300, 'x');
  std::vector<std::thread> threads;
  threads.reserve(THREADS);
  for (int t = 0; t < THREADS; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < LINES; ++i) {
        output.writeLine("C", std::to_string(t), std::to_string(i) + tail);
      }
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  int next[THREADS] = {};
  for (auto const& line : logLines(folder.read("a.log"))) {
    int const t = line.at(2) - '0';
    ASSERT_TRUE(t >= 0 && t < THREADS) << line;
    EXPECT_EQ("C " + std::to_string(t) + ' ' + std::to_string(next[t]++) + tail, line);
  }
  EXPECT_THAT(next, ::testing::Each(LINES));
}

}  // namespace
}  // namespace KTX::DBG::TEST
