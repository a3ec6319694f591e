#include "Posix/KTX_TIM_FileStamp.h"

#include <sys/stat.h>
#include <tuple>

namespace KTX::TIM {

FileStampC::FileStampC(std::string const& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    return;
  }
  present = true;
  device = status.st_dev;
  inode = status.st_ino;
  size = status.st_size;
  changedSeconds = status.st_mtim.tv_sec;
  changedNanoseconds = status.st_mtim.tv_nsec;
}

bool FileStampC::operator==(FileStampC const& other) const {
  return std::tie(present, device, inode, size, changedSeconds, changedNanoseconds) ==
         std::tie(other.present, other.device, other.inode, other.size, other.changedSeconds,
                  other.changedNanoseconds);
}

}  // namespace KTX::TIM
