#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"

#include <boost/chrono/duration.hpp>
#include <boost/thread/thread_only.hpp>

#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "support/KTX_TIM_ReaderWriterSteps.h"
#include "support/KTX_TIM_ThreadId.h"

namespace KTX::TIM {

namespace {

constexpr std::int64_t SLEEP_NS = 100000;

void sleepShortly() {
  boost::this_thread::sleep_for(boost::chrono::nanoseconds(SLEEP_NS));
}

}  // namespace

ReaderWriterSpinLock::ReaderWriterSpinLock()
    : writerActive(0),
      readerCount(0),
      writerThread(0),
      writeRecursion(0),
      readAdapter(this),
      writeAdapter(this) {}

ReaderWriterSpinLock::~ReaderWriterSpinLock() = default;

void ReaderWriterSpinLock::lockRead() {
  KTX::TIM::lockRead(ReaderWriterWordsC{writerActive, readerCount, writerThread, writeRecursion},
                     currentThreadId32(), sleepShortly);
}

void ReaderWriterSpinLock::unlockRead() {
  KTX::TIM::unlockRead(ReaderWriterWordsC{writerActive, readerCount, writerThread, writeRecursion},
                       [] { logAssertion(); });
}

void ReaderWriterSpinLock::lockWrite() {
  KTX::TIM::lockWrite(ReaderWriterWordsC{writerActive, readerCount, writerThread, writeRecursion},
                      currentThreadId32(), sleepShortly);
}

void ReaderWriterSpinLock::unlockWrite() {
  KTX::TIM::unlockWrite(
      ReaderWriterWordsC{writerActive, readerCount, writerThread, writeRecursion});
}

bool ReaderWriterSpinLock::tryLockRead() {
  return KTX::TIM::tryLockRead(
      ReaderWriterWordsC{writerActive, readerCount, writerThread, writeRecursion},
      currentThreadId32());
}

bool ReaderWriterSpinLock::tryLockWrite() {
  return KTX::TIM::tryLockWrite(
      ReaderWriterWordsC{writerActive, readerCount, writerThread, writeRecursion},
      currentThreadId32());
}

bool ReaderWriterSpinLock::isWriteLocked() const {
  return writeRecursion.load() > 0;
}

Lock& ReaderWriterSpinLock::getReadLock() {
  return readAdapter;
}

Lock& ReaderWriterSpinLock::getWriteLock() {
  return writeAdapter;
}

}  // namespace KTX::TIM
