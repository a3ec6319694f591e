#include "common/KTX_TIM_LogCapture.h"

#include <algorithm>
#include <mutex>

namespace KTX::TIM::TEST {

namespace {

constexpr char const* ASSERT_CHANNEL = "KTX_TIM_AssertLogger";

// Both are never destroyed: the library logs while it is loaded and while the process ends.
std::mutex& captureMutex() {
  static auto& mutex = *new std::mutex;
  return mutex;
}

LogCaptureC*& youngestCapture() {
  static LogCaptureC* capture = nullptr;
  return capture;
}

std::size_t countOf(std::map<std::string, std::size_t> const& counts, std::string const& channel) {
  auto const found = counts.find(channel);
  return found == counts.end() ? 0 : found->second;
}

}  // namespace

LogCaptureC::LogCaptureC() {
  std::lock_guard<std::mutex> const guard(captureMutex());
  previous = youngestCapture();
  youngestCapture() = this;
}

LogCaptureC::~LogCaptureC() {
  std::lock_guard<std::mutex> const guard(captureMutex());
  youngestCapture() = previous;
}

void LogCaptureC::setThreshold(std::int32_t threshold) {
  std::lock_guard<std::mutex> const guard(captureMutex());
  defaultThreshold = threshold;
}

void LogCaptureC::setThreshold(std::string const& channel, std::int32_t threshold) {
  std::lock_guard<std::mutex> const guard(captureMutex());
  thresholds[channel] = threshold;
}

void LogCaptureC::setHook(Hook newHook) {
  std::lock_guard<std::mutex> const guard(captureMutex());
  hook = std::move(newHook);
}

std::vector<LogCaptureC::EntryC> LogCaptureC::entries() const {
  std::lock_guard<std::mutex> const guard(captureMutex());
  return recorded;
}

std::vector<std::string> LogCaptureC::lines(std::string const& channel) const {
  std::lock_guard<std::mutex> const guard(captureMutex());
  std::vector<std::string> texts;
  for (auto const& entry : recorded) {
    if (entry.channel == channel) {
      texts.push_back(entry.text);
    }
  }
  return texts;
}

std::size_t LogCaptureC::count() const {
  std::lock_guard<std::mutex> const guard(captureMutex());
  return recorded.size();
}

std::size_t LogCaptureC::count(std::string const& channel) const {
  return lines(channel).size();
}

std::size_t LogCaptureC::count(std::string const& channel, std::int32_t level) const {
  std::lock_guard<std::mutex> const guard(captureMutex());
  return static_cast<std::size_t>(
      std::count_if(recorded.begin(), recorded.end(), [&](EntryC const& entry) {
        return entry.channel == channel && entry.level == level && !entry.isWriteText;
      }));
}

std::size_t LogCaptureC::unaskedCount() const {
  std::lock_guard<std::mutex> const guard(captureMutex());
  return unasked;
}

std::size_t LogCaptureC::assertionCount() const {
  return count(ASSERT_CHANNEL);
}

std::vector<std::string> LogCaptureC::assertionTexts() const {
  std::string const mark = "Assertion! ";
  std::vector<std::string> texts = lines(ASSERT_CHANNEL);
  for (std::string& text : texts) {
    std::size_t const start = text.find(mark);
    text = start == std::string::npos ? "" : text.substr(start + mark.size());
  }
  return texts;
}

std::size_t LogCaptureC::builtCount(std::string const& channel) const {
  std::lock_guard<std::mutex> const guard(captureMutex());
  return countOf(built, channel);
}

std::size_t LogCaptureC::destroyedCount(std::string const& channel) const {
  std::lock_guard<std::mutex> const guard(captureMutex());
  return countOf(destroyed, channel);
}

void LogCaptureC::clear() {
  std::lock_guard<std::mutex> const guard(captureMutex());
  recorded.clear();
  unasked = 0;
  built.clear();
  destroyed.clear();
}

bool LogCaptureC::isEnabled(std::string const& channel, std::int32_t level) {
  std::lock_guard<std::mutex> const guard(captureMutex());
  auto const* const capture = youngestCapture();
  return capture != nullptr && capture->passes(channel, level);
}

void LogCaptureC::record(EntryC const& entry) {
  Hook hookNow;
  {
    std::lock_guard<std::mutex> const guard(captureMutex());
    auto* const capture = youngestCapture();
    if (capture == nullptr ||
        (!entry.isWriteText && !capture->passes(entry.channel, entry.level))) {
      return;
    }
    capture->recorded.push_back(entry);
    hookNow = capture->hook;
  }
  if (hookNow) {
    hookNow(entry);
  }
}

void LogCaptureC::countUnasked() {
  std::lock_guard<std::mutex> const guard(captureMutex());
  if (auto* const capture = youngestCapture()) {
    ++capture->unasked;
  }
}

void LogCaptureC::countBuilt(std::string const& channel) {
  std::lock_guard<std::mutex> const guard(captureMutex());
  if (auto* const capture = youngestCapture()) {
    capture->destroyed[channel];  // room, so that a destructor takes no memory
    ++capture->built[channel];
  }
}

void LogCaptureC::countDestroyed(std::string const& channel) {
  std::lock_guard<std::mutex> const guard(captureMutex());
  if (auto* const capture = youngestCapture()) {
    ++capture->destroyed[channel];
  }
}

bool LogCaptureC::passes(std::string const& channel, std::int32_t level) const {
  auto const found = thresholds.find(channel);
  auto const threshold = found == thresholds.end() ? defaultThreshold : found->second;
  return level >= threshold && threshold != OFF;
}

}  // namespace KTX::TIM::TEST
