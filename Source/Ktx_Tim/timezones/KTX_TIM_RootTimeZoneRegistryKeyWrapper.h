#ifndef KTX_TIM_ROOTTIMEZONEREGISTRYKEYWRAPPER_H
#define KTX_TIM_ROOTTIMEZONEREGISTRYKEYWRAPPER_H

#include <cstdint>
#include <string>

#include "timezones/KTX_TIM_RegistryKeyWrapper.h"

namespace KTX::TIM {

/// The registry key that holds one sub-key for each time zone of the system.
class RootTimeZoneRegistryKeyWrapperC : public RegistryKeyWrapperC {
 public:
  RootTimeZoneRegistryKeyWrapperC();
  ~RootTimeZoneRegistryKeyWrapperC() override;

  /// Sets name to the key name at index; false, name unchanged, past the last or on failure.
  bool enumerate(std::uint32_t index, std::u16string& name) const;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_ROOTTIMEZONEREGISTRYKEYWRAPPER_H
