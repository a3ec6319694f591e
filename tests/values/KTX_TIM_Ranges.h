#ifndef KTX_TIM_RANGES_H
#define KTX_TIM_RANGES_H

#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace KTX::TIM::TEST {

/// Looks at every number in [first, last) and returns what it found wrong first, or nothing.
using RangeCheckT = std::function<std::string(std::uint32_t first, std::uint32_t last)>;

/// Runs a check over [0, count) on two threads; the result is the first complaint, or empty.
inline std::string checkRange(std::uint32_t count, RangeCheckT const& check) {
  std::string complaints[2];
  std::uint32_t const middle = count / 2;
  std::thread upper([&] { complaints[1] = check(middle, count); });
  complaints[0] = check(0, middle);
  upper.join();
  return complaints[0].empty() ? complaints[1] : complaints[0];
}

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_RANGES_H
