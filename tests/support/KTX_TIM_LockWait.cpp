#include "support/KTX_TIM_LockWait.h"

#include <fstream>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>

namespace KTX::TIM::TEST {

pid_t systemThreadId() {
  return static_cast<pid_t>(syscall(SYS_gettid));
}

// The file holds the number of the call and its six arguments in hexadecimal, or one word while the
// thread runs. The fourth argument of futex() is the time after which it returns.
LockWaitE lockWaitOf(pid_t threadId) {
  std::ifstream file("/proc/self/task/" + std::to_string(threadId) + "/syscall");
  std::string number;
  std::string word;
  std::string operation;
  std::string value;
  std::string timeout;
  file >> number >> word >> operation >> value >> timeout;
  if (number != std::to_string(SYS_futex)) {
    return LOCKWAIT_NONE;
  }
  return timeout == "0x0" ? LOCKWAIT_UNTIMED : LOCKWAIT_TIMED;
}

}  // namespace KTX::TIM::TEST
