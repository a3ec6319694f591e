#ifndef KTX_TIM_SCRATCHHIVE_H
#define KTX_TIM_SCRATCHHIVE_H

#include <cstdint>
#include <string>
#include <vector>

namespace KTX::TIM::TEST {

/// A part of the real registry that this process sees in the place of the machine's while the
/// object exists; empty at first. Windows only. One at a time.
class ScratchHiveC {
 public:
  ScratchHiveC();
  ~ScratchHiveC();
  ScratchHiveC(ScratchHiveC const&) = delete;
  ScratchHiveC& operator=(ScratchHiveC const&) = delete;

  void addRoot();
  void addZone(std::u16string const& name);
  void removeZone(std::u16string const& name);
  void setValue(std::u16string const& zone,
                std::u16string const& value,
                std::vector<std::uint8_t> const& bytes);
  void setTypedValue(std::u16string const& zone,
                     std::u16string const& value,
                     std::uint32_t type,
                     std::vector<std::uint8_t> const& bytes);
  void removeValue(std::u16string const& zone, std::u16string const& value);

 private:
  std::u16string path;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_SCRATCHHIVE_H
