#include <ctime>
#include <sstream>
#include <streambuf>

#include "KTX/TIM/KTX_TIM_GpsLocal.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeKind.h"
#include "common/KTX_TIM_SystemTimeRoom.h"
#include "faults/KTX_TIM_FaultOperation.h"
#include "faults/KTX_TIM_FaultStage.h"

namespace KTX::TIM::TEST {
namespace {

GPSTimeC const INSTANT(2304, 1000);
MjdTimeC const DAY(60376.25, TIMEBASE_UTC);

YmdhmsC calendar(TimeBaseE timeBase) {
  return YmdhmsC(MjdTimeC(60376.25, timeBase), 1);
}

// A value with a provider of the application, which may throw.
template <class ActionT>
FaultOperationC withProvider(std::string const& name, ActionT const& action) {
  return {name, [action](FaultStageC& stage) {
            auto const value = std::make_shared<GpsC>(&stage.provider);
            *value += INSTANT;
            return CallC{[value, action] { action(*value); }, [value] { return textOf(*value); }};
          }};
}

// Fails every query.
class RefusingProviderC : public LeapSecondProviderI {
 public:
  std::uint32_t getLeapSecond(GpsC const& /*time*/,
                              UtcLeapSecondRecord& /*record*/,
                              GpsC* /*effectivity*/) override {
    return RC_FAILED;
  }
};

LeapSecondProviderI* refusingProvider() {
  static RefusingProviderC provider;
  return &provider;
}

// Local times: the system is asked for the offset, and where it refuses there is none.
template <class T, class ActionT>
FaultOperationC changingByZone(std::string const& name, T const& first, ActionT const& action) {
  FaultOperationC operation = changing(name, first, action);
  operation.hasOwnOutcome = true;
  return operation;
}

// One byte at a time, each of which may not come.
class FaultBufferC : public std::streambuf {
 public:
  FaultBufferC(FaultPointC& faultPoint, std::string const& content)
      : point(faultPoint), text(content) {}

 protected:
  int_type underflow() override {
    point.reach(FAULT_CALLBACK);
    if (next == text.size()) {
      return traits_type::eof();
    }
    setg(&text[next], &text[next], &text[next] + 1);
    ++next;
    return traits_type::to_int_type(*gptr());
  }

 private:
  FaultPointC& point;
  std::string text;
  std::size_t next = 0;
};

FaultOperationC readOperation() {
  return {"operator>> of a calendar value", [](FaultStageC& stage) {
            auto const buffer =
                std::make_shared<FaultBufferC>(stage.point, "2024-03-07T08:09:05.42Z");
            auto const value = std::make_shared<YmdhmsC>(calendar(TIMEBASE_GPS));
            return CallC{[buffer, value] {
                           std::istream stream(buffer.get());
                           stream >> *value;
                         },
                         [value] { return textOf(*value); }};
          }};
}

// To a stream that grows, in both ways of failing: with a state and with an exception.
template <class T>
void write(T const& value) {
  for (bool const isThrowing : {false, true}) {
    std::ostringstream stream;
    stream.exceptions(isThrowing ? std::ios_base::badbit : std::ios_base::goodbit);
    for (int i = 0; i < 20; ++i) {
      stream << value;
    }
  }
}

FaultOperationsT calendarOperations() {
  std::tm* const nothing = nullptr;
  return {changingByZone("YmdhmsC::utcToLocal", calendar(TIMEBASE_UTC),
                         [](YmdhmsC& value) { value.utcToLocal(); }),
          changingByZone("YmdhmsC::localToUtc", calendar(TIMEBASE_LOCAL),
                         [](YmdhmsC& value) { value.localToUtc(); }),
          changingByZone("YmdhmsC::toUtc of a local value", calendar(TIMEBASE_LOCAL),
                         [](YmdhmsC& value) { value.toUtc(); }),
          changingByZone("YmdhmsC::toGps of a local value", calendar(TIMEBASE_LOCAL),
                         [](YmdhmsC& value) { value.toGps(); }),
          plain("YmdhmsC::operator== across bases",
                [] {
                  YmdhmsC const utc = calendar(TIMEBASE_UTC);
                  YmdhmsC const local = calendar(TIMEBASE_LOCAL);
                  return static_cast<void>((utc == local) || (local != utc));
                }),
          plain("YmdhmsC::toFatDateTime",
                [] {
                  std::uint16_t fatTime = 0;
                  std::uint16_t fatDate = 0;
                  calendar(TIMEBASE_UTC).toFatDateTime(fatTime, fatDate);
                }),
          plain("YmdhmsC from no broken-down time", [nothing] { YmdhmsC const value(nothing); }),
          changing("YmdhmsC::fromTm of none", calendar(TIMEBASE_UTC),
                   [nothing](YmdhmsC& value) { value.fromTm(nothing); }),
          plain("YmdhmsC::toTm to none", [nothing] { calendar(TIMEBASE_UTC).toTm(nothing); }),
          readOperation()};
}

FaultOperationsT dayNumberOperations() {
  MjdTimeC const local(60376.25, TIMEBASE_LOCAL);
  return {
      changingByZone("MjdTimeC::utcToLocal", DAY, [](MjdTimeC& value) { value.utcToLocal(); }),
      changingByZone("MjdTimeC::localToUtc", local, [](MjdTimeC& value) { value.localToUtc(); }),
      changingByZone("MjdTimeC::toUtc of a local value", local,
                     [](MjdTimeC& value) { value.toUtc(); }),
      changingByZone("MjdTimeC::toGps of a local value", local,
                     [](MjdTimeC& value) { value.toGps(); }),
      changingByZone("MjdTimeC::convertTo", DAY,
                     [](MjdTimeC& value) { value.convertTo(TIMEBASE_LOCAL); }),
      plain("MjdTimeC::operator< across bases", [local] {
        return static_cast<void>((local < DAY) + (local <= DAY) + (local > DAY) + (local >= DAY) +
                                 (local == DAY) + (local != DAY));
      })};
}

FaultOperationsT weekOperations() {
  LeapSecondProviderI* const none = nullptr;
  return {plain("GpsC without a provider", [none] { GpsC const value(none); }),
          plain("GpsLocalC without a provider", [none] { GpsLocalC const value(none); }),
          changing("GpsC::gpsToUtc without a provider", GpsC(none),
                   [](GpsC& value) { value.gpsToUtc(); }),
          changing("GpsC::utcToGps without a provider", GpsC(none),
                   [](GpsC& value) { value.utcToGps(); }),
          changing("GpsC::getLeapSeconds without a provider", GpsC(none),
                   [](GpsC& value) { value.getLeapSeconds(); }),
          changing("GpsC::gpsToUtc with a provider that fails", GpsC(refusingProvider()),
                   [](GpsC& value) { value.gpsToUtc(); }),
          changing("GpsC::utcToGps with a provider that fails", GpsC(refusingProvider()),
                   [](GpsC& value) { value.utcToGps(); }),
          withProvider("GpsC::gpsToUtc", [](GpsC& value) { value.gpsToUtc(); }),
          withProvider("GpsC::utcToGps", [](GpsC& value) { value.utcToGps(); }),
          withProvider("GpsC::getLeapSeconds", [](GpsC& value) { value.getLeapSeconds(); })};
}

FaultOperationsT textOperations() {
  return {
      plain("operator<< of GPSTimeC", [] { write(INSTANT); }),
      plain("operator<< of GpsTimeC", [] { write(GpsTimeC(INSTANT)); }),
      plain("operator<< of YmdhmsC", [] { write(calendar(TIMEBASE_UTC)); }),
      plain("operator<< of a local YmdhmsC", [] { write(calendar(TIMEBASE_LOCAL)); }),
      plain("operator<< of a kind of time", [] { write(TIMEKIND_SYS); }),
      plain("operator<< of a system time",
            [] { write<SYSTEMTIME>(SystemTimeRoomC().asSystemTime()); }),
      plain("systemTimeToString", [] { systemTimeToString(SystemTimeRoomC().asSystemTime()); })};
}

}  // namespace

FaultOperationsT valueOperations() {
  FaultOperationsT operations;
  for (auto const& group :
       {calendarOperations(), dayNumberOperations(), weekOperations(), textOperations()}) {
    operations.insert(operations.end(), group.begin(), group.end());
  }
  return operations;
}

}  // namespace KTX::TIM::TEST
