#include "support/KTX_TIM_ThreadId.h"

#include <cstdio>
#include <mutex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <boost/thread/thread.hpp>
#include <gtest/gtest.h>

#ifndef _WIN32
#include "support/KTX_TIM_LockWait.h"
#endif

namespace KTX::TIM::TEST {
namespace {

TEST(ThreadId, StaysTheSameWithinAThread) {
  std::uint32_t const id = currentThreadId32();
  EXPECT_NE(0U, id);
  EXPECT_EQ(id, currentThreadId32());
}

TEST(ThreadId, DiffersBetweenThreadsThatLiveAtOnce) {
  constexpr std::size_t THREADS = 64;
  std::mutex mutex;
  std::set<std::uint32_t> ids{currentThreadId32()};
  std::vector<std::thread> threads;
  mutex.lock();  // none ends before all live
  for (std::size_t thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([&] {
      std::uint32_t const id = currentThreadId32();
      std::lock_guard<std::mutex> const guard(mutex);
      ids.insert(id);
    });
  }
  mutex.unlock();
  for (auto& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(THREADS + 1, ids.size());
  EXPECT_EQ(0U, ids.count(0));
}

TEST(ThreadId, IsWrittenInLowerCaseHexadecimal) {
  char expected[16];
  std::snprintf(expected, sizeof(expected), "%x", static_cast<unsigned>(currentSystemThreadId()));
  EXPECT_EQ(expected, currentThreadIdText());
  EXPECT_EQ(std::string::npos, currentThreadIdText().find_first_not_of("0123456789abcdef"));
}

#ifndef _WIN32
TEST(ThreadId, IsTheSystemsInTexts) {
  EXPECT_EQ(static_cast<std::uint32_t>(systemThreadId()), currentSystemThreadId());
}
#endif

#ifdef _WIN32
TEST(ThreadId, IsTheOneOfTheThreadLibrary) {
  std::ostringstream text;
  text << boost::this_thread::get_id();
  EXPECT_EQ(text.str(), currentThreadIdText());
}
#endif

}  // namespace
}  // namespace KTX::TIM::TEST
