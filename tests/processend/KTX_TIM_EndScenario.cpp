#include "processend/KTX_TIM_EndScenario.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include <boost/shared_ptr.hpp>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_TickCount.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#ifndef _WIN32
#include "support/KTX_TIM_LockWait.h"
#endif

namespace KTX::TIM::TEST {
namespace {

constexpr int WAITERS = 3;

// Threads use it until the process is gone: it has nothing to destroy.
std::atomic<int> arrivals{0};

void read(std::uint32_t /*turn*/) {
  YmdhmsC const present;
  UtcLeapSecondRecord record{};
  getCurrentUtcLeapSecond(record);
  getTickCountMs();
}

void convert(std::uint32_t turn) {
  GpsTimeC time(GPSTimeC(2300, turn % 1000000));
  YmdhmsC calendar(time);
  calendar.toUtc();
  calendar.utcToLocal();
  std::wstring name;
  getTimeZoneInstance().getTimeZone(name);
  getIanaZoneName(name, name);
}

// Each observation differs by a second from the one before, so that it is a correction.
void observe(std::uint32_t turn) {
  GpsC observation = GpsC::currentTime();
  observation += turn % 2 == 0 ? 1000 : -1000;
  observation.makeToCurrentTime(0, 1);
}

void setLeapSecond(std::uint32_t turn) {
  auto const count = static_cast<std::int16_t>(17 + turn % 2);
  setUtcLeapSecond(count, count, 1929, 7, LEAPSECOND_FORCED);
}

void writeLog(std::uint32_t /*turn*/) {
  logAssertion("written until the end");
}

void useForEver(void (*use)(std::uint32_t turn)) {
  for (std::uint32_t turn = 0;; ++turn) {
    use(turn);
    if (turn == 1) {
      ++arrivals;
    }
  }
}

int startThreads() {
  void (*const uses[])(std::uint32_t) = {read, convert, observe, setLeapSecond, writeLog};
  for (auto const use : uses) {
    std::thread(useForEver, use).detach();
  }
  while (arrivals < static_cast<int>(sizeof uses / sizeof uses[0])) {
    std::this_thread::yield();
  }
  return 0;
}

void startWaiter() {
#ifdef _WIN32
  std::thread([] {
    ++arrivals;
    Guard const guard(getTimeLock());
    std::_Exit(4);  // nobody ever lets it in
  }).detach();
#else
  std::atomic<pid_t> threadId{0};
  std::thread([&threadId] {
    threadId = systemThreadId();
    Guard const guard(getTimeLock());
    std::_Exit(4);
  }).detach();
  while (threadId == 0 || lockWaitOf(threadId) == LOCKWAIT_NONE) {
    std::this_thread::yield();
  }
  ++arrivals;
#endif
}

int startWaiters() {
  for (int waiter = 0; waiter < WAITERS; ++waiter) {
    startWaiter();
  }
  while (arrivals < WAITERS) {
    std::this_thread::yield();
  }
  return 0;
}

void lockLibrary() KTX_TIM_NO_THREAD_SAFETY_ANALYSIS {
  getTimeLock().lock();
}

// Also while the system unloads libraries.
void endAtOnce(int status) {
#ifdef _WIN32
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
#else
  std::_Exit(status);
#endif
}

// The library holds the only owner of what the slot owns, which lives as long as its signal.
int connectOwner() {
  static int object = 0;
  std::shared_ptr<int> const owner(&object, [](int* /*object*/) { endAtOnce(5); });
  connectTimeSignal([owner](int /*week*/, int /*msOfWeek*/) {});
  return 0;
}

int endInListener() {
  connectUtcLeapSecondChanged(
      [](boost::shared_ptr<UtcLeapSecondChanged> const& /*event*/) { std::exit(startWaiters()); });
  setUtcLeapSecond(17, 17, 1929, 7, LEAPSECOND_FORCED);
  return 3;  // the listener was not called
}

}  // namespace
}  // namespace KTX::TIM::TEST

int enterEndScenario(char const* scenario) {
  using namespace KTX::TIM::TEST;
  std::string const name(scenario);
  if (name == "threads") {
    return startThreads();
  }
  if (name == "waiting") {
    lockLibrary();
    return startWaiters();
  }
  if (name == "orphaned") {
    std::thread(lockLibrary).join();
    return startWaiters();
  }
  if (name == "owner") {
    return connectOwner();
  }
  return name == "listener" ? endInListener() : 2;
}
