#ifndef KTX_TIM_READERWRITERSTEPS_H
#define KTX_TIM_READERWRITERSTEPS_H

#include <cstdint>

namespace KTX::TIM {

// The algorithm of ReaderWriterSpinLock, apart from its class, so that tests run these very steps
// on words of their own.
//
// A reader announces itself and then looks for a writer; a writer announces itself and then looks
// for readers. Only a sequentially consistent order of all four accesses makes one see the other:
// the words are atomics used with their default order.

/// The words of one lock; each type has the operations of std::atomic.
template <class FlagT, class CountT, class ThreadT>
struct ReaderWriterWordsC {
  FlagT& writerActive;
  CountT& readerCount;
  ThreadT& writerThread;
  CountT& writeRecursion;
};

template <class FlagT, class CountT, class ThreadT>
ReaderWriterWordsC(FlagT&, CountT&, ThreadT&, CountT&)
    -> ReaderWriterWordsC<FlagT, CountT, ThreadT>;

/// Counts the failed passes of a waiting loop and sleeps on every fifth.
template <class SleepT>
class BackOffC {
 public:
  explicit BackOffC(SleepT const& sleepShortly) : sleep(sleepShortly) {}

  void pass() {
    constexpr std::uint32_t PASSES_PER_SLEEP = 5;
    if (++passes == PASSES_PER_SLEEP) {
      passes = 0;
      sleep();
    }
  }

 private:
  SleepT const& sleep;
  std::uint32_t passes = 0;
};

template <class WordsT>
bool tryLockRead(WordsT const& words, std::uint32_t self) {
  words.readerCount.fetch_add(1);
  if (words.writerActive.load() == 0 || words.writerThread.load() == self) {
    return true;
  }
  words.readerCount.fetch_sub(1);
  return false;
}

template <class WordsT, class SleepT>
void lockRead(WordsT const& words, std::uint32_t self, SleepT const& sleep) {
  while (!tryLockRead(words, self)) {
    BackOffC<SleepT> backOff(sleep);  // anew for each wait
    while (words.writerActive.load() != 0) {
      backOff.pass();
    }
  }
}

template <class WordsT, class ReportT>
void unlockRead(WordsT const& words, ReportT const& reportUnlocked) {
  if (words.readerCount.load() < 1) {
    reportUnlocked();
  }
  words.readerCount.fetch_sub(1);  // in any case, below zero too
}

/// One attempt of a thread that does not hold the write lock.
template <class WordsT>
bool takeWriterFlag(WordsT const& words) {
  std::uint8_t free = 0;
  if (!words.writerActive.compare_exchange_strong(free, 1)) {
    return false;
  }
  if (words.readerCount.load() == 0) {
    return true;
  }
  words.writerActive.exchange(0);  // before any wait, or readers could not end theirs
  return false;
}

template <class WordsT>
bool reenterWrite(WordsT const& words, std::uint32_t self) {
  if (words.writerThread.load() != self) {
    return false;
  }
  words.writeRecursion.fetch_add(1);
  return true;
}

template <class WordsT>
void becomeWriter(WordsT const& words, std::uint32_t self) {
  words.writerThread.exchange(self);
  words.writeRecursion.exchange(1);
}

template <class WordsT>
bool tryLockWrite(WordsT const& words, std::uint32_t self) {
  if (reenterWrite(words, self)) {
    return true;
  }
  if (!takeWriterFlag(words)) {
    return false;
  }
  becomeWriter(words, self);
  return true;
}

template <class WordsT, class SleepT>
void lockWrite(WordsT const& words, std::uint32_t self, SleepT const& sleep) {
  BackOffC<SleepT> backOff(sleep);  // one for the whole call
  while (!tryLockWrite(words, self)) {
    backOff.pass();
  }
}

template <class WordsT>
void unlockWrite(WordsT const& words) {
  if (words.writeRecursion.fetch_sub(1) == 1) {
    // The thread first: the next writer sets its own as soon as the flag is free.
    words.writerThread.exchange(0);
    words.writerActive.exchange(0);
  }
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_READERWRITERSTEPS_H
