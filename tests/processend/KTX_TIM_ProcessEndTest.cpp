// Processes that end while their threads use the library, wait for its lock, or have left it
// locked.
#ifdef _WIN32
#include <process.h>
#else
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "common/KTX_TIM_TempFolder.h"

namespace KTX::TIM::TEST {
namespace {

#ifdef _WIN32

std::filesystem::path programPath(std::string const& name) {
  return std::filesystem::path(_pgmptr).parent_path() / (name + ".exe");
}

void setLog(std::filesystem::path const& file) {
  _wputenv_s(L"KTX_LOG", (L"*=6,Time=3;size=64K;files=1;file=" + file.wstring()).c_str());
}

// Exit status; the code of the exception where it crashed.
int run(std::string const& program, std::string const& scenario) {
  std::wstring const path = programPath(program).wstring();
  std::wstring const argument(scenario.begin(), scenario.end());
  return static_cast<int>(_wspawnl(_P_WAIT, path.c_str(), L"program", argument.c_str(), nullptr));
}

#else

std::filesystem::path programPath(std::string const& name) {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path() / name;
}

void setLog(std::filesystem::path const& file) {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread
  setenv("KTX_LOG", ("*=6,Time=3;size=64K;files=1;file=" + file.string()).c_str(), 1);
}

// Exit status; the number of the signal below zero where it crashed, or hung for a minute.
int run(std::string const& program, std::string const& scenario) {
  constexpr unsigned LONGEST_RUN_SECONDS = 60;
  std::string const path = programPath(program).string();
  pid_t const child = fork();
  if (child == 0) {
    alarm(LONGEST_RUN_SECONDS);
    execl(path.c_str(), program.c_str(), scenario.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

#endif

void expectCleanRuns(std::string const& program, std::string const& scenario, int runs) {
  TempFolderC const folder;
  setLog(folder.path() / "log");
  for (int i = 0; i < runs; ++i) {
    ASSERT_EQ(0, run(program, scenario)) << program << ' ' << scenario << ", run " << i;
  }
}

constexpr int LINKED_RUNS = 200;
constexpr int OPENED_RUNS = 100;
constexpr int LOCK_RUNS = 5;

TEST(ProcessEnd, LeavesDetachedThreadsToUseTheLibrary) {
  expectCleanRuns("process_end_linked", "threads", LINKED_RUNS);
}

TEST(ProcessEnd, LeavesDetachedThreadsToUseALibraryThatWasOpened) {
  expectCleanRuns("process_end_opening", "threads", OPENED_RUNS);
}

// Windows ends the threads before it tells libraries, so that none of them can be seen to crash.
TEST(ProcessEnd, DestroysNothingOfTheLibrary) {
  for (char const* const program : {"process_end_linked", "process_end_opening"}) {
    expectCleanRuns(program, "owner", 1);
  }
}

TEST(ProcessEnd, WaitsForNoThreadAndNoLock) {
  for (char const* const program : {"process_end_linked", "process_end_opening"}) {
    for (char const* const scenario : {"waiting", "orphaned", "listener"}) {
      expectCleanRuns(program, scenario, LOCK_RUNS);
    }
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
