#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "readers/KTX_RCV_StreamReader.h"

namespace KTX::RCV::TEST {
namespace {

/// More than all scans together need for a byte, and for the first line.
constexpr std::uint64_t MAX_LOOKS = 6;
constexpr std::uint64_t FIRST_LINE_LOOKS = 10000;

constexpr std::size_t SIZE = 40000;

class NullSinkC : public MessageSinkI {
 public:
  void onMessage(ReceiverMessageC const& /*event*/) override { ++events; }

  std::uint64_t events = 0;
};

std::string repeated(std::string const& text) {
  std::string result;
  while (result.size() < SIZE) {
    result += text;
  }
  return result;
}

/// Reads with `piece` bytes more at a time and returns how many bytes were looked at.
std::uint64_t examinedIn(std::string_view data, std::size_t piece) {
  NullSinkC sink;
  ReadCountsC counts;
  StreamReaderC reader(sink, counts);
  std::size_t done = 0;
  for (std::size_t end = piece; end < data.size(); end += piece) {
    done += reader.read(data.substr(done, end - done), false);
  }
  done += reader.read(data.substr(done), true);
  EXPECT_EQ(data.size(), done);
  EXPECT_GE(counts.examined, data.size() / 4);
  return counts.examined;
}

void expectLinear(std::string_view data) {
  for (std::size_t const piece : {data.size() + 1, std::size_t{4096}, std::size_t{1}}) {
    SCOPED_TRACE(piece);
    EXPECT_LE(examinedIn(data, piece), MAX_LOOKS * data.size() + FIRST_LINE_LOOKS);
  }
}

std::string falseHeader(std::size_t payload) {
  return std::string("\xB5\x62\x01\x07") + static_cast<char>(payload & 0xFFU) +
         static_cast<char>(payload >> 8U);
}

TEST(HostileInput, FalseFramesCostNoMoreThanTheirBytes) {
  for (std::size_t const payload : {std::size_t{0}, std::size_t{1}, UbxReaderC::MAX_PAYLOAD - 1,
                                    UbxReaderC::MAX_PAYLOAD, UbxReaderC::MAX_PAYLOAD + 1}) {
    SCOPED_TRACE(payload);
    expectLinear(repeated(falseHeader(payload)));
    expectLinear(repeated(falseHeader(payload) + "\n$"));
    expectLinear(repeated(falseHeader(payload) + std::string(5000, '$')));
  }
  expectLinear(repeated("\xB5"));
  expectLinear(repeated("\xB5\x62"));
}

TEST(HostileInput, SentencesWithoutAnEndCostNoMoreThanTheirBytes) {
  for (char const* const text : {"$", "$G", "$*", "*$", "$GPRMC,", "$GPRMC*zz", "$\xB5", "$\r"}) {
    SCOPED_TRACE(text);
    expectLinear(repeated(text));
    expectLinear(repeated(std::string(5000, '\n') + repeated(text).substr(0, 5000)));
  }
}

TEST(HostileInput, LinesCostNoMoreThanTheirBytes) {
  for (std::string const start : {"{", "#", "5", "N", "NMEA,", "2024-01-01T00:00:00Z ",
                                  "2024-01-01T00:00:00.5Z {", "NMEA,{", "2024-01-01T00:00:00."}) {
    SCOPED_TRACE(start);
    for (std::size_t const length : {1U, 1024U, 2048U, 2049U, 39000U}) {
      SCOPED_TRACE(length);
      std::string const line = repeated(start).substr(0, length);
      expectLinear(repeated(line));
      expectLinear(repeated(line + '\n'));
      expectLinear(repeated(line + ",1\n"));
      expectLinear(repeated(line + "\x01\n"));
      expectLinear(repeated(start + std::string(length, '1') + '\n'));
    }
  }
}

TEST(HostileInput, ReportsCostNoMoreThanTheirBytes) {
  for (char const* const text : {"[", "{\"a\":", "{\"class\":\"TPV\",\"a\":[[[["}) {
    SCOPED_TRACE(text);
    expectLinear(repeated("{\"a\":" + repeated(text).substr(0, SIZE - 100) + '\n'));
  }
}

TEST(HostileInput, RinexHeadersCostNoMoreThanTheirBytes) {
  std::string const first =
      "     3.04           OBSERVATION DATA    M                   RINEX VERSION / TYPE\n";
  for (std::string const line : {"x", "x\n", "\n", "> 2024 01 01 00 00 00\n"}) {
    SCOPED_TRACE(line);
    expectLinear(first + repeated(line));
    expectLinear(first + std::string(60, ' ') + "END OF HEADER\n" + repeated(line));
  }
}

TEST(HostileInput, AnyMixtureCostsNoMoreThanItsBytes) {
  std::vector<std::string> const parts = {
      "$",     "$GP", "*00", "\n", "\r\n", "\xB5", "\x62", falseHeader(8192),      falseHeader(60),
      "NMEA,", ",1",  "{",   "#",  "[",    "1",    ",",    "2024-01-01T00:00:00Z "};
  for (int run = 0; run < 20; ++run) {
    std::uint32_t const seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::string data;
    // Few parts of all, or none of them would repeat itself for long.
    std::size_t const first = random() % parts.size();
    std::size_t const used = 1 + random() % 4;
    while (data.size() < SIZE) {
      data += parts[(first + random() % used * 5) % parts.size()];
    }
    expectLinear(data);
  }
}

}  // namespace
}  // namespace KTX::RCV::TEST
