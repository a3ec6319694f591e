#ifndef KTX_TIM_POSIXZONERULE_H
#define KTX_TIM_POSIXZONERULE_H

#include <array>
#include <cstdint>
#include <string_view>

#include "Posix/KTX_TIM_YearlyDate.h"
#include "Posix/KTX_TIM_ZoneOffset.h"

namespace KTX::TIM {

/// A POSIX time zone text, such as "CET-1CEST,M3.5.0,M10.5.0/3", as rules that hold every year.
class PosixZoneRuleC {
 public:
  /// A change of the offset, in seconds since 1970-01-01.
  struct ChangeC {
    std::int64_t utc;
    ZoneOffsetC const* offset;
  };

  /// Sets rule from the whole of text; false, rule unchanged, when it is no such text.
  static bool parse(std::string_view text, PosixZoneRuleC& rule);

  bool hasDaylight() const { return hasDaylightTime; }
  ZoneOffsetC const& standard() const { return standardTime; }
  YearlyDateC const& daylightStart() const { return startDate; }
  YearlyDateC const& daylightEnd() const { return endDate; }

  /// What holds at a time, in seconds since 1970-01-01, within a million years of it.
  ZoneOffsetC const& offsetAt(std::int64_t utc) const;
  /// The two changes of a year, in the order of time. Call only where there is daylight time.
  std::array<ChangeC, 2> changesOf(std::int64_t year) const;

 private:
  bool parseWhole(std::string_view text);
  bool parseDaylight(std::string_view text);

  bool hasDaylightTime = false;
  ZoneOffsetC standardTime;
  ZoneOffsetC daylightTime;
  YearlyDateC startDate;
  YearlyDateC endDate;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_POSIXZONERULE_H
