#include "Posix/KTX_TIM_ZoneData.h"

#include <algorithm>
#include <utility>

#include "Posix/KTX_TIM_CivilDate.h"

namespace KTX::TIM {

ZoneDataC::ZoneDataC() : offsets(1, ZoneOffsetC{0, false, "UTC"}) {}

ZoneDataC::ZoneDataC(PosixZoneRuleC const& zoneRule)
    : offsets(1, zoneRule.standard()), rule(zoneRule) {}

ZoneDataC::ZoneDataC(std::vector<ZoneOffsetC> zoneOffsets,
                     std::vector<ChangeC> zoneChanges,
                     std::optional<PosixZoneRuleC> ruleAfterLastChange)
    : offsets(std::move(zoneOffsets)),
      changes(std::move(zoneChanges)),
      rule(std::move(ruleAfterLastChange)) {}

ZoneOffsetC const& ZoneDataC::offsetAt(std::int64_t utc) const {
  auto const next = std::upper_bound(
      changes.begin(), changes.end(), utc,
      [](std::int64_t moment, ChangeC const& change) { return moment < change.utc; });
  if (next == changes.end() && rule) {
    return rule->offsetAt(utc);
  }
  return next == changes.begin() ? offsets.front() : offsets[std::prev(next)->offsetIndex];
}

std::vector<std::int64_t> ZoneDataC::changesBetween(std::int64_t after, std::int64_t before) const {
  std::vector<std::int64_t> moments;
  for (ChangeC const& change : changes) {
    if (change.utc > after && change.utc < before) {
      moments.push_back(change.utc);
    }
  }
  if (rule && rule->hasDaylight()) {
    std::int64_t const ruleStart = changes.empty() ? after : std::max(after, changes.back().utc);
    // A rule's day may lie days outside the year that it is counted in.
    for (std::int64_t year = yearOf(after) - 1; year <= yearOf(before) + 1; ++year) {
      for (PosixZoneRuleC::ChangeC const& change : rule->changesOf(year)) {
        if (change.utc > ruleStart && change.utc < before) {
          moments.push_back(change.utc);
        }
      }
    }
  }
  std::sort(moments.begin(), moments.end());
  return moments;
}

}  // namespace KTX::TIM
