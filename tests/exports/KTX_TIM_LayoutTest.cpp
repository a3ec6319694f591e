// What modules that were compiled earlier rely on: where members lie, which slot a virtual function
// has, and the values of enumerators and result codes.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include <boost/signals2/signal.hpp>
#include <gtest/gtest.h>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"
#include "KTX/TIM/KTX_TIM_Clock.h"
#include "KTX/TIM/KTX_TIM_CurrentTimeProvider.h"
#include "KTX/TIM/KTX_TIM_DefaultCurrentTimeProvider.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsLocal.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_ReadLock.h"
#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_SimTime.h"
#include "KTX/TIM/KTX_TIM_StopWatch.h"
#include "KTX/TIM/KTX_TIM_SysTime.h"
#include "KTX/TIM/KTX_TIM_TimeBase.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_TimeKind.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_WriteLock.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::TIM::TEST {

// Explicit instantiations may name private members.
template <class Tag, auto MEMBER>
struct PrivateMember {
  friend auto member(Tag /*tag*/) { return MEMBER; }
};

#define KTX_TIM_PRIVATE_MEMBER(tag, ...) \
  struct tag {                           \
    friend auto member(tag);             \
  };                                     \
  template struct PrivateMember<tag, &__VA_ARGS__>

KTX_TIM_PRIVATE_MEMBER(GpsTimeValueMsOfWeek, GPSTimeC::msOfWeek);
KTX_TIM_PRIVATE_MEMBER(GpsTimeValueWeek, GPSTimeC::week);
KTX_TIM_PRIVATE_MEMBER(GpsProvider, GpsC::provider);
KTX_TIM_PRIVATE_MEMBER(GpsTimeBase, GpsTimeC::timeBase);
KTX_TIM_PRIVATE_MEMBER(MjdDayNumber, MjdTimeC::dayNumber);
KTX_TIM_PRIVATE_MEMBER(MjdTimeBase, MjdTimeC::timeBase);
KTX_TIM_PRIVATE_MEMBER(MutexMutex, Mutex::mutex);
KTX_TIM_PRIVATE_MEMBER(SpinWriterActive, ReaderWriterSpinLock::writerActive);
KTX_TIM_PRIVATE_MEMBER(SpinReaderCount, ReaderWriterSpinLock::readerCount);
KTX_TIM_PRIVATE_MEMBER(SpinWriterThread, ReaderWriterSpinLock::writerThread);
KTX_TIM_PRIVATE_MEMBER(SpinWriteRecursion, ReaderWriterSpinLock::writeRecursion);
KTX_TIM_PRIVATE_MEMBER(SpinReadAdapter, ReaderWriterSpinLock::readAdapter);
KTX_TIM_PRIVATE_MEMBER(SpinWriteAdapter, ReaderWriterSpinLock::writeAdapter);
KTX_TIM_PRIVATE_MEMBER(ReadLockServed, ReadLock<ReaderWriterSpinLock>::served);
KTX_TIM_PRIVATE_MEMBER(WriteLockServed, WriteLock<ReaderWriterSpinLock>::served);
KTX_TIM_PRIVATE_MEMBER(StopWatchStart, StopWatchC::startNs);
KTX_TIM_PRIVATE_MEMBER(StopWatchStop, StopWatchC::stopNs);
KTX_TIM_PRIVATE_MEMBER(StopWatchClock, StopWatchC::clock);
KTX_TIM_PRIVATE_MEMBER(SiteMutex, UtcLeapSecondProvider::mutex);
KTX_TIM_PRIVATE_MEMBER(SiteRecord, UtcLeapSecondProvider::siteRecord);
KTX_TIM_PRIVATE_MEMBER(LogFileChannel, KTX::DBG::DbgLogFileC::channel);
KTX_TIM_PRIVATE_MEMBER(ZoneName, TimeZoneWindowsC::timeZoneName);
KTX_TIM_PRIVATE_MEMBER(ZoneSignal, TimeZoneWindowsC::timeZoneChanged);
KTX_TIM_PRIVATE_MEMBER(ZoneHasSignal, TimeZoneWindowsC::hasSignal);
KTX_TIM_PRIVATE_MEMBER(ZoneNameMutex, TimeZoneWindowsC::nameMutex);

namespace {

// On both systems a pointer to a data member is its offset, and a pointer to a virtual function is
// one more than the offset of its slot.
template <class Class, class Member>
std::size_t offsetOf(Member Class::*pointer) {
  std::ptrdiff_t offset = 0;
  static_assert(sizeof offset == sizeof pointer);
  std::memcpy(&offset, &pointer, sizeof offset);
  return static_cast<std::size_t>(offset);
}

template <class Function>
std::size_t slotOf(Function function) {
  std::ptrdiff_t words[2];
  static_assert(sizeof words == sizeof function);
  std::memcpy(words, &function, sizeof words);
  EXPECT_EQ(1, words[0] % 2) << "not a virtual function";
  return static_cast<std::size_t>(words[0] - 1) / sizeof(void*);
}

static_assert(sizeof(void*) == 8);

// A destructor has the first two slots: without and with freeing the memory.
constexpr std::size_t FIRST = 2;

static_assert(sizeof(UtcLeapSecondRecord) == 12);
static_assert(offsetof(UtcLeapSecondRecord, source) == 0);
static_assert(offsetof(UtcLeapSecondRecord, current) == 4);
static_assert(offsetof(UtcLeapSecondRecord, future) == 6);
static_assert(offsetof(UtcLeapSecondRecord, week) == 8);
static_assert(offsetof(UtcLeapSecondRecord, day) == 10);
static_assert(offsetof(UtcLeapSecondRecord, effectivityKnown) == 11);

static_assert(sizeof(UtcLeapSecondChanged) == 24);
static_assert(offsetof(UtcLeapSecondChanged, previous) == 0);
static_assert(offsetof(UtcLeapSecondChanged, current) == 12);

static_assert(sizeof(TimeEstimateStepC) == 120);
static_assert(offsetof(TimeEstimateStepC, number) == 0);
static_assert(offsetof(TimeEstimateStepC, steadyMs) == 8);
static_assert(offsetof(TimeEstimateStepC, observedMjd) == 16);
static_assert(offsetof(TimeEstimateStepC, observedSigma) == 24);
static_assert(offsetof(TimeEstimateStepC, predictedMjd) == 32);
static_assert(offsetof(TimeEstimateStepC, predictedSigma) == 40);
static_assert(offsetof(TimeEstimateStepC, estimatedMjd) == 48);
static_assert(offsetof(TimeEstimateStepC, estimatedSigma) == 56);
static_assert(offsetof(TimeEstimateStepC, correction) == 64);
static_assert(offsetof(TimeEstimateStepC, differenceMs) == 72);
static_assert(offsetof(TimeEstimateStepC, startMjd) == 80);
static_assert(offsetof(TimeEstimateStepC, startSteadyMs) == 88);
static_assert(offsetof(TimeEstimateStepC, mappedMjd) == 96);
static_assert(offsetof(TimeEstimateStepC, mappedSteadyMs) == 104);
static_assert(offsetof(TimeEstimateStepC, verdict) == 112);
static_assert(offsetof(TimeEstimateStepC, resetByOutlier) == 116);

static_assert(sizeof(PresentStatusC) == 88);

static_assert(sizeof(YmdhmsC) == 32);
static_assert(offsetof(YmdhmsC, year) == 0);
static_assert(offsetof(YmdhmsC, month) == 2);
static_assert(offsetof(YmdhmsC, day) == 3);
static_assert(offsetof(YmdhmsC, hour) == 4);
static_assert(offsetof(YmdhmsC, minute) == 5);
static_assert(offsetof(YmdhmsC, second) == 6);
static_assert(offsetof(YmdhmsC, hundredths) == 7);
static_assert(offsetof(YmdhmsC, dayOfWeek) == 8);
static_assert(offsetof(YmdhmsC, milliseconds) == 16);
static_assert(offsetof(YmdhmsC, precision) == 24);
static_assert(offsetof(YmdhmsC, timeBase) == 28);

static_assert(sizeof(GPSTimeC) == 16);
static_assert(sizeof(GpsC) == 24);
static_assert(sizeof(GpsLocalC) == 24);
static_assert(sizeof(GpsTimeC) == 32);
static_assert(sizeof(MjdTimeC) == 16);
static_assert(sizeof(Guard) == 16);
static_assert(sizeof(ReadLock<ReaderWriterSpinLock>) == 16);
static_assert(sizeof(WriteLock<ReaderWriterSpinLock>) == 16);
static_assert(sizeof(ReaderWriterSpinLock) == 56);
static_assert(sizeof(StopWatchC) == 32);
static_assert(sizeof(SimTimeC) == 8);
static_assert(sizeof(SysTimeC) == 8);
static_assert(sizeof(DefaultCurrentTimeProviderC) == 8);
static_assert(sizeof(KTX::DBG::DbgLogFileC) == 16);

static_assert(TIMEBASE_INV == -1 && TIMEBASE_GPS == 0 && TIMEBASE_UTC == 1 && TIMEBASE_LOCAL == 2);
static_assert(sizeof(TimeBaseE) == 4 && sizeof(TimeKindE) == 4 && sizeof(LeapSecondSource) == 4);
static_assert(sizeof(ClockTypeE) == 4 && sizeof(ClockReferenceE) == 4);
static_assert(TIMEKIND_GPS == 0 && TIMEKIND_UTC == 1 && TIMEKIND_LOC == 2 && TIMEKIND_SYS == 3);
static_assert(CLOCKTYPE_GETTICKCOUNT == 1 && CLOCKTYPE_STEADY == 2 && CLOCKTYPE_POSIX == 3);
static_assert(CLOCKREF_UTC == 1 && CLOCKREF_LOCAL == 2 && CLOCKREF_NONE == 3);
static_assert(CLOCKREF_DEFAULT == 4294967295U);
static_assert(LEAPSECOND_DEFAULT == 0 && LEAPSECOND_FORCED == 1 && LEAPSECOND_SITE == 2);
static_assert(LEAPSECOND_GPS == 3 && LEAPSECOND_GLONASS == 4 && LEAPSECOND_GALILEO == 5);
static_assert(LEAPSECOND_SBAS == 6 && LEAPSECOND_QZSS == 7 && LEAPSECOND_BEIDOU == 8);
static_assert(sizeof(TimeVerdictE) == 4 && TIMEVERDICT_UNCHANGED == 0);
static_assert(TIMEVERDICT_TOO_UNCERTAIN == 1 && TIMEVERDICT_CORRECTED == 2);
static_assert(RC_OK == 0 && RC_FAILED == 33554458);
static_assert(RC_INVALID_LEAPSECOND == 33554434 && RC_LEAPSECOND_NOT_ACCEPTED == 33554462);
static_assert(MS_PER_WEEK == 604800000 && SECONDS_PER_WEEK == 604800 && MS_PER_DAY == 86400000);
static_assert(GPS_EPOCH_MJD == 44244);

TEST(Layout, OfTimeValuesStays) {
  EXPECT_EQ(8U, offsetOf(member(GpsTimeValueMsOfWeek{})));
  EXPECT_EQ(12U, offsetOf(member(GpsTimeValueWeek{})));
  EXPECT_EQ(16U, offsetOf(member(GpsProvider{})));
  EXPECT_EQ(24U, offsetOf(member(GpsTimeBase{})));
  EXPECT_EQ(0U, offsetOf(member(MjdDayNumber{})));
  EXPECT_EQ(8U, offsetOf(member(MjdTimeBase{})));
}

TEST(Layout, OfTheStatusOfThePresentStays) {
  EXPECT_EQ(0U, offsetOf(&PresentStatusC::steadyMs));
  EXPECT_EQ(8U, offsetOf(&PresentStatusC::mappedMjd));
  EXPECT_EQ(16U, offsetOf(&PresentStatusC::mappedSteadyMs));
  EXPECT_EQ(24U, offsetOf(&PresentStatusC::sigma));
  EXPECT_EQ(32U, offsetOf(&PresentStatusC::observationAgeMs));
  EXPECT_EQ(48U, offsetOf(&PresentStatusC::correctionAgeMs));
  EXPECT_EQ(64U, offsetOf(&PresentStatusC::unchangedCount));
  EXPECT_EQ(72U, offsetOf(&PresentStatusC::tooUncertainCount));
  EXPECT_EQ(80U, offsetOf(&PresentStatusC::correctedCount));
}

TEST(Layout, OfLocksStays) {
  EXPECT_EQ(8U, offsetOf(member(MutexMutex{})));
  EXPECT_EQ(8U, offsetOf(member(SpinWriterActive{})));
  EXPECT_EQ(12U, offsetOf(member(SpinReaderCount{})));
  EXPECT_EQ(16U, offsetOf(member(SpinWriterThread{})));
  EXPECT_EQ(20U, offsetOf(member(SpinWriteRecursion{})));
  EXPECT_EQ(24U, offsetOf(member(SpinReadAdapter{})));
  EXPECT_EQ(40U, offsetOf(member(SpinWriteAdapter{})));
  EXPECT_EQ(8U, offsetOf(member(ReadLockServed{})));
  EXPECT_EQ(8U, offsetOf(member(WriteLockServed{})));
}

TEST(Layout, OfTheOtherClassesStays) {
  EXPECT_EQ(0U, offsetOf(member(StopWatchStart{})));
  EXPECT_EQ(8U, offsetOf(member(StopWatchStop{})));
  EXPECT_EQ(16U, offsetOf(member(StopWatchClock{})));
  EXPECT_EQ(8U, offsetOf(member(SiteMutex{})));
  EXPECT_EQ(8U + sizeof(Mutex), offsetOf(member(SiteRecord{})));
  EXPECT_EQ(8U, offsetOf(member(LogFileChannel{})));
  EXPECT_EQ(8U, offsetOf(member(ZoneName{})));
  std::size_t const signalEnd =
      offsetOf(member(ZoneSignal{})) + sizeof(boost::signals2::signal<void()>);
  EXPECT_EQ(8U + sizeof(std::wstring), offsetOf(member(ZoneSignal{})));
  EXPECT_EQ(signalEnd, offsetOf(member(ZoneHasSignal{})));
  EXPECT_EQ(signalEnd + 8, offsetOf(member(ZoneNameMutex{})));
}

TEST(Layout, OfTheSlotsOfInterfacesStays) {
  EXPECT_EQ(FIRST, slotOf(&LeapSecondProviderI::getLeapSecond));
  EXPECT_EQ(FIRST, slotOf(&UtcLeapSecondProvider::getLeapSecond));
  EXPECT_EQ(FIRST + 1, slotOf(&UtcLeapSecondProvider::setSiteLeapSecond));
  EXPECT_EQ(FIRST, slotOf(&CurrentTimeProviderI::getCurrentGpsTime));
  EXPECT_EQ(FIRST + 1, slotOf(&CurrentTimeProviderI::getCurrentMjdTime));
  EXPECT_EQ(FIRST, slotOf(&Lock::lock));
  EXPECT_EQ(FIRST + 1, slotOf(&Lock::unlock));
  using ClockT = ClockI<boost::milli>;
  EXPECT_EQ(FIRST, slotOf(&ClockT::now));
  EXPECT_EQ(FIRST + 1, slotOf(&ClockT::getType));
  EXPECT_EQ(FIRST + 2, slotOf(&ClockT::getReference));
  EXPECT_EQ(FIRST + 3, slotOf(&ClockT::getEpoch));
}

TEST(Layout, OfTheSlotsOfATimeZoneStays) {
  EXPECT_EQ(FIRST, slotOf(&TimeZoneC::connectTimeZoneChanged));
  EXPECT_EQ(FIRST + 1, slotOf(&TimeZoneC::getTimeZoneList));
  EXPECT_EQ(FIRST + 2, slotOf(&TimeZoneC::getTimeZone));
  EXPECT_EQ(FIRST + 3, slotOf(&TimeZoneC::setTimeZone));
  EXPECT_EQ(FIRST + 4, slotOf(&TimeZoneC::getDefaultTimeZone));
  EXPECT_EQ(FIRST + 5, slotOf(&TimeZoneC::checkTimeZone));
  EXPECT_EQ(FIRST + 6, slotOf(&TimeZoneC::getTimeZoneOffsetText));
  using OffsetOfMjdT = std::int16_t (TimeZoneC::*)(MjdTimeC const&);
  using OffsetOfYmdhmsT = std::int16_t (TimeZoneC::*)(YmdhmsC const&);
  using OffsetOfGpsT = std::int16_t (TimeZoneC::*)(GpsC const&);
  using OffsetOfGpsTimeT = std::int16_t (TimeZoneC::*)(GpsTimeC const&);
  EXPECT_EQ(FIRST + 7, slotOf(static_cast<OffsetOfMjdT>(&TimeZoneC::getUtcOffset)));
  EXPECT_EQ(FIRST + 8, slotOf(static_cast<OffsetOfYmdhmsT>(&TimeZoneC::getUtcOffset)));
  EXPECT_EQ(FIRST + 9, slotOf(static_cast<OffsetOfGpsT>(&TimeZoneC::getUtcOffset)));
  EXPECT_EQ(FIRST + 10, slotOf(static_cast<OffsetOfGpsTimeT>(&TimeZoneC::getUtcOffset)));
  EXPECT_EQ(FIRST + 11, slotOf(&TimeZoneC::getTimeZoneBias));
  EXPECT_EQ(FIRST + 12, slotOf(&TimeZoneC::getTimeZoneDisplayName));
  EXPECT_EQ(FIRST + 13, slotOf(&TimeZoneC::findTimeZoneByBias));
  EXPECT_EQ(FIRST + 14, slotOf(&TimeZoneC::getPreferredTimeZoneBias));
  EXPECT_EQ(FIRST + 15, slotOf(&TimeZoneC::findPreferredTimeZoneByBias));
  EXPECT_EQ(FIRST + 16, slotOf(&TimeZoneC::resolveTimeZone));
}

}  // namespace
}  // namespace KTX::TIM::TEST
