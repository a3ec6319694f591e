#include "readers/StreamReader.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "readers/HostTime.h"

namespace KTX::VORTIME {
namespace {

constexpr std::size_t MAX_SENTENCE = 1024;
constexpr std::size_t MAX_TEXT_LINE = 2048;
constexpr std::size_t MAX_REPORT = 65536;
constexpr std::size_t FIRST_LINE_LENGTH = 96;
constexpr char SYNC_1 = '\xB5';
constexpr char SYNC_2 = '\x62';

constexpr std::size_t INCOMPLETE = static_cast<std::size_t>(-1);
constexpr std::size_t NO_LINE = static_cast<std::size_t>(-2);

// The length of the line of text that rest begins with: NO_LINE for bytes that are no text or for a
// longer one, INCOMPLETE where more may follow.
std::size_t textLineLength(std::string_view rest, std::size_t longest, bool isLast) {
  for (std::size_t i = 0; i < rest.size(); ++i) {
    unsigned char const c = static_cast<unsigned char>(rest[i]);
    if (c == '\n') {
      return i;
    }
    if ((c < 0x20 && c != '\t' && c != '\r') || i >= longest) {
      return NO_LINE;
    }
  }
  return isLast ? rest.size() : INCOMPLETE;
}

std::array<bool, 256> const& beginsSomething() {
  static std::array<bool, 256> const table = [] {
    std::array<bool, 256> marks{};
    for (char const c : {'$', '\n', SYNC_1}) {
      marks[static_cast<unsigned char>(c)] = true;
    }
    return marks;
  }();
  return table;
}

std::size_t lengthOfNothing(std::string_view rest) {
  std::array<bool, 256> const& table = beginsSomething();
  std::size_t length = 1;
  while (length < rest.size() && !table[static_cast<unsigned char>(rest[length])]) {
    ++length;
  }
  return length;
}

bool mayBeginHostTime(char c) {
  return (c >= '0' && c <= '9') || c == 'N';
}

}  // namespace

StreamReaderC::StreamReaderC(TimeEventSinkI& eventSink, ReadCountsC& readCounts)
    : counts(readCounts),
      nmea(eventSink, readCounts),
      ubx(eventSink, readCounts),
      gpsd(eventSink, readCounts),
      rinex(eventSink, readCounts) {}

std::size_t StreamReaderC::read(std::string_view data, bool isLast) {
  if (isAtStart && !data.empty()) {
    std::size_t const end = data.substr(0, FIRST_LINE_LENGTH).find('\n');
    if (end == std::string_view::npos && data.size() < FIRST_LINE_LENGTH && !isLast) {
      return 0;
    }
    isRinex = RinexReaderC::isFirstLine(data.substr(0, std::min(end, FIRST_LINE_LENGTH)));
    isAtStart = false;
  }
  std::size_t const done = isRinex ? readRinex(data, isLast) : readMixed(data, isLast);
  counts.bytes += done;
  return done;
}

std::size_t StreamReaderC::readRinex(std::string_view data, bool isLast) {
  std::size_t at = 0;
  while (at < data.size() && !rinex.isDone()) {
    std::size_t end = data.find('\n', at);
    if (end == std::string_view::npos) {
      if (!isLast && data.size() - at < MAX_TEXT_LINE) {
        return at;
      }
      end = std::min(data.size(), at + MAX_TEXT_LINE);
    }
    rinex.readLine(data.substr(at, end - at), place);
    std::size_t const next = std::min(end + 1, data.size());
    place.offset += next - at;
    endLine();
    at = next;
  }
  counts.lines += static_cast<std::uint64_t>(
      std::count(data.begin() + static_cast<std::ptrdiff_t>(at), data.end(), '\n'));
  if (isLast) {
    rinex.finish();
  }
  return data.size();
}

std::size_t StreamReaderC::readMixed(std::string_view data, bool isLast) {
  std::size_t at = 0;
  while (at < data.size()) {
    std::string_view const rest = data.substr(at);
    std::size_t done = isAtLineStart ? readAtLineStart(rest, isLast) : 0;
    if (done == 0) {
      isAtLineStart = false;
      done = readMessage(rest, isLast);
    }
    if (done == INCOMPLETE) {
      break;
    }
    at += done;
    place.offset += done;
    hostTextLength -= std::min(hostTextLength, done);
  }
  if (isLast && !isAtLineStart) {
    ++counts.lines;
  }
  return at;
}

// What means something at the start of a line only. 0 when it is none of that.
std::size_t StreamReaderC::readAtLineStart(std::string_view rest, bool isLast) {
  char const first = rest.front();
  if (first == '#') {
    std::size_t const length = textLineLength(rest, MAX_TEXT_LINE, isLast);
    return length == NO_LINE ? 0 : length;
  }
  if (first == '{') {
    std::size_t const length = textLineLength(rest, MAX_REPORT, isLast);
    if (length == NO_LINE || length == INCOMPLETE) {
      return length == NO_LINE ? 0 : INCOMPLETE;
    }
    gpsd.read(rest.substr(0, length), place);
    isAtLineStart = false;
    return length;
  }
  if (!mayBeginHostTime(first)) {
    return 0;
  }
  std::size_t const length = textLineLength(rest, MAX_TEXT_LINE, isLast);
  HostTimeC hostTime;
  if (length == INCOMPLETE) {
    return INCOMPLETE;
  }
  if (length == NO_LINE || !readHostTime(rest.substr(0, length), hostTime)) {
    return 0;
  }
  place.hasHostTime = true;
  place.hostUnixMs = hostTime.unixMs;
  hostTextLength = hostTime.end;
  return hostTime.begin;
}

std::size_t StreamReaderC::readMessage(std::string_view rest, bool isLast) {
  switch (rest.front()) {
    case '\n':
      endLine();
      return 1;
    case '$':
      return readSentence(rest, isLast);
    case SYNC_1:
      return readFrame(rest, isLast);
    default:
      return lengthOfNothing(rest);
  }
}

std::size_t StreamReaderC::readSentence(std::string_view rest, bool isLast) {
  std::string_view const head = rest.substr(0, MAX_SENTENCE);
  std::size_t length = head.find('\n');
  if (length == std::string_view::npos) {
    if (!isLast && head.size() < MAX_SENTENCE) {
      return INCOMPLETE;
    }
    length = head.size();
  }
  if (place.hasHostTime) {
    length = std::min(length, hostTextLength);
  }
  if (length == 0) {
    return lengthOfNothing(rest);
  }
  return nmea.read(rest.substr(0, length), place);
}

std::size_t StreamReaderC::readFrame(std::string_view rest, bool isLast) {
  if (rest.size() < 2) {
    return isLast ? 1 : INCOMPLETE;
  }
  if (rest[1] != SYNC_2) {
    return lengthOfNothing(rest);
  }
  std::size_t const done = ubx.read(rest, place, isLast);
  if (done == 0) {
    return INCOMPLETE;
  }
  std::uint64_t const newLines = static_cast<std::uint64_t>(
      std::count(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(done), '\n'));
  place.line += newLines;
  counts.lines += newLines;
  return done;
}

void StreamReaderC::endLine() {
  ++place.line;
  ++counts.lines;
  isAtLineStart = true;
  place.hasHostTime = false;
  hostTextLength = 0;
}

}  // namespace KTX::VORTIME
