#include "support/KTX_TIM_RegularFile.h"

#include <windows.h>

#include <algorithm>
#include <fcntl.h>
#include <io.h>
#include <limits>
#include <share.h>
#include <sys/stat.h>

namespace KTX::TIM {

namespace {

bool isOnDisk(int descriptor) {
  std::intptr_t const handle = _get_osfhandle(descriptor);
  return GetFileType(reinterpret_cast<HANDLE>(handle)) == FILE_TYPE_DISK;
}

}  // namespace

RegularFileC::RegularFileC(boost::filesystem::path const& path) {
  int opened = -1;
  // A folder is not opened.
  if (_wsopen_s(&opened, path.c_str(), _O_RDONLY | _O_TEXT | _O_NOINHERIT, _SH_DENYNO, _S_IREAD) !=
      0) {
    return;
  }
  if (!isOnDisk(opened)) {
    _close(opened);
    return;
  }
  descriptor = opened;
  size = _filelengthi64(opened);
}

RegularFileC::~RegularFileC() {
  if (isOpen()) {
    _close(descriptor);
  }
}

std::int64_t RegularFileC::read(char* data, std::size_t count) const {
  constexpr std::size_t LIMIT = std::numeric_limits<int>::max();
  return _read(descriptor, data, static_cast<unsigned>(std::min(count, LIMIT)));
}

}  // namespace KTX::TIM
