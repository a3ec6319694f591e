#ifndef KTX_VORTIME_NMEAREADER_H
#define KTX_VORTIME_NMEAREADER_H

#include <cstddef>
#include <string_view>

#include "readers/MessagePlace.h"
#include "readers/ReadCounts.h"
#include "readers/TimeEvent.h"

namespace KTX::VORTIME {

/// Reads NMEA 0183 sentences of any talker: the date and time of RMC and ZDA, the state of the fix
/// from RMC and GGA, and the checksum of all.
///
/// The two-digit years 80 to 99 of RMC belong to the 20th century, all others to the 21st.
class NmeaReaderC {
 public:
  /// Both must outlive the reader.
  NmeaReaderC(TimeEventSinkI& eventSink, ReadCountsC& readCounts);

  /// Reads the sentence that text begins with, up to the end of the line at most. Returns how many
  /// characters belong to it: another sentence may follow on the same line.
  std::size_t read(std::string_view text, MessagePlaceC const& place);

 private:
  struct SentenceC;

  void refuse(SentenceC const& sentence, RefusalE refusal);
  void decode(SentenceC const& sentence);
  void decodeGga(SentenceC const& sentence);

  TimeEventSinkI& sink;
  ReadCountsC& counts;
  bool hasSeenChecksum = false;
  bool hasNoFix = false;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_NMEAREADER_H
