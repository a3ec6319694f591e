#ifndef KTX_TIM_LEAPSECONDSCOPES_H
#define KTX_TIM_LEAPSECONDSCOPES_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "common/KTX_TIM_FakeClock.h"

namespace KTX::TIM::TEST {

/// Puts the process-wide store back to the default record, now and at the end.
class ScopedLeapSecondsC {
 public:
  ScopedLeapSecondsC();
  ~ScopedLeapSecondsC();
  ScopedLeapSecondsC(ScopedLeapSecondsC const&) = delete;
  ScopedLeapSecondsC& operator=(ScopedLeapSecondsC const&) = delete;
};

/// Lets the library's present stand still at a UTC instant, in milliseconds from 1970-01-01; the
/// system's clocks are back at the end.
class ScopedPresentC {
 public:
  explicit ScopedPresentC(std::int64_t utcMs);
  ~ScopedPresentC();
  ScopedPresentC(ScopedPresentC const&) = delete;
  ScopedPresentC& operator=(ScopedPresentC const&) = delete;

  void set(std::int64_t utcMs);

  /// How often the present was read, by the readings of the steady clock.
  std::size_t readCount() const { return steadyClock->readCount(); }

 private:
  boost::shared_ptr<FakeClockC> systemClock;
  boost::shared_ptr<FakeClockC> steadyClock;
};

/// Keeps the change events of the process-wide store that are sent while it exists.
class ChangeRecorderC {
 public:
  ChangeRecorderC();

  std::vector<UtcLeapSecondChanged> events;

 private:
  boost::signals2::scoped_connection connection;
};

/// The process-wide store's record in force, before any announced change.
UtcLeapSecondRecord recordInForce();
/// The satellite or default value of the process-wide store.
UtcLeapSecondRecord normalRecord();

/// All that can be seen of the process-wide store.
struct StoreStateC {
  UtcLeapSecondRecord inForce;
  UtcLeapSecondRecord normal;
  GPSTimeC effectivity;
  std::int16_t countBefore;  ///< in force 1 ms before the effectivity instant
  std::int16_t countFrom;    ///< in force at it
};
bool operator==(StoreStateC const& a, StoreStateC const& b);
StoreStateC storeState();

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_LEAPSECONDSCOPES_H
