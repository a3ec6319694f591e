#ifndef KTX_VORTIME_SUGGESTION_H
#define KTX_VORTIME_SUGGESTION_H

#include <string>
#include <string_view>
#include <vector>

namespace KTX::VORTIME {

/// The name that a mistyped word was probably meant to be: one that the word begins, or one that
/// differs in about a third of its letters at most (a letter too many, too few, wrong, or two that
/// changed places). Empty when no name is near enough; the first one when several are equally near.
std::string nearestName(std::string_view word, std::vector<std::string> const& names);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_SUGGESTION_H
