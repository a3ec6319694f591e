#ifndef KTX_TIM_LIBRARYCLOCK_H
#define KTX_TIM_LIBRARYCLOCK_H

#include <cstdint>
#include <optional>
#include <string>

namespace KTX::TIM::TEST {

/// Sets the environment's zone for as long as it exists. No other thread may run meanwhile.
class EnvironmentZoneC {
 public:
  /// A null zone takes the setting away.
  explicit EnvironmentZoneC(char const* zone);
  ~EnvironmentZoneC();
  EnvironmentZoneC(EnvironmentZoneC const&) = delete;
  EnvironmentZoneC& operator=(EnvironmentZoneC const&) = delete;

 private:
  std::optional<std::string> previous;
};

/// The seconds east of Greenwich that the C library's local time has at utc, in seconds since
/// 1970-01-01.
std::int64_t libraryOffsetSeconds(std::int64_t utc);

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_LIBRARYCLOCK_H
