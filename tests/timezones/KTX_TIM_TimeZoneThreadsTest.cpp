#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"
#include "common/KTX_TIM_LogCapture.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"
#include "timezones/KTX_TIM_ZoneLayout.h"

namespace KTX::TIM::TEST {
namespace {

constexpr int THREADS_PER_WORK = 3;
constexpr int ROUNDS = 60;

// Runs each work in some threads, all of which start at a gate.
void runTogether(std::vector<std::function<void()>> const& works, int rounds) {
  std::atomic<bool> isOpen{false};
  std::vector<std::thread> threads;
  for (auto const& work : works) {
    for (int i = 0; i < THREADS_PER_WORK; ++i) {
      threads.emplace_back([&isOpen, &work, rounds] {
        while (!isOpen) {
          std::this_thread::yield();
        }
        for (int round = 0; round < rounds; ++round) {
          work();
        }
      });
    }
  }
  isOpen = true;
  for (std::thread& thread : threads) {
    thread.join();
  }
}

bool isOneOf(std::wstring const& name) {
  return name == L"GMT Standard Time" || name == L"Tokyo Standard Time" ||
         name == L"Singapore Standard Time";
}

// The first test of the program: the name table is not yet built.
TEST(TimeZoneThreads, TheFirstLookupsMayComeFromManyThreads) {
  std::atomic<int> misses{0};
  auto const lookUpWindows = [&misses] {
    std::wstring name;
    misses +=
        getWindowsZoneName(L"Europe/Berlin", name) == RC_OK && name == L"W. Europe Standard Time"
            ? 0
            : 1;
  };
  auto const lookUpIana = [&misses] {
    std::wstring name;
    misses +=
        getIanaZoneName(L"Yukon Standard Time", name) == RC_OK && name == L"America/Whitehorse" ? 0
                                                                                                : 1;
  };
  runTogether({lookUpWindows, lookUpIana}, ROUNDS);
  EXPECT_EQ(0, misses);
}

TEST(TimeZoneThreads, EveryOperationMayRunBesideEveryOther) {
  LogCaptureC const log;
  FakeZoneRegistryC registry;
  addFourZones(registry);
  registry.calls.setZone(-480, u"Singapore Standard Time");
  TimeZoneWindowsC zone;
  std::atomic<int> signals{0};
  std::atomic<int> wrong{0};
  auto const connection = zone.connectTimeZoneChanged([&signals] { ++signals; });
  auto const expect = [&wrong](bool isRight) { wrong += isRight ? 0 : 1; };
  std::vector<std::function<void()>> const works{
      [&] { expect(zone.setTimeZone(L"GMT Standard Time") == RC_OK); },
      [&] { expect(zone.setTimeZone(L"Tokyo Standard Time") == RC_OK); },
      [&] { expect(zone.setTimeZone(L"Nowhere") == RC_FAILED); },
      [&] {
        std::wstring name;
        expect(zone.getTimeZone(name) == RC_OK && isOneOf(name));
      },
      [&] {
        TimeZoneC::ZoneNamesT zones;
        expect(zone.getTimeZoneList(zones) == RC_OK && zones.size() == 4);
      },
      [&] { expect(!zone.getTimeZoneOffsetText().empty()); },
      [&] { expect(zone.getUtcOffset(GpsC(0, 0)) == 480); },
      [&] {
        std::wstring name;
        expect(zone.resolveTimeZone(L"Europe/Berlin", 0, name) == RC_OK);
      },
      [&] {
        auto const passing = zone.connectTimeZoneChanged([] {});
        passing.disconnect();
      }};
  runTogether(works, ROUNDS);
  EXPECT_EQ(0, wrong);
  EXPECT_GE(signals, 2);
  EXPECT_EQ(0U, registry.openKeyCount());
  connection.disconnect();
}

TEST(TimeZoneThreads, TheFirstQueriesForTheZoneMayComeFromManyThreads) {
  for (int round = 0; round < ROUNDS; ++round) {
    LogCaptureC const log;
    FakeZoneRegistryC registry;
    addFourZones(registry);
    registry.calls.setZone(-540, u"Tokyo Standard Time");
    TimeZoneWindowsC zone;
    std::atomic<int> wrong{0};
    runTogether({[&zone, &wrong] {
                  std::wstring name;
                  wrong +=
                      zone.getTimeZone(name) == RC_OK && name == L"Tokyo Standard Time" ? 0 : 1;
                }},
                1);
    EXPECT_EQ(0, wrong);
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
