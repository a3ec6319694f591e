#ifndef KTX_VORTIME_TEXTFORMAT_H
#define KTX_VORTIME_TEXTFORMAT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::VORTIME {

/// Appends value in decimal, with zeros in front up to width digits.
void appendUnsigned(std::string& text, std::uint64_t value, std::size_t width = 1);
/// Appends value in decimal.
void appendSigned(std::string& text, std::int64_t value);
/// Appends value with blanks in front up to width characters.
void appendRight(std::string& text, std::string_view value, std::size_t width);
/// Appends value as a column: with blanks in front up to width characters, at least two. width must
/// not be below 2.
void appendColumn(std::string& text, std::string_view value, std::size_t width);
/// Appends value with blanks behind up to width characters, at least one.
void appendLeft(std::string& text, std::string_view value, std::size_t width);
/// Appends the shortest decimal text without an exponent that reads back as value; "null" for no
/// number.
void appendShortest(std::string& text, double value);
/// Appends value with a fixed number of decimals.
void appendFixed(std::string& text, double value, int decimals);
/// Appends "2024-03-07T08:09:05.042", the fields as they stand.
void appendCalendar(std::string& text, TIM::YmdhmsC const& calendar);
/// Appends value as a JSON string with its quotation marks. Control characters (C0, DEL and C1) are
/// escaped, and each byte that is no UTF-8 becomes U+FFFD.
void appendQuoted(std::string& text, std::string_view value);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TEXTFORMAT_H
