// Names that lead to no regular file. Each of them has a usable line to give to whoever reads it.
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_TempFolder.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::uint32_t FAILED = 33554458;
std::string const LINE = "17,18,1929,7\n";

class LeapSecondFilePosix : public ::testing::Test {
 protected:
  ~LeapSecondFilePosix() override {
    if (descriptor >= 0) {
      close(descriptor);
    }
  }

  void offerLine() {
    ASSERT_LE(0, descriptor);
    ASSERT_EQ(static_cast<ssize_t>(LINE.size()), write(descriptor, LINE.data(), LINE.size()));
  }

  /// Bytes that wait to be read, as soon as there are any; a terminal hands them on by itself.
  static int waitingBytes(int source) {
    pollfd wait{source, POLLIN, 0};
    EXPECT_EQ(1, poll(&wait, 1, 10000));
    int count = -1;
    EXPECT_EQ(0, ioctl(source, FIONREAD, &count));
    return count;
  }

  static std::uint32_t load(std::filesystem::path const& path) {
    return loadLeapSecondFile(path.wstring(), false);
  }

  TempFolderC const folder;
  ScopedLeapSecondsC const leapSeconds;
  UtcLeapSecondRecord const initial = defaultLeapSecondRecord();
  int descriptor = -1;
};

TEST_F(LeapSecondFilePosix, FailsForAFifoAndReadsNothingFromIt) {
  auto const fifo = folder.path() / "fifo";
  ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
  std::filesystem::create_symlink(fifo, folder.path() / "link");
  descriptor = open(fifo.c_str(), O_RDWR | O_CLOEXEC);
  offerLine();
  ASSERT_EQ(FAILED, load(fifo));
  EXPECT_EQ(FAILED, load(folder.path() / "link"));
  EXPECT_EQ(static_cast<int>(LINE.size()), waitingBytes(descriptor));
  EXPECT_EQ(initial, recordInForce());
}

TEST_F(LeapSecondFilePosix, FailsAtOnceForAFifoWithoutAWriter) {
  auto const fifo = folder.path() / "fifo";
  ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
  EXPECT_EQ(FAILED, load(fifo));
}

TEST_F(LeapSecondFilePosix, FailsForATerminal) {
  descriptor = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_LE(0, descriptor);
  ASSERT_EQ(0, grantpt(descriptor));
  ASSERT_EQ(0, unlockpt(descriptor));
  std::string const terminal = ptsname(descriptor);  // NOLINT(concurrency-mt-unsafe): one thread
  // Open meanwhile, so that what is typed waits for its reader.
  int const other = open(terminal.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_LE(0, other);
  offerLine();
  EXPECT_EQ(static_cast<int>(LINE.size()), waitingBytes(other));
  EXPECT_EQ(FAILED, load(terminal));
  EXPECT_EQ(initial, recordInForce());
  EXPECT_EQ(static_cast<int>(LINE.size()), waitingBytes(other));
  close(other);
}

TEST_F(LeapSecondFilePosix, FailsForADeviceAndAFolder) {
  for (char const* const name : {"/dev/null", "/dev/zero", "/dev/full", "/dev", "/"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(FAILED, load(name));
  }
  EXPECT_EQ(initial, recordInForce());
}

TEST_F(LeapSecondFilePosix, IsReadThroughALink) {
  std::filesystem::create_symlink(folder.write("leap.txt", LINE), folder.path() / "link");
  EXPECT_EQ(0U, load(folder.path() / "link"));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 17, 18, 1929, 7, true}), recordInForce());
}

}  // namespace
}  // namespace KTX::TIM::TEST
