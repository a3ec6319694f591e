#ifndef KTX_TIM_LEAPSECONDLINE_H
#define KTX_TIM_LEAPSECONDLINE_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::TIM {

/// Splits one line of a leap second file into its numbers as the characters come in, so that a
/// line of any length takes the same memory.
class LeapSecondLineC {
 public:
  /// Takes the next character of the line; its newline is not one of them.
  void add(char character);

  /// Ends the line and fills record with what it says, as a forced value. False, and record
  /// unchanged, when the line is not usable; a comment is not.
  bool finish(UtcLeapSecondRecord& record);

 private:
  enum class StateE { FIELD_START, AFTER_SEPARATOR, LEADING_SPACE, SIGN, DIGITS, TRAILING_SPACE };

  void addDigit(char digit);
  void endField();

  static constexpr std::size_t MAX_FIELDS = 5;

  StateE state = StateE::FIELD_START;
  bool isUsable = true;
  std::int32_t number = 0;
  std::size_t fieldCount = 0;
  std::array<std::int32_t, MAX_FIELDS> fields{};
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDLINE_H
