#include "output/TextFormat.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "system/FileName.h"
#include "system/VisibleText.h"

namespace KTX::VORTIME::TEST {
namespace {

std::string jsonText(std::string_view value) {
  std::string text;
  appendQuoted(text, value);
  return text;
}

TEST(TextFormat, QuotesTextForJson) {
  EXPECT_EQ("\"\"", jsonText(""));
  EXPECT_EQ("\"a\\\"b\\\\c\"", jsonText("a\"b\\c"));
  EXPECT_EQ("\"\xC3\xA4\xE6\x99\x82\xF0\x9F\x98\x80\"",
            jsonText("\xC3\xA4\xE6\x99\x82\xF0\x9F\x98\x80"));
}

TEST(TextFormat, EscapesEveryControlCharacterForJson) {
  static constexpr char HEX[] = "0123456789abcdef";
  for (unsigned c = 0; c < 0xA2; ++c) {
    SCOPED_TRACE(c);
    bool const isControl = c < 0x20 || (c >= 0x7F && c < 0xA0);
    std::string const character = c < 0x80 ? std::string(1, static_cast<char>(c))
                                           : std::string("\xC2") + static_cast<char>(c);
    if (isControl) {
      EXPECT_EQ(std::string("\"\\u00") + HEX[c / 16] + HEX[c % 16] + '"', jsonText(character));
    } else if (c != '"' && c != '\\') {
      EXPECT_EQ('"' + character + '"', jsonText(character));
    }
  }
}

// Bytes that are no character; each is replaced by itself.
struct {
  char const* name;
  char const* bytes;
} const BAD_BYTES[] = {{"lone continuation", "\x80"},
                       {"overlong slash in two bytes", "\xC0\xAF"},
                       {"overlong end of two bytes", "\xC1\xBF"},
                       {"overlong slash in three bytes", "\xE0\x80\xAF"},
                       {"overlong end of three bytes", "\xE0\x9F\xBF"},
                       {"overlong in four bytes", "\xF0\x80\x80\xAF"},
                       {"overlong end of four bytes", "\xF0\x8F\xBF\xBF"},
                       {"first surrogate", "\xED\xA0\x80"},
                       {"last surrogate", "\xED\xBF\xBF"},
                       {"beyond Unicode", "\xF4\x90\x80\x80"},
                       {"five bytes", "\xF8\x88\x80\x80\x80"},
                       {"no lead", "\xFF"},
                       {"cut", "\xE2\x82"},
                       {"cut", "\xF0\x9F\x98"}};

TEST(TextFormat, ReplacesForJsonWhatIsNoUtf8) {
  for (auto const& c : BAD_BYTES) {
    SCOPED_TRACE(c.name);
    std::string replaced;
    for (std::size_t i = 0; i < std::string(c.bytes).size(); ++i) {
      replaced += "\\ufffd";
    }
    EXPECT_EQ('"' + replaced + '"', jsonText(c.bytes));
    EXPECT_EQ("\"a" + replaced + "b\"", jsonText(std::string("a") + c.bytes + 'b'));
    EXPECT_EQ('"' + replaced + "\\\"\"", jsonText(std::string(c.bytes) + '"'));
  }
  // The neighbours on both sides of what is refused.
  for (std::string const good :
       {"\xC2\xA0", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80", "\xEF\xBF\xBF",
        "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_EQ('"' + good + '"', jsonText(good));
  }
}

TEST(VisibleText, ShowsControlCharactersByTheirNumber) {
  struct {
    std::string value;
    char const* shown;
  } const cases[] = {{"", ""},
                     {"plain C:\\a b", "plain C:\\a b"},
                     {std::string("\0", 1), "\\u0000"},
                     {"\x1B[31mred", "\\u001b[31mred"},
                     {"a\nb\r\tc", "a\\u000ab\\u000d\\u0009c"},
                     {"\x1F \x7E\x7F", "\\u001f ~\\u007f"},
                     {"\xC2\x80\xC2\x9B\xC2\x9F\xC2\xA0", "\\u0080\\u009b\\u009f\xC2\xA0"},
                     {"\xC3\xA4\xE6\x99\x82", "\xC3\xA4\xE6\x99\x82"}};
  for (auto const& c : cases) {
    EXPECT_EQ(c.shown, visible(c.value));
  }
}

TEST(VisibleText, ShowsBytesThatAreNoUtf8ByTheirValue) {
  EXPECT_EQ("a\\x9b31mb", visible("a\x9B"
                                  "31mb"));
  EXPECT_EQ("\\xe4\\u001b", visible("\xE4\x1B"));
  for (auto const& c : BAD_BYTES) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(4 * std::string(c.bytes).size() + 1, visible(std::string(c.bytes) + '!').size());
  }
}

TEST(VisibleText, PassesNoControlCharacterOfRandomBytes) {
  unsigned const seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  // Mostly bytes that make controls, leads and continuations.
  static constexpr unsigned char BYTES[] = {0,    7,    0x1B, 0x1F, ' ',  'a',  0x7F, 0x80,
                                            0x9B, 0x9F, 0xA0, 0xC2, 0xC3, 0xE0, 0xED, 0xF0};
  for (int i = 0; i < 20000; ++i) {
    std::string value;
    for (unsigned j = random() % 8; j > 0; --j) {
      value += static_cast<char>(BYTES[random() % sizeof(BYTES)]);
    }
    std::string const shown = visible(value);
    for (std::size_t j = 0; j < shown.size(); ++j) {
      auto const c = static_cast<unsigned char>(shown[j]);
      ASSERT_FALSE(c < 0x20 || c == 0x7F) << jsonText(value);
      ASSERT_FALSE(c == 0xC2 && static_cast<unsigned char>(shown[j + 1]) < 0xA0) << jsonText(value);
    }
  }
}

TEST(TextFormat, WritesTheExtremesOfIntegers) {
  std::string text;
  appendSigned(text, INT64_MIN);
  text += ' ';
  appendUnsigned(text, UINT64_MAX);
  text += ' ';
  appendUnsigned(text, 7, 3);
  EXPECT_EQ("-9223372036854775808 18446744073709551615 007", text);
}

TEST(TextFormat, WritesNumbersOutWithoutAnExponent) {
  struct {
    double value;
    char const* shown;
  } const cases[] = {{0, "0"},
                     {99999, "99999"},
                     {100000, "100000"},
                     {-1e6, "-1000000"},
                     {1e22, "10000000000000000000000"},
                     {57754.5, "57754.5"},
                     {57754.000208333331, "57754.00020833333"},
                     {0.001, "0.001"},
                     {1e-7, "0.0000001"},
                     {std::nan(""), "null"},
                     {std::numeric_limits<double>::infinity(), "null"}};
  for (auto const& c : cases) {
    std::string text;
    appendShortest(text, c.value);
    EXPECT_EQ(c.shown, text);
  }
  for (double const value :
       {std::numeric_limits<double>::max(), -std::numeric_limits<double>::denorm_min()}) {
    std::string text;
    appendShortest(text, value);
    EXPECT_EQ(value, std::strtod(text.c_str(), nullptr));
    EXPECT_EQ(std::string::npos, text.find('e'));
  }
}

TEST(TextFormat, KeepsColumnsApart) {
  struct {
    char const* value;
    char const* right;
    char const* left;
  } const cases[] = {{"", "     ", "     "},         {"ab", "   ab", "ab   "},
                     {"abc", "  abc", "abc  "},      {"abcd", "  abcd", "abcd "},
                     {"abcde", "  abcde", "abcde "}, {"abcdef", "  abcdef", "abcdef "}};
  for (auto const& c : cases) {
    std::string right;
    appendColumn(right, c.value, 5);
    EXPECT_EQ(c.right, right);
    std::string left;
    appendLeft(left, c.value, 5);
    EXPECT_EQ(c.left, left);
  }
}

TEST(FileName, GoesToWideCharactersAndBack) {
  for (std::string const name : {"plain", "\xC3\xA4", "\xE4\xBD\xA0", "\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(name, narrowText(wideFileName(name)));
  }
  EXPECT_EQ("\xEF\xBF\xBD", narrowText(wideFileName("\xFF")));
  EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDz", narrowText(wideFileName("\xED\xA0\x80z")));
  EXPECT_EQ("\xEF\xBF\xBD/", narrowText(wideFileName("\xC3/")));
}

}  // namespace
}  // namespace KTX::VORTIME::TEST
