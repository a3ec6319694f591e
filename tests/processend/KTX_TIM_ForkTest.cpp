// fork() while other threads use the library, and with its locks held by the calling thread.
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::TIM::TEST {
namespace {

void setLeapSecond(std::uint32_t turn) {
  auto const count = static_cast<std::int16_t>(17 + turn % 2);
  setUtcLeapSecond(count, count, 1929, 7, LEAPSECOND_FORCED);
}

void convert(std::uint32_t turn) {
  YmdhmsC calendar(GpsTimeC(GPSTimeC(2300, turn % 1000000)));
  calendar.toUtc();
  calendar.utcToLocal();
}

void askZone(std::uint32_t /*turn*/) {
  std::wstring name;
  getTimeZoneInstance().getTimeZone(name);
}

void observe(std::uint32_t /*turn*/) {
  GpsC::currentTime().makeToCurrentTime(100, 1);
}

void writeLog(std::uint32_t /*turn*/) {
  logAssertion("beside a fork");
}

// Threads that use the library until the end of the scope.
class WorkersC {
 public:
  WorkersC() {
    for (auto const use : {setLeapSecond, convert, askZone, observe, writeLog}) {
      threads.emplace_back([this, use] {
        for (std::uint32_t turn = 0; !isOver; ++turn) {
          use(turn);
          turns += turn == 0 ? 1 : 0;
        }
      });
    }
    while (turns < threads.size()) {
      std::this_thread::yield();
    }
  }
  ~WorkersC() {
    isOver = true;
    for (auto& thread : threads) {
      thread.join();
    }
  }
  WorkersC(WorkersC const&) = delete;
  WorkersC& operator=(WorkersC const&) = delete;

 private:
  std::atomic<bool> isOver{false};
  std::atomic<std::size_t> turns{0};
  std::vector<std::thread> threads;
};

// 0, or the number of what went wrong.
int useAll() {
  if (GpsC::currentTime().getWeek() < 2000 || YmdhmsC().year < 2020) {
    return 1;
  }
  YmdhmsC calendar(GpsTimeC(GPSTimeC(2300, 0)));
  calendar.toUtc();
  if (calendar.minute != 59 || calendar.second < 42 || calendar.second > 43) {
    return 2;
  }
  calendar.utcToLocal();
  UtcLeapSecondRecord record{};
  if (getCurrentUtcLeapSecond(record) != 0 || record.current < 17 || record.current > 18) {
    return 3;
  }
  askZone(0);
  setLeapSecond(record.current == 17 ? 1 : 0);
  logAssertion("from the child");
  return 0;
}

// A child that waits for a lock for ever is ended by its alarm.
constexpr unsigned LONGEST_CHILD_SECONDS = 60;

// What the child exited with; below zero the signal that ended it.
int statusOf(pid_t child) {
  int status = 0;
  EXPECT_EQ(child, waitpid(child, &status, 0));
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

// True once another thread can take the library-wide lock.
bool isFreeForOthers() {
  std::atomic<bool> isIn{false};
  std::thread([&isIn] {
    Guard const guard(getTimeLock());
    isIn = true;
  }).join();
  return isIn;
}

// As useAll(), for a child whose thread held locks at the fork and has given them back.
int useAllAfterUnlock() {
#ifdef __SANITIZE_THREAD__  // it allows no further thread in the child
  return useAll();
#else
  return isFreeForOthers() ? useAll() : 9;
#endif
}

class Fork : public ::testing::Test {
 protected:
  // The lines that the threads write.
  static void SetUpTestSuite() { ASSERT_NE(nullptr, std::freopen("/dev/null", "w", stderr)); }

  void TearDown() override { setUtcLeapSecond(withdrawForcedRecord(), false); }
};

TEST_F(Fork, LeavesTheChildAUsableLibraryWhileThreadsWork) {
  WorkersC const workers;
  for (int turn = 0; turn < 50; ++turn) {
    pid_t const child = fork();
    if (child == 0) {
      alarm(LONGEST_CHILD_SECONDS);
      _exit(useAll());
    }
    ASSERT_EQ(0, statusOf(child)) << turn;
  }
}

TEST_F(Fork, LeavesTheChildTheLocksThatItsThreadHolds) {
  pid_t child = -1;
  {
    Guard const outer(getTimeLock());
    Guard const inner(getTimeLock());
    child = fork();
    if (child == 0) {
      alarm(LONGEST_CHILD_SECONDS);
    }
  }
  if (child == 0) {
    _exit(useAllAfterUnlock());
  }
  EXPECT_EQ(0, statusOf(child));
  EXPECT_TRUE(isFreeForOthers());
}

TEST_F(Fork, MayHappenInAListenerOfTheLeapSecond) {
  WorkersC const workers;
  pid_t const parent = getpid();
  std::atomic<pid_t> child{-1};
  std::thread::id const self = std::this_thread::get_id();
  boost::signals2::scoped_connection const connection = connectUtcLeapSecondChanged(
      [&child, self](boost::shared_ptr<UtcLeapSecondChanged> const& /*event*/) {
        if (child == -1 && std::this_thread::get_id() == self) {
          child = fork();
        }
      });
  for (std::uint32_t turn = 0; child == -1; ++turn) {
    setLeapSecond(turn);
  }
  if (getpid() != parent) {
    alarm(LONGEST_CHILD_SECONDS);
    _exit(useAllAfterUnlock());
  }
  EXPECT_EQ(0, statusOf(child));
}

}  // namespace
}  // namespace KTX::TIM::TEST
