// Loads the library as a plug-in, twice. The program itself is not linked against it.
#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

using TickCountT = std::uint32_t (*)();

#ifdef _WIN32

using LibraryT = HMODULE;

LibraryT load() {
  return LoadLibraryW(L"VorTime.dll");
}
FARPROC entry(LibraryT library) {
  return GetProcAddress(library, MAKEINTRESOURCEA(VORTIME_TICK_COUNT_ORDINAL));
}
void unload(LibraryT library) {
  FreeLibrary(library);
}
bool isLoaded() {
  return GetModuleHandleW(L"VorTime.dll") != nullptr;
}

#else

using LibraryT = void*;

std::string libraryPath() {
  return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "libVorTime.so").string();
}

LibraryT load() {
  return dlopen(libraryPath().c_str(), RTLD_NOW | RTLD_LOCAL);
}
void* entry(LibraryT library) {
  return dlsym(library, "_ZN3KTX3TIM14getTickCountMsEv");
}
void unload(LibraryT library) {
  dlclose(library);
}
bool isLoaded() {
  void* const library = dlopen(libraryPath().c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (library != nullptr) {
    dlclose(library);
  }
  return library != nullptr;
}

#endif

TEST(LoadUnload, LoadsAndUnloadsTwice) {
  for (int turn = 0; turn < 2; ++turn) {
    SCOPED_TRACE(turn);
    EXPECT_FALSE(isLoaded());
    LibraryT const library = load();
    ASSERT_NE(nullptr, library);
    auto const address = entry(library);
    ASSERT_NE(nullptr, address);
    TickCountT getTickCount = nullptr;
    std::memcpy(&getTickCount, &address, sizeof getTickCount);
    std::uint32_t const first = getTickCount();
    EXPECT_LE(getTickCount() - first, 3600000U);
    unload(library);
    EXPECT_FALSE(isLoaded());
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
