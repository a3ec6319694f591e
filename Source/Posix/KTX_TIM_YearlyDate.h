#ifndef KTX_TIM_YEARLYDATE_H
#define KTX_TIM_YEARLYDATE_H

#include <cstdint>
#include <string_view>

namespace KTX::TIM {

/// A moment of every year by the local clock, as a POSIX time zone text gives it.
struct YearlyDateC {
  enum FormE : std::int32_t {
    /// "Mm.w.d": the day of the week, the first to fourth of the month, or the last.
    FORM_MONTH_WEEK_DAY,
    /// "Jn": day 1 to 365; February 29 is never counted.
    FORM_JULIAN_DAY,
    /// "n": day 0 to 365; February 29 is counted.
    FORM_DAY_OF_YEAR
  };

  FormE form = FORM_MONTH_WEEK_DAY;
  std::int32_t month = 1;
  /// 1 to 5; 5 is the last.
  std::int32_t week = 1;
  /// 0 for Sunday to 6 for Saturday.
  std::int32_t weekday = 0;
  /// Of the two forms that count days.
  std::int32_t day = 0;
  /// From midnight of that day; may be before it, or days after.
  std::int32_t secondsOfDay = 7200;

  /// The moment in that year, in seconds since 1970-01-01 by the local clock.
  std::int64_t inYear(std::int64_t year) const;
};

/// Reads a date from the front of text and takes it off; false when there is none.
bool parseYearlyDate(std::string_view& text, YearlyDateC& date);

}  // namespace KTX::TIM

#endif  // KTX_TIM_YEARLYDATE_H
