#ifndef KTX_RCV_RUNNINGCHECKSUM_H
#define KTX_RCV_RUNNINGCHECKSUM_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace KTX::RCV {

/// The 8-bit Fletcher checksum of stretches of one input that may overlap: each byte is summed
/// once, however many stretches it belongs to.
class RunningChecksumC {
 public:
  /// The longest stretch.
  static constexpr std::size_t MAX_LENGTH = 16383;

  struct SumsC {
    std::uint8_t a;  ///< sum of the bytes
    std::uint8_t b;  ///< sum of the sums
  };

  /// Sums data, of MAX_LENGTH bytes at most, which stands at offset in the input. Offsets grow from
  /// call to call; one that does not grow begins another input.
  SumsC sumOf(std::string_view data, std::uint64_t offset);

  /// How many bytes have been summed.
  std::uint64_t summedBytes() const { return summed; }

 private:
  // The sums before a stretch are still there when those behind it are stored.
  static constexpr std::size_t CAPACITY = MAX_LENGTH + 1;

  struct PrefixC {
    std::uint8_t a = 0;
    std::uint8_t b = 0;
  };

  PrefixC& prefixAt(std::uint64_t offset) { return prefixes[offset % CAPACITY]; }

  std::uint64_t start = 0;  ///< the offset at which summing began
  std::uint64_t end = 0;    ///< up to which offset bytes are summed
  bool hasStarted = false;
  std::uint64_t summed = 0;
  std::array<PrefixC, CAPACITY> prefixes;  ///< the sums from start up to an offset
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_RUNNINGCHECKSUM_H
