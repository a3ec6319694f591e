#include "timezones/KTX_TIM_TimeZoneRegistryKeyWrapper.h"

#include <cstdint>

#include "timezones/KTX_TIM_CodeUnits.h"
#include "timezones/KTX_TIM_ZoneRecord.h"

namespace KTX::TIM {

namespace {

constexpr std::size_t DISPLAY_BUFFER_LENGTH = 256;
// One character less than the buffer has: a text without a terminator still ends.
constexpr std::uint32_t DISPLAY_SIZE_BYTES = (DISPLAY_BUFFER_LENGTH - 1) * sizeof(char16_t);

}  // namespace

TimeZoneRegistryKeyWrapperC::TimeZoneRegistryKeyWrapperC(
    RootTimeZoneRegistryKeyWrapperC const& root, std::u16string const& zoneName) {
  if (root.isOpen()) {
    open(root.getHandle(), zoneName);
  }
}

TimeZoneRegistryKeyWrapperC::~TimeZoneRegistryKeyWrapperC() = default;

bool TimeZoneRegistryKeyWrapperC::query(std::u16string const& valueName,
                                        void* data,
                                        std::uint32_t& sizeBytes) const {
  return isOpen() && systemCalls().queryValue(getHandle(), valueName, data, sizeBytes) == 0;
}

bool TimeZoneRegistryKeyWrapperC::readTimeZoneInformation(TimeZoneInformationC& information) const {
  information = {};
  std::uint32_t standardSize = sizeof(information.standardName);
  if (!query(u"Std", information.standardName, standardSize)) {
    return false;
  }
  std::uint32_t daylightSize = sizeof(information.daylightName);
  if (!query(u"Dlt", information.daylightName, daylightSize)) {
    return false;
  }
  ZoneRecordC record{};
  std::uint32_t recordSize = sizeof(record);
  bool const hasRecord = query(u"TZI", &record, recordSize);
  if (!hasRecord || recordSize != sizeof(record)) {
    return false;
  }
  information.bias = record.bias;
  information.standardBias = record.standardBias;
  information.daylightBias = record.daylightBias;
  information.standardDate = record.standardDate;
  information.daylightDate = record.daylightDate;
  return true;
}

bool TimeZoneRegistryKeyWrapperC::readDisplayName(std::u16string& display) const {
  char16_t buffer[DISPLAY_BUFFER_LENGTH] = {};
  std::uint32_t size = DISPLAY_SIZE_BYTES;
  if (!query(u"Display", buffer, size)) {
    return false;
  }
  display = textInBuffer(buffer, DISPLAY_BUFFER_LENGTH);
  return true;
}

}  // namespace KTX::TIM
