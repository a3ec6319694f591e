#ifndef KTX_RCV_READCOUNTS_H
#define KTX_RCV_READCOUNTS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "KTX/RCV/KTX_RCV_Api.h"

namespace KTX::RCV {

/// Counts what a reader saw, whole and damaged, used and unused.
class KTX_RCV_API ReadCountsC {
 public:
  /// A kind of message and how many of it were whole.
  struct MessageC {
    std::array<char, 16> name;  ///< with a closing zero
    std::uint64_t count;        ///< of this kind
  };

  std::uint64_t bytes = 0;            ///< read so far
  std::uint64_t lines = 0;            ///< line ends, and a last line without one
  std::uint64_t sentences = 0;        ///< NMEA sentences, damaged ones included
  std::uint64_t frames = 0;           ///< UBX frames, damaged ones included
  std::uint64_t reports = 0;          ///< gpsd reports
  std::uint64_t headers = 0;          ///< RINEX headers
  std::uint64_t badChecksums = 0;     ///< messages whose checksum is wrong
  std::uint64_t withoutChecksum = 0;  ///< sentences that carry none
  /// How many bytes the readers went over, a byte counted as often as it was looked at. At most a
  /// small multiple of the input, whatever it holds and however it is cut into pieces.
  std::uint64_t examined = 0;

  /// Adds one whole message. Names beyond the first 63 kinds are counted as "other".
  void countMessage(std::string_view name);

  /// How many kinds of message were counted.
  std::size_t messageKinds() const { return used; }
  /// One of the messageKinds() kinds, in the order in which they first came.
  MessageC const& message(std::size_t index) const { return table[index]; }
  /// How many messages of that name were whole; 0 for a name that was never counted.
  std::uint64_t messageCount(std::string_view name) const;

 private:
  static constexpr std::size_t CAPACITY = 64;

  std::array<MessageC, CAPACITY> table = {};
  std::size_t used = 0;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_READCOUNTS_H
