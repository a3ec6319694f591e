#include "system/InputFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <system_error>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

#include "system/FileName.h"

namespace KTX::VORTIME {
namespace {

constexpr int STANDARD_INPUT = 0;

#if defined(_WIN32)
int openForReading(std::string const& path) {
  return ::_wopen(wideFileName(path).c_str(), _O_RDONLY | _O_BINARY);
}
long readSome(int descriptor, char* data, std::size_t size) {
  constexpr std::size_t LARGEST = 1 << 24;
  return ::_read(descriptor, data, static_cast<unsigned>(std::min(size, LARGEST)));
}
void closeDescriptor(int descriptor) {
  ::_close(descriptor);
}
void makeBinary(int descriptor) {
  ::_setmode(descriptor, _O_BINARY);
}
bool readStatus(int descriptor, std::uint64_t& size, bool& isDirectory) {
  struct _stat64 status {};
  if (::_fstat64(descriptor, &status) != 0) {
    return false;
  }
  size = (status.st_mode & _S_IFREG) != 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
  isDirectory = (status.st_mode & _S_IFDIR) != 0;
  return true;
}
#else
int openForReading(std::string const& path) {
  return ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
}
long readSome(int descriptor, char* data, std::size_t size) {
  return ::read(descriptor, data, size);
}
void closeDescriptor(int descriptor) {
  ::close(descriptor);
}
void makeBinary(int /*descriptor*/) {}
bool readStatus(int descriptor, std::uint64_t& size, bool& isDirectory) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) {
    return false;
  }
  size = S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
  isDirectory = S_ISDIR(status.st_mode);
  return true;
}
#endif

}  // namespace

InputFileC::~InputFileC() {
  if (isOwned) {
    closeDescriptor(descriptor);
  }
}

bool InputFileC::open(std::string const& path) {
  isOwned = path != "-";
  descriptor = isOwned ? openForReading(path) : STANDARD_INPUT;
  if (descriptor < 0) {
    isOwned = false;
    errorNumber = errno;
    return false;
  }
  makeBinary(descriptor);
  bool isDirectory = false;
  if (readStatus(descriptor, fileSize, isDirectory) && isDirectory) {
    errorNumber = EISDIR;
  }
  return errorNumber == 0;
}

std::size_t InputFileC::read(char* data, std::size_t size) {
  long const count = readSome(descriptor, data, size);
  if (count > 0) {
    return static_cast<std::size_t>(count);
  }
  if (count == 0) {
    atEnd = true;
  } else if (errno != EINTR) {
    errorNumber = errno;
    atEnd = true;
  }
  return 0;
}

std::string InputFileC::errorText() const {
  return std::generic_category().message(errorNumber);
}

}  // namespace KTX::VORTIME
