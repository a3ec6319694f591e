#include "readers/KTX_RCV_StreamReader.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "readers/KTX_RCV_HostTime.h"

namespace KTX::RCV {
namespace {

constexpr std::size_t MAX_SENTENCE = 1024;
constexpr std::size_t MAX_TEXT_LINE = 2048;
constexpr std::size_t MAX_REPORT = 65536;
constexpr std::size_t FIRST_LINE_LENGTH = 96;
constexpr char SYNC_1 = '\xB5';
constexpr char SYNC_2 = '\x62';

constexpr std::size_t INCOMPLETE = static_cast<std::size_t>(-1);
constexpr std::size_t NO_LINE = static_cast<std::size_t>(-2);

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

bool mayBeginHostTime(char c) {
  return (c >= '0' && c <= '9') || c == 'N';
}

}  // namespace

StreamReaderC::StreamReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts)
    : counts(readCounts),
      nmea(eventSink, readCounts),
      ubx(eventSink, readCounts),
      gpsd(eventSink, readCounts),
      rinex(eventSink, readCounts) {}

// The length of the line that rest begins with; npos when its end is not among the first `longest`
// bytes.
std::size_t StreamReaderC::findLineEnd(std::string_view rest, std::size_t longest) {
  std::size_t const end = std::min(rest.size(), longest);
  std::size_t at = static_cast<std::size_t>(std::max(noLineEndTo, place.offset) - place.offset);
  if (at >= end) {
    return std::string_view::npos;
  }
  std::size_t const first = at;
  at = std::min(rest.substr(0, end).find('\n', first), end);
  bool const isFound = at < end;
  counts.examined += at - first + (isFound ? 1 : 0);
  noLineEndTo = place.offset + at;
  return isFound ? at : std::string_view::npos;
}

// The length of the line of text that rest begins with: NO_LINE for bytes that are no text or for a
// longer one, INCOMPLETE where more may follow.
std::size_t StreamReaderC::textLineLength(std::string_view rest, std::size_t longest, bool isLast) {
  std::size_t const first = static_cast<std::size_t>(std::max(textTo, place.offset) - place.offset);
  std::size_t at = first;
  for (; at < rest.size() && at <= longest; ++at) {
    unsigned char const c = static_cast<unsigned char>(rest[at]);
    if (c < 0x20 && c != '\t' && c != '\r') {
      break;
    }
  }
  counts.examined += at - first;
  textTo = place.offset + at;
  if (at < rest.size() && at <= longest && rest[at] == '\n') {
    return at;
  }
  if (at < rest.size() || at > longest) {
    return NO_LINE;
  }
  return isLast ? rest.size() : INCOMPLETE;
}

// Passes over what begins no message.
std::size_t StreamReaderC::passOver(std::string_view rest) {
  std::array<bool, 256> const& table = beginsSomething();
  std::size_t length = 1;
  while (length < rest.size() && !table[static_cast<unsigned char>(rest[length])]) {
    ++length;
  }
  counts.examined += length;
  return length;
}

std::size_t StreamReaderC::read(std::string_view data, bool isLast) {
  if (isAtStart && !data.empty()) {
    std::size_t const end = data.substr(0, FIRST_LINE_LENGTH).find('\n');
    counts.examined += std::min(data.size(), FIRST_LINE_LENGTH);
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
    std::string_view const rest = data.substr(at);
    std::size_t length = findLineEnd(rest, MAX_TEXT_LINE);
    bool const hasEnd = length != std::string_view::npos;
    if (!hasEnd) {
      if (!isLast && rest.size() < MAX_TEXT_LINE) {
        return at;
      }
      length = std::min(rest.size(), MAX_TEXT_LINE);
    }
    // A longer line is read in pieces; what the header says stands in its first 80 columns.
    rinex.readLine(rest.substr(0, length), place);
    counts.examined += length;
    std::size_t const done = length + (hasEnd ? 1 : 0);
    place.offset += done;
    at += done;
    if (hasEnd || (isLast && at == data.size())) {
      endLine();
    }
  }
  counts.examined += data.size() - at;
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
    ++counts.examined;
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
  if (!mayBeginHostTime(first) || place.hasHostTime) {
    return 0;
  }
  std::size_t const length = textLineLength(rest, MAX_TEXT_LINE, isLast);
  HostTimeC hostTime;
  if (length == INCOMPLETE) {
    return INCOMPLETE;
  }
  if (length == NO_LINE) {
    return 0;
  }
  counts.examined += length;
  if (!readHostTime(rest.substr(0, length), hostTime)) {
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
      return passOver(rest);
  }
}

std::size_t StreamReaderC::readSentence(std::string_view rest, bool isLast) {
  std::size_t length = findLineEnd(rest, MAX_SENTENCE);
  if (length == std::string_view::npos) {
    if (!isLast && rest.size() < MAX_SENTENCE) {
      return INCOMPLETE;
    }
    length = std::min(rest.size(), MAX_SENTENCE);
  }
  if (place.hasHostTime) {
    length = std::min(length, hostTextLength);
  }
  if (length == 0) {
    return passOver(rest);
  }
  return nmea.read(rest.substr(0, length), place);
}

std::size_t StreamReaderC::readFrame(std::string_view rest, bool isLast) {
  if (rest.size() < 2) {
    return isLast ? 1 : INCOMPLETE;
  }
  if (rest[1] != SYNC_2) {
    return passOver(rest);
  }
  std::size_t const done = ubx.read(rest, place, isLast);
  if (done == 0) {
    return INCOMPLETE;
  }
  counts.examined += done;
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

}  // namespace KTX::RCV
