#ifndef KTX_TIM_COUNTEDLOOP_H
#define KTX_TIM_COUNTEDLOOP_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace KTX::TIM::BENCH {

/// Goes round a work's loop so many times: the stand-in for benchmark::State where instructions
/// are counted, as far as works use it.
class CountedLoopC {
 public:
  /// What the loop variable holds: nothing to be used.
  struct [[maybe_unused]] RoundC {};

  class IteratorC {
   public:
    explicit IteratorC(std::int64_t rounds) : left(rounds) {}
    RoundC operator*() const { return {}; }
    IteratorC& operator++() {
      --left;
      return *this;
    }
    bool operator!=(IteratorC const& other) const { return left != other.left; }

   private:
    std::int64_t left;
  };

  explicit CountedLoopC(std::int64_t loopRounds) : rounds(loopRounds) {}

  IteratorC begin() const { return IteratorC(rounds); }
  IteratorC end() const { return IteratorC(0); }

  /// Ends the process: a count of a work that failed means nothing.
  [[noreturn]] void SkipWithError(char const* reason) {  // NOLINT(readability-identifier-naming)
    std::fprintf(stderr, "%s\n", reason);
    std::exit(EXIT_FAILURE);  // NOLINT(concurrency-mt-unsafe) one thread
  }

 private:
  std::int64_t rounds;
};

}  // namespace KTX::TIM::BENCH

#endif  // KTX_TIM_COUNTEDLOOP_H
