#include "KTX/RCV/KTX_RCV_TextNumber.h"

#include <cstddef>

namespace KTX::RCV {
namespace {

constexpr std::size_t MAX_DIGITS = 18;

}  // namespace

bool readDigits(std::string_view text, std::int64_t& value) {
  if (text.empty() || text.size() > MAX_DIGITS) {
    return false;
  }
  std::int64_t sum = 0;
  for (char const c : text) {
    if (c < '0' || c > '9') {
      return false;
    }
    sum = sum * 10 + (c - '0');
  }
  value = sum;
  return true;
}

bool readFraction(std::string_view text, std::int32_t& nanoseconds) {
  std::int32_t sum = 0;
  std::int32_t unit = 100000000;
  for (char const c : text) {
    if (c < '0' || c > '9') {
      return false;
    }
    sum += (c - '0') * unit;
    unit /= 10;
  }
  nanoseconds = sum;
  return true;
}

bool readPaddedInteger(std::string_view text, std::int64_t& value) {
  std::size_t const first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) {
    return false;
  }
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  bool const isNegative = text.front() == '-';
  std::int64_t magnitude = 0;
  if (!readDigits(text.substr(isNegative ? 1 : 0), magnitude)) {
    return false;
  }
  value = isNegative ? -magnitude : magnitude;
  return true;
}

}  // namespace KTX::RCV
