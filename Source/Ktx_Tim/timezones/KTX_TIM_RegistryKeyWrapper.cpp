#include "timezones/KTX_TIM_RegistryKeyWrapper.h"

namespace KTX::TIM {

RegistryKeyWrapperC::RegistryKeyWrapperC() = default;

RegistryKeyWrapperC::~RegistryKeyWrapperC() {
  if (isOpen()) {
    systemCalls().closeKey(handle);
  }
}

void RegistryKeyWrapperC::open(KeyHandleT parent, std::u16string const& path) {
  openFlag = systemCalls().openKey(parent, path, handle) == 0 ? 1 : 0;
}

}  // namespace KTX::TIM
