#include "system/FileIdentity.h"

#include <windows.h>

#include <io.h>

#include "system/FileName.h"

namespace KTX::VORTIME {
namespace {

FileIdentityC identityOf(HANDLE handle) {
  FileIdentityC identity;
  if (::GetFileType(handle) != FILE_TYPE_DISK) {
    identity.kind = FILEKIND_OTHER;
    return identity;
  }
  BY_HANDLE_FILE_INFORMATION information{};
  if (::GetFileInformationByHandle(handle, &information) == 0) {
    return identity;
  }
  bool const isFolder = (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  identity.kind = isFolder ? FILEKIND_FOLDER : FILEKIND_REGULAR;
  identity.volume = information.dwVolumeSerialNumber;
  identity.number = std::uint64_t{information.nFileIndexHigh} << 32U | information.nFileIndexLow;
  return identity;
}

}  // namespace

FileIdentityC identityOfFile(std::string const& name) {
  // Without any right to the file; the flag lets a folder be opened too.
  HANDLE const handle = ::CreateFileW(wideFileName(name).c_str(), 0,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    return FileIdentityC();
  }
  FileIdentityC const identity = identityOf(handle);
  ::CloseHandle(handle);
  return identity;
}

FileIdentityC identityOfDescriptor(int descriptor) {
  if (descriptor < 0) {
    return FileIdentityC();
  }
  auto* const handle = reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));
  return handle == INVALID_HANDLE_VALUE ? FileIdentityC() : identityOf(handle);
}

}  // namespace KTX::VORTIME
