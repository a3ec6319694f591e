#ifndef KTX_TIM_CLOCK_H
#define KTX_TIM_CLOCK_H

#include <cstdint>

#include <boost/chrono/duration.hpp>
#include <boost/date_time/posix_time/ptime.hpp>
#include <boost/ratio/ratio.hpp>

namespace KTX::TIM {

/// What a clock reads.
enum ClockTypeE : std::uint32_t {
  CLOCKTYPE_GETTICKCOUNT = 1,  ///< steady, in whole milliseconds
  CLOCKTYPE_STEADY = 2,        ///< steady
  CLOCKTYPE_POSIX = 3          ///< the calendar clock of the system
};

/// The calendar that a clock's zero refers to.
enum ClockReferenceE : std::uint32_t {
  CLOCKREF_UTC = 1,              ///< UTC
  CLOCKREF_LOCAL = 2,            ///< the local time of the system's zone
  CLOCKREF_NONE = 3,             ///< none: a monotonic counter
  CLOCKREF_DEFAULT = 0xFFFFFFFF  ///< as an argument of createClock() only: its own choice
};

/// A clock that counts ticks of Period: boost::milli or boost::nano. An implementation must be
/// readable from any thread.
template <class Period>
class ClockI {
 public:
  /// A count of ticks; a working clock never reads zero.
  using DurationT = boost::chrono::duration<std::int64_t, Period>;

  virtual ~ClockI() = default;

  /// The present reading.
  virtual DurationT now() const = 0;
  /// What this clock reads.
  virtual ClockTypeE getType() const = 0;
  /// The calendar of its readings; CLOCKREF_NONE for a counter.
  virtual ClockReferenceE getReference() const = 0;
  /// The instant that reading zero stands for; not_a_date_time without a calendar reference.
  virtual boost::posix_time::ptime getEpoch() const = 0;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_CLOCK_H
