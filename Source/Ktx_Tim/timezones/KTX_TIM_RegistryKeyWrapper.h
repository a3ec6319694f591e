#ifndef KTX_TIM_REGISTRYKEYWRAPPER_H
#define KTX_TIM_REGISTRYKEYWRAPPER_H

#include <cstdint>
#include <string>

#include "support/KTX_TIM_SystemCalls.h"

namespace KTX::TIM {

/// A registry key that is closed again with the object, if it was opened.
class RegistryKeyWrapperC {
 public:
  virtual ~RegistryKeyWrapperC();
  RegistryKeyWrapperC(RegistryKeyWrapperC const&) = delete;
  RegistryKeyWrapperC& operator=(RegistryKeyWrapperC const&) = delete;

  bool isOpen() const { return openFlag != 0; }
  KeyHandleT getHandle() const { return handle; }

 protected:
  RegistryKeyWrapperC();

  /// Opens path below parent, 0 for the root of the machine's part of the registry.
  void open(KeyHandleT parent, std::u16string const& path);

 private:
  KeyHandleT handle = 0;
  std::uint8_t openFlag = 0;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_REGISTRYKEYWRAPPER_H
