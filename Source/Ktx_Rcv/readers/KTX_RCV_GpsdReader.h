#ifndef KTX_RCV_GPSDREADER_H
#define KTX_RCV_GPSDREADER_H

#include <string_view>

#include "KTX/RCV/KTX_RCV_MessagePlace.h"
#include "KTX/RCV/KTX_RCV_MessageSink.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"

namespace KTX::RCV {

/// Reads the JSON reports of gpsd: the time of TPV reports, with the leap second count and the
/// accuracy where they stand. Reports of other classes are counted.
class GpsdReaderC {
 public:
  /// Both must outlive the reader.
  GpsdReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts);

  /// Reads one line that begins with '{'.
  void read(std::string_view line, MessagePlaceC const& place);

 private:
  MessageSinkI& sink;
  ReadCountsC& counts;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_GPSDREADER_H
