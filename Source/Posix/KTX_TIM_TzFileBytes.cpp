#include "Posix/KTX_TIM_TzFileBytes.h"

#include "support/KTX_TIM_RegularFile.h"

namespace KTX::TIM {

namespace {

constexpr std::int64_t SIZE_LIMIT = 1 << 18;

bool readAll(RegularFileC const& file, std::string& content) {
  std::size_t done = 0;
  while (done < content.size()) {
    std::int64_t const count = file.read(&content[done], content.size() - done);
    if (count <= 0) {
      return false;
    }
    done += static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace

bool readTzFileBytes(std::string const& path, std::string& bytes) {
  RegularFileC const file(path);
  if (!file.isOpen() || file.getSize() > SIZE_LIMIT) {
    return false;
  }
  std::string content(static_cast<std::size_t>(file.getSize()), '\0');
  if (!readAll(file, content)) {
    return false;
  }
  bytes = std::move(content);
  return true;
}

}  // namespace KTX::TIM
