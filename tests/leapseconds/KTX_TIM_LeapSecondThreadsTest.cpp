// Setters, reset, reads, file loads, site values and listeners from many threads at once, more than
// a million operations in all. Whatever is read must be something that was written whole.
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_TempFolder.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::uint32_t SEED = 57754;

/// Lets all threads start together.
class GateC {
 public:
  void pass() {
    std::unique_lock<std::mutex> lock(mutex);
    opened.wait(lock, [this] { return isOpen; });
  }
  void open() {
    std::lock_guard<std::mutex> const lock(mutex);
    isOpen = true;
    opened.notify_all();
  }

 private:
  std::mutex mutex;
  std::condition_variable opened;
  bool isOpen = false;
};

/// Every record that is written: no two share a count, so that a mixture of two is none of them.
class RecordsC {
 public:
  RecordsC() {
    std::uint16_t week = 1000;
    for (std::int16_t i = 0; i < 40; ++i) {
      auto const count = static_cast<std::int16_t>(10 + 3 * i);
      auto const day = static_cast<std::uint8_t>(i % 7 + 1);
      forced.push_back(
          {LEAPSECOND_FORCED, count, static_cast<std::int16_t>(count + 1), week, day, true});
      ++week;
    }
    std::int16_t count = -10;
    for (std::int64_t day = 7300; normal.size() < 40; ++day) {
      if (civilOfDays(day + 1).day == 1) {
        normal.push_back({LEAPSECOND_GPS, count, static_cast<std::int16_t>(count - 1),
                          static_cast<std::uint16_t>(day / 7),
                          static_cast<std::uint8_t>(day % 7 + 1), true});
        count = static_cast<std::int16_t>(count - 3);
      }
    }
  }

  /// The record as it was written, or with its future count in force.
  static bool isOneOf(std::vector<UtcLeapSecondRecord> const& records,
                      UtcLeapSecondRecord const& seen) {
    return std::any_of(records.begin(), records.end(), [&seen](UtcLeapSecondRecord record) {
      if (record == seen) {
        return true;
      }
      record.current = record.future;
      return record == seen;
    });
  }

  /// A reset without a record keeps the count of any of them.
  bool isNormal(UtcLeapSecondRecord const& seen) const {
    if (seen.source == LEAPSECOND_DEFAULT && seen != defaultLeapSecondRecord()) {
      bool const isKept = std::any_of(normal.begin(), normal.end(), [&seen](auto const& record) {
        return record.current == seen.current;
      });
      return (isKept || seen.current == 18) && seen.future == 0 && seen.week == 0 &&
             seen.day == 0 && !seen.effectivityKnown;
    }
    return seen == defaultLeapSecondRecord() || isOneOf(normal, seen);
  }

  bool isInForce(UtcLeapSecondRecord const& seen) const {
    return isOneOf(forced, seen) || isNormal(seen);
  }

  std::vector<UtcLeapSecondRecord> forced;
  std::vector<UtcLeapSecondRecord> normal;
};

class LeapSecondThreads : public ::testing::Test {
 protected:
  using OperationT = std::function<void(std::mt19937&)>;

  /// Adds a thread that runs operation count times.
  void add(std::size_t count, OperationT const& operation) {
    auto const seed = static_cast<std::uint32_t>(SEED + threads.size());
    threads.emplace_back([this, count, operation, seed] {
      std::mt19937 random(seed);
      gate.pass();
      for (std::size_t i = 0; i < count; ++i) {
        operation(random);
      }
    });
    operations += count;
  }

  void run() {
    gate.open();
    for (std::thread& thread : threads) {
      thread.join();
    }
  }

  void check(bool isRight) { wrong += isRight ? 0 : 1; }

  /// A record and its effectivity belong together.
  void checkAnswer(UtcLeapSecondRecord const& record, GPSTimeC const& effectivity) {
    std::int64_t const expected = record.effectivityKnown ? modelEffectivity(record) : 0;
    check(records.isInForce(record) &&
          expected == static_cast<std::int64_t>(effectivity.toMilliseconds64()));
  }

  static GpsC instant(std::mt19937& random) {
    return GpsC(static_cast<std::uint16_t>(900 + random() % 1500), 0);
  }

  UtcLeapSecondRecord const& anyForced(std::mt19937& random) const {
    return records.forced[random() % records.forced.size()];
  }
  UtcLeapSecondRecord const& anyNormal(std::mt19937& random) const {
    return records.normal[random() % records.normal.size()];
  }

  ScopedLeapSecondsC const leapSeconds;
  ScopedPresentC const present{1709798945000};
  RecordsC const records;
  GateC gate;
  std::vector<std::thread> threads;
  std::size_t operations = 0;
  std::atomic<std::size_t> wrong{0};
};

TEST_F(LeapSecondThreads, SeeOnlyRecordsThatWereWrittenWhole) {
  SCOPED_TRACE(::testing::Message() << "seed " << SEED);
  TempFolderC const folder;
  auto const path = folder.write("leap.txt", "10,11,1000,1\n").wstring();
  UtcLeapSecondProvider site;
  std::atomic<std::size_t> told{0};
  boost::signals2::scoped_connection const connection(
      connectUtcLeapSecondChanged([&](boost::shared_ptr<UtcLeapSecondChanged> const& event) {
        ++told;
        check(event->previous != event->current && records.isInForce(event->previous) &&
              records.isInForce(event->current));
      }));

  for (int reader = 0; reader < 2; ++reader) {
    add(300000, [this](std::mt19937& random) {
      GpsC effectivity;
      UtcLeapSecondRecord record{};
      getDefaultLeapSecondProvider()->getLeapSecond(instant(random), record, &effectivity);
      checkAnswer(record, effectivity);
    });
  }
  add(200000, [this](std::mt19937& random) {
    UtcLeapSecondRecord record{};
    getNormalLeapSecond(record);
    check(records.isNormal(record));
    getUtcLeapSecondAt(instant(random), record);
    check(records.isInForce(record));
  });
  add(100000, [](std::mt19937& random) {
    GpsC time = instant(random);
    time.gpsToUtc();
    time.utcToGps();
  });
  add(60000, [this](std::mt19937& random) {
    bool const isWithdrawn = random() % 4 == 0;
    setUtcLeapSecond(isWithdrawn ? withdrawForcedRecord() : anyForced(random), random() % 8 == 0);
  });
  add(40000, [this](std::mt19937& random) { setUtcLeapSecond(anyNormal(random), false); });
  add(40000, [this](std::mt19937& random) {
    resetSatelliteLeapSecond(random() % 4 == 0 ? nullptr : &anyNormal(random));
  });
  add(5000, [&path](std::mt19937&) { loadLeapSecondFile(path, false); });
  add(10000, [this](std::mt19937&) {
    boost::signals2::scoped_connection const shortLived(
        connectUtcLeapSecondChanged([this](boost::shared_ptr<UtcLeapSecondChanged> const& event) {
          check(records.isInForce(event->current));
        }));
  });
  add(50000, [&](std::mt19937& random) {
    auto const count = static_cast<std::int16_t>(1 + random() % 50);
    // Count and date belong together, so that a mixture shows.
    site.setSiteLeapSecond(count, count, 50000 + 7 * count);
  });
  add(200000, [&](std::mt19937&) {
    UtcLeapSecondRecord record{};
    GpsC effectivity;
    site.getLeapSecond(GpsC(0, 0), record, &effectivity);
    if (record.source == LEAPSECOND_SITE) {
      std::int64_t const firstDay = 50000 + 7 * record.current - GPS_EPOCH_MJD;
      check(record.current == record.future && modelDayEnd(record) == firstDay * MODEL_DAY_MS &&
            modelEffectivity(record) == static_cast<std::int64_t>(effectivity.toMilliseconds64()));
    } else {
      checkAnswer(record, effectivity);
    }
  });

  run();
  EXPECT_GE(operations, 1000000U);
  EXPECT_EQ(0U, wrong);
  EXPECT_GT(told, 1000U);
}

// Listeners throw now and then; a lock left behind would stop every other thread.
TEST_F(LeapSecondThreads, GoOnAfterListenersThatThrow) {
  std::atomic<std::size_t> thrown{0};
  std::atomic<std::size_t> calls{0};
  boost::signals2::scoped_connection const connection(
      connectUtcLeapSecondChanged([&calls](boost::shared_ptr<UtcLeapSecondChanged> const&) {
        if (++calls % 3 == 0) {
          throw std::runtime_error("listener");
        }
      }));
  for (int setter = 0; setter < 3; ++setter) {
    add(3000, [&](std::mt19937& random) {
      try {
        setUtcLeapSecond(anyForced(random), random() % 2 == 0);
      } catch (std::runtime_error const&) {
        ++thrown;
      }
    });
  }
  add(20000, [this](std::mt19937& random) {
    UtcLeapSecondRecord record{};
    getUtcLeapSecondAt(instant(random), record);
    check(records.isInForce(record));
  });
  run();
  EXPECT_GT(thrown, 100U);
  EXPECT_EQ(0U, wrong);
}

}  // namespace
}  // namespace KTX::TIM::TEST
