#ifndef KTX_RCV_UBXREADER_H
#define KTX_RCV_UBXREADER_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "KTX/RCV/KTX_RCV_MessagePlace.h"
#include "KTX/RCV/KTX_RCV_MessageSink.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"
#include "readers/KTX_RCV_RunningChecksum.h"

namespace KTX::RCV {

/// Reads UBX frames: NAV-TIMEGPS, NAV-TIMEUTC, NAV-TIMELS and NAV-PVT, and the checksum of all.
class UbxReaderC {
 public:
  /// The longest payload that is believed; a longer one is taken for damage.
  static constexpr std::size_t MAX_PAYLOAD = 8192;

  /// Both must outlive the reader.
  UbxReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts);

  /// Reads the frame that data begins with; data begins with the two sync characters. Returns how
  /// many bytes to go on: the frame, or less after damage, so that a frame inside is found. 0 when
  /// the frame is not there whole and isLast is false. The offset in place grows from call to call.
  std::size_t read(std::string_view data, MessagePlaceC const& place, bool isLast);

 private:
  bool isChecksumRight(std::string_view frame, std::uint64_t offset);
  void refuse(std::string_view name, MessagePlaceC const& place, RefusalE refusal);
  void decode(unsigned type, std::string_view payload, MessagePlaceC const& place);

  MessageSinkI& sink;
  ReadCountsC& counts;
  RunningChecksumC checksum;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_UBXREADER_H
