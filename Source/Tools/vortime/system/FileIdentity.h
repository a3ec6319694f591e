#ifndef KTX_VORTIME_FILEIDENTITY_H
#define KTX_VORTIME_FILEIDENTITY_H

#include <cstdint>
#include <string>

namespace KTX::VORTIME {

enum FileKindE : std::uint8_t {
  FILEKIND_MISSING,  ///< there is none, or it cannot be asked
  FILEKIND_REGULAR,
  FILEKIND_FOLDER,
  FILEKIND_OTHER  ///< a device, a pipe, a terminal
};

/// What a name leads to, whatever links and spellings are on the way.
struct FileIdentityC {
  FileKindE kind = FILEKIND_MISSING;
  std::uint64_t volume = 0;
  std::uint64_t number = 0;  ///< of the file on its volume

  /// True for two names of one regular file.
  bool isSameFile(FileIdentityC const& other) const {
    return kind == FILEKIND_REGULAR && other.kind == FILEKIND_REGULAR && volume == other.volume &&
           number == other.number;
  }
};

FileIdentityC identityOfFile(std::string const& name);
/// descriptor: of the C runtime, open or not.
FileIdentityC identityOfDescriptor(int descriptor);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_FILEIDENTITY_H
