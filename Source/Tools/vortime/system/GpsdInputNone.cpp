#include "system/LiveInput.h"

namespace KTX::VORTIME {

std::unique_ptr<LiveInputI> openGpsd(std::string const& /*host*/,
                                     std::string const& /*port*/,
                                     std::string& error) {
  error = "a gpsd can be watched on Linux only";
  return nullptr;
}

}  // namespace KTX::VORTIME
