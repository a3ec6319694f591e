#include "KTX/RCV/KTX_RCV_ReadCounts.h"

#include <algorithm>
#include <cstring>

namespace KTX::RCV {
namespace {

constexpr std::size_t MAX_NAME = 15;

bool hasName(ReadCountsC::MessageC const& message, std::string_view name) {
  return std::memcmp(message.name.data(), name.data(), name.size()) == 0 &&
         message.name[name.size()] == '\0';
}

}  // namespace

void ReadCountsC::countMessage(std::string_view name) {
  name = name.substr(0, MAX_NAME);
  for (std::size_t i = 0; i < used; ++i) {
    if (hasName(table[i], name)) {
      ++table[i].count;
      return;
    }
  }
  if (used + 1 >= CAPACITY && name != "other") {
    countMessage("other");
    return;
  }
  std::copy(name.begin(), name.end(), table[used].name.begin());
  table[used].count = 1;
  ++used;
}

std::uint64_t ReadCountsC::messageCount(std::string_view name) const {
  for (std::size_t i = 0; i < used; ++i) {
    if (hasName(table[i], name.substr(0, MAX_NAME))) {
      return table[i].count;
    }
  }
  return 0;
}

}  // namespace KTX::RCV
