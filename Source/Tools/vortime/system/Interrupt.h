#ifndef KTX_VORTIME_INTERRUPT_H
#define KTX_VORTIME_INTERRUPT_H

namespace KTX::VORTIME {

/// Catches Ctrl-C and the request to end, from its construction to its end: the first is noted, a
/// second one ends the process as ever. There can be one at a time.
class InterruptC {
 public:
  InterruptC();
  ~InterruptC();
  InterruptC(InterruptC const&) = delete;
  InterruptC& operator=(InterruptC const&) = delete;

  /// True once one has come.
  static bool isRequested();
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_INTERRUPT_H
