#ifndef KTX_VORTIME_GPSDREADER_H
#define KTX_VORTIME_GPSDREADER_H

#include <string_view>

#include "readers/MessagePlace.h"
#include "readers/ReadCounts.h"
#include "readers/TimeEvent.h"

namespace KTX::VORTIME {

/// Reads the JSON reports of gpsd: the time of TPV reports, with the leap second count and the
/// accuracy where they stand. Reports of other classes are counted.
class GpsdReaderC {
 public:
  /// Both must outlive the reader.
  GpsdReaderC(TimeEventSinkI& eventSink, ReadCountsC& readCounts);

  /// Reads one line that begins with '{'.
  void read(std::string_view line, MessagePlaceC const& place);

 private:
  TimeEventSinkI& sink;
  ReadCountsC& counts;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_GPSDREADER_H
