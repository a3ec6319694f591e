#ifndef KTX_TIM_ZONETABLE_H
#define KTX_TIM_ZONETABLE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Posix/KTX_TIM_ZoneData.h"
#include "timezones/KTX_TIM_ZoneRecord.h"

namespace KTX::TIM {

/// Every zone of the name table with what the registry would hold of it, made from the tz
/// database for one year, in the registry's order.
class ZoneTableC {
 public:
  struct EntryC {
    std::u16string keyName;
    /// False when the database has no usable file for the zone; only the key name is set then.
    bool isPresent = false;
    std::u16string display;
    std::u16string standardName;
    std::u16string daylightName;
    ZoneRecordC record{};
    /// Of the zone's file.
    std::size_t fingerprint = 0;
  };

  /// Reads the database. Without one, the table has entries but none is present.
  ZoneTableC(std::string const& databaseFolder, std::int64_t tableYear);

  std::int64_t year() const { return builtForYear; }
  bool isEmpty() const { return presentIndices.empty(); }
  /// All entries; their places never change.
  std::vector<EntryC> const& entries() const { return allEntries; }
  /// The places of those that are present, in order.
  std::vector<std::size_t> const& present() const { return presentIndices; }

  /// The present entry of that key name, without regard to case; null when there is none.
  EntryC const* find(std::u16string_view keyName) const;

 private:
  std::int64_t builtForYear;
  std::vector<EntryC> allEntries;
  std::vector<std::size_t> presentIndices;
};

/// A number that equal files share.
std::size_t tzFileFingerprint(std::string const& bytes);

/// Whether the texts are equal without regard to the case of ASCII letters.
bool areEqualFolded(std::u16string_view left, std::u16string_view right);

}  // namespace KTX::TIM

#endif  // KTX_TIM_ZONETABLE_H
