#include "support/KTX_TIM_RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace KTX::TIM {

RegularFileC::RegularFileC(boost::filesystem::path const& path) {
  struct stat status {};
  // Asked before opening, which alone wakes the writer of a FIFO and makes some devices act.
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return;
  }
  int const opened = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (opened < 0) {
    return;
  }
  // Asked again: the name may lead elsewhere by now.
  if (fstat(opened, &status) != 0 || !S_ISREG(status.st_mode)) {
    close(opened);
    return;
  }
  descriptor = opened;
  size = status.st_size;
}

RegularFileC::~RegularFileC() {
  if (isOpen()) {
    close(descriptor);
  }
}

std::int64_t RegularFileC::read(char* data, std::size_t count) const {
  ssize_t result = 0;
  do {
    result = ::read(descriptor, data, count);
  } while (result < 0 && errno == EINTR);
  return result;
}

}  // namespace KTX::TIM
