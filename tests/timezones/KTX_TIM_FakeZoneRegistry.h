#ifndef KTX_TIM_FAKEZONEREGISTRY_H
#define KTX_TIM_FAKEZONEREGISTRY_H

#include <cstdint>
#include <string>
#include <vector>

#include "common/KTX_TIM_FakeSystemCalls.h"
#include "common/KTX_TIM_ScopedSystemCalls.h"
#include "timezones/KTX_TIM_ZoneLayout.h"

namespace KTX::TIM::TEST {

/// A faked registry of zones, which the library sees while the object exists; empty at first.
class FakeZoneRegistryC {
 public:
  FakeSystemCallsC calls;

  void addRoot() { calls.addKey(ZONES_PATH); }
  void addZone(std::u16string const& name) { calls.addKey(pathOf(name)); }
  void removeZone(std::u16string const& name) { calls.removeKey(pathOf(name)); }
  void setValue(std::u16string const& zone,
                std::u16string const& value,
                std::vector<std::uint8_t> const& bytes) {
    calls.setValue(pathOf(zone), value, bytes);
  }
  /// The fake keeps no types; the library must not look at them.
  void setTypedValue(std::u16string const& zone,
                     std::u16string const& value,
                     std::uint32_t /*type*/,
                     std::vector<std::uint8_t> const& bytes) {
    setValue(zone, value, bytes);
  }
  void removeValue(std::u16string const& zone, std::u16string const& value) {
    calls.removeValue(pathOf(zone), value);
  }
  std::size_t openKeyCount() const { return calls.openKeyCount(); }

 private:
  static std::u16string pathOf(std::u16string const& zone) {
    return std::u16string(ZONES_PATH) + u"\\" + zone;
  }

  ScopedSystemCallsC const scope{calls};
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FAKEZONEREGISTRY_H
