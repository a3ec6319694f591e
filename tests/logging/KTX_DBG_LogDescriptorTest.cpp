// Writing lines with the function of the C library replaced.
#include "KTX_DBG_LogDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <deque>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX_DBG_LogLines.h"
#include "KTX_DBG_LogOutput.h"
#include "common/KTX_TIM_TempFolder.h"

namespace {

// How a call goes on: with an error, else by writing no more than so many bytes.
struct StepC {
  int error;
  std::size_t limit;
};

// The steps of the writes to come; once there are none the system's own function answers.
std::deque<StepC> writeSteps;

}  // namespace

extern "C" ssize_t write(int descriptor, void const* data, std::size_t size) {
  using WriteT = ssize_t (*)(int, void const*, std::size_t);
  static auto const systemWrite = reinterpret_cast<WriteT>(dlsym(RTLD_NEXT, "write"));
  if (writeSteps.empty()) {
    return systemWrite(descriptor, data, size);
  }
  StepC const step = writeSteps.front();
  writeSteps.pop_front();
  if (step.error != 0) {
    errno = step.error;
    return -1;
  }
  return systemWrite(descriptor, data, std::min(size, step.limit));
}

namespace KTX::DBG::TEST {
namespace {

class LogDescriptor : public ::testing::Test {
 protected:
  LogDescriptor() {
    EXPECT_EQ(0, mkfifo(path.c_str(), 0600));
    reader = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  }
  ~LogDescriptor() override {
    writeSteps.clear();
    close(reader);
  }

  std::string received() const {
    char bytes[4096];
    ssize_t const count = read(reader, bytes, sizeof bytes);
    return count > 0 ? std::string(bytes, static_cast<std::size_t>(count)) : std::string();
  }

  TIM::TEST::TempFolderC const folder;
  std::filesystem::path const path = folder.path() / "pipe";
  int reader = -1;
};

TEST_F(LogDescriptor, GoesOnAfterASignalAndAfterAPart) {
  std::deque<StepC> const cases[] = {{{EINTR, 0}},
                                     {{EINTR, 0}, {EINTR, 0}, {0, 3}, {EINTR, 0}, {0, 6}},
                                     {{0, 1}, {0, 1}, {0, 1}, {0, 1}}};
  int const descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_LE(0, descriptor);
  for (auto const& steps : cases) {
    SCOPED_TRACE(steps.size());
    writeSteps = steps;
    EXPECT_EQ(0, writeToDescriptor(descriptor, "0123456789"));
    EXPECT_TRUE(writeSteps.empty());
    EXPECT_EQ("0123456789", received());
  }
  close(descriptor);
}

TEST_F(LogDescriptor, GivesTheErrorOfAWriteThatFails) {
  int const descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  for (int const error : {EIO, ENOSPC, EPIPE, EAGAIN}) {
    writeSteps = {{EINTR, 0}, {0, 2}, {error, 0}};
    EXPECT_EQ(error, writeToDescriptor(descriptor, "0123456789"));
    EXPECT_TRUE(writeSteps.empty());
    EXPECT_EQ("01", received());
  }
  close(descriptor);
}

TEST_F(LogDescriptor, IsWhatALineOfTheLogGoesThrough) {
  LogSettingsC settings;
  settings.isToStandardError = false;
  settings.file = path.string();
  LogOutputC output(settings);
  std::string fault;
  ASSERT_TRUE(output.openFile(fault)) << fault;
  writeSteps = {{EINTR, 0}, {0, 5}, {EINTR, 0}};
  output.writeLine("C", "6", "whole");
  EXPECT_TRUE(writeSteps.empty());
  EXPECT_THAT(logLines(received()), ::testing::ElementsAre("C 6 whole"));
}

TEST_F(LogDescriptor, IsWhatALineToStandardErrorGoesThrough) {
  LogSettingsC const settings;
  LogOutputC output(settings);
  ::testing::internal::CaptureStderr();
  writeSteps = {{EINTR, 0}, {0, 5}, {EINTR, 0}};
  output.writeLine("C", "6", "whole");
  EXPECT_TRUE(writeSteps.empty());
  EXPECT_THAT(logLines(::testing::internal::GetCapturedStderr()),
              ::testing::ElementsAre("C 6 whole"));
}

}  // namespace
}  // namespace KTX::DBG::TEST
