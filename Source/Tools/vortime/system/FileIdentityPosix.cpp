#include "system/FileIdentity.h"

#include <sys/stat.h>

namespace KTX::VORTIME {
namespace {

FileIdentityC identityOf(struct stat const& status) {
  FileIdentityC identity;
  identity.kind = S_ISREG(status.st_mode)   ? FILEKIND_REGULAR
                  : S_ISDIR(status.st_mode) ? FILEKIND_FOLDER
                                            : FILEKIND_OTHER;
  identity.volume = status.st_dev;
  identity.number = status.st_ino;
  return identity;
}

}  // namespace

FileIdentityC identityOfFile(std::string const& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 ? identityOf(status) : FileIdentityC();
}

FileIdentityC identityOfDescriptor(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 ? identityOf(status) : FileIdentityC();
}

}  // namespace KTX::VORTIME
