#include <algorithm>
#include <istream>
#include <limits>
#include <ostream>
#include <streambuf>

#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "values/KTX_TIM_TextBuffer.h"

namespace KTX::TIM {
namespace {

using TraitsT = std::char_traits<char>;

bool isDigit(int character) {
  return character >= '0' && character <= '9';
}

bool isBlank(int character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Reads numbers and characters from a stream's buffer as the stream itself would with decimal
/// numbers and the classic locale. After a failure nothing more is read.
class NumberReaderC {
 public:
  NumberReaderC(std::streambuf& source, bool skipsBlanks)
      : buffer(source), isSkippingBlanks(skipsBlanks) {}

  /// A number with an optional sign; 0 and failbit when there is none or it does not fit.
  std::int32_t readNumber() {
    if (failed()) {
      return 0;
    }
    int next = firstCharacter();
    bool const isNegative = next == '-';
    if (isNegative || next == '+') {
      next = buffer.snextc();
    }
    if (!isDigit(next)) {
      state |= std::ios_base::failbit;
    }
    std::int64_t magnitude = 0;
    for (; isDigit(next); next = buffer.snextc()) {
      magnitude = std::min(magnitude * 10 + (next - '0'), TOO_LARGE);
    }
    if (next == TraitsT::eof()) {
      state |= std::ios_base::eofbit;
    }
    std::int64_t const number = isNegative ? -magnitude : magnitude;
    if (number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max()) {
      state |= std::ios_base::failbit;
      return 0;
    }
    return static_cast<std::int32_t>(number);
  }

  /// Any one character, blanks too; the end of the text sets failbit.
  int readCharacter() {
    if (failed()) {
      return TraitsT::eof();
    }
    // After a number, which has seen the end of the text already where it is here.
    int const character = buffer.sbumpc();
    if (character == TraitsT::eof()) {
      state |= std::ios_base::failbit;
    }
    return character;
  }

  bool failed() const { return (state & std::ios_base::failbit) != 0; }
  std::ios_base::iostate getState() const { return state; }

 private:
  static constexpr std::int64_t TOO_LARGE = std::int64_t{1} << 32;

  int firstCharacter() {
    int next = buffer.sgetc();
    while (isSkippingBlanks && isBlank(next)) {
      next = buffer.snextc();
    }
    return next;
  }

  std::streambuf& buffer;
  bool const isSkippingBlanks;
  std::ios_base::iostate state = std::ios_base::goodbit;
};

std::ios_base::iostate readText(std::istream& stream, YmdhmsC& time) {
  constexpr std::size_t NUMBERS = 7;
  std::int32_t numbers[NUMBERS];
  NumberReaderC reader(*stream.rdbuf(), (stream.flags() & std::ios_base::skipws) != 0);
  for (std::size_t i = 0; i < NUMBERS; ++i) {
    if (i > 0) {
      reader.readCharacter();
    }
    numbers[i] = reader.readNumber();
  }
  if (reader.failed()) {
    return reader.getState();
  }
  time.year = static_cast<std::uint16_t>(numbers[0]);
  time.month = static_cast<std::uint8_t>(numbers[1]);
  time.day = static_cast<std::uint8_t>(numbers[2]);
  time.hour = static_cast<std::uint8_t>(numbers[3]);
  time.minute = static_cast<std::uint8_t>(numbers[4]);
  time.second = static_cast<std::uint8_t>(numbers[5]);
  time.hundredths = static_cast<std::uint8_t>(numbers[6]);
  time.milliseconds = std::int64_t{time.hundredths} * 10;
  if (reader.readCharacter() == 'Z') {
    time.timeBase = TIMEBASE_UTC;
  }
  return reader.getState();
}

/// For a catch block: sets badbit, and passes the exception on when the stream asks for it.
void handleBufferException(std::istream& stream) {
  try {
    stream.setstate(std::ios_base::badbit);
  } catch (std::ios_base::failure const&) {
    // The buffer's own exception goes on instead.
  }
  if ((stream.exceptions() & std::ios_base::badbit) != 0) {
    throw;
  }
}

void appendIsoText(TextBufferC& text, YmdhmsC const& time) {
  text.appendNumber(time.year, 4);
  text.append('-');
  text.appendNumber(time.month, 2);
  text.append('-');
  text.appendNumber(time.day, 2);
  text.append('T');
  text.appendNumber(time.hour, 2);
  text.append(':');
  text.appendNumber(time.minute, 2);
  text.append(':');
  text.appendNumber(time.second, 2);
  text.append('.');
  text.appendNumber(time.hundredths);  // 5 hundredths read ".5Z"; this is meant.
  text.append('Z');
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, YmdhmsC const& time) {
  YmdhmsC utc(time);
  if (utc.timeBase == TIMEBASE_GPS) {
    utc.toUtc();
  } else if (utc.timeBase == TIMEBASE_LOCAL) {
    utc.localToUtc();
  }
  TextBufferC text;
  appendIsoText(text, utc);
  return text.insertInto(stream);
}

std::istream& operator>>(std::istream& stream, YmdhmsC& time) {
  std::istream::sentry const sentry(stream);
  if (!sentry) {
    return stream;
  }
  std::ios_base::iostate state = std::ios_base::goodbit;
  try {
    state = readText(stream, time);
  } catch (...) {
    handleBufferException(stream);
  }
  stream.setstate(state);
  return stream;
}

}  // namespace KTX::TIM
