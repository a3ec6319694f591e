// loader LIBRARY ENTRY: loads the library twice, calls its millisecond tick each time and unloads
// it again. ENTRY is the ordinal of the tick function on Windows, its symbol elsewhere.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

using TickT = std::uint32_t (*)();

#if defined(_WIN32)
void* load(char const* path) {
  return LoadLibraryA(path);
}
TickT find(void* library, char const* entry) {
  auto const ordinal = static_cast<std::uintptr_t>(std::atoi(entry));
  return reinterpret_cast<TickT>(
      GetProcAddress(static_cast<HMODULE>(library), reinterpret_cast<char const*>(ordinal)));
}
bool unload(void* library) {
  return FreeLibrary(static_cast<HMODULE>(library)) != 0;
}
bool isLoaded(char const* path) {
  return GetModuleHandleA(path) != nullptr;
}
#else
void* load(char const* path) {
  return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}
TickT find(void* library, char const* entry) {
  return reinterpret_cast<TickT>(dlsym(library, entry));
}
bool unload(void* library) {
  return dlclose(library) == 0;
}
bool isLoaded(char const* path) {
  return dlopen(path, RTLD_NOW | RTLD_NOLOAD) != nullptr;
}
#endif

bool visit(char const* path, char const* entry) {
  void* const library = load(path);
  if (library == nullptr) {
    std::printf("%s does not load\n", path);
    return false;
  }
  TickT const tick = find(library, entry);
  if (tick == nullptr) {
    std::printf("%s is not in %s\n", entry, path);
    return false;
  }
  std::uint32_t const first = tick();
  if (tick() - first > 60000) {
    std::printf("the tick jumps\n");
    return false;
  }
  if (!unload(library) || isLoaded(path)) {
    std::printf("%s stays loaded\n", path);
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::printf("usage: loader LIBRARY ENTRY\n");
    return 2;
  }
  for (int time = 0; time < 2; ++time) {
    if (!visit(argv[1], argv[2])) {
      return 1;
    }
  }
  std::printf("loaded and unloaded twice\n");
  return 0;
}
