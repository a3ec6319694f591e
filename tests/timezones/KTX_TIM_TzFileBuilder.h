#ifndef KTX_TIM_TZFILEBUILDER_H
#define KTX_TIM_TZFILEBUILDER_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace KTX::TIM::TEST {

/// Composes the bytes of a file of the tz database; every part can be made wrong.
struct TzFileBuilderC {
  struct OffsetC {
    std::int32_t secondsEast;
    std::uint8_t daylight;
    std::uint8_t nameStart;
  };

  std::string magic = "TZif";
  char version = '2';
  std::vector<std::pair<std::int64_t, std::uint8_t>> changes;
  std::vector<OffsetC> offsets = {{0, 0, 0}};
  std::string names = std::string("AAA\0BBB\0", 8);
  std::uint32_t standardFlagCount = 0;
  std::uint32_t utcFlagCount = 0;
  std::uint32_t leapCount = 0;
  std::string footer = "\nAAA0\n";

  std::string bytes() const;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_TZFILEBUILDER_H
