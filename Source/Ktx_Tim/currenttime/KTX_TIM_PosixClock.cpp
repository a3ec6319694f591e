#include "currenttime/KTX_TIM_PosixClock.h"

#include <limits>
#include <type_traits>

#include <boost/date_time/gregorian/greg_date.hpp>
#include <boost/date_time/microsec_time_clock.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>

#include "KTX/TIM/KTX_TIM_LogAssert.h"

namespace KTX::TIM {

using boost::posix_time::ptime;

namespace {

std::int64_t multiplySaturated(std::int64_t value, std::int64_t positiveFactor) {
  constexpr std::int64_t MAXIMUM = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t MINIMUM = std::numeric_limits<std::int64_t>::min();
  if (value > MAXIMUM / positiveFactor) {
    return MAXIMUM;
  }
  if (value < MINIMUM / positiveFactor) {
    return MINIMUM;
  }
  return value * positiveFactor;
}

ptime readCalendar(ClockReferenceE reference) {
  using ClockT = boost::posix_time::microsec_clock;
  switch (reference) {
    case CLOCKREF_UTC:
      return ClockT::universal_time();
    case CLOCKREF_LOCAL:
      return ClockT::local_time();
    default:
      return ptime(boost::posix_time::not_a_date_time);
  }
}

bool isWithoutCalendar(ClockReferenceE reference) {
  return reference == CLOCKREF_NONE || reference == CLOCKREF_DEFAULT ||
         reference == static_cast<ClockReferenceE>(0);
}

}  // namespace

// The end of the process leaves it as it is.
static_assert(std::is_trivially_destructible_v<ptime>);

template <class Period>
ptime const& posixEpoch() {
  static ptime const epoch(boost::gregorian::date(1970, boost::gregorian::Jan, 1));
  return epoch;
}

template <>
ClockI<boost::milli>::DurationT ticksSinceEpoch<boost::milli>(ptime const& instant) {
  constexpr std::int64_t US_PER_MS = 1000;
  if (instant.is_special()) {
    return ClockI<boost::milli>::DurationT(0);
  }
  auto const sinceEpoch = instant - posixEpoch<boost::milli>();
  return ClockI<boost::milli>::DurationT(sinceEpoch.total_microseconds() / US_PER_MS);
}

template <>
ClockI<boost::nano>::DurationT ticksSinceEpoch<boost::nano>(ptime const& instant) {
  constexpr std::int64_t NS_PER_US = 1000;
  if (instant.is_special()) {
    return ClockI<boost::nano>::DurationT(0);
  }
  auto const sinceEpoch = instant - posixEpoch<boost::nano>();
  // Nanoseconds fit until the year 2262.
  std::int64_t const ns = multiplySaturated(sinceEpoch.total_microseconds(), NS_PER_US);
  return ClockI<boost::nano>::DurationT(ns);
}

template <class Period>
PosixClockC<Period>::PosixClockC(ClockReferenceE clockReference) : reference(clockReference) {}

template <class Period>
typename ClockI<Period>::DurationT PosixClockC<Period>::now() const {
  if (isWithoutCalendar(reference)) {
    logAssertion("Calendar clock has no calendar reference!");
    return typename ClockI<Period>::DurationT(0);
  }
  return ticksSinceEpoch<Period>(readCalendar(reference));
}

template <class Period>
ClockTypeE PosixClockC<Period>::getType() const {
  return CLOCKTYPE_POSIX;
}

template <class Period>
ClockReferenceE PosixClockC<Period>::getReference() const {
  return reference;
}

template <class Period>
ptime PosixClockC<Period>::getEpoch() const {
  return posixEpoch<Period>();
}

template ptime const& posixEpoch<boost::milli>();
template ptime const& posixEpoch<boost::nano>();
template class PosixClockC<boost::milli>;
template class PosixClockC<boost::nano>;

}  // namespace KTX::TIM
