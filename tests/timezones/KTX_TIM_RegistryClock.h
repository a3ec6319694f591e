#ifndef KTX_TIM_REGISTRYCLOCK_H
#define KTX_TIM_REGISTRYCLOCK_H

#include <cstdint>

#include "timezones/KTX_TIM_ZoneRecord.h"

namespace KTX::TIM::TEST {

/// Reads the clock that a registry record describes through one year, as readers of the registry
/// do: by the year of the local standard time. Times are seconds since 1970-01-01.
class RegistryClockC {
 public:
  RegistryClockC(ZoneRecordC const& record, std::int32_t year);

  std::int64_t yearBegin() const { return begin; }
  std::int64_t yearEnd() const { return end; }
  /// The minutes east of Greenwich at a time within the year.
  std::int32_t offsetAt(std::int64_t utc) const;

 private:
  std::int64_t begin;
  std::int64_t end;
  std::int64_t daylightBegin = 0;
  std::int64_t standardBegin = 0;
  std::int32_t standardOffset;
  std::int32_t daylightOffset;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_REGISTRYCLOCK_H
