#ifndef KTX_TIM_SYSTEMCALLS_H
#define KTX_TIM_SYSTEMCALLS_H

#include <cstdint>
#include <string>

#include "support/KTX_TIM_SystemTimeRecord.h"
#include "support/KTX_TIM_TimeZoneInformation.h"

namespace KTX::TIM {

/// A registry key that is open; 0 is none.
using KeyHandleT = std::uintptr_t;

/// What the library asks of the operating system, one member a call and no logic.
///
/// Texts cross as 16-bit code units and sizes as bytes, as Windows has them; the codes are those
/// of Windows, 0 for success. Implementations are thread-safe.
class SystemCallsI {
 public:
  virtual ~SystemCallsI() = default;

  /// GetSystemTime.
  virtual void getSystemTime(SystemTimeRecordC& utc) = 0;
  /// GetLocalTime.
  virtual void getLocalTime(SystemTimeRecordC& local) = 0;
  /// SetSystemTime: 1 when the clock was set, 0 when not.
  virtual std::int32_t setSystemTime(SystemTimeRecordC const& utc) = 0;
  /// GetTimeZoneInformation: 0 no daylight rule, 1 standard time, 2 daylight time, else failure.
  virtual std::uint32_t getTimeZoneInformation(TimeZoneInformationC& information) = 0;

  /// RegOpenKeyExW for reading, below HKEY_LOCAL_MACHINE when parent is 0. Key names fold case;
  /// an empty path opens the parent itself.
  virtual std::int32_t openKey(KeyHandleT parent, std::u16string const& path, KeyHandleT& key) = 0;
  /// RegEnumKeyExW: the sub-key at index. nameLength holds the room in code units with the
  /// terminator going in, and the length without it coming out.
  virtual std::int32_t enumerateKey(KeyHandleT key,
                                    std::uint32_t index,
                                    char16_t* name,
                                    std::uint32_t& nameLength) = 0;
  /// RegQueryValueExW, whatever the value's type. sizeBytes holds the room going in and the size
  /// of the value coming out; a value that does not fit fails.
  virtual std::int32_t queryValue(KeyHandleT key,
                                  std::u16string const& name,
                                  void* data,
                                  std::uint32_t& sizeBytes) = 0;
  /// RegCloseKey.
  virtual void closeKey(KeyHandleT key) = 0;
};

/// The calls in use: the operating system's, unless a test has put others in.
SystemCallsI& systemCalls();
/// Puts other calls in, null for the operating system's; returns those that were in, null for the
/// operating system's. For tests, while no other thread calls the library.
SystemCallsI* replaceSystemCalls(SystemCallsI* calls);
/// The operating system's own calls.
SystemCallsI& operatingSystemCalls();

}  // namespace KTX::TIM

#endif  // KTX_TIM_SYSTEMCALLS_H
