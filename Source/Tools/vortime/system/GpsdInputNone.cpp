#include "system/LiveInput.h"

namespace KTX::VORTIME {

std::unique_ptr<LiveInputI> openGpsd(std::string const& /*host*/,
                                     std::string const& /*port*/,
                                     std::string& error) {
  error = "this vortime was built without gpsd support";
  return nullptr;
}

}  // namespace KTX::VORTIME
