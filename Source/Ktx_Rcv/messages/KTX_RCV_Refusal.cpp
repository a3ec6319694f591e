#include "KTX/RCV/KTX_RCV_Refusal.h"

namespace KTX::RCV {

char const* refusalName(RefusalE refusal) {
  static constexpr char const* NAMES[] = {"none",           "bad-checksum",    "cut",
                                          "malformed",      "no-time",         "bad-time",
                                          "no-date",        "bad-date",        "leap-second-60",
                                          "void",           "not-valid",       "out-of-range",
                                          "strict",         "leap-invalid",    "leap-rejected",
                                          "leap-not-valid", "leap-incomplete", "leap-out-of-range"};
  static_assert(sizeof(NAMES) / sizeof(NAMES[0]) == REFUSAL_COUNT, "one name a reason");
  return refusal < REFUSAL_COUNT ? NAMES[refusal] : "unknown";
}

}  // namespace KTX::RCV
