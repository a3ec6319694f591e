#include "timezones/KTX_TIM_ZoneLayout.h"

#include <cstring>

namespace KTX::TIM::TEST {

std::vector<std::uint8_t> textBytes(std::u16string const& text, bool isTerminated) {
  std::vector<std::uint8_t> bytes((text.size() + (isTerminated ? 1U : 0U)) * sizeof(char16_t));
  if (!bytes.empty()) {
    std::memcpy(bytes.data(), text.c_str(), bytes.size());
  }
  return bytes;
}

std::vector<std::uint8_t> recordBytes(ZoneRecordC const& record) {
  std::vector<std::uint8_t> bytes(sizeof(record));
  std::memcpy(bytes.data(), &record, sizeof(record));
  return bytes;
}

ZoneRecordC recordWithBias(std::int32_t bias) {
  ZoneRecordC record{};
  record.bias = bias;
  record.daylightBias = -60;
  record.standardDate.month = 10;
  record.standardDate.day = 5;
  record.standardDate.hour = 3;
  record.daylightDate.month = 3;
  record.daylightDate.day = 5;
  record.daylightDate.hour = 2;
  return record;
}

}  // namespace KTX::TIM::TEST
