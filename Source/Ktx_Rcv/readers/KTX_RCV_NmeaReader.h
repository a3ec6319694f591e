#ifndef KTX_RCV_NMEAREADER_H
#define KTX_RCV_NMEAREADER_H

#include <cstddef>
#include <string_view>

#include "KTX/RCV/KTX_RCV_MessagePlace.h"
#include "KTX/RCV/KTX_RCV_MessageSink.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"

namespace KTX::RCV {

/// Reads NMEA 0183 sentences of any talker: the date and time of RMC and ZDA, the state of the fix
/// from RMC and GGA, and the checksum of all.
///
/// The two-digit years 80 to 99 of RMC belong to the 20th century, all others to the 21st.
class NmeaReaderC {
 public:
  /// Both must outlive the reader.
  NmeaReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts);

  /// Reads the sentence that text begins with, up to the end of the line at most. Returns how many
  /// characters belong to it: another sentence may follow on the same line.
  std::size_t read(std::string_view text, MessagePlaceC const& place);

 private:
  struct SentenceC;

  void refuse(SentenceC const& sentence, RefusalE refusal);
  void decode(SentenceC const& sentence);
  void decodeGga(SentenceC const& sentence);

  MessageSinkI& sink;
  ReadCountsC& counts;
  bool hasSeenChecksum = false;
  bool hasNoFix = false;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_NMEAREADER_H
