#include "timezones/KTX_TIM_CodeUnits.h"

#include <cstdint>
#include <cwchar>
#include <string>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

TEST(CodeUnits, GoBothWaysForEveryCharacterOfTheBasicPlane) {
  for (std::uint32_t character = 0; character < 0x10000; ++character) {
    std::wstring const text = {L'a', static_cast<wchar_t>(character), L'b'};
    std::u16string const units = {u'a', static_cast<char16_t>(character), u'b'};
    ASSERT_EQ(units, toCodeUnits(text)) << character;
    ASSERT_EQ(text, toWideText(units)) << character;
  }
}

TEST(CodeUnits, OfASupplementaryCharacterAreASurrogatePair) {
  EXPECT_EQ(u"\U00010000", toCodeUnits(L"\U00010000"));
  EXPECT_EQ(u"x\U0001F600y", toCodeUnits(L"x\U0001F600y"));
  EXPECT_EQ(u"\U0010FFFF", toCodeUnits(L"\U0010FFFF"));
  EXPECT_EQ(2U, toCodeUnits(L"\U0010FFFF").size());
  EXPECT_EQ(L"\U00010000", toWideText(u"\U00010000"));
  EXPECT_EQ(L"x\U0001F600y", toWideText(u"x\U0001F600y"));
  EXPECT_EQ(L"\U0010FFFF", toWideText(u"\U0010FFFF"));
}

TEST(CodeUnits, KeepALoneHalfOfAPair) {
  std::u16string const cases[] = {
      {0xD83D}, {0xDE00}, {0xDE00, 0xD83D}, {0xD83D, 0xD83D, u'a'}, {0xD83D, 0xE000}};
  for (auto const& units : cases) {
    EXPECT_EQ(units, toCodeUnits(toWideText(units)));
    EXPECT_EQ(units.size(), toWideText(units).size());
  }
}

// Where a wide character has two bytes, every one of them is a code unit.
#if WCHAR_MAX > 0xFFFF
TEST(CodeUnits, OfANumberThatIsNoCharacterAreTheReplacementCharacter) {
  std::wstring const text = {L'a', static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1)};
  EXPECT_EQ(u"a\uFFFD\uFFFD", toCodeUnits(text));
}
#endif

TEST(CodeUnits, OfABufferEndAtTheFirstZeroOrAtTheEnd) {
  char16_t const buffer[] = {u'a', u'b', u'\0', u'c'};
  EXPECT_EQ(u"ab", textInBuffer(buffer, 4));
  EXPECT_EQ(u"ab", textInBuffer(buffer, 3));
  EXPECT_EQ(u"ab", textInBuffer(buffer, 2));
  EXPECT_EQ(u"a", textInBuffer(buffer, 1));
  EXPECT_EQ(u"", textInBuffer(buffer, 0));
  EXPECT_EQ(u"", textInBuffer(buffer + 2, 2));
}

}  // namespace
}  // namespace KTX::TIM::TEST
