#ifndef KTX_TIM_LEAPSECONDMODEL_H
#define KTX_TIM_LEAPSECONDMODEL_H

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::TIM {

/// For the messages of failing tests; found by the name of its argument's namespace.
void PrintTo(UtcLeapSecondRecord const& record, std::ostream* stream);

}  // namespace KTX::TIM

/// The rules of leap second records written a second time, in plain integers and without the
/// library: what tests and fuzz targets compare it with. Instants are milliseconds from the GPS
/// epoch in GPS time, below 65536 weeks.
namespace KTX::TIM::TEST {

constexpr std::int64_t MODEL_DAY_MS = 86400000;
constexpr std::int64_t MODEL_WEEK_MS = 7 * MODEL_DAY_MS;
constexpr std::int64_t MODEL_RANGE_MS = 65536 * MODEL_WEEK_MS;

struct CivilDateC {
  std::int64_t year;
  std::int64_t month;
  std::int64_t day;
};

/// Whole days from the GPS epoch, 1980-01-06, to a date and back, Gregorian.
std::int64_t daysOfCivil(CivilDateC const& date);
CivilDateC civilOfDays(std::int64_t days);

/// The same time of day six months on; the last day of a month stays the last day of the month.
std::int64_t sixMonthsOn(std::int64_t ms);

/// The end of the record's day, with and without its future count, wrapped to the range.
std::int64_t modelDayEnd(UtcLeapSecondRecord const& record);
std::int64_t modelEffectivity(UtcLeapSecondRecord const& record);

struct ModelValidityC {
  bool isValid;
  bool isLogged;
};
ModelValidityC modelValidity(UtcLeapSecondRecord const& record);

struct ModelVerdictC {
  int verdict;
  int assertions;
};
ModelVerdictC modelVerdict(UtcLeapSecondRecord const& held,
                           UtcLeapSecondRecord const& incoming,
                           std::int64_t nowMs);

/// The process-wide store, as it should be.
class ModelStoreC {
 public:
  struct ChangeC {
    UtcLeapSecondRecord previous;
    UtcLeapSecondRecord current;
  };

  /// The result code; change is filled when listeners are to be told.
  std::uint32_t set(UtcLeapSecondRecord const& record,
                    std::int64_t nowMs,
                    std::optional<ChangeC>& change);
  std::uint32_t reset(UtcLeapSecondRecord const* record);

  UtcLeapSecondRecord inForce() const;
  UtcLeapSecondRecord normal() const { return normalSlot; }
  /// The answer for an instant, and the effectivity instant.
  UtcLeapSecondRecord at(std::int64_t ms) const;
  std::int64_t effectivity() const;

 private:
  UtcLeapSecondRecord normalSlot{LEAPSECOND_DEFAULT, 18, 18, 1929, 7, true};
  UtcLeapSecondRecord forcedSlot{LEAPSECOND_DEFAULT, 18, 18, 1929, 7, true};
};

/// The record of the first usable line of a leap second file's text.
std::optional<UtcLeapSecondRecord> modelFile(std::string const& text);

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_LEAPSECONDMODEL_H
