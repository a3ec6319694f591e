#include "Posix/KTX_TIM_TextNumbers.h"

namespace KTX::TIM {

namespace {

constexpr std::int32_t SECONDS_PER_HOUR = 3600;
constexpr std::int32_t SECONDS_PER_MINUTE = 60;
constexpr std::int32_t LAST_OF_SIXTY = 59;
constexpr std::size_t DIGIT_LIMIT = 3;

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

}  // namespace

bool takeCharacter(std::string_view& text, char expected) {
  if (text.empty() || text.front() != expected) {
    return false;
  }
  text.remove_prefix(1);
  return true;
}

bool takeNumber(std::string_view& text, std::int32_t limit, std::int32_t& number) {
  std::int32_t value = 0;
  std::size_t digits = 0;
  while (digits < DIGIT_LIMIT && digits < text.size() && isDigit(text[digits])) {
    value = value * 10 + (text[digits] - '0');
    ++digits;
  }
  if (digits == 0 || value > limit) {
    return false;
  }
  text.remove_prefix(digits);
  number = value;
  return true;
}

bool takeSignedTime(std::string_view& text, std::int32_t hourLimit, std::int32_t& seconds) {
  bool const isNegative = takeCharacter(text, '-');
  if (!isNegative) {
    takeCharacter(text, '+');
  }
  std::int32_t hours = 0;
  std::int32_t minutes = 0;
  std::int32_t rest = 0;
  if (!takeNumber(text, hourLimit, hours)) {
    return false;
  }
  if (takeCharacter(text, ':')) {
    if (!takeNumber(text, LAST_OF_SIXTY, minutes)) {
      return false;
    }
    if (takeCharacter(text, ':') && !takeNumber(text, LAST_OF_SIXTY, rest)) {
      return false;
    }
  }
  std::int32_t const magnitude = hours * SECONDS_PER_HOUR + minutes * SECONDS_PER_MINUTE + rest;
  seconds = isNegative ? -magnitude : magnitude;
  return true;
}

}  // namespace KTX::TIM
