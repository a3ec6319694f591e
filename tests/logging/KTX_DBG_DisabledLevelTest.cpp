// Counts what a disabled level allocates, so this program has a counting operator new.
#include <atomic>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

namespace {

std::atomic<int> allocations{0};

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
    return memory;
  }
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace KTX::DBG::TEST {
namespace {

class DisabledLevel : public ::testing::Test {
 protected:
  std::string const name = "A channel with a name that no small string holds";
  DbgLogFileC channel{name};
};

TEST_F(DisabledLevel, AllocatesNothing) {
  int const before = allocations;
  EXPECT_FALSE(channel.isLevelEnabled(5));
  channel.printLine(5, "%s %d %f\n", "text", 1, 1.0);
  EXPECT_EQ(before, allocations);
}

TEST_F(DisabledLevel, AllocatesNothingForAHandleOnAKnownChannel) {
  int const before = allocations;
  { DbgLogFileC const brief(name); }
  EXPECT_EQ(before, allocations);
}

TEST_F(DisabledLevel, CountsAnAllocation) {
  int const before = allocations;
  DbgLogFileC const fresh("A new channel with a name that no small string holds");
  EXPECT_LT(before, allocations);
}

}  // namespace
}  // namespace KTX::DBG::TEST
