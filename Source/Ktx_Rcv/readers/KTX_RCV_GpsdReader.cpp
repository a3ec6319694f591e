#include "readers/KTX_RCV_GpsdReader.h"

#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "KTX/RCV/KTX_RCV_IsoTime.h"

namespace KTX::RCV {
namespace {

constexpr std::int64_t MAX_LEAP_COUNT = 1000;
constexpr double MAX_ACCURACY_S = 1e6;

ReceiverMessageC eventAt(MessagePlaceC const& place) {
  ReceiverMessageC event;
  event.format = FORMAT_GPSD;
  event.name = "TPV";
  event.place = place;
  return event;
}

void readTime(nlohmann::json const& report, ReceiverMessageC& event) {
  auto const time = report.find("time");
  if (time == report.end()) {
    event.refusal = REFUSAL_NO_TIME;
    return;
  }
  auto const* const text = time->get_ptr<std::string const*>();
  std::size_t const length = text == nullptr ? 0 : readIsoTime(*text, event.utc);
  if (length == 0 || length + 1 != text->size() || text->back() != 'Z') {
    event.refusal = REFUSAL_BAD_TIME;
    return;
  }
  event.timeForm = TIMEFORM_UTC;
}

void readLeapSeconds(nlohmann::json const& report, ReceiverMessageC& event) {
  auto const leap = report.find("leapseconds");
  if (leap == report.end()) {
    return;
  }
  if (!leap->is_number_integer() || leap->get<double>() > MAX_LEAP_COUNT ||
      leap->get<double>() < -MAX_LEAP_COUNT) {
    event.warnings |= WARNING_LEAP_UNKNOWN;
    return;
  }
  event.leap.hasCount = true;
  event.leap.current = leap->get<std::int32_t>();
  event.addRaw("leapseconds", event.leap.current);
}

void readAccuracy(nlohmann::json const& report, ReceiverMessageC& event) {
  auto const accuracy = report.find("ept");
  if (accuracy == report.end() || !accuracy->is_number()) {
    return;
  }
  double const seconds = accuracy->get<double>();
  if (seconds >= 0 && seconds < MAX_ACCURACY_S) {
    event.accuracyNs = std::llround(seconds * 1e9);
  }
}

}  // namespace

GpsdReaderC::GpsdReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts)
    : sink(eventSink), counts(readCounts) {}

void GpsdReaderC::read(std::string_view line, MessagePlaceC const& place) {
  ++counts.reports;
  counts.examined += line.size();
  ReceiverMessageC event = eventAt(place);
  auto const report = nlohmann::json::parse(line.begin(), line.end(), nullptr, false);
  auto const* const name = report.is_object() && report.contains("class")
                               ? report.at("class").get_ptr<std::string const*>()
                               : nullptr;
  if (name == nullptr) {
    event.name = "JSON";
    event.refusal = REFUSAL_MALFORMED;
    sink.onMessage(event);
    return;
  }
  if (*name != "TPV") {
    counts.countMessage("gpsd-other");
    return;
  }
  counts.countMessage("TPV");
  readTime(report, event);
  readLeapSeconds(report, event);
  readAccuracy(report, event);
  auto const mode = report.find("mode");
  if (mode != report.end() && mode->is_number_integer() && mode->get<double>() < 2) {
    event.warnings |= WARNING_NO_FIX;
  }
  sink.onMessage(event);
}

}  // namespace KTX::RCV
