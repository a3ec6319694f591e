#ifndef KTX_TIM_YMDHMS_H
#define KTX_TIM_YMDHMS_H

#include <cstdint>
#include <ctime>
#include <iosfwd>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_TimeBase.h"

namespace KTX::TIM {

class GPSTimeC;
class GpsTimeC;
class MjdTimeC;

/// A calendar date with a time of day, in a time base.
///
/// Hundredths and milliseconds tell the same fraction of a second twice: the milliseconds count
/// only when milliseconds / 10 equals the hundredths, else hundredths * 10 is read.
///
/// Fields out of range are not checked: their sum counts, so that 31 February 2024 is 2 March 2024
/// after a conversion. The one exception of the date library that can come is
/// boost::gregorian::bad_year, from every operation that turns a day number after 9999-12-31 into a
/// date; the value then stays as it was. A plain value without a lock.
class KTX_TIM_API YmdhmsC {
 public:
  /// Reads the present: GPS time, to hundredths. Takes the library-wide lock and prints the warning
  /// of makeToCurrentTime(). zero() builds a value without reading a clock.
  YmdhmsC();
  /// Rounds half away from zero to hundredths; the time base is taken over.
  YmdhmsC(GpsTimeC const& time);  // NOLINT(google-explicit-constructor): interchangeable forms
  /// Rounds half away from zero to hundredths; TIMEBASE_GPS.
  YmdhmsC(GPSTimeC const& time);  // NOLINT(google-explicit-constructor): interchangeable forms
  /// Rounds half away from zero to the precision; a day number of 0 or less gives all zeros.
  YmdhmsC(MjdTimeC const& time,  // NOLINT(google-explicit-constructor): interchangeable forms
          std::uint32_t precision = 0);
  /// From the packed time and date of the FAT file system: local time, 1980 to 2107, even
  /// seconds, day of week 0.
  YmdhmsC(std::uint16_t fatTime, std::uint16_t fatDate);
  /// From broken-down time, as local time; null raises an assertion and gives all zeros.
  explicit YmdhmsC(std::tm const* brokenDown);

  /// All fields zero; reads no clock and takes no lock.
  static YmdhmsC zero(TimeBaseE timeBase = TIMEBASE_LOCAL, std::uint32_t precision = 0);

  /// Sets all fields and the time base from a day number; the precision stays.
  void setFrom(MjdTimeC const& time);
  /// Sets all fields from broken-down time, as local time with precision 0; null raises an
  /// assertion and changes nothing.
  void fromTm(std::tm const* brokenDown);
  /// Fills broken-down time from the fields as they stand; tm_yday and tm_isdst become -1. Null
  /// raises an assertion.
  void toTm(std::tm* brokenDown) const;
  /// Packs this instant, brought to local time, for the FAT file system; years outside 1980 to
  /// 2107 are cut to 16 bits.
  void toFatDateTime(std::uint16_t& fatTime, std::uint16_t& fatDate) const;

  /// Days of this value's month; 30 for a month that does not exist.
  std::uint8_t daysInMonth() const;
  /// Gregorian rule.
  bool isLeapYear() const;
  /// True when milliseconds / 10 (truncated) equals the hundredths.
  bool isFractionConsistent() const;
  /// The milliseconds when the fraction is consistent, else hundredths * 10.
  std::int64_t effectiveMilliseconds() const;

  /// As MjdTimeC::toUtc(), through the day number at this value's precision.
  void toUtc();
  /// As MjdTimeC::toGps(), through the day number at this value's precision.
  void toGps();
  /// As MjdTimeC::utcToLocal(), through the day number at this value's precision.
  void utcToLocal();
  /// As MjdTimeC::localToUtc(), through the day number at this value's precision.
  void localToUtc();

  ///@{
  /// Compares all fields after bringing the other value into this one's base; between equal
  /// bases nothing is normalised, so the stored day of week counts. Precision and base do not.
  bool operator==(YmdhmsC const& other) const;
  bool operator!=(YmdhmsC const& other) const;
  ///@}

  /// Fills this value with the present in GPS time at its precision; day of week becomes 0.
  /// Takes the library-wide lock. Prints a warning on standard output when the present was last
  /// seeded or corrected more than a day ago, unless setPresentWarningEnabled() turned it off.
  void makeToCurrentTime();
  /// As makeToCurrentTime(), then normalised, so that the day of week is set too.
  void setToCurrentTime();
  /// Hands this instant to the offset filter as an observation with noiseMs, its standard
  /// deviation in milliseconds; 0 or less makes it exact. The value is only read. Always returns 0.
  /// Takes the library-wide lock; a released correction is announced by the correction signal after
  /// the lock is released. Prints the warning of makeToCurrentTime() where it corrects nothing.
  std::uint32_t makeToCurrentTime(std::int64_t noiseMs) const;
  /// Sets the clock of the PC to this value. False when the base is not UTC (with an assertion,
  /// and without touching the clock) or when the system refuses, for want of privilege as a rule.
  bool applyToCurrentSystemTime() const;
  /// Emits the time signal with this instant in GPS time. A UTC or LOCAL value of precision 0 is
  /// rounded to hundredths on the way: 127 ms with 12 hundredths become 130 ms; a GPS value is not.
  /// A value without one of these bases is emitted as it stands. Does not take the library-wide
  /// lock. Always returns 0.
  std::uint32_t emitTimeSignal() const;

  std::uint16_t year;         ///< full year, such as 2024
  std::uint8_t month;         ///< 1 to 12
  std::uint8_t day;           ///< 1 to 31
  std::uint8_t hour;          ///< 0 to 23
  std::uint8_t minute;        ///< 0 to 59
  std::uint8_t second;        ///< 0 to 59
  std::uint8_t hundredths;    ///< 0 to 99, hundredths of the second
  std::uint8_t dayOfWeek;     ///< 1 to 7, Sunday is 1
  std::int64_t milliseconds;  ///< 0 to 999, milliseconds of the second
  std::uint32_t precision;    ///< 0: kept to hundredths; any other value: to milliseconds
  TimeBaseE timeBase;         ///< the base in which the fields are to be read

 private:
  struct ZeroTag;
  YmdhmsC(ZeroTag tag, TimeBaseE base, std::uint32_t keptPrecision);
};

/// Writes the instant in UTC as 2024-03-07T08:09:05.42Z. Hundredths below 10 have one digit, as
/// in 08:09:05.5Z for 5 hundredths; this is meant. The stream's formatting neither shows nor
/// changes.
KTX_TIM_API std::ostream& operator<<(std::ostream& stream, YmdhmsC const& time);

/// Reads seven decimal numbers (year to hundredths), each followed by one character that is not
/// looked at; a closing 'Z' sets TIMEBASE_UTC, any other keeps the base. Sets the fields from year
/// to hundredths and the milliseconds.
///
/// The last number counts hundredths, however many digits it has: ".42Z" is 420 ms, ".042Z" as
/// well, and ".420Z" is cut to 8 bits, 164, and means 1.64 s. No range is checked: each number is
/// cut to the width of its field. An offset is not read: of "05.42+01:00" the '+' is the closing
/// character and "01:00" stays in the stream. The fraction must be there: "08:09:05Z" cannot be
/// read. Day of week and precision stay as they were, so a value that was written and read back
/// into another is not equal to the first unless both have the same day of week.
///
/// When a number cannot be read, or does not fit 32 bits, failbit is set and the value is
/// unchanged. When only the closing character is missing, all fields are set, and failbit too.
KTX_TIM_API std::istream& operator>>(std::istream& stream, YmdhmsC& time);

}  // namespace KTX::TIM

#endif  // KTX_TIM_YMDHMS_H
