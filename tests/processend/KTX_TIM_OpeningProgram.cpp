// A program that opens a module, and with it the library: enters a scenario and returns. The module
// stays open.
#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <cstring>
#include <filesystem>

namespace {

using EnterT = int (*)(char const* scenario);

#ifdef _WIN32

FARPROC entry() {
  HMODULE const module = LoadLibraryW(L"process_end_module.dll");
  return module == nullptr ? nullptr : GetProcAddress(module, "enterEndScenario");
}

#else

void* entry() {
  auto const folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  void* const module = dlopen((folder / "process_end_module.so").c_str(), RTLD_NOW | RTLD_LOCAL);
  return module == nullptr ? nullptr : dlsym(module, "enterEndScenario");
}

#endif

}  // namespace

int main(int argc, char** argv) {
  auto const address = entry();
  if (argc != 2 || address == nullptr) {
    return 2;
  }
  EnterT enter = nullptr;
  std::memcpy(&enter, &address, sizeof enter);
  return enter(argv[1]);
}
