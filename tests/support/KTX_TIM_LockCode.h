#ifndef KTX_TIM_LOCKCODE_H
#define KTX_TIM_LOCKCODE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

#include "support/KTX_TIM_ModelWord.h"
#include "support/KTX_TIM_ReaderWriterSteps.h"

namespace KTX::TIM::TEST {

/// What a thread does with the lock.
enum class LockStepE : std::uint8_t {
  LOCK_READ,
  UNLOCK_READ,
  LOCK_WRITE,
  UNLOCK_WRITE,
  TRY_READ,
  TRY_WRITE
};

using ModelWordsT = ReaderWriterWordsC<ModelWordC, ModelWordC, ModelWordC>;

/// A reader/writer algorithm, one function a step.
struct ReaderWriterAlgorithmC {
  std::function<void(ModelWordsT const&, std::uint32_t)> lockRead;
  std::function<void(ModelWordsT const&)> unlockRead;
  std::function<void(ModelWordsT const&, std::uint32_t)> lockWrite;
  std::function<void(ModelWordsT const&)> unlockWrite;
  std::function<bool(ModelWordsT const&, std::uint32_t)> tryLockRead;
  std::function<bool(ModelWordsT const&, std::uint32_t)> tryLockWrite;

  /// The one of ReaderWriterSpinLock.
  static ReaderWriterAlgorithmC real();
};

/// The code of an algorithm as a table that grows on demand: which access a thread makes at a site,
/// and where each result of it leads. Between two accesses the code keeps nothing but the place it
/// is at; that it counts its passes shows nowhere.
class LockCodeC {
 public:
  struct MoveC {
    bool isDone = false;
    bool isTaken = true;  // false where a try got no lock
    std::int8_t nextSite = 0;
  };

  explicit LockCodeC(ReaderWriterAlgorithmC algorithmToRun);

  /// The access at a site; site 0 begins the step.
  WordAccessC const& accessAt(std::uint32_t self, LockStepE step, std::int8_t site);
  MoveC const& moveAt(std::uint32_t self, LockStepE step, std::int8_t site, std::int64_t result);

 private:
  struct SiteC {
    WordAccessC access;
    std::vector<std::int64_t> history;  // results that lead here
  };

  static std::uint32_t keyOf(std::uint32_t self, LockStepE step);
  std::vector<SiteC>& sitesOf(std::uint32_t self, LockStepE step);
  MoveC follow(std::uint32_t self, LockStepE step, std::vector<std::int64_t> const& results);
  bool run(std::uint32_t self, LockStepE step, WordRecorderC& recorder) const;

  ReaderWriterAlgorithmC algorithm;
  std::unordered_map<std::uint32_t, std::vector<SiteC>> sites;
  std::unordered_map<std::uint32_t, MoveC> moves;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_LOCKCODE_H
