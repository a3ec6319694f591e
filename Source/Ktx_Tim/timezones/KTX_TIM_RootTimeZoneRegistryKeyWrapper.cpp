#include "timezones/KTX_TIM_RootTimeZoneRegistryKeyWrapper.h"

#include <algorithm>

namespace KTX::TIM {

namespace {

constexpr std::uint32_t NAME_BUFFER_LENGTH = 256;

}  // namespace

RootTimeZoneRegistryKeyWrapperC::RootTimeZoneRegistryKeyWrapperC() {
  open(0, u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Time Zones");
}

RootTimeZoneRegistryKeyWrapperC::~RootTimeZoneRegistryKeyWrapperC() = default;

bool RootTimeZoneRegistryKeyWrapperC::enumerate(std::uint32_t index, std::u16string& name) const {
  char16_t buffer[NAME_BUFFER_LENGTH] = {};
  // Room going in, length coming out: it starts anew for every key.
  std::uint32_t length = NAME_BUFFER_LENGTH;
  if (!isOpen() || systemCalls().enumerateKey(getHandle(), index, buffer, length) != 0) {
    return false;
  }
  name.assign(buffer, std::min(length, NAME_BUFFER_LENGTH));
  return true;
}

}  // namespace KTX::TIM
