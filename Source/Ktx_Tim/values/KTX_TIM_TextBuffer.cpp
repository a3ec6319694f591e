#include "values/KTX_TIM_TextBuffer.h"

#include <algorithm>
#include <cstring>
#include <ostream>

namespace KTX::TIM {

void TextBufferC::append(std::string_view text) noexcept {
  std::size_t const taken = std::min(text.size(), CAPACITY - size);
  std::memcpy(buffer + size, text.data(), taken);
  size += taken;
}

void TextBufferC::append(char character) noexcept {
  append(std::string_view(&character, 1));
}

void TextBufferC::appendNumber(std::uint64_t number, std::size_t minDigits) noexcept {
  constexpr std::size_t MAX_DIGITS = 20;
  char digits[MAX_DIGITS];
  std::size_t first = MAX_DIGITS;
  std::size_t const padded = MAX_DIGITS - std::min(minDigits, MAX_DIGITS);
  do {
    digits[--first] = static_cast<char>('0' + number % 10);
    number /= 10;
  } while (number != 0 || first > padded);
  append(std::string_view(digits + first, MAX_DIGITS - first));
}

std::string TextBufferC::toString() const {
  return std::string(buffer, size);
}

std::ostream& TextBufferC::insertInto(std::ostream& stream) const {
  return stream.write(buffer, static_cast<std::streamsize>(size));
}

}  // namespace KTX::TIM
