#include "output/SummaryText.h"

#include <cstdint>

#include "output/RecordText.h"
#include "output/TextFormat.h"

namespace KTX::VORTIME {
namespace {

constexpr double MS_PER_DAY = 8.64e7;

void appendRow(std::string& text, std::string_view name, std::string_view value) {
  text += "  ";
  appendLeft(text, name, 15);
  text += value;
  text += '\n';
}

std::string inputsText(RCV::SummaryReportC const& summary) {
  RCV::ReadCountsC const& read = summary.read;
  return std::to_string(summary.inputs.size()) +
         (summary.inputs.size() == 1 ? " input, " : " inputs, ") + std::to_string(read.bytes) +
         " bytes, " + std::to_string(read.lines) + " lines";
}

std::string messagesText(RCV::ReadCountsC const& read) {
  std::string text;
  auto const append = [&text](std::uint64_t count, char const* name) {
    if (count != 0) {
      text += (text.empty() ? "" : ", ") + std::to_string(count) + ' ' + name;
    }
  };
  append(read.sentences, "NMEA sentences");
  append(read.frames, "UBX frames");
  append(read.reports, "gpsd reports");
  append(read.headers, "RINEX headers");
  return text.empty() ? "none" : text;
}

std::string kindsText(RCV::ReadCountsC const& read) {
  std::string text;
  for (std::size_t i = 0; i < read.messageKinds(); ++i) {
    text += (i == 0 ? "" : ", ") + std::string(read.message(i).name.data()) + ' ' +
            std::to_string(read.message(i).count);
  }
  return text;
}

std::string refusedText(RCV::SessionCountsC const& counts) {
  std::string text = std::to_string(counts.allRefused());
  char const* separator = ": ";
  for (std::size_t i = 0; i < counts.refused.size(); ++i) {
    if (counts.refused[i] != 0) {
      text += separator + std::string(RCV::refusalName(static_cast<RCV::RefusalE>(i))) + ' ' +
              std::to_string(counts.refused[i]);
      separator = ", ";
    }
  }
  return text;
}

std::string signsText(RCV::SessionCountsC const& counts) {
  std::string text;
  for (std::uint32_t i = 0; i < RCV::WARNING_COUNT; ++i) {
    if (counts.warnings[i] != 0) {
      text += (text.empty() ? "" : ", ") +
              std::string(RCV::warningName(static_cast<RCV::WarningE>(1U << i))) + ' ' +
              std::to_string(counts.warnings[i]);
    }
  }
  return text.empty() ? "none" : text;
}

std::string millisecondsText(double days) {
  std::string text;
  appendFixed(text, days * MS_PER_DAY, 1);
  return text + " ms";
}

}  // namespace

std::string summaryText(RCV::SummaryReportC const& summary) {
  std::string text = summary.isInterrupted ? "Summary (interrupted)\n" : "Summary\n";
  appendRow(text, "read", inputsText(summary));
  appendRow(text, "messages", messagesText(summary.read));
  if (summary.read.messageKinds() != 0) {
    appendRow(text, "whole", kindsText(summary.read));
  }
  appendRow(text, "bad checksums", std::to_string(summary.read.badChecksums));
  appendRow(text, "observations", std::to_string(summary.counts.used) + " used");
  appendRow(text, "refused", refusedText(summary.counts));
  appendRow(text, "warning signs", signsText(summary.counts));
  appendRow(text, "corrections", std::to_string(summary.counts.corrections));
  appendRow(
      text, "leap second",
      std::to_string(summary.leapSeconds) + " s in force (" + recordText(summary.leapRecord) + ")");
  appendRow(text, "uncertainty", summary.hasStarted ? millisecondsText(summary.sigma) : "unknown");
  return text;
}

}  // namespace KTX::VORTIME
