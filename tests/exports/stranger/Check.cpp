#include "Check.h"

#include <atomic>
#include <cstdio>

namespace {
std::atomic<int> held{0};
std::atomic<int> broken{0};
}  // namespace

void check(bool holds, char const* what, char const* file, int line) {
  if (holds) {
    ++held;
    return;
  }
  ++broken;
  std::printf("%s:%d: does not hold: %s\n", file, line, what);
}

int finishChecks() {
  std::printf("%d checks held, %d did not\n", held.load(), broken.load());
  return broken == 0 && held > 0 ? 0 : 1;
}
