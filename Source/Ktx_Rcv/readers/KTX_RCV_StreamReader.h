#ifndef KTX_RCV_STREAMREADER_H
#define KTX_RCV_STREAMREADER_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "KTX/RCV/KTX_RCV_MessagePlace.h"
#include "KTX/RCV/KTX_RCV_MessageSink.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"
#include "readers/KTX_RCV_GpsdReader.h"
#include "readers/KTX_RCV_NmeaReader.h"
#include "readers/KTX_RCV_RinexReader.h"
#include "readers/KTX_RCV_UbxReader.h"

namespace KTX::RCV {

/// Finds the messages of one input by their content and hands them to their readers: NMEA
/// sentences and UBX frames in any mixture, gpsd reports, lines with the host's time of arrival,
/// or a RINEX file. Everything else is passed over.
class StreamReaderC {
 public:
  /// Both must outlive the reader.
  StreamReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts);

  /// Reads the messages that are whole in data and returns how many bytes are done with; the rest
  /// must be given again, with more behind it. With isLast nothing follows and all is read.
  std::size_t read(std::string_view data, bool isLast);

 private:
  std::size_t findLineEnd(std::string_view rest, std::size_t longest);
  std::size_t textLineLength(std::string_view rest, std::size_t longest, bool isLast);
  std::size_t passOver(std::string_view rest);
  std::size_t readRinex(std::string_view data, bool isLast);
  std::size_t readMixed(std::string_view data, bool isLast);
  std::size_t readAtLineStart(std::string_view rest, bool isLast);
  std::size_t readMessage(std::string_view rest, bool isLast);
  std::size_t readSentence(std::string_view rest, bool isLast);
  std::size_t readFrame(std::string_view rest, bool isLast);
  void endLine();

  ReadCountsC& counts;
  NmeaReaderC nmea;
  UbxReaderC ubx;
  GpsdReaderC gpsd;
  RinexReaderC rinex;
  MessagePlaceC place;  ///< of the byte that is read next
  bool isAtStart = true;
  bool isRinex = false;
  bool isAtLineStart = true;
  std::size_t hostTextLength = 0;  ///< what is left of the receiver's text on a line with host time
  // What is known of the bytes ahead, by offset, so that none is searched again: not for another
  // message on the same line, and not when the data is given again with more behind it.
  std::uint64_t noLineEndTo = 0;  ///< no line end before this offset
  std::uint64_t textTo = 0;       ///< text of one line before this offset
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_STREAMREADER_H
