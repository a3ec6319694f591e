#include "support/KTX_TIM_LockModel.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

using ProgramT = LockModelC::ProgramT;

constexpr LockStepE LR = LockStepE::LOCK_READ;
constexpr LockStepE UR = LockStepE::UNLOCK_READ;
constexpr LockStepE LW = LockStepE::LOCK_WRITE;
constexpr LockStepE UW = LockStepE::UNLOCK_WRITE;
constexpr LockStepE TR = LockStepE::TRY_READ;
constexpr LockStepE TW = LockStepE::TRY_WRITE;

constexpr LockStepE LOCKS[] = {LR, LW, TR, TW};

LockStepE unlockOf(LockStepE lock) {
  return lock == LR || lock == TR ? UR : UW;
}

// One lock, two after each other and two within each other, and a reader that its thread keeps
// beyond its write lock; without the write lock that waits for the thread's own read lock.
std::vector<ProgramT> smallPrograms() {
  std::vector<ProgramT> programs{{LW, LR, UW, UR}, {TW, TR, UW, UR}};
  for (LockStepE const first : LOCKS) {
    programs.push_back({first, unlockOf(first)});
    for (LockStepE const second : LOCKS) {
      programs.push_back({first, unlockOf(first), second, unlockOf(second)});
      bool const isWaitForItself = unlockOf(first) == UR && second == LW;
      if (!isWaitForItself) {
        programs.push_back({first, second, unlockOf(second), unlockOf(first)});
      }
    }
  }
  return programs;
}

class LockModel : public ::testing::Test {
 protected:
  void expectSound(std::vector<ProgramT> const& programs) {
    auto const result = model.search(programs);
    states += result.states;
    EXPECT_TRUE(result.isExclusive) << result.trace;
    EXPECT_TRUE(result.canAlwaysEnd) << result.trace;
    EXPECT_TRUE(result.endsUnlocked);
  }

  void TearDown() override { RecordProperty("states", std::to_string(states)); }

  LockModelC model;
  std::size_t states = 0;
};

TEST_F(LockModel, KeepsTwoThreadsApartAndLetsThemEnd) {
  auto const programs = smallPrograms();
  for (std::size_t first = 0; first < programs.size(); ++first) {
    for (std::size_t second = first; second < programs.size(); ++second) {
      SCOPED_TRACE(std::to_string(first) + " with " + std::to_string(second));
      expectSound({programs[first], programs[second]});
    }
  }
}

TEST_F(LockModel, KeepsThreeThreadsApartAndLetsThemEnd) {
  std::vector<ProgramT> const programs{{LR, UR},         {LW, UW},         {TR, UR},
                                       {TW, UW},         {LR, LR, UR, UR}, {LR, TW, UW, UR},
                                       {LW, LR, UR, UW}, {LW, LW, UW, UW}, {LW, LR, UW, UR},
                                       {LW, UW, LR, UR}, {LR, UR, LW, UW}, {TW, TR, UR, UW}};
  for (std::size_t first = 0; first < programs.size(); ++first) {
    for (std::size_t second = first; second < programs.size(); ++second) {
      for (std::size_t third = second; third < programs.size(); ++third) {
        expectSound({programs[first], programs[second], programs[third]});
      }
    }
  }
}

TEST_F(LockModel, KeepsFourThreadsApartAndLetsThemEnd) {
  std::vector<ProgramT> const programs{{LR, UR}, {LW, UW}, {TR, UR}, {TW, UW}, {LW, LR, UW, UR}};
  std::size_t const last = programs.size() - 1;
  for (std::size_t a = 0; a <= last; ++a) {
    for (std::size_t b = a; b <= last; ++b) {
      for (std::size_t c = b; c <= last; ++c) {
        for (std::size_t d = c; d <= last; ++d) {
          expectSound({programs[a], programs[b], programs[c], programs[d]});
        }
      }
    }
  }
}

TEST_F(LockModel, AReaderThatAsksForTheWriteLockWaitsForEver) {
  auto const result = model.search({{LR, LW, UW, UR}});
  EXPECT_FALSE(result.canEnd);
  EXPECT_TRUE(model.search({{LR, TW, UW, UR}}).canAlwaysEnd);
}

TEST_F(LockModel, TwoReadersThatBothAskForTheWriteLockWaitForEver) {
  auto const result = model.search({{LR, LW, UW, UR}, {LR, LW, UW, UR}});
  EXPECT_FALSE(result.canEnd);
  EXPECT_TRUE(result.isExclusive) << result.trace;
}

// What the search must find, or its silence says nothing.

TEST_F(LockModel, FindsAWriterThatKeepsItsFlagWhileReadersAreIn) {
  auto broken = ReaderWriterAlgorithmC::real();
  broken.lockWrite = [](ModelWordsT const& words, std::uint32_t self) {
    if (reenterWrite(words, self)) {
      return;
    }
    std::uint8_t free = 0;
    while (!words.writerActive.compare_exchange_strong(free, 1) || words.readerCount.load() != 0) {
      free = 0;
    }
    becomeWriter(words, self);
  };
  EXPECT_FALSE(LockModelC(broken).search({{LW, UW}, {LR, UR}}).canAlwaysEnd);
}

TEST_F(LockModel, FindsAWriterThatFreesTheFlagBeforeItsName) {
  auto broken = ReaderWriterAlgorithmC::real();
  broken.unlockWrite = [](ModelWordsT const& words) {
    if (words.writeRecursion.fetch_sub(1) == 1) {
      words.writerActive.exchange(0);
      words.writerThread.exchange(0);
    }
  };
  EXPECT_FALSE(LockModelC(broken).search({{LW, UW}, {LW, LW, UW, UW}}).canAlwaysEnd);
}

TEST_F(LockModel, FindsAReaderThatLooksBeforeItAnnouncesItself) {
  auto broken = ReaderWriterAlgorithmC::real();
  broken.lockRead = [](ModelWordsT const& words, std::uint32_t /*self*/) {
    while (words.writerActive.load() != 0) {
    }
    words.readerCount.fetch_add(1);
  };
  auto const result = LockModelC(broken).search({{LW, UW}, {LR, UR}});
  EXPECT_FALSE(result.isExclusive);
  EXPECT_NE("", result.trace);
}

TEST_F(LockModel, FindsAFailedTryThatLeavesItsCount) {
  auto broken = ReaderWriterAlgorithmC::real();
  broken.tryLockRead = [](ModelWordsT const& words, std::uint32_t self) {
    words.readerCount.fetch_add(1);
    return words.writerActive.load() == 0 || words.writerThread.load() == self;
  };
  EXPECT_FALSE(LockModelC(broken).search({{LW, UW}, {TR, UR}}).endsUnlocked);
}

}  // namespace
}  // namespace KTX::TIM::TEST
