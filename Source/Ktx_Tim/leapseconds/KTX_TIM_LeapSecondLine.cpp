#include "leapseconds/KTX_TIM_LeapSecondLine.h"

#include <algorithm>

#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "leapseconds/KTX_TIM_LeapSecondEffectivity.h"
#include "values/KTX_TIM_DayNumber.h"

namespace KTX::TIM {
namespace {

// Current, future, then week and day or year, month and day: by position the limits are the same.
// No number is negative, for a minus separates fields.
constexpr std::int32_t HIGHEST[] = {32767, 32767, 65535, 255, 255};
// Beyond every limit.
constexpr std::int32_t MAX_NUMBER = 1000000;

bool isSeparator(char character) {
  return character == ',' || character == '-';
}

bool isSpace(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

GPSTimeC startOfDay(std::int32_t year, std::int32_t month, std::int32_t day) {
  YmdhmsC date = YmdhmsC::zero(TIMEBASE_GPS);
  date.year = static_cast<std::uint16_t>(year);
  date.month = static_cast<std::uint8_t>(month);
  date.day = static_cast<std::uint8_t>(day);
  return gpsTimeOf(MjdTimeC(date).getDayNumber());
}

}  // namespace

void LeapSecondLineC::add(char character) {
  if (isSeparator(character)) {
    // Separators in a row count as one; the first of the line still ends an empty field.
    if (state != StateE::AFTER_SEPARATOR) {
      endField();
    }
  } else if (isDigit(character)) {
    addDigit(character);
  } else if (isSpace(character)) {
    bool const isInNumber = state == StateE::DIGITS || state == StateE::TRAILING_SPACE;
    isUsable = isUsable && state != StateE::SIGN;
    state = isInNumber ? StateE::TRAILING_SPACE : StateE::LEADING_SPACE;
  } else {
    bool const isBeforeNumber =
        state != StateE::SIGN && state != StateE::DIGITS && state != StateE::TRAILING_SPACE;
    isUsable = isUsable && character == '+' && isBeforeNumber;
    state = StateE::SIGN;
  }
}

bool LeapSecondLineC::finish(UtcLeapSecondRecord& record) {
  endField();
  if (!isUsable || fieldCount < MAX_FIELDS - 1) {
    return false;
  }
  record.source = LEAPSECOND_FORCED;
  record.current = static_cast<std::int16_t>(fields[0]);
  record.future = static_cast<std::int16_t>(fields[1]);
  if (fieldCount == MAX_FIELDS) {
    setEffectivityDayBefore(record, startOfDay(fields[2], fields[3], fields[4]));
    return true;
  }
  record.week = static_cast<std::uint16_t>(fields[2]);
  record.day = static_cast<std::uint8_t>(fields[3]);
  record.effectivityKnown = true;
  return true;
}

void LeapSecondLineC::addDigit(char digit) {
  isUsable = isUsable && state != StateE::TRAILING_SPACE;
  number = std::min(number * 10 + (digit - '0'), MAX_NUMBER);
  state = StateE::DIGITS;
}

void LeapSecondLineC::endField() {
  bool const hasNumber = state == StateE::DIGITS || state == StateE::TRAILING_SPACE;
  isUsable = isUsable && hasNumber && fieldCount < MAX_FIELDS && number <= HIGHEST[fieldCount];
  if (isUsable) {
    fields[fieldCount] = number;
    ++fieldCount;
  }
  number = 0;
  state = StateE::AFTER_SEPARATOR;
}

}  // namespace KTX::TIM
