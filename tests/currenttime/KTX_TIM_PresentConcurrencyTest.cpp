#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_DefaultCurrentTimeProvider.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::uint16_t WEEK = 2304;
constexpr std::uint32_t NOW_MS = 374963000;
constexpr int ROUNDS = 200;

// Lets all threads begin at once and waits for their end.
class ThreadsC {
 public:
  void add(std::function<void(int round)> const& work) {
    threads.emplace_back([this, work] {
      while (!isOpen) {
        std::this_thread::yield();
      }
      for (int round = 0; round < ROUNDS; ++round) {
        work(round);
      }
    });
  }

  void run() {
    isOpen = true;
    for (std::thread& thread : threads) {
      thread.join();
    }
  }

 private:
  std::atomic<bool> isOpen{false};
  std::vector<std::thread> threads;
};

// Observations lie at whole seconds after NOW_MS, so that a reading between two of them is torn.
GpsC observation(int number) {
  return GpsC(WEEK, NOW_MS + 1000 * static_cast<std::uint32_t>(number % 5));
}

bool isWhole(GPSTimeC const& time) {
  return time.getWeek() == WEEK && time.getMsOfWeek() % 1000 == NOW_MS % 1000 &&
         time.getMsOfWeek() >= NOW_MS && time.getMsOfWeek() <= NOW_MS + 4000;
}

class PresentConcurrency : public ::testing::Test {
 protected:
  FakePresentC present;
  std::atomic<int> broken{0};
  ThreadsC threads;
};

TEST_F(PresentConcurrency, EveryReadingIsOneThatWasSet) {
  for (int observer = 0; observer < 2; ++observer) {
    threads.add([observer](int round) { observation(round + observer).makeToCurrentTime(0, 1); });
  }
  threads.add([this](int) { broken += isWhole(GpsC::currentTime()) ? 0 : 1; });
  threads.add([this](int) {
    YmdhmsC now = YmdhmsC::zero(TIMEBASE_GPS, 1);
    now.makeToCurrentTime();
    broken += now.milliseconds == 0 ? 0 : 1;
  });
  threads.add([this](int) {
    DefaultCurrentTimeProviderC provider;
    broken += isWhole(provider.getCurrentGpsTime()) ? 0 : 1;
  });
  threads.run();
  EXPECT_EQ(0, broken);
}

TEST_F(PresentConcurrency, ClocksAndSeedsChangeUnderReadersAndObservers) {
  auto const otherUtc =
      boost::make_shared<FakeClockC>(FakePresentC::THURSDAY_MS, CLOCKTYPE_POSIX, CLOCKREF_UTC);
  auto const otherSteady = boost::make_shared<FakeClockC>(77);
  threads.add([&](int round) {
    if (round % 2 == 0) {
      setSysTimeClocks(otherUtc, otherSteady);
    } else {
      setSysTimeClocks(present.utc, present.steady);
    }
  });
  threads.add([](int) { resetSysTime(); });
  threads.add([](int round) { observation(round).makeToCurrentTime(0, 1); });
  for (int reader = 0; reader < 2; ++reader) {
    threads.add([this](int) { broken += isWhole(GpsC::currentTime()) ? 0 : 1; });
  }
  threads.run();
  EXPECT_EQ(0, broken);
}

TEST_F(PresentConcurrency, ListenersComeGoAndCallBack) {
  std::atomic<int> heard{0};
  boost::signals2::scoped_connection const echo =
      connectTimeCorrected([&](int week, int ms, TimeChangeT) {
        ++heard;
        GPSTimeC const corrected(static_cast<std::uint16_t>(week), static_cast<std::uint32_t>(ms));
        broken += isWhole(corrected) && isWhole(GpsC::currentTime()) ? 0 : 1;
        GpsC(corrected).emitTimeSignal();
      });
  threads.add([](int round) { observation(round).makeToCurrentTime(0, 1); });
  threads.add([](int round) { observation(round + 3).makeToCurrentTime(0, 1); });
  for (int listener = 0; listener < 2; ++listener) {
    threads.add([&heard](int) {
      boost::signals2::scoped_connection const corrections =
          connectTimeCorrected([&heard](int, int, TimeChangeT) { ++heard; });
      boost::signals2::scoped_connection const signals =
          connectTimeSignal([&heard](int, int) { ++heard; });
    });
  }
  threads.run();
  EXPECT_EQ(0, broken);
  EXPECT_GT(heard, 0);
}

TEST_F(PresentConcurrency, EachThreadsStepsComeInOrderAndEveryNumberOnce) {
  constexpr int OBSERVERS = 3;
  std::mutex mutex;
  std::map<std::thread::id, std::vector<std::uint64_t>> numbers;
  boost::signals2::scoped_connection const connection =
      connectTimeEstimated([&](TimeEstimateStepC const& step) {
        std::lock_guard<std::mutex> const guard(mutex);
        numbers[std::this_thread::get_id()].push_back(step.number);
      });
  for (int observer = 0; observer < OBSERVERS; ++observer) {
    threads.add([observer](int round) { observation(round + observer).makeToCurrentTime(0, 1); });
  }
  threads.add([this](int) {
    PresentStatusC const status = getPresentStatus();
    broken += status.correctedCount == 0 || status.correctionAgeMs ? 0 : 1;
  });
  threads.run();
  EXPECT_EQ(0, broken);
  std::set<std::uint64_t> all;
  for (auto const& entry : numbers) {
    EXPECT_TRUE(std::is_sorted(entry.second.begin(), entry.second.end()));
    all.insert(entry.second.begin(), entry.second.end());
  }
  EXPECT_EQ(std::size_t{OBSERVERS * ROUNDS}, all.size());
  EXPECT_EQ(std::uint64_t{OBSERVERS * ROUNDS - 1}, *all.rbegin() - *all.begin());
}

// A listener hears every step from its connection on: none is lost to the ones that leave.
TEST_F(PresentConcurrency, AListenerOfStepsThatComesWhileOthersLeaveIsNotForgotten) {
  threads.add([](int round) { observation(round).makeToCurrentTime(0, 1); });
  for (int listener = 0; listener < 2; ++listener) {
    threads.add([this](int round) {
      // Another thread may still be inside the listener after it was disconnected.
      auto const heard = std::make_shared<std::atomic<int>>(0);
      boost::signals2::scoped_connection const connection =
          connectTimeEstimated([heard, id = std::this_thread::get_id()](TimeEstimateStepC const&) {
            *heard += std::this_thread::get_id() == id ? 1 : 0;
          });
      observation(round).makeToCurrentTime(0, 1);
      broken += *heard == 1 ? 0 : 1;
    });
  }
  threads.run();
  EXPECT_EQ(0, broken);
}

TEST_F(PresentConcurrency, TheLinesOfOneObservationStandTogether) {
  LogCaptureC log;
  for (int observer = 0; observer < 3; ++observer) {
    threads.add([observer](int round) { observation(round + observer).makeToCurrentTime(0, 1); });
  }
  threads.run();
  int steps = 0;
  bool isOpen = false;
  for (std::string const& line : log.lines("TimeYmdhms")) {
    if (line.find("makeToCurrentTime: GPSweek:") != std::string::npos) {
      EXPECT_FALSE(isOpen);
      isOpen = true;
      ++steps;
    } else if (line.find("SETSysTime:") != std::string::npos) {
      EXPECT_TRUE(isOpen);
      isOpen = false;
    }
  }
  EXPECT_EQ(3 * ROUNDS, steps);
}

TEST_F(PresentConcurrency, LeapSecondsChangeUnderObserversAndReaders) {
  std::int16_t const counts[] = {17, 18, 19};
  threads.add([&counts](int round) {
    std::int16_t const count = counts[round % 3];
    setUtcLeapSecond({LEAPSECOND_FORCED, count, count, 1929, 7, true}, true);
  });
  threads.add([](int round) { observation(round).makeToCurrentTime(0, 1); });
  threads.add([](int) { GpsC::currentTime(); });
  threads.add([](int) {
    UtcLeapSecondRecord record{};
    getCurrentUtcLeapSecond(record);
  });
  threads.run();
  EXPECT_EQ(0u, setUtcLeapSecond(withdrawForcedRecord(), false));
}

TEST_F(PresentConcurrency, TheLockHoldsThePresentStill) {
  threads.add([](int round) { observation(round).makeToCurrentTime(0, 1); });
  threads.add([this](int) {
    Guard const guard(getTimeLock());
    GPSTimeC const first = GpsC::currentTime();
    broken += first == GpsC::currentTime() ? 0 : 1;
  });
  threads.run();
  EXPECT_EQ(0, broken);
}

}  // namespace
}  // namespace KTX::TIM::TEST
