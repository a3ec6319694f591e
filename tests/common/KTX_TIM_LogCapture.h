#ifndef KTX_TIM_LOGCAPTURE_H
#define KTX_TIM_LOGCAPTURE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace KTX::TIM::TEST {

/// Records every line that the library logs while it exists. Unit tests link it in the place of the
/// logging library: the channel class is implemented beside it. With no capture alive no level is
/// enabled and lines are dropped. Of two captures the younger one records. Thread-safe.
class LogCaptureC {
 public:
  struct EntryC {
    std::string channel;
    std::int32_t level = 0;  // 0 where isWriteText
    std::string format;      // the text itself where isWriteText
    std::string text;        // formatted, line ends as they came
    bool isWriteText = false;
  };
  using Hook = std::function<void(EntryC const&)>;

  /// A threshold that lets no level pass.
  static constexpr std::int32_t OFF = std::numeric_limits<std::int32_t>::max();

  LogCaptureC();
  ~LogCaptureC();
  LogCaptureC(LogCaptureC const&) = delete;
  LogCaptureC& operator=(LogCaptureC const&) = delete;

  /// Lines of a level below the threshold are filtered, as the real library does, also where the
  /// caller did not ask first. At the start every level of every channel is enabled.
  void setThreshold(std::int32_t threshold);
  void setThreshold(std::string const& channel, std::int32_t threshold);

  /// Calls hook for each line that passes the filter, after it is recorded and with no lock held.
  /// What hook throws goes to the code that logged. An empty hook ends this.
  void setHook(Hook newHook);

  std::vector<EntryC> entries() const;
  std::vector<std::string> lines(std::string const& channel) const;
  std::size_t count() const;
  std::size_t count(std::string const& channel) const;
  std::size_t count(std::string const& channel, std::int32_t level) const;

  /// Lines below the threshold, since the capture began or was cleared: their caller composed them
  /// without asking first.
  std::size_t unaskedCount() const;

  /// Lines on the channel of the assertion reporter.
  std::size_t assertionCount() const;
  /// The text of each of them, empty for a report without one.
  std::vector<std::string> assertionTexts() const;

  /// Channel objects of this name that were built, and destroyed, since the capture began or was
  /// cleared.
  std::size_t builtCount(std::string const& channel) const;
  std::size_t destroyedCount(std::string const& channel) const;

  /// Forgets lines and counts; thresholds and hook stay.
  void clear();

  // For the channel class; they act on the youngest capture, if there is one.
  static bool isEnabled(std::string const& channel, std::int32_t level);
  static void record(EntryC const& entry);
  static void countUnasked();
  static void countBuilt(std::string const& channel);
  static void countDestroyed(std::string const& channel);

 private:
  bool passes(std::string const& channel, std::int32_t level) const;

  LogCaptureC* previous;
  std::int32_t defaultThreshold = std::numeric_limits<std::int32_t>::min();
  std::map<std::string, std::int32_t> thresholds;
  Hook hook;
  std::vector<EntryC> recorded;
  std::size_t unasked = 0;
  std::map<std::string, std::size_t> built;
  std::map<std::string, std::size_t> destroyed;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_LOGCAPTURE_H
