#ifndef KTX_TIM_TESTSEED_H
#define KTX_TIM_TESTSEED_H

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>

namespace KTX::TIM::TEST {

/// A new seed for each run, printed, or the one in the environment variable VORTIME_TEST_SEED, so
/// that a failure can be repeated.
inline std::uint64_t testSeed() {
  char const* const wanted =
      std::getenv("VORTIME_TEST_SEED");  // NOLINT(concurrency-mt-unsafe): no test sets it
  std::uint64_t const seed =
      wanted != nullptr ? std::strtoull(wanted, nullptr, 10) : std::random_device{}();
  std::cout << "VORTIME_TEST_SEED=" << seed << std::endl;
  return seed;
}

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_TESTSEED_H
