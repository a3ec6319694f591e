#ifndef KTX_VORTIME_SUMMARYTEXT_H
#define KTX_VORTIME_SUMMARYTEXT_H

#include <string>

#include "KTX/RCV/KTX_RCV_SessionListener.h"

namespace KTX::VORTIME {

/// The summary of a run for people, several lines.
std::string summaryText(RCV::SummaryReportC const& summary);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_SUMMARYTEXT_H
