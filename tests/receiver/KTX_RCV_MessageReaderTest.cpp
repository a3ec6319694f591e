#include "KTX/RCV/KTX_RCV_MessageReader.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "receiver/KTX_RCV_MessageRecorder.h"
#include "receiver/KTX_RCV_UbxFrame.h"
#include "values/KTX_TIM_TestSeed.h"

namespace KTX::RCV::TEST {
namespace {

using CutT = std::function<std::size_t(std::size_t rest)>;

std::string contentsOf(std::filesystem::path const& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// The samples, then all of them in one stream behind bytes that are no message.
std::vector<std::pair<std::string, std::string>> inputs() {
  std::vector<std::pair<std::string, std::string>> all;
  std::string together = "\xB5$\n{\x80";
  for (auto const& entry : std::filesystem::directory_iterator(VORTIME_SAMPLES)) {
    if (entry.is_regular_file()) {
      all.emplace_back(entry.path().filename().string(), contentsOf(entry.path()));
      together += all.back().second;
    }
  }
  all.emplace_back("all together", together);
  return all;
}

// All that a message says, as one text.
std::string textOf(ReceiverMessageC const& m) {
  std::string text = std::string(m.name);
  for (std::int64_t const field : {std::int64_t{m.kind},
                                   std::int64_t{m.format},
                                   std::int64_t{m.refusal},
                                   std::int64_t{m.timeForm},
                                   std::int64_t{m.warnings},
                                   static_cast<std::int64_t>(m.place.offset),
                                   static_cast<std::int64_t>(m.place.line),
                                   std::int64_t{m.place.hasHostTime},
                                   m.place.hostUnixMs,
                                   std::int64_t{m.week},
                                   m.nanosecondOfWeek,
                                   m.accuracyNs,
                                   std::int64_t{m.leap.hasCount},
                                   std::int64_t{m.leap.hasEffectivity},
                                   std::int64_t{m.leap.system},
                                   std::int64_t{m.leap.current},
                                   std::int64_t{m.leap.future},
                                   std::int64_t{m.leap.week},
                                   std::int64_t{m.leap.day},
                                   static_cast<std::int64_t>(m.rawCount)}) {
    text += ' ' + std::to_string(field);
  }
  for (std::size_t i = 0; i < m.rawCount; ++i) {
    text += ' ' + std::string(m.raw[i].name) + '=' + std::to_string(m.raw[i].value);
  }
  return text + ' ' + isoText(m.utc);
}

std::vector<std::string> messagesOf(std::string_view data, CutT const& cut) {
  MessageRecorderC recorder;
  ReadCountsC counts;
  MessageReaderC reader(recorder, counts);
  while (!data.empty()) {
    std::string_view const piece = data.substr(0, cut(data.size()));
    reader.read(piece);
    data.remove_prefix(piece.size());
  }
  reader.finish();
  std::vector<std::string> texts;
  for (ReceiverMessageC const& message : recorder.events) {
    texts.push_back(textOf(message));
  }
  texts.push_back(std::to_string(counts.bytes) + " bytes, " + std::to_string(counts.lines) +
                  " lines");
  return texts;
}

std::size_t whole(std::size_t rest) {
  return rest;
}

TEST(MessageReader, GivesTheSameMessagesByteByByteAsWhole) {
  for (auto const& [name, data] : inputs()) {
    SCOPED_TRACE(name);
    EXPECT_EQ(messagesOf(data, whole), messagesOf(data, [](std::size_t) { return 1; }));
  }
}

TEST(MessageReader, GivesTheSameMessagesInRandomPieces) {
  std::mt19937_64 random(TIM::TEST::testSeed());
  for (auto const& [name, data] : inputs()) {
    SCOPED_TRACE(name);
    EXPECT_EQ(messagesOf(data, whole),
              messagesOf(data, [&random](std::size_t) { return random() % 300 + 1; }));
  }
}

TEST(MessageReader, ReadsWhatIsHeldBackAtTheEnd) {
  constexpr char const* ZDA = "$GPZDA,222449,25,10,2010,00,00*46";
  MessageRecorderC recorder;
  ReadCountsC counts;
  MessageReaderC reader(recorder, counts);
  reader.read(ZDA);
  EXPECT_TRUE(recorder.events.empty());
  reader.finish();
  ASSERT_EQ(1U, recorder.events.size());
  EXPECT_EQ(REFUSAL_NONE, recorder.events[0].refusal);
}

TEST(MessageReader, FindsAMessageBehindOnesThatNeverEnd) {
  constexpr char const* ZDA = "\n$GPZDA,222449,25,10,2010,00,00*46\r\n";
  std::string const endless(3 * MessageReaderC::MAX_HELD, 'x');
  for (std::string const& start : {std::string("{"), std::string("$"), std::string("#")}) {
    SCOPED_TRACE(start);
    MessageRecorderC recorder;
    ReadCountsC counts;
    MessageReaderC reader(recorder, counts);
    reader.read(start + endless + ZDA);
    reader.finish();
    ASSERT_FALSE(recorder.events.empty());
    EXPECT_EQ("GPZDA", recorder.events.back().name);
    EXPECT_EQ(REFUSAL_NONE, recorder.events.back().refusal);
  }
}

}  // namespace
}  // namespace KTX::RCV::TEST
