#include "output/JsonReport.h"

#include <cmath>

#include "KTX/RCV/KTX_RCV_TimeConversion.h"
#include "KTX/TIM/KTX_TIM_LeapSecondSource.h"
#include "output/TextFormat.h"

namespace KTX::VORTIME {
namespace {

constexpr double MS_PER_DAY = 8.64e7;

// The names of this file's objects need no escapes; texts from outside go through appendQuoted().
void appendName(std::string& text, std::string_view name) {
  text += ",\"";
  text += name;
  text += "\":";
}

void appendNumber(std::string& text, std::string_view name, std::int64_t value) {
  appendName(text, name);
  appendSigned(text, value);
}

void appendCount(std::string& text, std::string_view name, std::uint64_t value) {
  appendName(text, name);
  appendUnsigned(text, value);
}

void appendWord(std::string& text, std::string_view name, std::string_view word) {
  appendName(text, name);
  text += '"';
  text += word;
  text += '"';
}

void appendUtc(std::string& text, std::string_view name, TIM::YmdhmsC const& utc) {
  appendName(text, name);
  text += '"';
  appendCalendar(text, utc);
  text += "Z\"";
}

void appendSigns(std::string& text, std::uint32_t signs) {
  if (signs == RCV::WARNING_NONE) {
    return;
  }
  appendName(text, "signs");
  char separator = '[';
  for (std::uint32_t i = 0; signs >> i != 0; ++i) {
    if ((signs >> i & 1U) != 0) {
      text += separator;
      text += '"';
      text += RCV::warningName(static_cast<RCV::WarningE>(1U << i));
      text += '"';
      separator = ',';
    }
  }
  text += ']';
}

void appendRecord(std::string& text,
                  std::string_view name,
                  TIM::UtcLeapSecondRecord const& record) {
  appendName(text, name);
  text += "{\"source\":\"";
  text += TIM::leapSecondSourceName(record.source);
  text += '"';
  appendNumber(text, "current", record.current);
  appendNumber(text, "future", record.future);
  appendCount(text, "week", record.week);
  appendCount(text, "day", record.day);
  appendName(text, "known");
  text += record.effectivityKnown ? "true}" : "false}";
}

template <class Names, class Counts>
void appendCounts(std::string& text,
                  std::string_view name,
                  Counts const& counts,
                  Names const& nameOf) {
  appendName(text, name);
  char separator = '{';
  for (std::uint32_t i = 0; i < counts.size(); ++i) {
    if (counts[i] != 0) {
      text += separator;
      text += '"';
      text += nameOf(i);
      text += "\":";
      appendUnsigned(text, counts[i]);
      separator = ',';
    }
  }
  text += separator == '{' ? "{}" : "}";
}

void appendMessages(std::string& text, RCV::ReadCountsC const& read) {
  appendName(text, "messages");
  text += '{';
  for (std::size_t i = 0; i < read.messageKinds(); ++i) {
    text += i == 0 ? "" : ",";
    appendQuoted(text, read.message(i).name.data());
    text += ':';
    appendUnsigned(text, read.message(i).count);
  }
  text += '}';
}

}  // namespace

JsonReportC::JsonReportC(OutputFileC& output, bool isQuiet, bool isLive)
    : out(output), quiet(isQuiet), live(isLive), leapSeconds(TIM::getDefaultLeapSecondProvider()) {}

JsonReportC::~JsonReportC() = default;

void JsonReportC::onInput(std::string const& name) {
  quotedInput.clear();
  appendQuoted(quotedInput, name);
}

void JsonReportC::begin(char const* type) {
  out.buffer() += "{\"type\":\"";
  out.buffer() += type;
  out.buffer() += '"';
}

void JsonReportC::end() {
  out.buffer() += "}\n";
  if (live) {
    out.flush();
  } else {
    out.commit();
  }
}

void JsonReportC::appendMessage(RCV::MessageReportC const& message) {
  static constexpr char const* FORMATS[] = {"nmea", "ubx", "gpsd", "rinex"};
  std::string& text = out.buffer();
  RCV::ReceiverMessageC const& event = message.message;
  appendName(text, "input");
  text += quotedInput;
  appendCount(text, "line", event.place.line);
  appendCount(text, "offset", event.place.offset);
  appendWord(text, "format", FORMATS[event.format]);
  appendName(text, "message");
  appendQuoted(text, event.name);
  if (event.rawCount != 0) {
    appendName(text, "raw");
    char separator = '{';
    for (std::size_t i = 0; i < event.rawCount; ++i) {
      text += separator;
      text += '"';
      text += event.raw[i].name;
      text += "\":";
      appendSigned(text, event.raw[i].value);
      separator = ',';
    }
    text += '}';
  }
  if (event.place.hasHostTime) {
    appendUtc(text, "host", RCV::utcCalendarOf(event.place.hostUnixMs));
  }
}

void JsonReportC::appendTime(RCV::MessageReportC const& message) {
  std::string& text = out.buffer();
  appendUtc(text, "utc", message.observation->utc());
  if (!message.observation->isInRange()) {
    return;
  }
  TIM::GpsC const gps = message.observation->gps(*leapSeconds);
  appendCount(text, "week", gps.getWeek());
  appendCount(text, "ms", gps.getMsOfWeek());
  appendName(text, "mjd");
  appendShortest(text, message.observation->utcDayNumber());
}

void JsonReportC::onObservation(RCV::MessageReportC const& message,
                                RCV::ObservationEffectC const& effect) {
  if (quiet) {
    return;
  }
  begin("observation");
  appendMessage(message);
  appendTime(message);
  std::string& text = out.buffer();
  appendNumber(text, "noise_ms", effect.noiseMs);
  appendNumber(text, "difference_ms", std::llround(effect.differenceMs));
  appendName(text, "sigma_ms");
  appendShortest(text, effect.sigma * MS_PER_DAY);
  appendSigns(text, message.warnings);
  end();
}

void JsonReportC::onRefusal(RCV::MessageReportC const& message, RCV::RefusalE refusal) {
  if (quiet) {
    return;
  }
  begin("refusal");
  appendWord(out.buffer(), "reason", RCV::refusalName(refusal));
  appendMessage(message);
  if (message.observation != nullptr) {
    appendTime(message);
  }
  appendSigns(out.buffer(), message.warnings);
  end();
}

void JsonReportC::onCorrection(RCV::CorrectionReportC const& correction) {
  begin("correction");
  std::string& text = out.buffer();
  appendNumber(text, "change_ms", correction.changeMs);
  appendCount(text, "week", correction.week);
  appendCount(text, "ms", correction.msOfWeek);
  appendUtc(text, "utc", RCV::utcOfGps(TIM::GpsC(correction.week, correction.msOfWeek)));
  end();
}

void JsonReportC::onClock(RCV::ClockStepC const& clock) {
  begin("clock");
  std::string& text = out.buffer();
  appendName(text, "clock_set");
  text += clock.outcome == RCV::CLOCK_SET ? "true" : "false";
  if (clock.outcome != RCV::CLOCK_SET) {
    appendWord(text, "reason", clock.outcome == RCV::CLOCK_REFUSED ? "refused" : "step-too-large");
  }
  appendName(text, "first");
  text += clock.isFirst ? "true" : "false";
  appendNumber(text, "step_ms", clock.stepMs);
  appendUtc(text, "clock_utc", clock.utc);
  end();
}

void JsonReportC::onLeapStatement(RCV::MessageReportC const& message,
                                  RCV::LeapReportC const& leap) {
  static constexpr char const* OUTCOMES[] = {"agrees", "unchanged", "accepted", "refused"};
  bool const isRefused = leap.outcome == RCV::LEAP_REFUSED;
  if (quiet && leap.outcome != RCV::LEAP_ACCEPTED) {
    return;
  }
  begin(isRefused ? "refusal" : "leap_statement");
  std::string& text = out.buffer();
  if (isRefused) {
    appendWord(text, "reason", RCV::refusalName(leap.refusal));
  } else {
    appendWord(text, "outcome", OUTCOMES[leap.outcome]);
  }
  appendMessage(message);
  if (leap.isOffered) {
    appendRecord(text, "record", leap.record);
    appendCount(text, "result", leap.resultCode);
  }
  appendSigns(text, message.warnings);
  end();
}

void JsonReportC::onLeapChange(TIM::UtcLeapSecondRecord const& previous,
                               TIM::UtcLeapSecondRecord const& current) {
  begin("leap_change");
  appendRecord(out.buffer(), "previous", previous);
  appendRecord(out.buffer(), "current", current);
  end();
}

void JsonReportC::onOldMapping(std::int64_t ageMs) {
  begin("old_mapping");
  appendNumber(out.buffer(), "age_ms", ageMs);
  end();
}

void JsonReportC::onSummary(RCV::SummaryReportC const& summary) {
  begin("summary");
  std::string& text = out.buffer();
  RCV::ReadCountsC const& read = summary.read;
  appendCount(text, "inputs", summary.inputs.size());
  appendCount(text, "bytes", read.bytes);
  appendCount(text, "lines", read.lines);
  appendCount(text, "sentences", read.sentences);
  appendCount(text, "frames", read.frames);
  appendCount(text, "reports", read.reports);
  appendCount(text, "headers", read.headers);
  appendMessages(text, read);
  appendCount(text, "bad_checksums", read.badChecksums);
  appendCount(text, "without_checksum", read.withoutChecksum);
  appendCount(text, "used", summary.counts.used);
  appendCounts(text, "refused", summary.counts.refused,
               [](std::uint32_t i) { return RCV::refusalName(static_cast<RCV::RefusalE>(i)); });
  appendCounts(text, "signs", summary.counts.warnings, [](std::uint32_t i) {
    return RCV::warningName(static_cast<RCV::WarningE>(1U << i));
  });
  appendCount(text, "corrections", summary.counts.corrections);
  appendCount(text, "leap_changes", summary.counts.leapChanges);
  appendNumber(text, "leap_seconds", summary.leapSeconds);
  appendRecord(text, "leap_record", summary.leapRecord);
  appendName(text, "sigma_ms");
  if (summary.hasStarted) {
    appendShortest(text, summary.sigma * MS_PER_DAY);
  } else {
    text += "null";
  }
  appendName(text, "interrupted");
  text += summary.isInterrupted ? "true" : "false";
  end();
}

}  // namespace KTX::VORTIME
