#ifndef KTX_TIM_ZONEDATA_H
#define KTX_TIM_ZONEDATA_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Posix/KTX_TIM_PosixZoneRule.h"
#include "Posix/KTX_TIM_ZoneOffset.h"

namespace KTX::TIM {

/// What a zone's clocks showed and will show: changes one by one, and rules for the time after.
/// Times are seconds since 1970-01-01.
class ZoneDataC {
 public:
  struct ChangeC {
    std::int64_t utc;
    std::size_t offsetIndex;
  };

  /// UTC.
  ZoneDataC();
  /// The same rules in every year.
  explicit ZoneDataC(PosixZoneRuleC const& zoneRule);
  /// Before the first change the first offset holds. offsets must not be empty, changes must be in
  /// the order of time and name existing offsets.
  ZoneDataC(std::vector<ZoneOffsetC> zoneOffsets,
            std::vector<ChangeC> zoneChanges,
            std::optional<PosixZoneRuleC> ruleAfterLastChange);

  ZoneOffsetC const& offsetAt(std::int64_t utc) const;

  /// The moments after the first time and before the second at which something may change, in
  /// the order of time. Meant for a year or so.
  std::vector<std::int64_t> changesBetween(std::int64_t after, std::int64_t before) const;

  /// The rules after the last change, null when there are none.
  PosixZoneRuleC const* finalRule() const { return rule ? &*rule : nullptr; }

 private:
  std::vector<ZoneOffsetC> offsets;
  std::vector<ChangeC> changes;
  std::optional<PosixZoneRuleC> rule;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_ZONEDATA_H
