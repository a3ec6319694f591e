#ifndef KTX_RCV_ISOTIME_H
#define KTX_RCV_ISOTIME_H

#include <cstddef>
#include <string_view>

#include "KTX/RCV/KTX_RCV_Api.h"
#include "KTX/RCV/KTX_RCV_CivilTime.h"

namespace KTX::RCV {

/// Reads "2014-08-01T00:00:00", with or without a fraction, at the start of text. Returns how many
/// characters it takes, 0 for a text that begins otherwise or names no date or time of day (second
/// 60 included). A time base letter is left in the text.
KTX_RCV_API std::size_t readIsoTime(std::string_view text, CivilTimeC& time);

/// As readIsoTime(), for any number in each field.
KTX_RCV_API std::size_t readIsoFields(std::string_view text, CivilTimeC& time);

}  // namespace KTX::RCV

#endif  // KTX_RCV_ISOTIME_H
