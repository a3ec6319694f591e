#include "readers/KTX_RCV_RunningChecksum.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace KTX::RCV::TEST {
namespace {

std::string randomBytes(std::mt19937& random, std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) {
    bytes += static_cast<char>(random() & 0xFFU);
  }
  return bytes;
}

void expectSums(std::string_view stretch, RunningChecksumC::SumsC const& sums) {
  unsigned a = 0;
  unsigned b = 0;
  for (char const c : stretch) {
    a += static_cast<unsigned char>(c);
    b += a;
  }
  EXPECT_EQ(a & 0xFFU, sums.a);
  EXPECT_EQ(b & 0xFFU, sums.b);
}

TEST(RunningChecksum, SumsStretchesThatOverlapAndOnesApart) {
  std::uint32_t const seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::string const data = randomBytes(random, 300000);
  RunningChecksumC checksum;
  std::size_t count = 0;
  for (std::size_t at = 0; at + RunningChecksumC::MAX_LENGTH <= data.size(); ++count) {
    std::size_t const length = random() % (RunningChecksumC::MAX_LENGTH + 1);
    std::string_view const stretch = std::string_view(data).substr(at, length);
    expectSums(stretch, checksum.sumOf(stretch, at));
    at += 1 + random() % (count % 8 == 0 ? 20000U : 50U);
  }
  EXPECT_GT(count, 100U);
  EXPECT_LE(checksum.summedBytes(), data.size());
}

TEST(RunningChecksum, SumsTheLongestStretchAndTheNextToIt) {
  std::mt19937 random(1);
  std::string const data = randomBytes(random, RunningChecksumC::MAX_LENGTH + 1);
  std::string_view const all = data;
  RunningChecksumC checksum;
  for (std::size_t const at : {0U, 1U}) {
    for (std::size_t const length :
         {RunningChecksumC::MAX_LENGTH - 1, RunningChecksumC::MAX_LENGTH}) {
      std::string_view const stretch = all.substr(at, length);
      expectSums(stretch, checksum.sumOf(stretch, at));
    }
  }
}

TEST(RunningChecksum, BeginsAnewWhenTheOffsetDoesNotGrow) {
  RunningChecksumC checksum;
  for (std::string_view const stretch : {"abc", "xyz", ""}) {
    expectSums(stretch, checksum.sumOf(stretch, 7));
  }
  expectSums("later", checksum.sumOf("later", 100));
  expectSums("earlier", checksum.sumOf("earlier", 3));
}

TEST(RunningChecksum, SumsEachByteOnce) {
  std::string const data(10000, 'x');
  RunningChecksumC checksum;
  for (std::size_t at = 0; at + 6000 <= data.size(); at += 6) {
    checksum.sumOf(std::string_view(data).substr(at, 6000), at);
  }
  EXPECT_GT(checksum.summedBytes(), 9990U);
  EXPECT_LE(checksum.summedBytes(), data.size());
}

}  // namespace
}  // namespace KTX::RCV::TEST
