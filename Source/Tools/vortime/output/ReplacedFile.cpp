#include "output/ReplacedFile.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
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

namespace fs = std::filesystem;

constexpr int MAX_PARTS = 100;

// Creates an empty file. False, and nothing is changed, where there is something of that name.
bool createNew(std::string const& name) {
#if defined(_WIN32)
  int const descriptor =
      ::_wopen(wideFileName(name).c_str(), _O_WRONLY | _O_CREAT | _O_EXCL, _S_IREAD | _S_IWRITE);
  return descriptor >= 0 && ::_close(descriptor) == 0;
#else
  int const descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  return descriptor >= 0 && ::close(descriptor) == 0;
#endif
}

// Whether a file can be read and written; its content stays.
bool canBeChanged(std::string const& name) {
  return std::fstream(filePath(name), std::ios::in | std::ios::out | std::ios::binary).is_open();
}

bool contains(std::ifstream& file, std::streamoff at, std::string_view text) {
  std::string found(text.size(), '\0');
  file.seekg(at);
  return file.read(found.data(), static_cast<std::streamsize>(found.size())) && found == text;
}

}  // namespace

ReplacedFileC::~ReplacedFileC() {
  std::error_code ignored;
  if (hasBegun) {
    fs::remove(filePath(part), ignored);
  }
  if (hasCreated && fs::file_size(filePath(target), ignored) == 0) {
    fs::remove(filePath(target), ignored);
  }
}

bool ReplacedFileC::fail(int errorNumber) {
  error = std::generic_category().message(errorNumber);
  return false;
}

bool ReplacedFileC::createMissing(std::string const& name) {
  std::error_code ignored;
  if (fs::is_symlink(fs::symlink_status(filePath(name), ignored))) {
    error = "the link leads nowhere";
    return false;
  }
  if (!createNew(name)) {
    return fail(errno);
  }
  hasCreated = true;
  return true;
}

bool ReplacedFileC::claim(std::string const& name) {
  target = name;
  FileKindE const kind = identityOfFile(name).kind;
  if (kind == FILEKIND_FOLDER) {
    return fail(EISDIR);
  }
  isDevice = kind == FILEKIND_OTHER;
  if (isDevice) {
    part = name;
    return true;
  }
  if (kind == FILEKIND_MISSING && !createMissing(name)) {
    return false;
  }
  std::error_code failure;
  fs::path const whole = fs::canonical(filePath(name), failure);
  if (failure) {
    error = failure.message();
    return false;
  }
  target = fileName(whole);
  return true;
}

bool ReplacedFileC::isReplaceable(FileMarkC const& mark) const {
  if (isDevice) {
    return true;
  }
  std::error_code failure;
  std::uintmax_t const size = fs::file_size(filePath(target), failure);
  if (failure || size == 0) {
    return !failure;
  }
  std::ifstream file(filePath(target), std::ios::binary);
  return size >= mark.head.size() + mark.tail.size() && contains(file, 0, mark.head) &&
         contains(file, static_cast<std::streamoff>(size - mark.tail.size()), mark.tail);
}

bool ReplacedFileC::begin() {
  if (isDevice) {
    return true;
  }
  if (!canBeChanged(target)) {
    return fail(errno);
  }
  // Another run may be writing a file of this name, or have been killed while it did.
  for (int i = 1; i <= MAX_PARTS && !hasBegun; ++i) {
    part = target + ".part" + (i == 1 ? "" : std::to_string(i));
    hasBegun = createNew(part);
    if (!hasBegun && errno != EEXIST) {
      return fail(errno);
    }
  }
  return hasBegun || fail(EEXIST);
}

bool ReplacedFileC::commit() {
  if (isDevice) {
    return true;
  }
  std::error_code failure;
  if (!hasCreated) {
    std::error_code ignored;
    fs::permissions(filePath(part), fs::status(filePath(target), ignored).permissions(), ignored);
  }
  fs::rename(filePath(part), filePath(target), failure);
  if (failure) {
    error = failure.message();
    return false;
  }
  hasBegun = false;
  hasCreated = false;
  return true;
}

}  // namespace KTX::VORTIME
