// Loads the library as a plug-in, twice. The program itself is not linked against it.
#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"

namespace KTX::TIM::TEST {
namespace {

// A function of the library: by ordinal on Windows, by name elsewhere.
struct EntryC {
  int ordinal;
  char const* name;
};

EntryC const TICK_COUNT{VORTIME_getTickCountMs};
EntryC const ZONE_INSTANCE{VORTIME_getTimeZoneInstance};
EntryC const CONNECT_CORRECTED{VORTIME_connectTimeCorrected};
EntryC const CONNECT_ESTIMATED{VORTIME_connectTimeEstimated};
EntryC const CONNECT_SIGNAL{VORTIME_connectTimeSignal};
EntryC const CONNECT_LEAP_SECOND{VORTIME_connectUtcLeapSecondChanged};

// Whether libraries that are opened later find its symbols; Windows knows no such thing.
enum ScopeE { SCOPE_LOCAL, SCOPE_GLOBAL };

#ifdef _WIN32

using LibraryT = HMODULE;

LibraryT load(ScopeE /*scope*/ = SCOPE_LOCAL) {
  return LoadLibraryW(L"VorTime.dll");
}
FARPROC addressOf(LibraryT library, EntryC const& entry) {
  return GetProcAddress(library, MAKEINTRESOURCEA(entry.ordinal));
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

LibraryT load(ScopeE scope = SCOPE_LOCAL) {
  return dlopen(libraryPath().c_str(),
                RTLD_NOW | (scope == SCOPE_LOCAL ? RTLD_LOCAL : RTLD_GLOBAL));
}
void* addressOf(LibraryT library, EntryC const& entry) {
  return dlsym(library, entry.name);
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

// Null where the library has no such function.
template <class FunctionT>
FunctionT* functionOf(LibraryT library, EntryC const& entry) {
  auto const address = addressOf(library, entry);
  FunctionT* function = nullptr;
  static_assert(sizeof function == sizeof address);
  std::memcpy(&function, &address, sizeof function);
  return function;
}

TEST(LoadUnload, LoadsAndUnloadsTwice) {
  for (int turn = 0; turn < 2; ++turn) {
    SCOPED_TRACE(turn);
    EXPECT_FALSE(isLoaded());
    LibraryT const library = load();
    ASSERT_NE(nullptr, library);
    auto* const getTickCount = functionOf<std::uint32_t()>(library, TICK_COUNT);
    ASSERT_NE(nullptr, getTickCount);
    std::uint32_t const first = getTickCount();
    EXPECT_LE(getTickCount() - first, 3600000U);
    unload(library);
    EXPECT_FALSE(isLoaded());
  }
}

// A slot that owns something: the library holds a copy until its signal is destroyed.
struct OwningSlotC {
  std::shared_ptr<int> owned;

  template <class... ArgumentsT>
  void operator()(ArgumentsT const&... /*arguments*/) const {}
};

template <class SlotT>
void connect(LibraryT library, EntryC const& entry, std::shared_ptr<int> const& owned) {
  using ConnectT = boost::signals2::connection(SlotT const&);
  auto* const function = functionOf<ConnectT>(library, entry);
  ASSERT_NE(nullptr, function);
  long const owners = owned.use_count();
  function(SlotT(OwningSlotC{owned}));
  EXPECT_EQ(owners + 1, owned.use_count());
}

TEST(LoadUnload, UnloadingDestroysEverySignalWithItsSlots) {
  for (ScopeE const scope : {SCOPE_LOCAL, SCOPE_GLOBAL, SCOPE_LOCAL}) {
    SCOPED_TRACE(scope);
    auto const owned = std::make_shared<int>(0);
    LibraryT const library = load(scope);
    ASSERT_NE(nullptr, library);
    connect<TimeCorrectedSlot>(library, CONNECT_CORRECTED, owned);
    connect<TimeEstimatedSlot>(library, CONNECT_ESTIMATED, owned);
    connect<TimeSignalSlot>(library, CONNECT_SIGNAL, owned);
    connect<UtcLeapSecondChangedSlot>(library, CONNECT_LEAP_SECOND, owned);
    auto* const getZone = functionOf<TimeZoneC&()>(library, ZONE_INSTANCE);
    ASSERT_NE(nullptr, getZone);
    getZone().connectTimeZoneChanged(OwningSlotC{owned});
    EXPECT_EQ(6, owned.use_count());
    unload(library);
    EXPECT_FALSE(isLoaded());
    EXPECT_EQ(1, owned.use_count());
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
