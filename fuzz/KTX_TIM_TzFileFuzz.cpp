#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Posix/KTX_TIM_CivilDate.h"
#include "Posix/KTX_TIM_TzFile.h"
#include "Posix/KTX_TIM_YearlyZoneRecord.h"

namespace KTX::TIM {

namespace {

constexpr std::int64_t FIRST_YEAR = 1900;
constexpr std::int64_t YEAR_STEP = 33;
constexpr std::int64_t LAST_YEAR = 2200;

void require(bool isTrue) {
  if (!isTrue) {
    std::abort();
  }
}

bool isRule(SystemTimeRecordC const& date) {
  return date.year == 0 && date.month >= 1 && date.month <= 12 && date.dayOfWeek <= 6 &&
         date.day >= 1 && date.day <= 5 && date.hour <= 23 && date.minute <= 59 &&
         date.second <= 59;
}

void readZone(ZoneDataC const& zone) {
  for (std::int64_t year = FIRST_YEAR; year <= LAST_YEAR; year += YEAR_STEP) {
    std::int64_t const begin = localStartOfYear(zone, year);
    std::int64_t const end = localStartOfYear(zone, year + 1);
    std::int64_t previous = begin;
    for (std::int64_t const moment : zone.changesBetween(begin, end)) {
      require(moment >= previous && moment < end);
      previous = moment;
      zone.offsetAt(moment);
    }
    ZoneRecordC const record = yearlyZoneRecord(zone, year);
    bool const hasRules = record.daylightDate.month != 0;
    require(hasRules == (record.standardDate.month != 0));
    require(record.standardBias == 0 && record.daylightBias <= 0);
    require(!hasRules || (isRule(record.standardDate) && isRule(record.daylightDate)));
  }
}

}  // namespace

}  // namespace KTX::TIM

// The bytes are taken as the file of a zone and as the text of its rules.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const bytes(reinterpret_cast<char const*>(data), size);
  KTX::TIM::ZoneDataC zone;
  if (KTX::TIM::parseTzFile(bytes, zone)) {
    KTX::TIM::readZone(zone);
  }
  KTX::TIM::PosixZoneRuleC rule;
  if (KTX::TIM::PosixZoneRuleC::parse(bytes, rule)) {
    KTX::TIM::readZone(KTX::TIM::ZoneDataC(rule));
  }
  return 0;
}
