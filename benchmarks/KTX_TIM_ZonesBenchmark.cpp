#include <cstdlib>
#include <string>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <benchmark/benchmark.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"

namespace {

using KTX::TIM::getIanaZoneName;
using KTX::TIM::getTimeZoneInstance;
using KTX::TIM::getWindowsZoneName;
using KTX::TIM::RC_OK;

// Names from the front, the middle and the back of the table, or such that stand nowhere in it.
constexpr wchar_t const* IANA_HITS[] = {L"Africa/Cairo", L"America/New_York", L"Asia/Tokyo",
                                        L"Europe/Berlin"};
constexpr wchar_t const* IANA_MISSES[] = {L"Africa/Nowhere", L"America/Nowhere", L"Asia/Nowhere",
                                          L"Europe/Nowhere"};
constexpr wchar_t const* WINDOWS_HITS[] = {L"Egypt Standard Time", L"Eastern Standard Time",
                                           L"Tokyo Standard Time", L"W. Europe Standard Time"};
constexpr wchar_t const* WINDOWS_MISSES[] = {L"Egypt Summer Time", L"Eastern Summer Time",
                                             L"Tokyo Summer Time", L"W. Europe Summer Time"};
constexpr std::size_t NAME_COUNT = 4;

using LookupT = std::uint32_t (*)(std::wstring const&, std::wstring&);

void lookUp(benchmark::State& state, LookupT lookup, wchar_t const* const (&names)[NAME_COUNT]) {
  std::wstring const keys[NAME_COUNT] = {names[0], names[1], names[2], names[3]};
  std::wstring found;
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(lookup(keys[next++ % NAME_COUNT], found));
    benchmark::DoNotOptimize(found);
  }
}

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

void BM_windows_zone_name_hit_vortime(benchmark::State& state) {
  lookUp(state, getWindowsZoneName, IANA_HITS);
}
BENCHMARK(BM_windows_zone_name_hit_vortime)->Name("BM_windows_zone_name_hit/vortime");

void BM_windows_zone_name_hit_id(benchmark::State& state) {
  lookUpInIcu(state, toIana, WINDOWS_HITS);
}
BENCHMARK(BM_windows_zone_name_hit_id)->Name("BM_windows_zone_name_hit/icu_getIDForWindowsID");

void BM_windows_zone_name_hit_windows(benchmark::State& state) {
  lookUpInIcu(state, toWindows, IANA_HITS);
}
BENCHMARK(BM_windows_zone_name_hit_windows)->Name("BM_windows_zone_name_hit/icu_getWindowsID");

void BM_windows_zone_name_miss_vortime(benchmark::State& state) {
  lookUp(state, getWindowsZoneName, IANA_MISSES);
}
BENCHMARK(BM_windows_zone_name_miss_vortime)->Name("BM_windows_zone_name_miss/vortime");

void BM_windows_zone_name_miss_id(benchmark::State& state) {
  lookUpInIcu(state, toIana, WINDOWS_MISSES);
}
BENCHMARK(BM_windows_zone_name_miss_id)->Name("BM_windows_zone_name_miss/icu_getIDForWindowsID");

void BM_windows_zone_name_miss_windows(benchmark::State& state) {
  lookUpInIcu(state, toWindows, IANA_MISSES);
}
BENCHMARK(BM_windows_zone_name_miss_windows)->Name("BM_windows_zone_name_miss/icu_getWindowsID");

void BM_iana_zone_name_hit_vortime(benchmark::State& state) {
  lookUp(state, getIanaZoneName, WINDOWS_HITS);
}
BENCHMARK(BM_iana_zone_name_hit_vortime)->Name("BM_iana_zone_name_hit/vortime");

void BM_iana_zone_name_hit_id(benchmark::State& state) {
  lookUpInIcu(state, toIana, WINDOWS_HITS);
}
BENCHMARK(BM_iana_zone_name_hit_id)->Name("BM_iana_zone_name_hit/icu_getIDForWindowsID");

void BM_iana_zone_name_miss_vortime(benchmark::State& state) {
  lookUp(state, getIanaZoneName, WINDOWS_MISSES);
}
BENCHMARK(BM_iana_zone_name_miss_vortime)->Name("BM_iana_zone_name_miss/vortime");

void BM_iana_zone_name_miss_id(benchmark::State& state) {
  lookUpInIcu(state, toIana, WINDOWS_MISSES);
}
BENCHMARK(BM_iana_zone_name_miss_id)->Name("BM_iana_zone_name_miss/icu_getIDForWindowsID");

void BM_zone_list_vortime(benchmark::State& state) {
  KTX::TIM::TimeZoneC::ZoneNamesT zones;
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
  KTX::TIM::GpsC const time(0, 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(getTimeZoneInstance().getUtcOffset(time));
  }
}
BENCHMARK(BM_utc_offset_vortime)->Name("BM_utc_offset/vortime");

}  // namespace
