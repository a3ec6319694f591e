#include <algorithm>
#include <ctime>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Posix/KTX_TIM_ZoneSources.h"
#include "Posix/KTX_TIM_ZoneTable.h"
#include "timezones/KTX_TIM_CodeUnits.h"
#include "timezones/KTX_TIM_LibraryClock.h"
#include "timezones/KTX_TIM_RegistryClock.h"
#include "timezones/KTX_TIM_WindowsZoneTable.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t SECONDS_PER_MINUTE = 60;
constexpr std::int64_t SECONDS_PER_HOUR = 3600;

std::int32_t presentYear() {
  std::time_t const now = currentZoneSources().utc;
  std::tm fields{};
  gmtime_r(&now, &fields);
  return fields.tm_year + 1900;
}

std::string narrow(std::wstring const& text) {
  return {text.begin(), text.end()};
}

// For how many samples at best one stretch at one offset, and one other offset besides, fit.
std::size_t bestFit(std::vector<std::int64_t> const& offsets) {
  std::vector<std::size_t> borders{0};
  for (std::size_t i = 1; i < offsets.size(); ++i) {
    if (offsets[i] != offsets[i - 1]) {
      borders.push_back(i);
    }
  }
  borders.push_back(offsets.size());
  std::size_t best = 0;
  for (std::size_t first = 0; first < borders.size(); ++first) {
    for (std::size_t last = first + 1; last < borders.size(); ++last) {
      std::map<std::int64_t, std::size_t> inside;
      std::map<std::int64_t, std::size_t> outside;
      for (std::size_t i = 0; i < offsets.size(); ++i) {
        ++(i >= borders[first] && i < borders[last] ? inside : outside)[offsets[i]];
      }
      std::size_t fit = 0;
      for (auto const* counts : {&inside, &outside}) {
        std::size_t most = 0;
        for (auto const& count : *counts) {
          most = std::max(most, count.second);
        }
        fit += most;
      }
      best = std::max(best, fit);
    }
  }
  return best;
}

// Compares a table with the C library at even distances through its year, by each zone's clock.
void expectTableToAgree(std::int32_t year, std::int64_t stepSeconds) {
  ZoneTableC const table(currentZoneSources().databaseFolder, year);
  for (auto const& row : WINDOWS_ZONE_TABLE) {
    std::string const ianaName = narrow(row.primaryIanaName);
    SCOPED_TRACE(ianaName + " in " + std::to_string(year));
    ZoneTableC::EntryC const* const entry = table.find(toCodeUnits(row.windowsName));
    ASSERT_NE(nullptr, entry);
    EnvironmentZoneC const zone((":" + ianaName).c_str());
    RegistryClockC const clock(entry->record, year);
    std::size_t right = 0;
    std::vector<std::int64_t> offsets;
    for (std::int64_t utc = clock.yearBegin(); utc < clock.yearEnd(); utc += stepSeconds) {
      offsets.push_back(libraryOffsetSeconds(utc));
      right += offsets.back() == clock.offsetAt(utc) * SECONDS_PER_MINUTE ? 1U : 0U;
    }
    std::size_t const best = bestFit(offsets);
    if (best == offsets.size()) {
      EXPECT_EQ(offsets.size(), right);
    } else {
      // No form fits the year: at each of its few changes a sample more or less may be right.
      EXPECT_GE(right + 6, best);
      ::testing::Test::RecordProperty(ianaName + std::to_string(year),
                                      static_cast<int>(offsets.size() - right));
    }
  }
}

TEST(ZoneTableAgainstLibrary, AgreesAtEveryHourOfThePresentYear) {
  expectTableToAgree(presentYear(), SECONDS_PER_HOUR);
}

TEST(ZoneTableAgainstLibrary, AgreesInEarlierAndLaterYears) {
  for (std::int32_t year = 1995; year <= 2045; ++year) {
    expectTableToAgree(year, 37 * SECONDS_PER_HOUR);
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
