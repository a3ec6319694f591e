#include "output/OutputFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

#include "system/FileName.h"

namespace KTX::VORTIME {
namespace {

#if defined(_WIN32)
int openForWriting(std::string const& path) {
  return ::_wopen(wideFileName(path).c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY,
                  _S_IREAD | _S_IWRITE);
}
long writeSome(int descriptor, char const* data, std::size_t size) {
  constexpr std::size_t LARGEST = 1 << 20;
  return ::_write(descriptor, data, static_cast<unsigned>(std::min(size, LARGEST)));
}
int closeDescriptor(int descriptor) {
  return ::_close(descriptor);
}
#else
int openForWriting(std::string const& path) {
  return ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
}
long writeSome(int descriptor, char const* data, std::size_t size) {
  return ::write(descriptor, data, size);
}
int closeDescriptor(int descriptor) {
  return ::close(descriptor);
}
#endif

}  // namespace

OutputFileC::OutputFileC() {
  pending.reserve(FLUSH_SIZE + FLUSH_SIZE / 8);
}

OutputFileC::~OutputFileC() {
  close();
}

bool OutputFileC::create(std::string const& path) {
  descriptor = openForWriting(path);
  errorNumber = descriptor < 0 ? errno : 0;
  return descriptor >= 0;
}

void OutputFileC::takeOver(int openDescriptor) {
  descriptor = openDescriptor;
}

void OutputFileC::write(std::string_view text) {
  pending += text;
  commit();
}

bool OutputFileC::flush() {
  std::size_t done = 0;
  while (done < pending.size() && errorNumber == 0) {
    long const written = writeSome(descriptor, pending.data() + done, pending.size() - done);
    if (written >= 0) {
      done += static_cast<std::size_t>(written);
    } else if (errno != EINTR) {
      errorNumber = errno;
    }
  }
  pending.clear();
  return errorNumber == 0;
}

bool OutputFileC::close() {
  if (descriptor >= 0) {
    flush();
    if (closeDescriptor(descriptor) != 0 && errorNumber == 0) {
      errorNumber = errno;
    }
    descriptor = -1;
  }
  return errorNumber == 0;
}

bool OutputFileC::isBrokenPipe() const {
#if defined(_WIN32)
  // The C runtime reports the end of a pipe's reader as an invalid argument.
  return errorNumber == EPIPE || errorNumber == EINVAL;
#else
  return errorNumber == EPIPE;
#endif
}

std::string OutputFileC::errorText() const {
  return std::generic_category().message(errorNumber);
}

}  // namespace KTX::VORTIME
