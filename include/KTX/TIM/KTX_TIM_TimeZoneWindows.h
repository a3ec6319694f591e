#ifndef KTX_TIM_TIMEZONEWINDOWS_H
#define KTX_TIM_TIMEZONEWINDOWS_H

#include <cstdint>
#include <string>

#include <boost/signals2/signal.hpp>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"

namespace KTX::TIM {

/// The time zones of the registry, and the zone that the application selected.
///
/// Selecting a zone records it for the library only; the system's own zone never changes. A
/// change of the system's zone after the first use is not seen while a zone is held. Any thread
/// may call.
class KTX_TIM_API TimeZoneWindowsC : public TimeZoneC {
 public:
  /// No zone yet: the first getTimeZone() asks the system.
  TimeZoneWindowsC();
  /// Takes over name and subscribers; the source keeps neither and can no longer announce.
  TimeZoneWindowsC(TimeZoneWindowsC&& other) noexcept;
  ~TimeZoneWindowsC() override;
  TimeZoneWindowsC(TimeZoneWindowsC const&) = delete;
  TimeZoneWindowsC& operator=(TimeZoneWindowsC const&) = delete;
  TimeZoneWindowsC& operator=(TimeZoneWindowsC&&) = delete;

  boost::signals2::connection connectTimeZoneChanged(boost::function<void()> const& slot) override;
  std::uint32_t getTimeZoneList(ZoneNamesT& zones) override;
  std::uint32_t getTimeZone(std::wstring& name) override;
  std::uint32_t setTimeZone(std::wstring const& name) override;
  std::wstring getDefaultTimeZone() override;
  std::uint32_t checkTimeZone(std::wstring const& name) override;
  std::wstring getTimeZoneOffsetText() override;
  std::int16_t getUtcOffset(MjdTimeC const& time) override;
  std::int16_t getUtcOffset(YmdhmsC const& time) override;
  std::int16_t getUtcOffset(GpsC const& time) override;
  std::int16_t getUtcOffset(GpsTimeC const& time) override;
  std::uint32_t getTimeZoneBias(std::wstring const& name, std::int32_t& bias) override;
  std::uint32_t getTimeZoneDisplayName(std::wstring const& name, std::wstring& display) override;
  std::uint32_t findTimeZoneByBias(std::int32_t bias, std::wstring& name) override;
  std::uint32_t getPreferredTimeZoneBias(std::wstring const& name, std::int32_t& bias) override;
  std::uint32_t findPreferredTimeZoneByBias(std::int32_t bias, std::wstring& name) override;
  std::uint32_t resolveTimeZone(std::wstring const& name,
                                std::int32_t bias,
                                std::wstring& resolved) override;

 private:
  friend KTX_TIM_API TimeZoneC& getTimeZoneInstance();

  std::wstring currentTimeZoneName();
  std::wstring heldName() const;
  std::wstring takeHeldName();
  void holdName(std::wstring const& name);
  std::wstring holdNameIfNone(std::wstring const& name);
  void emitTimeZoneChanged();

  std::wstring timeZoneName KTX_TIM_GUARDED_BY(nameMutex);
  boost::signals2::signal<void()> timeZoneChanged;
  bool hasSignal = true;
  // The innermost lock: nothing is called while it is held.
  mutable Mutex nameMutex;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMEZONEWINDOWS_H
