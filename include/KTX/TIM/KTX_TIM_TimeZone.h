#ifndef KTX_TIM_TIMEZONE_H
#define KTX_TIM_TIMEZONE_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <boost/function.hpp>
#include <boost/signals2/connection.hpp>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

class GpsC;
class GpsTimeC;
class MjdTimeC;
class YmdhmsC;

/// The time zone service. Zones go by their Windows key names, such as "W. Europe Standard Time".
///
/// A bias follows the Windows convention (UTC = local time + bias, in minutes); an offset has the
/// opposite sign. Operations that return a code give RC_OK or RC_FAILED.
class TimeZoneC {
 public:
  /// Zone key name and display name.
  using ZoneNamesT = std::vector<std::pair<std::wstring, std::wstring>>;

  virtual ~TimeZoneC() = default;

  /// Subscribes to changes of the library's zone. A slot runs on the thread that set it, after the
  /// library-wide lock is released, and may call back. What it throws reaches that thread with the
  /// new zone held, and slots after it are not called.
  virtual boost::signals2::connection connectTimeZoneChanged(
      boost::function<void()> const& slot) = 0;
  /// All zones of the system, sorted by display name. RC_FAILED when there is none, or when a zone
  /// has no display name that fits 254 characters; zones then holds those gathered before it,
  /// unsorted. What zones held before is gone either way.
  virtual std::uint32_t getTimeZoneList(ZoneNamesT& zones) = 0;
  /// The key name of the zone the library works with; RC_FAILED, and name empty, when there is
  /// none.
  virtual std::uint32_t getTimeZone(std::wstring& name) = 0;
  /// Makes the named zone the library's zone and announces the change. RC_FAILED for a name that
  /// checkTimeZone() refuses; the zone held before stays. RC_FAILED also when the zone vanishes
  /// between that check and a second one; no zone is held then, and the next question asks the
  /// system. The zone that is held already gives RC_OK and announces nothing.
  virtual std::uint32_t setTimeZone(std::wstring const& name) = 0;
  /// The key name of the default zone, "GMT Standard Time".
  virtual std::wstring getDefaultTimeZone() = 0;
  /// RC_OK when the system knows a zone of that key name, without regard to case, and for an empty
  /// name, which stands for the root of all zones.
  virtual std::uint32_t checkTimeZone(std::wstring const& name) = 0;
  /// The current zone's bias as text: "GMT", its sign, then hours and minutes as stored, with their
  /// own signs once more: "GMT+05:00" for 300, "GMT--1:00" for -60, "GMT--5:-30" for -330. Empty
  /// when there is no zone or its bias cannot be read.
  virtual std::wstring getTimeZoneOffsetText() = 0;
  /// The offset from UTC, in minutes east, that the system has now.
  virtual std::int16_t getUtcOffset(MjdTimeC const& time) = 0;
  /// The offset from UTC, in minutes east, that the system has now.
  virtual std::int16_t getUtcOffset(YmdhmsC const& time) = 0;
  /// The offset from UTC, in minutes east, that the system has now.
  virtual std::int16_t getUtcOffset(GpsC const& time) = 0;
  /// The offset from UTC, in minutes east, that the system has now.
  virtual std::int16_t getUtcOffset(GpsTimeC const& time) = 0;
  /// The zone's standard bias in minutes; bias is 0 on failure.
  virtual std::uint32_t getTimeZoneBias(std::wstring const& name, std::int32_t& bias) = 0;
  /// The zone's display name; display is unchanged on failure.
  virtual std::uint32_t getTimeZoneDisplayName(std::wstring const& name, std::wstring& display) = 0;
  /// The first zone of the system with this standard bias; name is unchanged on failure.
  virtual std::uint32_t findTimeZoneByBias(std::int32_t bias, std::wstring& name) = 0;
  /// As getTimeZoneBias(), for the three preferred zones only.
  virtual std::uint32_t getPreferredTimeZoneBias(std::wstring const& name, std::int32_t& bias) = 0;
  /// The first of the three preferred zones with this bias; name is empty on failure.
  virtual std::uint32_t findPreferredTimeZoneByBias(std::int32_t bias, std::wstring& name) = 0;
  /// Turns a key name or an IANA name of the fixed table into a known key name, in that order; for
  /// any other name gives the first zone of the system with this bias, as findTimeZoneByBias()
  /// does. RC_FAILED when there is none: resolved is then unchanged, or the key name that the table
  /// gave for a zone that the system lacks. An empty name gives RC_OK and an empty resolved.
  virtual std::uint32_t resolveTimeZone(std::wstring const& name,
                                        std::int32_t bias,
                                        std::wstring& resolved) = 0;
};

/// The library's active time zone, one for the process.
KTX_TIM_API TimeZoneC& getTimeZoneInstance();

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMEZONE_H
