#ifndef KTX_RCV_REFUSAL_H
#define KTX_RCV_REFUSAL_H

#include <cstdint>

#include "KTX/RCV/KTX_RCV_Api.h"

namespace KTX::RCV {

/// Why a message was not used.
enum RefusalE : std::uint8_t {
  REFUSAL_NONE = 0,           ///< none; it may be used
  REFUSAL_BAD_CHECKSUM,       ///< the checksum is wrong
  REFUSAL_CUT,                ///< the message ends before its end, or another one cuts into it
  REFUSAL_MALFORMED,          ///< fields that the format does not allow
  REFUSAL_NO_TIME,            ///< the time of day is empty
  REFUSAL_BAD_TIME,           ///< the time of day is none
  REFUSAL_NO_DATE,            ///< a dated message whose date is empty
  REFUSAL_BAD_DATE,           ///< the date is none
  REFUSAL_LEAP_SECOND,        ///< second 60, which a day number cannot express
  REFUSAL_VOID,               ///< the receiver itself marks the data as void
  REFUSAL_NOT_VALID,          ///< validity flags of the message are not set
  REFUSAL_OUT_OF_RANGE,       ///< outside the library's GPS weeks, or beyond the PC's clocks
  REFUSAL_STRICT,             ///< a warning sign, with --strict
  REFUSAL_LEAP_INVALID,       ///< the library finds the leap second record invalid
  REFUSAL_LEAP_REJECTED,      ///< the library holds on to another leap second record
  REFUSAL_LEAP_NOT_VALID,     ///< the receiver marks its leap second as not valid
  REFUSAL_LEAP_INCOMPLETE,    ///< a leap second statement without a count or with half a date
  REFUSAL_LEAP_OUT_OF_RANGE,  ///< a leap second count that GPS minus UTC cannot be
  REFUSAL_COUNT               ///< how many there are, REFUSAL_NONE counted
};

/// The name of a reason in reports, such as "bad-checksum". Static text.
KTX_RCV_API char const* refusalName(RefusalE refusal);

}  // namespace KTX::RCV

#endif  // KTX_RCV_REFUSAL_H
