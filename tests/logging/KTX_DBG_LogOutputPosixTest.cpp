// What only a POSIX system can be brought to do to a log file.
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX_DBG_Log.h"
#include "KTX_DBG_LogDescriptor.h"
#include "KTX_DBG_LogLines.h"
#include "KTX_DBG_LogOutput.h"
#include "common/KTX_TIM_TempFolder.h"

namespace KTX::DBG::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

/// What can be read without waiting.
std::string readAll(int descriptor) {
  std::string text;
  char bytes[4096];
  for (ssize_t count = 0; (count = read(descriptor, bytes, sizeof bytes)) > 0;) {
    text.append(bytes, static_cast<std::size_t>(count));
  }
  return text;
}

bool isSignalPending() {
  sigset_t pending;
  sigpending(&pending);
  return sigismember(&pending, SIGPIPE) == 1;
}

bool isSignalBlocked() {
  sigset_t blocked;
  pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  return sigismember(&blocked, SIGPIPE) == 1;
}

class LogOutputPosix : public ::testing::Test {
 protected:
  LogOutputPosix() {
    settings.isToStandardError = false;
    settings.fileBytes = 1024;
  }

  TIM::TEST::TempFolderC folder;
  LogSettingsC settings;
};

TEST_F(LogOutputPosix, LosesLinesOnAFullDiskAndSaysSoOnce) {
  settings.file = "/dev/full";
  LogOutputC output(settings);
  std::string fault;
  ASSERT_TRUE(output.openFile(fault)) << fault;
  CaptureStderr();
  for (int i = 0; i < 100; ++i) {
    output.writeLine("C", "6", "lost");
  }
  std::string const told = GetCapturedStderr();
  EXPECT_THAT(told, HasSubstr("/dev/full: No space left on device"));
  EXPECT_EQ(1, std::count(told.begin(), told.end(), '\n'));
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(LogOutputPosix, NeverPutsADeviceAside) {
  auto const device = folder.path() / "device";
  std::filesystem::create_symlink("/dev/null", device);
  settings.file = device.string();
  LogOutputC output(settings);
  for (int i = 0; i < 100; ++i) {
    output.writeLine("C", "6", "a line that is longer than ten bytes");
  }
  EXPECT_TRUE(std::filesystem::is_symlink(device));
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "device.1"));
}

TEST_F(LogOutputPosix, WritesToAPipeWithoutABreak) {
  auto const pipe = folder.path() / "pipe";
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  // Keeps the pipe open until its reader has come.
  int const opener = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_LE(0, opener);
  std::string received;
  {
    settings.file = pipe.string();
    LogOutputC output(settings);
    std::string fault;
    EXPECT_TRUE(output.openFile(fault)) << fault;
    for (int i = 0; i < 50; ++i) {
      output.writeLine("C", "6", "a line that is longer than twenty bytes");
    }
    // Until the pipe is closed for the first time.
    received = readAll(opener);
  }
  EXPECT_EQ(50U, logLines(received).size());
  EXPECT_EQ("", readAll(opener)) << "closed without a further line";
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
  close(opener);
}

TEST_F(LogOutputPosix, HoldsTheProgramBackForASlowReaderAndLosesNothing) {
  auto const pipe = folder.path() / "pipe";
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  int const opener = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_LE(0, opener);
  settings.file = pipe.string();
  auto output = std::make_unique<LogOutputC>(settings);
  std::string fault;
  ASSERT_TRUE(output->openFile(fault)) << fault;
  std::thread writer([&output] {
    for (int i = 0; i < 3000; ++i) {
      output->writeLine("C", "6", std::string(100, 'x'));
    }
    output.reset();
  });
  std::string const received = folder.read("pipe");  // to the end
  writer.join();
  close(opener);
  EXPECT_EQ(3000U, logLines(received).size());
}

TEST_F(LogOutputPosix, NeitherWaitsNorEndsForAFifoWithoutAReader) {
  auto const pipe = folder.path() / "pipe";
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  settings.file = pipe.string();
  LogOutputC output(settings);
  std::string fault;
  CaptureStderr();
  EXPECT_TRUE(output.openFile(fault)) << fault;
  EXPECT_EQ("", GetCapturedStderr());
  CaptureStderr();
  output.writeLine("C", "6", "lost");
  output.writeLine("C", "6", "lost");
  EXPECT_EQ("KTX_LOG: log lines are lost (told once): cannot open \"" + pipe.string() +
                "\": No such device or address\n",
            GetCapturedStderr());
  for (int visit = 0; visit < 2; ++visit) {
    int const reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_LE(0, reader);
    output.writeLine("C", "6", "read");
    EXPECT_THAT(logLines(readAll(reader)), ElementsAre("C 6 read"));
    close(reader);
    output.writeLine("C", "6", "lost");
    output.writeLine("C", "6", "lost");
  }
}

TEST_F(LogOutputPosix, KeepsTheSettingForAFifoWithoutAReader) {
  auto const pipe = folder.path() / "pipe";
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  CaptureStderr();
  LogC log("Time=3;file=" + pipe.string());
  EXPECT_EQ("", GetCapturedStderr());
  EXPECT_TRUE(log.channel("Time").isEnabled(3));
}

TEST_F(LogOutputPosix, RefusesASocketAsItsFile) {
  auto const path = (folder.path() / "socket").string();
  int const server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(0, bind(server, reinterpret_cast<sockaddr const*>(&address), sizeof address));
  settings.file = path;
  LogOutputC output(settings);
  std::string fault;
  EXPECT_FALSE(output.openFile(fault));
  EXPECT_THAT(fault, HasSubstr("cannot open \"" + path));
  close(server);
}

TEST_F(LogOutputPosix, OutlivesTheReaderOfStandardErrorAndRaisesNoSignal) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  close(ends[0]);
  int const standardError = dup(STDERR_FILENO);
  settings.isToStandardError = true;
  dup2(ends[1], STDERR_FILENO);
  {
    LogOutputC output(settings);
    output.writeLine("C", "6", "lost");
    output.writeLine("C", "6", "lost");
  }
  dup2(standardError, STDERR_FILENO);
  close(standardError);
  close(ends[1]);
  EXPECT_FALSE(isSignalPending());
  EXPECT_FALSE(isSignalBlocked());
}

TEST_F(LogOutputPosix, LeavesASignalToTheProgramThatWasThereBefore) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  close(ends[0]);
  sigset_t brokenPipe;
  sigemptyset(&brokenPipe);
  sigaddset(&brokenPipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
  raise(SIGPIPE);
  EXPECT_EQ(EPIPE, writeToDescriptor(ends[1], "lost"));
  EXPECT_TRUE(isSignalPending());
  EXPECT_TRUE(isSignalBlocked());
  int taken = 0;
  sigwait(&brokenPipe, &taken);
  EXPECT_EQ(EPIPE, writeToDescriptor(ends[1], "lost"));
  EXPECT_FALSE(isSignalPending());
  EXPECT_TRUE(isSignalBlocked());
  pthread_sigmask(SIG_UNBLOCK, &brokenPipe, nullptr);
  close(ends[1]);
}

TEST_F(LogOutputPosix, SurvivesAFailedChangeOfFiles) {
  auto const logs = folder.path() / "logs";
  settings.file = (logs / "a.log").string();
  LogOutputC output(settings);
  output.writeLine("C", "6", std::string(900, 'x'));
  std::filesystem::rename(logs, folder.path() / "moved");
  folder.write("logs", "now a file");

  CaptureStderr();
  output.writeLine("C", "6", std::string(900, 'y'));
  output.writeLine("C", "6", "short");
  std::string const told = GetCapturedStderr();
  EXPECT_THAT(told, HasSubstr("KTX_LOG: log lines are lost (told once): "));
  EXPECT_EQ(1, std::count(told.begin(), told.end(), '\n'));

  std::filesystem::remove(logs);
  output.writeLine("C", "6", "again");
  EXPECT_THAT(logLines(folder.read("logs/a.log")), ElementsAre("C 6 again"));
}

}  // namespace
}  // namespace KTX::DBG::TEST
