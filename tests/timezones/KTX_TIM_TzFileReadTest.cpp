// Reading a file of the tz database with the functions of the C library replaced.
#include <algorithm>
#include <cerrno>
#include <deque>
#include <dlfcn.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Posix/KTX_TIM_TzFileBytes.h"
#include "common/KTX_TIM_TempFolder.h"

namespace {

// How a call goes on: with an error, else by handing out no more than so many bytes.
struct StepC {
  int error;
  std::size_t limit;
};

// The steps of the reads to come; once there are none the system's own function answers.
std::deque<StepC> readSteps;
int statusError = 0;

int failWith(int error) {
  errno = error;
  return -1;
}

template <class FunctionT>
FunctionT systemFunction(char const* name) {
  return reinterpret_cast<FunctionT>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" ssize_t read(int descriptor, void* data, std::size_t size) {
  static auto const systemRead = systemFunction<ssize_t (*)(int, void*, std::size_t)>("read");
  if (readSteps.empty()) {
    return systemRead(descriptor, data, size);
  }
  StepC const step = readSteps.front();
  readSteps.pop_front();
  return step.error != 0 ? failWith(step.error)
                         : systemRead(descriptor, data, std::min(size, step.limit));
}

extern "C" int fstat(int descriptor, struct stat* status) noexcept {
  static auto const systemStatus = systemFunction<int (*)(int, struct stat*)>("fstat");
  return statusError != 0 ? failWith(statusError) : systemStatus(descriptor, status);
}

namespace KTX::TIM::TEST {
namespace {

class TzFileRead : public ::testing::Test {
 protected:
  TzFileRead() { folder.write("zone", "0123456789"); }
  ~TzFileRead() override {
    readSteps.clear();
    statusError = 0;
  }

  bool isRead() { return readTzFileBytes(folder.path() / "zone", bytes); }

  TempFolderC folder;
  std::string bytes = "untouched";
};

TEST_F(TzFileRead, GoesOnAfterASignalAndAfterAPart) {
  std::deque<StepC> const cases[] = {{{EINTR, 0}},
                                     {{EINTR, 0}, {EINTR, 0}, {0, 3}, {EINTR, 0}, {0, 6}},
                                     {{0, 1}, {0, 1}, {0, 1}, {0, 1}}};
  for (auto const& steps : cases) {
    SCOPED_TRACE(steps.size());
    readSteps = steps;
    bytes.clear();
    EXPECT_TRUE(isRead());
    EXPECT_EQ("0123456789", bytes);
    EXPECT_TRUE(readSteps.empty());
  }
}

TEST_F(TzFileRead, FailsForAFileThatEndsEarlyOrCannotBeRead) {
  std::deque<StepC> const cases[] = {{{0, 0}}, {{0, 9}, {0, 0}}, {{EIO, 0}}, {{0, 5}, {EIO, 0}}};
  for (auto const& steps : cases) {
    SCOPED_TRACE(steps.size());
    readSteps = steps;
    EXPECT_FALSE(isRead());
    EXPECT_EQ("untouched", bytes);
    EXPECT_TRUE(readSteps.empty());
  }
}

TEST_F(TzFileRead, FailsForAFileWithoutAStatus) {
  statusError = EOVERFLOW;
  EXPECT_FALSE(isRead());
  EXPECT_EQ("untouched", bytes);
  statusError = 0;
  EXPECT_TRUE(isRead());
}

}  // namespace
}  // namespace KTX::TIM::TEST
