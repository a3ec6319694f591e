#ifndef KTX_RCV_MESSAGEREADER_H
#define KTX_RCV_MESSAGEREADER_H

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "KTX/RCV/KTX_RCV_Api.h"
#include "KTX/RCV/KTX_RCV_MessageSink.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"

namespace KTX::RCV {

class StreamReaderC;

/// Finds the messages of one input by their content and hands them to a sink: NMEA sentences and
/// UBX frames in any mixture, gpsd reports, lines with the host's time of arrival, or a RINEX file.
/// Everything else is passed over.
///
/// Takes any bytes, in pieces of any size: the messages do not depend on how the input is cut.
/// Holds back at most MAX_HELD bytes of an incomplete message; a longer one is damage. NMEA and
/// binary messages allocate nothing once the first ones were read. For one thread.
class KTX_RCV_API MessageReaderC {
 public:
  /// The most that is held back of an input, in bytes.
  static constexpr std::size_t MAX_HELD = 2 * 65536;

  /// Both must outlive the reader. Several readers may share the counts.
  MessageReaderC(MessageSinkI& messageSink, ReadCountsC& readCounts);
  ~MessageReaderC();
  MessageReaderC(MessageReaderC const&) = delete;
  MessageReaderC& operator=(MessageReaderC const&) = delete;

  /// Reads the next bytes of the input.
  void read(std::string_view data);
  /// Tells that nothing follows and reads what was held back. No read() may follow.
  void finish();

 private:
  std::unique_ptr<StreamReaderC> stream;
  std::string held;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_MESSAGEREADER_H
