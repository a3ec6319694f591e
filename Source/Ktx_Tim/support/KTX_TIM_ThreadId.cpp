#include "support/KTX_TIM_ThreadId.h"

#include <array>
#include <charconv>

namespace KTX::TIM {

std::string currentThreadIdText() {
  std::array<char, 8> digits{};  // 32 bits
  auto const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), currentSystemThreadId(), 16).ptr;
  return std::string(digits.data(), end);
}

}  // namespace KTX::TIM
