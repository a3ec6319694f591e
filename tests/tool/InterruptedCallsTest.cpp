// Reading and writing with the functions of the C library replaced, as signals interrupt them.
#include <algorithm>
#include <cerrno>
#include <deque>
#include <dlfcn.h>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "common/KTX_TIM_TempFolder.h"
#include "output/OutputFile.h"
#include "system/InputFile.h"
#include "system/LiveInput.h"

namespace {

// How a call goes on: with an error, else with no more than so many bytes.
struct StepC {
  int error;
  std::size_t limit;
};

// The steps of the calls to come; once there are none the system's own functions answer.
std::deque<StepC> readSteps;
std::deque<StepC> writeSteps;

template <class Bytes, class Call>
ssize_t callNext(std::deque<StepC>& steps, Call call, int descriptor, Bytes bytes, std::size_t n) {
  if (steps.empty()) {
    return call(descriptor, bytes, n);
  }
  StepC const step = steps.front();
  steps.pop_front();
  if (step.error != 0) {
    errno = step.error;
    return -1;
  }
  return call(descriptor, bytes, std::min(n, step.limit));
}

}  // namespace

extern "C" ssize_t read(int descriptor, void* data, std::size_t size) {
  using ReadT = ssize_t (*)(int, void*, std::size_t);
  static auto const systemRead = reinterpret_cast<ReadT>(dlsym(RTLD_NEXT, "read"));
  return callNext(readSteps, systemRead, descriptor, data, size);
}

extern "C" ssize_t write(int descriptor, void const* data, std::size_t size) {
  using WriteT = ssize_t (*)(int, void const*, std::size_t);
  static auto const systemWrite = reinterpret_cast<WriteT>(dlsym(RTLD_NEXT, "write"));
  return callNext(writeSteps, systemWrite, descriptor, data, size);
}

namespace KTX::VORTIME::TEST {
namespace {

constexpr char const* TEXT = "0123456789";

class InterruptedCalls : public ::testing::Test {
 protected:
  ~InterruptedCalls() override {
    readSteps.clear();
    writeSteps.clear();
  }

  TIM::TEST::TempFolderC const folder;
  char bytes[64] = {};
};

TEST_F(InterruptedCalls, LoseNothingOfAnOutput) {
  std::deque<StepC> const cases[] = {{{EINTR, 0}},
                                     {{EINTR, 0}, {EINTR, 0}, {0, 3}, {EINTR, 0}, {0, 6}},
                                     {{0, 1}, {0, 1}, {0, 1}, {0, 1}}};
  for (auto const& steps : cases) {
    SCOPED_TRACE(steps.size());
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    OutputFileC output;
    output.takeOver(ends[1]);
    writeSteps = steps;
    output.write(TEXT);
    EXPECT_TRUE(output.close());
    EXPECT_TRUE(writeSteps.empty());
    EXPECT_EQ(10, read(ends[0], bytes, sizeof bytes));
    EXPECT_EQ(TEXT, std::string(bytes, 10));
    close(ends[0]);
  }
}

TEST_F(InterruptedCalls, AreNotTheErrorOfAnOutput) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  OutputFileC output;
  output.takeOver(ends[1]);
  writeSteps = {{EINTR, 0}, {ENOSPC, 0}};
  output.write(TEXT);
  EXPECT_FALSE(output.flush());
  EXPECT_TRUE(output.hasFailed());
  EXPECT_EQ("No space left on device", output.errorText());
  close(ends[0]);
}

TEST_F(InterruptedCalls, NeitherEndNorFailAnInput) {
  InputFileC input;
  ASSERT_TRUE(input.open(folder.write("input", TEXT).string()));
  readSteps = {{EINTR, 0}, {EINTR, 0}};
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(0U, input.read(bytes, sizeof bytes));
    EXPECT_FALSE(input.isAtEnd());
    EXPECT_FALSE(input.hasFailed());
  }
  EXPECT_EQ(10U, input.read(bytes, sizeof bytes));
  EXPECT_EQ(TEXT, std::string(bytes, 10));
  readSteps = {{EIO, 0}};
  EXPECT_EQ(0U, input.read(bytes, sizeof bytes));
  EXPECT_TRUE(input.isAtEnd());
  EXPECT_TRUE(input.hasFailed());
}

TEST_F(InterruptedCalls, NeitherEndNorFailALiveInput) {
  std::string error;
  auto const input = openLiveInput(folder.write("input", TEXT).string(), 0, error);
  ASSERT_NE(nullptr, input) << error;
  readSteps = {{EINTR, 0}, {EAGAIN, 0}};
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(0U, input->read(bytes, sizeof bytes));
    EXPECT_FALSE(input->isAtEnd());
    EXPECT_EQ("", input->errorText());
  }
  EXPECT_EQ(10U, input->read(bytes, sizeof bytes));
  readSteps = {{ENXIO, 0}};
  EXPECT_EQ(0U, input->read(bytes, sizeof bytes));
  EXPECT_TRUE(input->isAtEnd());
  EXPECT_NE("", input->errorText());
}

}  // namespace
}  // namespace KTX::VORTIME::TEST
