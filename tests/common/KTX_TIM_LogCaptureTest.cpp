#include "common/KTX_TIM_LogCapture.h"

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

namespace KTX::TIM::TEST {
namespace {

using DBG::DbgLogFileC;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(LogCapture, RecordsChannelLevelFormatAndTextInOrder) {
  DbgLogFileC older("Older");
  LogCaptureC const log;
  DbgLogFileC younger("Younger");
  older.printLine(3, "%s %02u 100%%\n", "abc", 7U);
  younger.writeText("50% done");
  older.printLine(-1, "%ld", -5L);

  auto const entries = log.entries();
  ASSERT_EQ(3U, entries.size());
  EXPECT_EQ("Older", entries[0].channel);
  EXPECT_EQ(3, entries[0].level);
  EXPECT_EQ("%s %02u 100%%\n", entries[0].format);
  EXPECT_EQ("abc 07 100%\n", entries[0].text);
  EXPECT_FALSE(entries[0].isWriteText);
  EXPECT_EQ("Younger", entries[1].channel);
  EXPECT_EQ("50% done", entries[1].text);
  EXPECT_TRUE(entries[1].isWriteText);
  EXPECT_EQ(-1, entries[2].level);
  EXPECT_THAT(log.lines("Older"), ElementsAre("abc 07 100%\n", "-5"));
  EXPECT_EQ(3U, log.count());
  EXPECT_EQ(2U, log.count("Older"));
  EXPECT_EQ(1U, log.count("Older", 3));
  EXPECT_EQ(0U, log.count("Younger", 0));
}

TEST(LogCapture, FiltersByTheThresholdOfTheChannel) {
  LogCaptureC log;
  DbgLogFileC strict("Strict");
  DbgLogFileC other("Other");
  log.setThreshold("Strict", 4);
  struct {
    std::int32_t level;
    bool isEnabled;
  } const cases[] = {{3, false}, {4, true}, {5, true}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.level);
    log.clear();
    EXPECT_EQ(c.isEnabled, strict.isLevelEnabled(c.level));
    EXPECT_TRUE(other.isLevelEnabled(c.level));
    strict.printLine(c.level, "line\n");
    EXPECT_EQ(c.isEnabled ? 1U : 0U, log.count("Strict"));
    EXPECT_EQ(c.isEnabled ? 0U : 1U, log.unaskedCount());
  }
}

TEST(LogCapture, SwitchesAllLevelsOff) {
  LogCaptureC log;
  log.setThreshold(LogCaptureC::OFF);
  log.setThreshold("Kept", 6);
  DbgLogFileC quiet("Quiet");
  DbgLogFileC kept("Kept");
  EXPECT_FALSE(quiet.isLevelEnabled(LogCaptureC::OFF));
  quiet.printLine(6, "line\n");
  kept.printLine(6, "kept\n");
  EXPECT_EQ(1U, log.count());
}

TEST(LogCapture, DropsLinesWhileNoneIsAlive) {
  DbgLogFileC channel("Channel");
  EXPECT_FALSE(channel.isLevelEnabled(6));
  channel.printLine(6, "lost\n");
  LogCaptureC const log;
  EXPECT_TRUE(channel.isLevelEnabled(0));
  EXPECT_THAT(log.entries(), IsEmpty());
}

TEST(LogCapture, GivesTheLinesBackToTheOlderCapture) {
  DbgLogFileC channel("Channel");
  LogCaptureC const older;
  {
    LogCaptureC const younger;
    channel.printLine(3, "younger\n");
    EXPECT_THAT(younger.lines("Channel"), ElementsAre("younger\n"));
  }
  channel.printLine(3, "older\n");
  EXPECT_THAT(older.lines("Channel"), ElementsAre("older\n"));
}

TEST(LogCapture, CountsAssertionsAndGivesTheirTexts) {
  LogCaptureC log;
  DbgLogFileC("KTX_TIM_AssertLogger").printLine(6, "%s %d: Assertion!", "file", 15);
  DbgLogFileC("Time").printLine(6, "no assertion\n");
  EXPECT_EQ(1U, log.assertionCount());
  DbgLogFileC("KTX_TIM_AssertLogger").printLine(6, "%s %d: Assertion! %s", "file", 20, "some text");
  EXPECT_EQ(2U, log.assertionCount());
  EXPECT_THAT(log.assertionTexts(), ElementsAre("", "some text"));
  log.clear();
  EXPECT_EQ(0U, log.assertionCount());
}

TEST(LogCapture, CountsChannelObjects) {
  auto older = std::make_unique<DbgLogFileC>("Older");
  LogCaptureC log;
  { DbgLogFileC const brief("Brief"); }
  EXPECT_EQ(1U, log.builtCount("Brief"));
  EXPECT_EQ(1U, log.destroyedCount("Brief"));
  older.reset();
  EXPECT_EQ(0U, log.builtCount("Older"));
  EXPECT_EQ(1U, log.destroyedCount("Older"));
  log.clear();
  EXPECT_EQ(0U, log.destroyedCount("Older"));
}

TEST(LogCapture, LetsTheHookThrowIntoTheCaller) {
  LogCaptureC log;
  DbgLogFileC channel("Channel");
  log.setHook([](LogCaptureC::EntryC const& entry) {
    if (entry.level == 3) {
      throw std::runtime_error(entry.text);
    }
  });
  channel.printLine(4, "passes\n");
  EXPECT_THROW(channel.printLine(3, "throws\n"), std::runtime_error);
  log.setHook(nullptr);
  channel.printLine(3, "passes\n");
  EXPECT_EQ(3U, log.count());
}

TEST(LogCapture, LetsTheHookLog) {
  LogCaptureC log;
  DbgLogFileC outer("Outer");
  DbgLogFileC inner("Inner");
  log.setHook([&](LogCaptureC::EntryC const& entry) {
    if (entry.channel == "Outer") {
      inner.printLine(3, "inner\n");
    }
  });
  outer.printLine(3, "outer\n");
  EXPECT_EQ(1U, log.count("Inner"));
}

TEST(LogCapture, TakesLinesOfManyThreads) {
  constexpr int THREADS = 4;
  constexpr int LINES = 200;
  LogCaptureC const log;
  DbgLogFileC shared("Shared");
  std::vector<std::thread> threads;
  threads.reserve(THREADS);
  for (int t = 0; t < THREADS; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < LINES; ++i) {
        shared.printLine(3, "%d\n", i);
        DbgLogFileC("Brief").writeText("text");
      }
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(static_cast<std::size_t>(THREADS * LINES), log.count("Shared", 3));
  EXPECT_EQ(static_cast<std::size_t>(THREADS * LINES), log.count("Brief"));
}

}  // namespace
}  // namespace KTX::TIM::TEST
