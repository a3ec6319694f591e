#ifndef KTX_TIM_GPSTIMEVALUE_H
#define KTX_TIM_GPSTIMEVALUE_H

#include <cstdint>
#include <iosfwd>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"

namespace KTX::TIM {

/// A GPS week and the milliseconds of that week: the bare value of every instant.
///
/// The week counts from the GPS epoch, 1980-01-06, without the 1024-week roll-over; arithmetic
/// on it wraps at 16 bits. The milliseconds of week are 0 to 604799999. A plain value without a
/// lock: copies may go to other threads. Nothing here throws.
class KTX_TIM_API GPSTimeC {
 public:
  /// Week 0, 0 ms.
  GPSTimeC();
  /// Whole weeks in msOfWeek are carried into the week, which wraps at 16 bits.
  GPSTimeC(std::uint16_t week, std::uint32_t msOfWeek);
  /// Copies week and milliseconds.
  GPSTimeC(GPSTimeC const& other);
  /// The absolute distance of two instants. Where the borrow of a week would make the week
  /// negative it becomes 0 and the milliseconds stay as computed.
  GPSTimeC(GPSTimeC const& a, GPSTimeC const& b);
  virtual ~GPSTimeC();

  /// Copies week and milliseconds.
  GPSTimeC& operator=(GPSTimeC const& other);

  /// GPS week, 0 to 65535.
  std::uint16_t getWeek() const { return week; }
  /// Milliseconds of week, 0 to 604799999.
  std::uint32_t getMsOfWeek() const { return msOfWeek; }

  /// Milliseconds since the GPS epoch, saturated at 4294967295 (reached in week 7).
  std::uint32_t toMilliseconds32() const;
  /// Milliseconds since the GPS epoch.
  std::uint64_t toMilliseconds64() const;

  ///@{
  /// Compares the weeks; at equal weeks the milliseconds decide.
  bool operator==(GPSTimeC const& other) const;
  bool operator!=(GPSTimeC const& other) const;
  bool operator<(GPSTimeC const& other) const;
  bool operator<=(GPSTimeC const& other) const;
  bool operator>(GPSTimeC const& other) const;
  bool operator>=(GPSTimeC const& other) const;
  ///@}

  ///@{
  /// Adds weeks and milliseconds; the week wraps at 16 bits.
  GPSTimeC operator+(GPSTimeC const& other) const;
  GPSTimeC& operator+=(GPSTimeC const& other);
  ///@}
  ///@{
  /// Subtracts another instant. Floors at week 0, while subtracting milliseconds wraps; both are
  /// meant.
  GPSTimeC operator-(GPSTimeC const& other) const;
  GPSTimeC& operator-=(GPSTimeC const& other);
  ///@}
  ///@{
  /// Adds milliseconds of either sign; the week wraps at 16 bits.
  GPSTimeC operator+(std::int64_t milliseconds) const;
  GPSTimeC& operator+=(std::int64_t milliseconds);
  ///@}
  ///@{
  /// Subtracts milliseconds of either sign; the week wraps at 16 bits.
  GPSTimeC operator-(std::int64_t milliseconds) const;
  GPSTimeC& operator-=(std::int64_t milliseconds);
  ///@}
  /// Adds seconds of either sign in place; the week wraps at 16 bits.
  GPSTimeC& addSeconds(std::int32_t seconds);

 protected:
  /// Stores both as they are, also milliseconds beyond a week.
  void setRaw(std::uint16_t newWeek, std::uint32_t newMsOfWeek);

 private:
  std::uint32_t msOfWeek;
  std::uint16_t week;
};

/// Signed milliseconds from b to a, without a floor: positive when a is the later one.
KTX_TIM_API std::int64_t differenceMs(GPSTimeC const& a, GPSTimeC const& b);

/// Writes "week: ", the week, " msec: " and the milliseconds in plain decimal. The stream's own
/// formatting neither shows nor changes.
KTX_TIM_API std::ostream& operator<<(std::ostream& stream, GPSTimeC const& time);

}  // namespace KTX::TIM

#endif  // KTX_TIM_GPSTIMEVALUE_H
