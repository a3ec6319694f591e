#include "KTX/TIM/KTX_TIM_LogAssert.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

constexpr char const* CHANNEL = "KTX_TIM_AssertLogger";
constexpr char const* PATH = "Source/Ktx_Tim/support/KTX_TIM_LogAssert.cpp";

class LogAssert : public ::testing::Test {
 protected:
  LogCaptureC::EntryC onlyEntry() const {
    auto const entries = log.entries();
    EXPECT_EQ(1U, entries.size());
    return entries.empty() ? LogCaptureC::EntryC{} : entries[0];
  }

  // What the line says before the fixed text; the path has no part of the build machine's.
  static std::string prefix(std::string const& line) { return std::string(PATH) + " " + line; }

  LogCaptureC log;
};

TEST_F(LogAssert, WritesTheFixedLineNumberWithoutAText) {
  logAssertion();
  auto const entry = onlyEntry();
  EXPECT_EQ(CHANNEL, entry.channel);
  EXPECT_EQ(6, entry.level);
  EXPECT_FALSE(entry.isWriteText);
  EXPECT_EQ("%s %d: Assertion!", entry.format);
  EXPECT_EQ(prefix("15: Assertion!"), entry.text);
}

TEST_F(LogAssert, WritesTheFixedLineNumberWithAText) {
  logAssertion("Timezone is invalid or out of range!");
  auto const entry = onlyEntry();
  EXPECT_EQ(CHANNEL, entry.channel);
  EXPECT_EQ(6, entry.level);
  EXPECT_EQ("%s %d: Assertion! %s", entry.format);
  EXPECT_EQ(prefix("20: Assertion! Timezone is invalid or out of range!"), entry.text);
}

TEST_F(LogAssert, TakesTheTextAsItIs) {
  struct {
    char const* text;
    char const* line;
  } const cases[] = {
      {"100%s", "20: Assertion! 100%s"}, {"%n%d%%", "20: Assertion! %n%d%%"},
      {"", "20: Assertion! "},           {"a\nb\n", "20: Assertion! a\nb\n"},
      {nullptr, "15: Assertion!"},
  };
  for (auto const& c : cases) {
    log.clear();
    logAssertion(c.text);
    EXPECT_EQ(prefix(c.line), onlyEntry().text);
  }
}

TEST_F(LogAssert, OpensTheChannelForEachLineAndClosesIt) {
  logAssertion();
  EXPECT_EQ(1U, log.builtCount(CHANNEL));
  EXPECT_EQ(1U, log.destroyedCount(CHANNEL));
  logAssertion("text");
  EXPECT_EQ(2U, log.builtCount(CHANNEL));
  EXPECT_EQ(2U, log.destroyedCount(CHANNEL));
}

TEST_F(LogAssert, LeavesTheFilterToTheChannel) {
  log.setThreshold(CHANNEL, 7);
  logAssertion();
  EXPECT_EQ(0U, log.count());
  EXPECT_EQ(1U, log.builtCount(CHANNEL));
  log.setThreshold(CHANNEL, 6);
  logAssertion();
  EXPECT_EQ(1U, log.count());
}

TEST_F(LogAssert, ClosesTheChannelWhenWritingThrows) {
  log.setHook([](LogCaptureC::EntryC const& /*entry*/) { throw std::runtime_error("log"); });
  EXPECT_THROW(logAssertion("text"), std::runtime_error);
  EXPECT_EQ(1U, log.destroyedCount(CHANNEL));
}

TEST_F(LogAssert, MayBeCalledFromManyThreads) {
  constexpr std::size_t THREADS = 8;
  constexpr std::size_t LINES = 100;
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([] {
      for (std::size_t line = 0; line < LINES; ++line) {
        logAssertion();
        logAssertion("text");
      }
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  auto const lines = log.lines(CHANNEL);
  EXPECT_EQ(2 * THREADS * LINES, lines.size());
  EXPECT_EQ(static_cast<std::ptrdiff_t>(THREADS * LINES),
            std::count(lines.begin(), lines.end(), prefix("15: Assertion!")));
}

}  // namespace
}  // namespace KTX::TIM::TEST
