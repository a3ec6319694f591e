#ifndef KTX_TIM_READERWRITERSPINLOCK_H
#define KTX_TIM_READERWRITERSPINLOCK_H

#include <atomic>
#include <cstdint>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_ReadLock.h"
#include "KTX/TIM/KTX_TIM_WriteLock.h"

namespace KTX::TIM {

/// Many readers or one writer, waiting by spinning with short sleeps.
///
/// The writer may take further read and write locks and must give each back. Readers can starve
/// a writer. A thread that holds a read lock and asks for the write lock waits for ever.
class KTX_TIM_API ReaderWriterSpinLock {
 public:
  ReaderWriterSpinLock();
  virtual ~ReaderWriterSpinLock();
  ReaderWriterSpinLock(ReaderWriterSpinLock const&) = delete;
  ReaderWriterSpinLock& operator=(ReaderWriterSpinLock const&) = delete;

  /// Waits while another thread writes. A wait can be interrupted by boost::thread::interrupt(),
  /// whose exception leaves nothing locked.
  void lockRead();
  /// Without a read lock it raises an assertion and counts down all the same: no writer gets in
  /// until the next lockRead(), which then holds a lock that a writer does not see.
  void unlockRead();
  /// Waits while another thread writes or any reads; can be interrupted as lockRead() can.
  void lockWrite();
  /// Gives back one level; an unlock without a lock is not checked.
  void unlockWrite();
  /// One attempt, without waiting.
  bool tryLockRead();
  /// One attempt, without waiting.
  bool tryLockWrite();
  /// True while any thread holds the write lock.
  bool isWriteLocked() const;

  /// The read side, for a Guard.
  Lock& getReadLock();
  /// The write side, for a Guard.
  Lock& getWriteLock();

 private:
  std::atomic<std::uint8_t> writerActive;
  std::atomic<std::int32_t> readerCount;
  std::atomic<std::uint32_t> writerThread;
  std::atomic<std::int32_t> writeRecursion;
  ReadLock<ReaderWriterSpinLock> readAdapter;
  WriteLock<ReaderWriterSpinLock> writeAdapter;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_READERWRITERSPINLOCK_H
