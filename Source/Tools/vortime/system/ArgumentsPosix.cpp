#include "system/Arguments.h"

namespace KTX::VORTIME {

std::vector<std::string> commandLineArguments(int count, char const* const* values) {
  return count > 1 ? std::vector<std::string>(values + 1, values + count)
                   : std::vector<std::string>();
}

}  // namespace KTX::VORTIME
