#include "support/KTX_TIM_LockCode.h"

#include <algorithm>
#include <utility>

namespace KTX::TIM::TEST {

namespace {

void sleepNever() {}

void reportNothing() {}

}  // namespace

ReaderWriterAlgorithmC ReaderWriterAlgorithmC::real() {
  return {
      [](ModelWordsT const& words, std::uint32_t self) { TIM::lockRead(words, self, sleepNever); },
      [](ModelWordsT const& words) { TIM::unlockRead(words, reportNothing); },
      [](ModelWordsT const& words, std::uint32_t self) { TIM::lockWrite(words, self, sleepNever); },
      [](ModelWordsT const& words) { TIM::unlockWrite(words); },
      [](ModelWordsT const& words, std::uint32_t self) { return TIM::tryLockRead(words, self); },
      [](ModelWordsT const& words, std::uint32_t self) { return TIM::tryLockWrite(words, self); },
  };
}

LockCodeC::LockCodeC(ReaderWriterAlgorithmC algorithmToRun)
    : algorithm(std::move(algorithmToRun)) {}

WordAccessC const& LockCodeC::accessAt(std::uint32_t self, LockStepE step, std::int8_t site) {
  return sitesOf(self, step)[static_cast<std::size_t>(site)].access;
}

LockCodeC::MoveC const& LockCodeC::moveAt(std::uint32_t self,
                                          LockStepE step,
                                          std::int8_t site,
                                          std::int64_t result) {
  auto const key = (keyOf(self, step) << 16U) + (static_cast<std::uint32_t>(site) << 8U) +
                   static_cast<std::uint8_t>(result);
  auto const known = moves.find(key);
  if (known != moves.end()) {
    return known->second;
  }
  auto results = sitesOf(self, step)[static_cast<std::size_t>(site)].history;
  results.push_back(result);
  return moves.emplace(key, follow(self, step, results)).first->second;
}

std::uint32_t LockCodeC::keyOf(std::uint32_t self, LockStepE step) {
  return (self << 8U) + static_cast<std::uint32_t>(step);
}

std::vector<LockCodeC::SiteC>& LockCodeC::sitesOf(std::uint32_t self, LockStepE step) {
  auto const key = keyOf(self, step);
  auto const known = sites.find(key);
  if (known != sites.end()) {
    return known->second;
  }
  sites[key];
  follow(self, step, {});  // adds site 0
  return sites[key];
}

// Runs the step with these results and notes the site it comes to.
LockCodeC::MoveC LockCodeC::follow(std::uint32_t self,
                                   LockStepE step,
                                   std::vector<std::int64_t> const& results) {
  WordRecorderC recorder(results);
  MoveC move;
  try {
    move.isTaken = run(self, step, recorder);
    move.isDone = true;
    return move;
  } catch (WordRecorderC::ReachedC const&) {
  }
  auto& known = sites[keyOf(self, step)];
  auto const same = std::find_if(known.begin(), known.end(), [&](SiteC const& site) {
    return site.access.isSamePlace(recorder.reached());
  });
  move.nextSite = static_cast<std::int8_t>(same - known.begin());
  if (same == known.end()) {
    known.push_back({recorder.reached(), results});
  }
  return move;
}

bool LockCodeC::run(std::uint32_t self, LockStepE step, WordRecorderC& recorder) const {
  ModelWordC writerActive(recorder, 0);
  ModelWordC readerCount(recorder, 1);
  ModelWordC writerThread(recorder, 2);
  ModelWordC writeRecursion(recorder, 3);
  ModelWordsT const words{writerActive, readerCount, writerThread, writeRecursion};
  switch (step) {
    case LockStepE::LOCK_READ:
      algorithm.lockRead(words, self);
      return true;
    case LockStepE::UNLOCK_READ:
      algorithm.unlockRead(words);
      return true;
    case LockStepE::LOCK_WRITE:
      algorithm.lockWrite(words, self);
      return true;
    case LockStepE::UNLOCK_WRITE:
      algorithm.unlockWrite(words);
      return true;
    case LockStepE::TRY_READ:
      return algorithm.tryLockRead(words, self);
    case LockStepE::TRY_WRITE:
      return algorithm.tryLockWrite(words, self);
  }
  return false;
}

}  // namespace KTX::TIM::TEST
