#include "support/KTX_TIM_ReaderWriterSteps.h"

#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;

using JournalT = std::vector<std::string>;

// A word that notes each access. Loads, and the comparing exchange, see the scripted values one
// after another, then the value stored last.
class ScriptedWordC {
 public:
  ScriptedWordC(JournalT& target, std::string wordName)
      : journal(target), name(std::move(wordName)) {}

  std::int64_t load() {
    journal.push_back(name + "?");
    return next();
  }
  // NOLINTNEXTLINE(readability-identifier-naming) as in std::atomic
  std::int64_t fetch_add(std::int64_t operand) { return add("+", operand); }
  // NOLINTNEXTLINE(readability-identifier-naming) as in std::atomic
  std::int64_t fetch_sub(std::int64_t operand) { return add("-", -operand); }
  std::int64_t exchange(std::int64_t newValue) {
    journal.push_back(name + ":=" + std::to_string(newValue));
    return std::exchange(value, newValue);
  }
  // NOLINTNEXTLINE(readability-identifier-naming) as in std::atomic
  bool compare_exchange_strong(std::uint8_t& expected, std::int64_t newValue) {
    journal.push_back(name + " 0->1");
    std::int64_t const old = next();
    if (old != expected) {
      expected = static_cast<std::uint8_t>(old);
      return false;
    }
    value = newValue;
    return true;
  }

  std::deque<std::int64_t> script;
  std::int64_t value = 0;

 private:
  std::int64_t next() {
    if (script.empty()) {
      return value;
    }
    std::int64_t const scripted = script.front();
    script.pop_front();
    return scripted;
  }
  std::int64_t add(char const* sign, std::int64_t operand) {
    journal.push_back(name + sign + "1");
    return std::exchange(value, value + operand);
  }

  JournalT& journal;
  std::string const name;
};

class ReaderWriterSteps : public ::testing::Test {
 protected:
  static constexpr std::uint32_t SELF = 7;
  static constexpr std::uint32_t OTHER = 9;

  std::size_t sleepCount() const {
    std::size_t count = 0;
    for (auto const& entry : journal) {
      count += entry == "sleep" ? 1U : 0U;
    }
    return count;
  }

  JournalT journal;
  ScriptedWordC active{journal, "active"};
  ScriptedWordC readers{journal, "readers"};
  ScriptedWordC thread{journal, "thread"};
  ScriptedWordC recursion{journal, "recursion"};
  ReaderWriterWordsC<ScriptedWordC, ScriptedWordC, ScriptedWordC> words{active, readers, thread,
                                                                        recursion};
  std::function<void()> sleep = [this] { journal.emplace_back("sleep"); };
  std::function<void()> report = [this] { journal.emplace_back("report"); };
};

TEST_F(ReaderWriterSteps, AReaderAnnouncesItselfBeforeItLooks) {
  lockRead(words, SELF, sleep);
  EXPECT_THAT(journal, ElementsAre("readers+1", "active?"));
}

TEST_F(ReaderWriterSteps, TheWriterMayRead) {
  active.value = 1;
  thread.value = SELF;
  lockRead(words, SELF, sleep);
  EXPECT_THAT(journal, ElementsAre("readers+1", "active?", "thread?"));
  EXPECT_EQ(1, readers.value);
}

TEST_F(ReaderWriterSteps, AReaderTriesAgainAtOnceWhenTheWriterHasJustGone) {
  active.script = {1, 0, 0};
  thread.value = OTHER;
  lockRead(words, SELF, sleep);
  EXPECT_THAT(journal, ElementsAre("readers+1", "active?", "thread?", "readers-1", "active?",
                                   "readers+1", "active?"));
}

TEST_F(ReaderWriterSteps, AReaderSleepsOnEveryFifthPass) {
  struct {
    std::size_t passes;
    std::size_t sleeps;
  } const cases[] = {{0, 0}, {1, 0}, {4, 0}, {5, 1}, {6, 1}, {9, 1}, {10, 2}, {11, 2}, {500, 100}};
  thread.value = OTHER;
  for (auto const& c : cases) {
    SCOPED_TRACE(c.passes);
    journal.clear();
    active.script.assign(1 + c.passes, 1);  // the first look of all is no pass
    lockRead(words, SELF, sleep);
    EXPECT_EQ(c.sleeps, sleepCount());
  }
}

TEST_F(ReaderWriterSteps, AReaderSleepsAfterTheFifthLookAndLooksAgain) {
  thread.value = OTHER;
  active.script = {1, 1, 1, 1, 1, 1};
  lockRead(words, SELF, sleep);
  journal.erase(journal.begin(), journal.begin() + 4);
  EXPECT_THAT(journal, ElementsAre("active?", "active?", "active?", "active?", "active?", "sleep",
                                   "active?", "readers+1", "active?"));
}

TEST_F(ReaderWriterSteps, AReaderCountsAnewAtEachWait) {
  thread.value = OTHER;
  // Two waits of four passes each, a free look after each, and a new writer after the first.
  active.script = {1, 1, 1, 1, 1, 0, 1, 1, 1, 1, 1, 0};
  lockRead(words, SELF, sleep);
  EXPECT_EQ(0U, sleepCount());
}

TEST_F(ReaderWriterSteps, UnlockingAReadLooksFirstAndCountsDownInAnyCase) {
  readers.value = 1;
  unlockRead(words, report);
  EXPECT_THAT(journal, ElementsAre("readers?", "readers-1"));
  journal.clear();
  unlockRead(words, report);
  EXPECT_THAT(journal, ElementsAre("readers?", "report", "readers-1"));
  EXPECT_EQ(-1, readers.value);
  unlockRead(words, report);
  EXPECT_EQ(-2, readers.value);
}

TEST_F(ReaderWriterSteps, AWriterAnnouncesItselfBeforeItLooks) {
  lockWrite(words, SELF, sleep);
  EXPECT_THAT(journal,
              ElementsAre("thread?", "active 0->1", "readers?", "thread:=7", "recursion:=1"));
}

TEST_F(ReaderWriterSteps, TheWriterMayWriteAgain) {
  active.value = 1;
  thread.value = SELF;
  recursion.value = 1;
  lockWrite(words, SELF, sleep);
  EXPECT_THAT(journal, ElementsAre("thread?", "recursion+1"));
  EXPECT_EQ(2, recursion.value);
}

TEST_F(ReaderWriterSteps, AWriterTakesItsFlagBackBeforeItWaitsForReaders) {
  readers.script = {1, 0};
  lockWrite(words, SELF, sleep);
  EXPECT_THAT(journal, ElementsAre("thread?", "active 0->1", "readers?", "active:=0", "thread?",
                                   "active 0->1", "readers?", "thread:=7", "recursion:=1"));
}

TEST_F(ReaderWriterSteps, AReaderMayEnterWhileAWriterWaits) {
  readers.value = 1;
  std::vector<bool> entered;
  lockWrite(words, SELF, [&] {
    entered.push_back(tryLockRead(words, OTHER));
    readers.value = 0;
  });
  EXPECT_THAT(entered, ElementsAre(true));
}

TEST_F(ReaderWriterSteps, AWriterSleepsOnEveryFifthPass) {
  struct {
    std::size_t passes;
    std::size_t sleeps;
  } const cases[] = {{0, 0}, {1, 0}, {4, 0}, {5, 1}, {6, 1}, {9, 1}, {10, 2}, {11, 2}, {500, 100}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.passes);
    journal.clear();
    active.value = 0;
    thread.value = 0;
    active.script.assign(c.passes, 1);
    lockWrite(words, SELF, sleep);
    EXPECT_EQ(c.sleeps, sleepCount());
  }
}

TEST_F(ReaderWriterSteps, AWriterCountsOnWhateverItWaitsFor) {
  active.script = {1, 1, 0, 0, 1, 0};  // pass 3 and 4 fail for readers, pass 5 for a writer
  readers.script = {1, 2, 0};
  lockWrite(words, SELF, sleep);
  EXPECT_EQ(1U, sleepCount());
}

TEST_F(ReaderWriterSteps, TheLastUnlockClearsTheThreadAndThenTheFlag) {
  recursion.value = 2;
  unlockWrite(words);
  EXPECT_THAT(journal, ElementsAre("recursion-1"));
  journal.clear();
  unlockWrite(words);
  EXPECT_THAT(journal, ElementsAre("recursion-1", "thread:=0", "active:=0"));
}

TEST_F(ReaderWriterSteps, AnUnlockOfAWriteTooManyTouchesTheRecursionOnly) {
  unlockWrite(words);
  EXPECT_THAT(journal, ElementsAre("recursion-1"));
  EXPECT_EQ(-1, recursion.value);
}

TEST_F(ReaderWriterSteps, ATryToReadWithdraws) {
  active.value = 1;
  thread.value = OTHER;
  EXPECT_FALSE(tryLockRead(words, SELF));
  EXPECT_THAT(journal, ElementsAre("readers+1", "active?", "thread?", "readers-1"));
  EXPECT_TRUE(tryLockRead(words, OTHER));
}

TEST_F(ReaderWriterSteps, ATryToWriteWithdraws) {
  readers.value = 1;
  EXPECT_FALSE(tryLockWrite(words, SELF));
  EXPECT_THAT(journal, ElementsAre("thread?", "active 0->1", "readers?", "active:=0"));
  journal.clear();
  readers.value = 0;
  active.value = 1;
  EXPECT_FALSE(tryLockWrite(words, SELF));
  EXPECT_THAT(journal, ElementsAre("thread?", "active 0->1"));
  thread.value = SELF;
  EXPECT_TRUE(tryLockWrite(words, SELF));
}

}  // namespace
}  // namespace KTX::TIM::TEST
