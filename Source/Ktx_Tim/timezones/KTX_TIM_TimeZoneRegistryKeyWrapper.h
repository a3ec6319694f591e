#ifndef KTX_TIM_TIMEZONEREGISTRYKEYWRAPPER_H
#define KTX_TIM_TIMEZONEREGISTRYKEYWRAPPER_H

#include <string>

#include "support/KTX_TIM_TimeZoneInformation.h"
#include "timezones/KTX_TIM_RegistryKeyWrapper.h"
#include "timezones/KTX_TIM_RootTimeZoneRegistryKeyWrapper.h"

namespace KTX::TIM {

/// The registry key of one time zone. It stays closed when the root key is.
class TimeZoneRegistryKeyWrapperC : public RegistryKeyWrapperC {
 public:
  TimeZoneRegistryKeyWrapperC(RootTimeZoneRegistryKeyWrapperC const& root,
                              std::u16string const& zoneName);
  ~TimeZoneRegistryKeyWrapperC() override;

  /// Fills information from "Std", "Dlt" and "TZI", in this order; false at the first that cannot
  /// be read, or when the zone record is not complete.
  bool readTimeZoneInformation(TimeZoneInformationC& information) const;

  /// Sets display to the text of "Display" up to its first zero; false, display unchanged, when
  /// it cannot be read.
  bool readDisplayName(std::u16string& display) const;

 private:
  bool query(std::u16string const& valueName, void* data, std::uint32_t& sizeBytes) const;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMEZONEREGISTRYKEYWRAPPER_H
