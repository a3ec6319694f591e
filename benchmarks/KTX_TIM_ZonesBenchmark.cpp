#include <cstdlib>
#include <string>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <benchmark/benchmark.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX_TIM_ZoneWorks.h"

namespace KTX::TIM::BENCH {
namespace {

icu::UnicodeString icuText(wchar_t const* text) {
  std::wstring const wide(text);
  return icu::UnicodeString::fromUTF8(std::string(wide.begin(), wide.end()));
}

template <class LookupT>
void lookUpInIcu(benchmark::State& state,
                 LookupT const& lookup,
                 wchar_t const* const (&names)[NAME_COUNT]) {
  icu::UnicodeString const keys[NAME_COUNT] = {icuText(names[0]), icuText(names[1]),
                                               icuText(names[2]), icuText(names[3])};
  icu::UnicodeString found;
  std::size_t next = 0;
  for (auto _ : state) {
    UErrorCode code = U_ZERO_ERROR;
    lookup(keys[next++ % NAME_COUNT], found, code);
    benchmark::DoNotOptimize(found);
  }
}

void toIana(icu::UnicodeString const& name, icu::UnicodeString& found, UErrorCode& code) {
  icu::TimeZone::getIDForWindowsID(name, nullptr, found, code);
}

void toWindows(icu::UnicodeString const& name, icu::UnicodeString& found, UErrorCode& code) {
  icu::TimeZone::getWindowsID(name, found, code);
}

BENCHMARK_TEMPLATE(hitWindowsZoneName, benchmark::State)->Name("BM_windows_zone_name_hit/vortime");

void BM_windows_zone_name_hit_id(benchmark::State& state) {
  lookUpInIcu(state, toIana, WINDOWS_HITS);
}
BENCHMARK(BM_windows_zone_name_hit_id)->Name("BM_windows_zone_name_hit/icu_getIDForWindowsID");

void BM_windows_zone_name_hit_windows(benchmark::State& state) {
  lookUpInIcu(state, toWindows, IANA_HITS);
}
BENCHMARK(BM_windows_zone_name_hit_windows)->Name("BM_windows_zone_name_hit/icu_getWindowsID");

BENCHMARK_TEMPLATE(missWindowsZoneName, benchmark::State)
    ->Name("BM_windows_zone_name_miss/vortime");

void BM_windows_zone_name_miss_id(benchmark::State& state) {
  lookUpInIcu(state, toIana, WINDOWS_MISSES);
}
BENCHMARK(BM_windows_zone_name_miss_id)->Name("BM_windows_zone_name_miss/icu_getIDForWindowsID");

void BM_windows_zone_name_miss_windows(benchmark::State& state) {
  lookUpInIcu(state, toWindows, IANA_MISSES);
}
BENCHMARK(BM_windows_zone_name_miss_windows)->Name("BM_windows_zone_name_miss/icu_getWindowsID");

BENCHMARK_TEMPLATE(hitIanaZoneName, benchmark::State)->Name("BM_iana_zone_name_hit/vortime");

void BM_iana_zone_name_hit_id(benchmark::State& state) {
  lookUpInIcu(state, toIana, WINDOWS_HITS);
}
BENCHMARK(BM_iana_zone_name_hit_id)->Name("BM_iana_zone_name_hit/icu_getIDForWindowsID");

BENCHMARK_TEMPLATE(missIanaZoneName, benchmark::State)->Name("BM_iana_zone_name_miss/vortime");

void BM_iana_zone_name_miss_id(benchmark::State& state) {
  lookUpInIcu(state, toIana, WINDOWS_MISSES);
}
BENCHMARK(BM_iana_zone_name_miss_id)->Name("BM_iana_zone_name_miss/icu_getIDForWindowsID");

void BM_zone_list_vortime(benchmark::State& state) {
  TimeZoneC::ZoneNamesT zones;
  for (auto _ : state) {
    if (getTimeZoneInstance().getTimeZoneList(zones) != RC_OK) {
      state.SkipWithError("no zones");
      break;
    }
  }
}
BENCHMARK(BM_zone_list_vortime)->Name("BM_zone_list/vortime");

// A database folder under another name is read anew.
void BM_zone_tree_build_vortime(benchmark::State& state) {
  char const* const folders[] = {"/usr/share/zoneinfo", "/usr/share/zoneinfo/"};
  std::size_t next = 0;
  for (auto _ : state) {
    setenv("TZDIR", folders[next++ % 2], 1);  // NOLINT(concurrency-mt-unsafe) one thread
    if (getTimeZoneInstance().checkTimeZone(L"UTC") != RC_OK) {
      state.SkipWithError("no zones");
      break;
    }
  }
  unsetenv("TZDIR");  // NOLINT(concurrency-mt-unsafe) one thread
}
BENCHMARK(BM_zone_tree_build_vortime)->Name("BM_zone_tree_build/vortime");

void BM_utc_offset_vortime(benchmark::State& state) {
  GpsC const time(0, 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(getTimeZoneInstance().getUtcOffset(time));
  }
}
BENCHMARK(BM_utc_offset_vortime)->Name("BM_utc_offset/vortime");

}  // namespace
}  // namespace KTX::TIM::BENCH
