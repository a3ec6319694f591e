#ifndef KTX_TIM_DEFAULTCURRENTTIMEPROVIDER_H
#define KTX_TIM_DEFAULTCURRENTTIMEPROVIDER_H

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_CurrentTimeProvider.h"

namespace KTX::TIM {

/// Gives the library's own present. Without state; any thread may call. Each call takes the
/// library-wide lock, and prints a warning on standard output when the present was last seeded or
/// corrected more than a day ago, unless setPresentWarningEnabled() turned it off.
class KTX_TIM_API DefaultCurrentTimeProviderC : public CurrentTimeProviderI {
 public:
  DefaultCurrentTimeProviderC();
  ~DefaultCurrentTimeProviderC() override;

  GPSTimeC getCurrentGpsTime() override;
  MjdTimeC getCurrentMjdTime() override;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_DEFAULTCURRENTTIMEPROVIDER_H
