#ifndef KTX_VORTIME_SUMMARYTEXT_H
#define KTX_VORTIME_SUMMARYTEXT_H

#include <string>

#include "replay/ReplayReport.h"

namespace KTX::VORTIME {

/// The summary of a run for people, several lines.
std::string summaryText(SummaryReportC const& summary);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_SUMMARYTEXT_H
