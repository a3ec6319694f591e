#ifndef KTX_RCV_LEAPSTATEMENT_H
#define KTX_RCV_LEAPSTATEMENT_H

#include <cstdint>

namespace KTX::RCV {

/// The system that a leap second statement comes from.
enum LeapSystemE : std::uint8_t {
  LEAPSYSTEM_UNKNOWN = 0,  ///< not stated, or none of these
  LEAPSYSTEM_GPS,          ///< GPS
  LEAPSYSTEM_GLONASS,      ///< GLONASS
  LEAPSYSTEM_GALILEO,      ///< Galileo
  LEAPSYSTEM_SBAS,         ///< a satellite-based augmentation system
  LEAPSYSTEM_QZSS,         ///< QZSS
  LEAPSYSTEM_BEIDOU        ///< BeiDou
};

/// What a message says of leap seconds. Counts are GPS minus UTC in seconds.
struct LeapStatementC {
  bool hasCount = false;                    ///< current means something
  bool hasEffectivity = false;              ///< future, week and day mean something
  LeapSystemE system = LEAPSYSTEM_UNKNOWN;  ///< whose count it is
  std::int32_t current = 0;                 ///< in force before the change, seconds
  std::int32_t future = 0;                  ///< in force after it, seconds
  std::int32_t week = 0;                    ///< GPS week of the day at whose end the change is
  std::int32_t day = 0;                     ///< 1 (Sunday) to 7
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_LEAPSTATEMENT_H
