#ifndef KTX_TIM_TEXTBUFFER_H
#define KTX_TIM_TEXTBUFFER_H

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace KTX::TIM {

/// A short text that is composed apart and then handed on whole, so that a stream's formatting
/// takes no part in it. Text beyond the capacity is cut.
class TextBufferC {
 public:
  void append(std::string_view text) noexcept;
  void append(char character) noexcept;
  /// Decimal digits, with leading zeros up to minDigits.
  void appendNumber(std::uint64_t number, std::size_t minDigits = 1) noexcept;

  std::string toString() const;
  /// Writes the text unformatted: width, fill and flags of the stream neither show nor change.
  std::ostream& insertInto(std::ostream& stream) const;

 private:
  static constexpr std::size_t CAPACITY = 96;

  char buffer[CAPACITY];
  std::size_t size = 0;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_TEXTBUFFER_H
