#ifndef KTX_TIM_UTCLEAPSECONDS_H
#define KTX_TIM_UTCLEAPSECONDS_H

#include <cstdint>
#include <string>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_LeapSecondSource.h"

namespace KTX::TIM {

class GPSTimeC;
class GpsC;
struct UtcLeapSecondRecord;

/// \file
/// The process-wide leap second: setters, reset, file and reads. Any thread may call; a setter
/// takes the library-wide lock, then the store's. getCurrentUtcLeapSecond() takes the library-wide
/// lock to read the present, then the store's; the other reads and the reset take the store's
/// alone.

/// Sets a leap second. RC_INVALID_LEAPSECOND when the record fails the validity test;
/// RC_LEAPSECOND_NOT_ACCEPTED when its effectivity lies more than six months after the present, or
/// when the record held stands against it. A forced record is accepted whatever its effectivity.
/// The state stays as it was where the record is refused. When the record in force changes,
/// listeners are notified before the call returns. With makeCurrent the present is carried over in
/// GPS time, so that UTC moves by the change of the count; the correction signal is then emitted
/// inside the call, with the library-wide lock and the store's lock held. What a listener throws
/// reaches the caller with the new record in force.
KTX_TIM_API std::uint32_t setUtcLeapSecond(UtcLeapSecondRecord const& record, bool makeCurrent);
/// As above with makeCurrent; the effectivity is known when week or day is not 0.
KTX_TIM_API std::uint32_t setUtcLeapSecond(std::int16_t current,
                                           std::int16_t future,
                                           std::uint16_t week,
                                           std::uint8_t day,
                                           LeapSecondSource source);
/// As above; firstDay is the start of the first day with the new count, the effectivity day the
/// day before.
KTX_TIM_API std::uint32_t setUtcLeapSecond(std::int16_t current,
                                           std::int16_t future,
                                           GPSTimeC const& firstDay,
                                           LeapSecondSource source);
/// A single count as the default. Its effectivity day is the day before the GPS epoch, 1980-01-05
/// wrapped into week 65535, which ends no month, so the validity test always refuses it.
KTX_TIM_API std::uint32_t setUtcLeapSecond(std::int16_t count);

/// Replaces the satellite or default value without the acceptance rule and without notifying
/// listeners. Null keeps the count and clears the rest. RC_INVALID_LEAPSECOND, and no change, for
/// an invalid or a forced record.
KTX_TIM_API std::uint32_t resetSatelliteLeapSecond(UtcLeapSecondRecord const* record = nullptr);

/// Reads a leap second file and sets the value of its first usable line as a forced one.
/// RC_FAILED when the file cannot be opened or read, is not a regular file, is empty, or has no
/// usable line among its first 100 (one of more than 4 MiB is not usable); else the result of the
/// setter. The state stays as it was on failure. A last line without its line end counts
/// as well: where "18,19,2036-12-31" was cut off as "18,19,2036-1" it means GPS week 2036, day 1.
/// Check the end of the file first where that can happen.
KTX_TIM_API std::uint32_t loadLeapSecondFile(std::wstring const& path, bool makeCurrent);

/// The statement in force; record.current is the count to use at time. Always 0.
KTX_TIM_API std::uint32_t getUtcLeapSecondAt(GpsC const& time, UtcLeapSecondRecord& record);
/// As getUtcLeapSecondAt() for the present. Takes the library-wide lock first.
KTX_TIM_API std::uint32_t getCurrentUtcLeapSecond(UtcLeapSecondRecord& record);
/// The satellite or default value as it was stored, whether or not a forced one is in force.
/// Always 0.
KTX_TIM_API std::uint32_t getNormalLeapSecond(UtcLeapSecondRecord& record);
/// The leap second count in force at time, in seconds. Throws boost::numeric::negative_overflow
/// or positive_overflow for a count outside -128 to 127.
KTX_TIM_API std::int8_t getUtcLeapSecondsAt(GpsC const& time);

}  // namespace KTX::TIM

#endif  // KTX_TIM_UTCLEAPSECONDS_H
