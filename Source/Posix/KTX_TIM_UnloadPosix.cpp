// Destroys the objects of the library when it is unloaded, and not when the process ends.
//
// The system runs the library's finaliser in both cases. What is loaded with the program stays
// until the process ends: its finaliser does nothing. A library that is opened later registers an
// exit handler while it is loaded. exit() calls it before it finalises libraries, and dlclose()
// only after the finaliser: the finaliser knows by it that the process ends.
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>

#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "support/KTX_TIM_ForkLocks.h"
#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

namespace {

bool isProcessEnding = false;

void noteProcessEnd() {
  isProcessEnding = true;
}

// Called while the library is loaded. What is loaded with the program can be found in the program's
// scope from the beginning; a library that is opened gets there after its constructors, or never.
bool isLoadedWithProgram() {
  void* const address = reinterpret_cast<void*>(&getTimeLock);
  Dl_info information{};
  void* map = nullptr;
  bool const isKnown = dladdr1(address, &information, &map, RTLD_DL_LINKMAP) != 0;
  if (!isKnown || static_cast<link_map const*>(map)->l_prev == nullptr) {
    return true;  // linked into the program
  }
  void* const program = dlopen(nullptr, RTLD_LAZY);
  void* const found = dlsym(program, "_ZN3KTX3TIM11getTimeLockEv");
  dlclose(program);
  return found == address;
}

// Without memory for the handler the objects stay too.
bool const isNeverUnloaded = isLoadedWithProgram() || std::atexit(&noteProcessEnd) != 0;

__attribute__((destructor)) void finaliseLibrary() {
  if (!isNeverUnloaded && !isProcessEnding) {
    forgetForkLocks();
    processObjects().destroyAll();
  }
}

}  // namespace

}  // namespace KTX::TIM
