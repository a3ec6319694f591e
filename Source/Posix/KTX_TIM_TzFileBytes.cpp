#include "Posix/KTX_TIM_TzFileBytes.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace KTX::TIM {

namespace {

constexpr off_t SIZE_LIMIT = 1 << 18;

class FileDescriptorC {
 public:
  // A name may lead to a pipe or a device: opening must not wait for its other end.
  explicit FileDescriptorC(std::string const& path)
      : descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  ~FileDescriptorC() {
    if (descriptor >= 0) {
      close(descriptor);
    }
  }
  FileDescriptorC(FileDescriptorC const&) = delete;
  FileDescriptorC& operator=(FileDescriptorC const&) = delete;

  bool getRegularSize(std::size_t& size) const {
    struct stat status {};
    if (descriptor < 0 || fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > SIZE_LIMIT) {
      return false;
    }
    size = static_cast<std::size_t>(status.st_size);
    return true;
  }

  bool readAll(std::string& content) const {
    std::size_t done = 0;
    while (done < content.size()) {
      ssize_t const count = read(descriptor, &content[done], content.size() - done);
      if (count < 0 && errno == EINTR) {
        continue;
      }
      if (count <= 0) {
        return false;
      }
      done += static_cast<std::size_t>(count);
    }
    return true;
  }

 private:
  int descriptor;
};

}  // namespace

bool readTzFileBytes(std::string const& path, std::string& bytes) {
  FileDescriptorC const file(path);
  std::size_t size = 0;
  if (!file.getRegularSize(size)) {
    return false;
  }
  std::string content(size, '\0');
  if (!file.readAll(content)) {
    return false;
  }
  bytes = std::move(content);
  return true;
}

}  // namespace KTX::TIM
