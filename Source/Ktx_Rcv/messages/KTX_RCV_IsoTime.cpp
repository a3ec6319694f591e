#include "KTX/RCV/KTX_RCV_IsoTime.h"

#include <cstdint>

#include "KTX/RCV/KTX_RCV_TextNumber.h"

namespace KTX::RCV {
namespace {

constexpr std::size_t LENGTH = 19;  // 2014-08-01T00:00:00

bool readField(std::string_view text, std::size_t at, std::size_t length, std::int32_t& field) {
  std::int64_t value = 0;
  if (!readDigits(text.substr(at, length), value)) {
    return false;
  }
  field = static_cast<std::int32_t>(value);
  return true;
}

bool hasSeparators(std::string_view text) {
  return text[4] == '-' && text[7] == '-' && (text[10] == 'T' || text[10] == ' ') &&
         text[13] == ':' && text[16] == ':';
}

}  // namespace

std::size_t readIsoFields(std::string_view text, CivilTimeC& time) {
  if (text.size() < LENGTH || !hasSeparators(text)) {
    return 0;
  }
  CivilTimeC read;
  bool const isRead = readField(text, 0, 4, read.year) && readField(text, 5, 2, read.month) &&
                      readField(text, 8, 2, read.day) && readField(text, 11, 2, read.hour) &&
                      readField(text, 14, 2, read.minute) && readField(text, 17, 2, read.second);
  if (!isRead) {
    return 0;
  }
  std::size_t end = LENGTH;
  if (end < text.size() && text[end] == '.') {
    std::size_t const first = ++end;
    while (end < text.size() && text[end] >= '0' && text[end] <= '9') {
      ++end;
    }
    readFraction(text.substr(first, end - first), read.nanosecond);
  }
  time = read;
  return end;
}

std::size_t readIsoTime(std::string_view text, CivilTimeC& time) {
  CivilTimeC read;
  std::size_t const end = readIsoFields(text, read);
  if (end == 0 || !isDate(read.year, read.month, read.day) || read.hour > 23 || read.minute > 59 ||
      read.second > 59) {
    return 0;
  }
  time = read;
  return end;
}

}  // namespace KTX::RCV
