#ifndef KTX_RCV_RINEXREADER_H
#define KTX_RCV_RINEXREADER_H

#include <string_view>

#include "KTX/RCV/KTX_RCV_MessagePlace.h"
#include "KTX/RCV/KTX_RCV_MessageSink.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"

namespace KTX::RCV {

/// Reads the header of a RINEX file of version 2 to 4 for its LEAP SECONDS record, and the first
/// epoch behind it (or else the date the file was made) for the time the file belongs to.
class RinexReaderC {
 public:
  /// Both must outlive the reader.
  RinexReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts);

  /// True for the first line of a RINEX file.
  static bool isFirstLine(std::string_view line);

  /// Reads the next line, without its line end. The first must be the first of the file.
  void readLine(std::string_view line, MessagePlaceC const& place);

  /// Tells that no line follows, or that no more is wanted. Gives what is still held back.
  void finish();

  /// True once no further line is wanted.
  bool isDone() const { return done; }

 private:
  void readHeaderLine(std::string_view line, MessagePlaceC const& place);
  void readLeapSeconds(std::string_view line, MessagePlaceC const& place);
  void readFileDate(std::string_view line, MessagePlaceC const& place);
  void readFirstEpoch(std::string_view line, MessagePlaceC const& place);

  MessageSinkI& sink;
  ReadCountsC& counts;
  bool isInHeader = true;
  bool isBeiDouFile = false;
  bool done = false;
  bool hasDate = false;
  bool hasLeap = false;
  int linesBehindHeader = 0;
  ReceiverMessageC date;
  ReceiverMessageC leap;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_RINEXREADER_H
