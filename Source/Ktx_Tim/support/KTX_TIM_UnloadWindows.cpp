#include <windows.h>

#include "support/KTX_TIM_ProcessObject.h"

// Windows passes a null pointer when the library is unloaded, and another one when the process
// ends. The runtime calls this before the destructors of static objects.
extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, LPVOID processEnd) {
  if (reason == DLL_PROCESS_DETACH && processEnd == nullptr) {
    KTX::TIM::processObjects().destroyAll();
  }
  return TRUE;
}
