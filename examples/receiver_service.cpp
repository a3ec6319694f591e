// Keeps the library's present from a receiver and prints each correction, until the receiver's
// bytes end. receiver_service /dev/ttyUSB0, or a pipe or file with what a receiver said.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string_view>

#include "KTX/RCV/KTX_RCV_LivePc.h"
#include "KTX/RCV/KTX_RCV_MessageReader.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"
#include "KTX/RCV/KTX_RCV_ReceiverSession.h"
#include "KTX/RCV/KTX_RCV_SessionListener.h"
#include "KTX/RCV/KTX_RCV_SessionOptions.h"

using namespace KTX;

namespace {

class CorrectionPrinterC : public RCV::SessionListenerI {
 public:
  void onCorrection(RCV::CorrectionReportC const& correction) override {
    std::cout << "GPS week " << correction.week << ", " << correction.msOfWeek << " ms: changed by "
              << correction.changeMs << " ms" << std::endl;
  }
};

}  // namespace

int main(int argumentCount, char** arguments) {
  std::ifstream receiver;
  if (argumentCount == 2) {
    receiver.rdbuf()->pubsetbuf(nullptr, 0);  // a byte is read as soon as it is there
    receiver.open(arguments[1], std::ios::binary);
  }
  if (!receiver.is_open()) {
    std::cerr << "usage: receiver_service DEVICE\n";
    return 2;
  }
  RCV::LivePcC pc;
  RCV::SessionOptionsC options;
  options.isStrict = true;          // doubtful messages are left out
  options.usesLeapHistory = false;  // the receiver speaks of now
  CorrectionPrinterC printer;
  RCV::ReceiverSessionC session(pc, options, printer, nullptr);
  RCV::ReadCountsC counts;
  RCV::MessageReaderC reader(session, counts);
  session.beginInput(arguments[1]);
  for (int byte = receiver.get(); byte != EOF; byte = receiver.get()) {
    char const character = static_cast<char>(byte);
    reader.read(std::string_view(&character, 1));
  }
  reader.finish();
  session.finish(counts, false);
  return session.counts().used > 0 ? 0 : 1;
}
