#include "output/TextReport.h"

#include <cmath>

#include "KTX/RCV/KTX_RCV_TimeConversion.h"
#include "KTX/TIM/KTX_TIM_LeapSecondSource.h"
#include "output/RecordText.h"
#include "output/SummaryText.h"
#include "output/TextFormat.h"
#include "system/VisibleText.h"

namespace KTX::VORTIME {
namespace {

constexpr std::size_t PLACE_WIDTH = 8;
constexpr std::size_t MESSAGE_WIDTH = 13;
constexpr char const* INDENT = "          ";

bool isSame(RCV::LeapReportC const& a, RCV::LeapReportC const& b) {
  return a.outcome == b.outcome && a.refusal == b.refusal && a.isOffered == b.isOffered &&
         a.record == b.record;
}

}  // namespace

TextReportC::TextReportC(OutputFileC& output, bool isQuiet, bool isLive)
    : out(output), quiet(isQuiet), live(isLive), leapSeconds(TIM::getDefaultLeapSecondProvider()) {}

TextReportC::~TextReportC() = default;

void TextReportC::onInput(std::string const& name) {
  signsWarnedOf = RCV::WARNING_NONE;
  hasLastLeap = false;
  appendVisible(out.buffer(), name);
  out.buffer() += '\n';
  if (!quiet) {
    out.buffer() +=
        "    line  message      UTC                        week  ms of week  MJD              "
        "change/ms\n";
  }
  endLine();
}

// UBX frames and RINEX records have no lines of their own, but a reader of the log finds both so.
void TextReportC::beginLine(RCV::MessageReportC const& message) {
  std::string place;
  RCV::ReceiverMessageC const& event = message.message;
  if (event.format == RCV::FORMAT_UBX) {
    place += '@';
    appendUnsigned(place, event.place.offset);
  } else {
    appendUnsigned(place, event.place.line);
  }
  appendRight(out.buffer(), place, PLACE_WIDTH);
  out.buffer() += "  ";
  appendLeft(out.buffer(), event.name.empty() ? "?" : event.name, MESSAGE_WIDTH);
}

void TextReportC::appendTime(RCV::MessageReportC const& message) {
  std::string& text = out.buffer();
  appendCalendar(text, message.observation->utc());
  text += "Z";
  if (!message.observation->isInRange()) {
    return;
  }
  TIM::GpsC const gps = message.observation->gps(*leapSeconds);
  std::string number;
  appendUnsigned(number, gps.getWeek());
  appendColumn(text, number, 7);
  number.clear();
  appendUnsigned(number, gps.getMsOfWeek());
  appendColumn(text, number, 12);
  text += "  ";
  appendFixed(text, message.observation->utcDayNumber(), 9);
}

void TextReportC::appendSigns(std::uint32_t signs) {
  for (std::uint32_t i = 0; signs >> i != 0; ++i) {
    if ((signs >> i & 1U) != 0) {
      out.buffer() += "  ";
      out.buffer() += RCV::warningName(static_cast<RCV::WarningE>(1U << i));
    }
  }
}

void TextReportC::endLine() {
  if (live) {
    out.flush();
  } else {
    out.commit();
  }
}

void TextReportC::warnOnce(RCV::MessageReportC const& message) {
  std::uint32_t const fresh = message.warnings & ~signsWarnedOf;
  if (fresh == RCV::WARNING_NONE) {
    return;
  }
  signsWarnedOf |= fresh;
  beginLine(message);
  out.buffer() += "warning:";
  appendSigns(fresh);
  out.buffer() += '\n';
  endLine();
}

void TextReportC::onObservation(RCV::MessageReportC const& message,
                                RCV::ObservationEffectC const& effect) {
  if (quiet) {
    warnOnce(message);
    return;
  }
  beginLine(message);
  appendTime(message);
  std::string number;
  appendSigned(number, std::llround(effect.differenceMs));
  appendColumn(out.buffer(), number, 11);
  appendSigns(message.warnings);
  out.buffer() += '\n';
  endLine();
}

void TextReportC::onRefusal(RCV::MessageReportC const& message, RCV::RefusalE refusal) {
  if (quiet) {
    warnOnce(message);
    return;
  }
  beginLine(message);
  if (message.observation != nullptr) {
    appendTime(message);
    out.buffer() += "  ";
  }
  out.buffer() += "refused: ";
  out.buffer() += RCV::refusalName(refusal);
  appendSigns(message.warnings);
  out.buffer() += '\n';
  endLine();
}

void TextReportC::onCorrection(RCV::CorrectionReportC const& correction) {
  TIM::GpsC const present(correction.week, correction.msOfWeek);
  std::string& text = out.buffer();
  text += INDENT;
  text += "correction   ";
  appendCalendar(text, RCV::utcOfGps(present));
  text += "Z";
  std::string number;
  appendUnsigned(number, correction.week);
  appendColumn(text, number, 7);
  number.clear();
  appendUnsigned(number, correction.msOfWeek);
  appendColumn(text, number, 12);
  text += "  changed by ";
  appendSigned(text, correction.changeMs);
  text += " ms\n";
  endLine();
}

void TextReportC::onClock(RCV::ClockStepC const& clock) {
  std::string& text = out.buffer();
  text += INDENT;
  text += clock.outcome == RCV::CLOCK_SET ? "clock set    " : "clock kept   ";
  appendCalendar(text, clock.utc);
  switch (clock.outcome) {
    case RCV::CLOCK_SET:
      text += "Z  changed by ";
      appendSigned(text, clock.stepMs);
      text += " ms\n";
      break;
    case RCV::CLOCK_REFUSED:
      text += "Z was refused by the system: it takes the right to set the time, as root has\n";
      break;
    case RCV::CLOCK_STEP_TOO_LARGE:
      text += "Z is ";
      appendSigned(text, clock.stepMs);
      text += " ms away: more than --max-step\n";
      break;
  }
  endLine();
}

void TextReportC::onLeapStatement(RCV::MessageReportC const& message,
                                  RCV::LeapReportC const& leap) {
  // A receiver repeats its statement every second: the first tells all.
  if (hasLastLeap && isSame(leap, lastLeap)) {
    return;
  }
  hasLastLeap = true;
  lastLeap = leap;
  bool const isNews = leap.outcome == RCV::LEAP_ACCEPTED || leap.outcome == RCV::LEAP_REFUSED;
  if (quiet && !isNews) {
    return;
  }
  beginLine(message);
  std::string& text = out.buffer();
  if (leap.isOffered) {
    text += recordText(leap.record);
  } else {
    appendSigned(text, message.message.leap.current);
    text += " s";
  }
  static constexpr char const* OUTCOMES[] = {": the count in force", ": held already", ": accepted",
                                             ": refused: "};
  text += OUTCOMES[leap.outcome];
  if (leap.outcome == RCV::LEAP_REFUSED) {
    text += RCV::refusalName(leap.refusal);
  }
  appendSigns(message.warnings);
  text += '\n';
  endLine();
}

void TextReportC::onLeapChange(TIM::UtcLeapSecondRecord const& previous,
                               TIM::UtcLeapSecondRecord const& current) {
  out.buffer() += INDENT;
  out.buffer() +=
      "leap second  " + recordText(current) + " instead of " + recordText(previous) + '\n';
  endLine();
}

void TextReportC::onOldMapping(std::int64_t ageMs) {
  constexpr std::int64_t MS_PER_HOUR = 3600000;
  std::string& text = out.buffer();
  text += INDENT;
  text += "warning      no correction for ";
  appendSigned(text, ageMs / MS_PER_HOUR);
  text += " hours: the present rests on the PC's steady clock (reported once)\n";
  endLine();
}

void TextReportC::onSummary(RCV::SummaryReportC const& summary) {
  out.buffer() += summaryText(summary);
  endLine();
}

}  // namespace KTX::VORTIME
