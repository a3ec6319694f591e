#include "Posix/KTX_TIM_TzFile.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace KTX::TIM {

namespace {

constexpr std::string_view MAGIC = "TZif";
constexpr std::size_t RESERVED_BYTES = 15;
constexpr std::size_t OFFSET_RECORD_BYTES = 6;
constexpr std::size_t NARROW_TIME_BYTES = 4;
constexpr std::size_t WIDE_TIME_BYTES = 8;
constexpr std::size_t NARROW_LEAP_BYTES = 8;
constexpr std::uint32_t OFFSET_COUNT_LIMIT = 256;
// A little more than a day: what the format allows to either side of Greenwich.
constexpr std::int32_t WEST_LIMIT_SECONDS = -25 * 3600;
constexpr std::int32_t EAST_LIMIT_SECONDS = 26 * 3600;

struct HeaderC {
  char version;
  std::uint32_t utcFlagCount;
  std::uint32_t standardFlagCount;
  std::uint32_t leapCount;
  std::uint32_t changeCount;
  std::uint32_t offsetCount;
  std::uint32_t nameBytes;
};

// Hands out the bytes in turn; once they do not suffice it has failed and stays so.
class ByteReaderC {
 public:
  explicit ByteReaderC(std::string_view bytes) : rest(bytes) {}

  bool hasFailed() const { return failed; }

  std::string_view take(std::uint64_t count) {
    if (count > rest.size()) {
      failed = true;
      rest = {};
      return {};
    }
    std::string_view const taken = rest.substr(0, static_cast<std::size_t>(count));
    rest.remove_prefix(static_cast<std::size_t>(count));
    return taken;
  }

  std::string_view takeRest() { return take(rest.size()); }

  std::uint64_t takeBigEndian(std::size_t count) {
    std::uint64_t value = 0;
    for (char const byte : take(count)) {
      value = (value << 8) | static_cast<unsigned char>(byte);
    }
    return value;
  }

  std::uint32_t takeCount() { return static_cast<std::uint32_t>(takeBigEndian(4)); }
  std::uint8_t takeByte() { return static_cast<std::uint8_t>(takeBigEndian(1)); }
  std::int32_t takeSigned32() { return static_cast<std::int32_t>(takeCount()); }
  std::int64_t takeSigned64() { return static_cast<std::int64_t>(takeBigEndian(8)); }

 private:
  std::string_view rest;
  bool failed = false;
};

bool takeHeader(ByteReaderC& reader, HeaderC& header) {
  bool const hasMagic = reader.take(MAGIC.size()) == MAGIC;
  header.version = static_cast<char>(reader.takeByte());
  reader.take(RESERVED_BYTES);
  header.utcFlagCount = reader.takeCount();
  header.standardFlagCount = reader.takeCount();
  header.leapCount = reader.takeCount();
  header.changeCount = reader.takeCount();
  header.offsetCount = reader.takeCount();
  header.nameBytes = reader.takeCount();
  return hasMagic && header.version >= '2' && !reader.hasFailed();
}

// The first block repeats the data in 32 bits, for readers of old.
void skipNarrowBlock(ByteReaderC& reader, HeaderC const& header) {
  reader.take(std::uint64_t{header.changeCount} * (NARROW_TIME_BYTES + 1));
  reader.take(std::uint64_t{header.offsetCount} * OFFSET_RECORD_BYTES);
  reader.take(header.nameBytes);
  reader.take(std::uint64_t{header.leapCount} * NARROW_LEAP_BYTES);
  reader.take(std::uint64_t{header.standardFlagCount} + header.utcFlagCount);
}

bool haveFlags(std::uint32_t flagCount, std::uint32_t offsetCount) {
  return flagCount == 0 || flagCount == offsetCount;
}

// Leap seconds in the file would mean that the system's clock counts them too; it is UTC here.
bool isPlausible(HeaderC const& header) {
  return header.leapCount == 0 && header.offsetCount >= 1 &&
         header.offsetCount <= OFFSET_COUNT_LIMIT && header.nameBytes >= 1 &&
         haveFlags(header.utcFlagCount, header.offsetCount) &&
         haveFlags(header.standardFlagCount, header.offsetCount);
}

bool parseChanges(std::string_view times,
                  std::string_view indices,
                  std::uint32_t offsetCount,
                  std::vector<ZoneDataC::ChangeC>& changes) {
  ByteReaderC timeReader(times);
  for (char const index : indices) {
    std::int64_t const utc = timeReader.takeSigned64();
    auto const offsetIndex = static_cast<unsigned char>(index);
    if (offsetIndex >= offsetCount || (!changes.empty() && utc <= changes.back().utc)) {
      return false;
    }
    changes.push_back({utc, offsetIndex});
  }
  return true;
}

bool parseOffset(ByteReaderC& reader, std::string_view names, ZoneOffsetC& offset) {
  offset.secondsEast = reader.takeSigned32();
  std::uint8_t const daylight = reader.takeByte();
  std::uint8_t const nameStart = reader.takeByte();
  if (offset.secondsEast < WEST_LIMIT_SECONDS || offset.secondsEast > EAST_LIMIT_SECONDS ||
      daylight > 1 || nameStart >= names.size()) {
    return false;
  }
  std::string_view const name = names.substr(nameStart);
  std::size_t const end = name.find('\0');
  if (end == std::string_view::npos) {
    return false;
  }
  offset.isDaylight = daylight != 0;
  offset.abbreviation = name.substr(0, end);
  return true;
}

bool parseOffsets(std::string_view records,
                  std::string_view names,
                  std::vector<ZoneOffsetC>& offsets) {
  ByteReaderC reader(records);
  for (ZoneOffsetC& offset : offsets) {
    if (!parseOffset(reader, names, offset)) {
      return false;
    }
  }
  return true;
}

// The second block's data, which stand between its header and the footer.
bool parseWideBlock(ByteReaderC& reader,
                    HeaderC const& header,
                    std::vector<ZoneDataC::ChangeC>& changes,
                    std::vector<ZoneOffsetC>& offsets) {
  std::string_view const times = reader.take(std::uint64_t{header.changeCount} * WIDE_TIME_BYTES);
  std::string_view const indices = reader.take(header.changeCount);
  std::string_view const records =
      reader.take(std::uint64_t{header.offsetCount} * OFFSET_RECORD_BYTES);
  std::string_view const names = reader.take(header.nameBytes);
  reader.take(std::uint64_t{header.standardFlagCount} + header.utcFlagCount);
  if (reader.hasFailed()) {
    return false;
  }
  offsets.resize(header.offsetCount);
  return parseChanges(times, indices, header.offsetCount, changes) &&
         parseOffsets(records, names, offsets);
}

bool parseFooter(std::string_view footer, std::optional<PosixZoneRuleC>& rule) {
  if (footer.size() < 2 || footer.front() != '\n' || footer.back() != '\n') {
    return false;
  }
  std::string_view const text = footer.substr(1, footer.size() - 2);
  if (text.empty()) {
    return true;
  }
  PosixZoneRuleC parsed;
  if (!PosixZoneRuleC::parse(text, parsed)) {
    return false;
  }
  rule = parsed;
  return true;
}

}  // namespace

bool parseTzFile(std::string_view bytes, ZoneDataC& zone) {
  ByteReaderC reader(bytes);
  HeaderC header{};
  if (!takeHeader(reader, header)) {
    return false;
  }
  skipNarrowBlock(reader, header);
  if (!takeHeader(reader, header) || !isPlausible(header)) {
    return false;
  }
  std::vector<ZoneDataC::ChangeC> changes;
  std::vector<ZoneOffsetC> offsets;
  std::optional<PosixZoneRuleC> rule;
  if (!parseWideBlock(reader, header, changes, offsets) || !parseFooter(reader.takeRest(), rule)) {
    return false;
  }
  zone = ZoneDataC(std::move(offsets), std::move(changes), std::move(rule));
  return true;
}

}  // namespace KTX::TIM
