#include "common/KTX_TIM_SharedData.h"

#include <cstdlib>
#include <system_error>

namespace KTX::TIM::TEST {

std::filesystem::path sharedData(std::filesystem::path const& name) {
  char const* const folder = std::getenv("VORTIME_SHARED_DATA");
  std::filesystem::path const path =
      std::filesystem::path(folder != nullptr ? folder : VORTIME_SHARED_DATA) / name;
  std::error_code error;
  return std::filesystem::exists(path, error) ? path : std::filesystem::path();
}

}  // namespace KTX::TIM::TEST
