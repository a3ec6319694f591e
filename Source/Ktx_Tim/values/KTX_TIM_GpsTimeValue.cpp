#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"

#include <limits>
#include <ostream>

#include "values/KTX_TIM_TextBuffer.h"
#include "values/KTX_TIM_WeekText.h"
#include "values/KTX_TIM_WeekTime.h"

namespace KTX::TIM {

GPSTimeC::GPSTimeC() : msOfWeek(0), week(0) {}

GPSTimeC::GPSTimeC(std::uint16_t newWeek, std::uint32_t newMsOfWeek)
    : msOfWeek(newMsOfWeek % MS_PER_WEEK),
      week(static_cast<std::uint16_t>(newWeek + newMsOfWeek / MS_PER_WEEK)) {}

GPSTimeC::GPSTimeC(GPSTimeC const& other) = default;

GPSTimeC::GPSTimeC(GPSTimeC const& a, GPSTimeC const& b) : GPSTimeC(a < b ? b : a) {
  *this -= a < b ? a : b;
}

GPSTimeC::~GPSTimeC() = default;

GPSTimeC& GPSTimeC::operator=(GPSTimeC const& other) = default;

std::uint32_t GPSTimeC::toMilliseconds32() const {
  constexpr std::uint32_t LIMIT = std::numeric_limits<std::uint32_t>::max();
  std::uint64_t const total = toMilliseconds64();
  return total > LIMIT ? LIMIT : static_cast<std::uint32_t>(total);
}

std::uint64_t GPSTimeC::toMilliseconds64() const {
  return std::uint64_t{week} * MS_PER_WEEK + msOfWeek;
}

bool GPSTimeC::operator==(GPSTimeC const& other) const {
  return week == other.week && msOfWeek == other.msOfWeek;
}

bool GPSTimeC::operator!=(GPSTimeC const& other) const {
  return !(*this == other);
}

bool GPSTimeC::operator<(GPSTimeC const& other) const {
  return week != other.week ? week < other.week : msOfWeek < other.msOfWeek;
}

bool GPSTimeC::operator<=(GPSTimeC const& other) const {
  return !(other < *this);
}

bool GPSTimeC::operator>(GPSTimeC const& other) const {
  return other < *this;
}

bool GPSTimeC::operator>=(GPSTimeC const& other) const {
  return !(*this < other);
}

GPSTimeC GPSTimeC::operator+(GPSTimeC const& other) const {
  GPSTimeC sum(*this);
  sum += other;
  return sum;
}

GPSTimeC& GPSTimeC::operator+=(GPSTimeC const& other) {
  std::uint32_t const sum = msOfWeek + other.msOfWeek;
  week = static_cast<std::uint16_t>(week + other.week + sum / MS_PER_WEEK);
  msOfWeek = sum % MS_PER_WEEK;
  return *this;
}

GPSTimeC GPSTimeC::operator-(GPSTimeC const& other) const {
  GPSTimeC difference(*this);
  difference -= other;
  return difference;
}

GPSTimeC& GPSTimeC::operator-=(GPSTimeC const& other) {
  std::int32_t weeks = week - other.week;
  std::uint32_t milliseconds = msOfWeek;
  if (milliseconds < other.msOfWeek) {
    milliseconds += MS_PER_WEEK;
    --weeks;
  }
  msOfWeek = milliseconds - other.msOfWeek;
  // Floors at week 0, while taking off milliseconds wraps; both are meant.
  week = weeks < 0 ? std::uint16_t{0} : static_cast<std::uint16_t>(weeks);
  return *this;
}

GPSTimeC GPSTimeC::operator+(std::int64_t milliseconds) const {
  GPSTimeC sum(*this);
  sum += milliseconds;
  return sum;
}

GPSTimeC& GPSTimeC::operator+=(std::int64_t milliseconds) {
  std::uint64_t const magnitude = magnitudeOf(milliseconds);
  WeekTimeC const time{week, msOfWeek};
  WeekTimeC const sum = milliseconds < 0 ? taken(time, magnitude) : added(time, magnitude);
  setRaw(sum.week, sum.msOfWeek);
  return *this;
}

GPSTimeC GPSTimeC::operator-(std::int64_t milliseconds) const {
  GPSTimeC difference(*this);
  difference -= milliseconds;
  return difference;
}

GPSTimeC& GPSTimeC::operator-=(std::int64_t milliseconds) {
  std::uint64_t const magnitude = magnitudeOf(milliseconds);
  WeekTimeC const time{week, msOfWeek};
  WeekTimeC const difference = milliseconds < 0 ? added(time, magnitude) : taken(time, magnitude);
  setRaw(difference.week, difference.msOfWeek);
  return *this;
}

GPSTimeC& GPSTimeC::addSeconds(std::int32_t seconds) {
  return *this += std::int64_t{seconds} * 1000;
}

void GPSTimeC::setRaw(std::uint16_t newWeek, std::uint32_t newMsOfWeek) {
  week = newWeek;
  msOfWeek = newMsOfWeek;
}

std::int64_t differenceMs(GPSTimeC const& a, GPSTimeC const& b) {
  return (std::int64_t{a.getWeek()} - b.getWeek()) * MS_PER_WEEK + a.getMsOfWeek() -
         b.getMsOfWeek();
}

std::ostream& operator<<(std::ostream& stream, GPSTimeC const& time) {
  TextBufferC text;
  appendWeek(text, time);
  return text.insertInto(stream);
}

}  // namespace KTX::TIM
