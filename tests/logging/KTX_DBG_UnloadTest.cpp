// Loads the logging library as a plug-in and lets go of it.
#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

namespace KTX::DBG::TEST {
namespace {

using Constructor = void (*)(void* storage, std::string const& channelName);

#ifdef _WIN32

using Library = HMODULE;
using Entry = FARPROC;

Library load() {
  return LoadLibraryW(L"Logging.dll");
}
Entry constructor(Library library) {
  return GetProcAddress(library, MAKEINTRESOURCEA(3));
}
void unload(Library library) {
  FreeLibrary(library);
}
bool isLoaded() {
  return GetModuleHandleW(L"Logging.dll") != nullptr;
}

#else

using Library = void*;
using Entry = void*;

std::string libraryPath() {
  return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "libLogging.so").string();
}

Library load() {
  return dlopen(libraryPath().c_str(), RTLD_NOW);
}
Entry constructor(Library library) {
  return dlsym(library,
               "_ZN3KTX3DBG11DbgLogFileCC1ERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE");
}
void unload(Library library) {
  dlclose(library);
}
bool isLoaded() {
  return dlopen(libraryPath().c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr;
}

#endif

TEST(LoggingLibraryAsAPlugIn, StaysOnceItHasALog) {
  ASSERT_FALSE(isLoaded());
  Library const library = load();
  ASSERT_NE(nullptr, library);
  Entry const entry = constructor(library);
  ASSERT_NE(nullptr, entry);
  Constructor construct = nullptr;
  std::memcpy(&construct, &entry, sizeof construct);
  // A handle needs no destructor: it holds only a pointer.
  alignas(DbgLogFileC) char storage[sizeof(DbgLogFileC)];
  construct(storage, "Channel");
  unload(library);
  EXPECT_TRUE(isLoaded());
}

}  // namespace
}  // namespace KTX::DBG::TEST
