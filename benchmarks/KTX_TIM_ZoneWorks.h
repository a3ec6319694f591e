#ifndef KTX_TIM_ZONEWORKS_H
#define KTX_TIM_ZONEWORKS_H

#include <cstddef>
#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"

// Zone names of one kind for those of the other.
namespace KTX::TIM::BENCH {

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

using ZoneNameLookupT = std::uint32_t (*)(std::wstring const&, std::wstring&);

template <class LoopT>
void lookUp(LoopT& loop, ZoneNameLookupT lookup, wchar_t const* const (&names)[NAME_COUNT]) {
  std::wstring const keys[NAME_COUNT] = {names[0], names[1], names[2], names[3]};
  std::wstring found;
  std::size_t next = 0;
  for (auto _ : loop) {
    benchmark::DoNotOptimize(lookup(keys[next++ % NAME_COUNT], found));
    benchmark::DoNotOptimize(found);
  }
}

template <class LoopT>
void hitWindowsZoneName(LoopT& loop) {
  lookUp(loop, getWindowsZoneName, IANA_HITS);
}

template <class LoopT>
void missWindowsZoneName(LoopT& loop) {
  lookUp(loop, getWindowsZoneName, IANA_MISSES);
}

template <class LoopT>
void hitIanaZoneName(LoopT& loop) {
  lookUp(loop, getIanaZoneName, WINDOWS_HITS);
}

template <class LoopT>
void missIanaZoneName(LoopT& loop) {
  lookUp(loop, getIanaZoneName, WINDOWS_MISSES);
}

}  // namespace KTX::TIM::BENCH

#endif  // KTX_TIM_ZONEWORKS_H
