// Prints a digest of what one area of the library computes over a wide domain, ends and boundaries
// included: mutation_probe AREA. A change that no test can notice must leave the digest as it is.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <initializer_list>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_LogCapture.h"
#include "currenttime/KTX_TIM_ScalarKalman.h"
#include "leapseconds/KTX_TIM_LeapSecondFile.h"
#include "leapseconds/KTX_TIM_LeapSecondRules.h"
#include "values/KTX_TIM_CalendarSplit.h"
#include "values/KTX_TIM_WeekTime.h"

namespace KTX::TIM::TEST {
namespace {

/// FNV-1a over everything that is handed in.
class DigestC {
 public:
  void add(std::int64_t value) { addBytes(&value, sizeof value); }
  void add(double value) { addBytes(&value, sizeof value); }
  void add(std::string const& text) { addBytes(text.data(), text.size()); }
  void add(GPSTimeC const& time) {
    add(std::int64_t{time.getWeek()});
    add(std::int64_t{time.getMsOfWeek()});
  }
  void add(WeekTimeC time) {
    add(std::int64_t{time.week});
    add(std::int64_t{time.msOfWeek});
  }
  void add(CalendarFieldsC const& f) {
    for (int const field : {int{f.year}, int{f.month}, int{f.day}, int{f.hour}, int{f.minute},
                            int{f.second}, int{f.dayOfWeek}, int{f.milliseconds}}) {
      add(std::int64_t{field});
    }
  }
  void add(YmdhmsC const& t) {
    for (std::int64_t const field :
         {std::int64_t{t.year}, std::int64_t{t.month}, std::int64_t{t.day}, std::int64_t{t.hour},
          std::int64_t{t.minute}, std::int64_t{t.second}, std::int64_t{t.hundredths},
          std::int64_t{t.dayOfWeek}, t.milliseconds, std::int64_t{t.timeBase}}) {
      add(field);
    }
  }
  void add(UtcLeapSecondRecord const& r) {
    for (int const field : {static_cast<int>(r.source), int{r.current}, int{r.future}, int{r.week},
                            int{r.day}, int{r.effectivityKnown}}) {
      add(std::int64_t{field});
    }
  }

  std::uint64_t value() const { return hash; }

 private:
  void addBytes(void const* data, std::size_t size) {
    auto const* bytes = static_cast<unsigned char const*>(data);
    for (std::size_t i = 0; i < size; ++i) {
      hash = (hash ^ bytes[i]) * 1099511628211U;
    }
  }

  std::uint64_t hash = 14695981039346656037U;
};

std::mt19937_64 randomBits(20240307);

std::uint64_t below(std::uint64_t limit) {
  return randomBits() % limit;
}

/// One of the ends and boundaries, or any number.
std::int64_t anyNumber(std::initializer_list<std::int64_t> boundaries) {
  if (below(4) != 0) {
    auto const at = boundaries.begin() + static_cast<std::ptrdiff_t>(below(boundaries.size()));
    return *at + static_cast<std::int64_t>(below(5)) - 2;
  }
  return static_cast<std::int64_t>(randomBits() >> below(64));
}

GPSTimeC anyTime() {
  auto const week = static_cast<std::uint16_t>(anyNumber({2, 7, 1930, 32768, 65533}));
  auto const ms = static_cast<std::uint32_t>(anyNumber({2, 17, 18000, 604799998, 604800002}));
  return {week, ms};
}

constexpr std::int64_t WEEK_MS = MS_PER_WEEK;
constexpr std::int64_t HIGHEST = std::numeric_limits<std::int64_t>::max();

void probeWeekTimes(DigestC& digest) {
  for (int i = 0; i < 400000; ++i) {
    GPSTimeC const a = anyTime();
    GPSTimeC const b = below(8) == 0 ? a : anyTime();
    std::int64_t const ms = anyNumber(
        {0, 0, WEEK_MS, -WEEK_MS, 2 * WEEK_MS, -WEEK_MS * 65536, HIGHEST - 2, 2 - HIGHEST});
    digest.add(GPSTimeC(a, b));
    digest.add(a + b);
    digest.add(a - b);
    digest.add(a + ms);
    digest.add(a - ms);
    GPSTimeC moved = a;
    digest.add(moved.addSeconds(static_cast<std::int32_t>(ms)));
    digest.add(std::int64_t{a.toMilliseconds32()});
    digest.add(differenceMs(a, b));
    digest.add(std::int64_t{(a < b) + 2 * (a <= b) + 4 * (a == b)});
    WeekTimeC const raw{a.getWeek(), a.getMsOfWeek()};
    digest.add(shifted(raw, static_cast<std::int32_t>(ms)));
    digest.add(std::int64_t{isBefore(raw, {b.getWeek(), b.getMsOfWeek()})});
    digest.add(static_cast<std::int64_t>(magnitudeOf(ms)));
  }
  for (std::int64_t days = -70000; days < 600000; ++days) {
    for (double const part : {0.0, 1e-9, 0.5, 0.99999999, 1.0 / 86400000, 5.7e-9}) {
      digest.add(weekTimeOf(static_cast<double>(days) + part));
    }
  }
  for (double const d : {1e9, -1e9, 1e9 + 44244, 44244 - 1e9, 9.3e18, -9.3e18, 1e300, -1e300}) {
    for (double const near : {d, std::nextafter(d, 0.0), std::nextafter(d, 2 * d)}) {
      digest.add(wholeWeeks(near));
      digest.add(weekTimeOf(near));
      digest.add(truncToInt64(near));
      digest.add(floorToInt64(near));
    }
  }
  double const limit = std::ldexp(1.0, 63);
  for (double const d : {limit, -limit, 0.0, -0.0, -limit * 2, std::nan("")}) {
    digest.add(truncToInt64(d));
    digest.add(truncToInt64(std::nextafter(d, 0.0)));
    digest.add(truncToInt64(std::nextafter(d, 3 * limit)));
    digest.add(truncToInt64(std::nextafter(d, -3 * limit)));
  }
}

void probeLeapConversion(DigestC& digest) {
  LogCaptureC log;
  for (int const current : {-1, 1, 17, 18}) {
    for (int const step : {-1, 0, 1}) {
      UtcLeapSecondProvider provider;
      provider.setSiteLeapSecond(static_cast<std::int16_t>(current),
                                 static_cast<std::int16_t>(current + step), 57754);
      for (std::int64_t ms = -45000; ms <= 45000; ++ms) {
        GpsC there(&provider);
        there += GPSTimeC(1930, 0) + ms;
        GpsC back = there;
        there.gpsToUtc();
        back.utcToGps();
        digest.add(there);
        digest.add(back);
      }
    }
  }
}

void probeCalendar(DigestC& digest) {
  for (std::uint32_t day = 0; day <= LAST_CALENDAR_DAY; ++day) {
    CalendarFieldsC fields{};
    splitDate(day, fields);
    digest.add(fields);
  }
  for (std::uint32_t const precision : {0U, 1U}) {
    for (double const edge : {0.0, 1.0, 44244.0, LAST_CALENDAR_DAY + 0.0, LAST_CALENDAR_DAY + 1.0,
                              LAST_CALENDAR_DAY + 2.0, LAST_CALENDAR_DAY + 3.0}) {
      for (std::int64_t ms = -200; ms <= 200; ++ms) {
        try {
          digest.add(splitDayNumber(edge + static_cast<double>(ms) / 172800000.0, precision));
        } catch (std::exception const& error) {
          digest.add(std::string(error.what()));
        }
      }
    }
    for (std::uint32_t ms = 0; ms < 1000000; ++ms) {
      digest.add(splitWeekTime({2304, ms + MS_PER_DAY * 6}, precision));
    }
    for (int i = 0; i < 300000; ++i) {
      digest.add(splitWeekTime({static_cast<std::uint16_t>(randomBits()),
                                static_cast<std::uint32_t>(below(MS_PER_WEEK))},
                               precision));
    }
  }
  for (int year = 0; year <= 65535;
       year += year < 2110 || (year > 9990 && year < 10010) ? 1 : 997) {
    for (int month = 0; month <= 255; ++month) {
      for (int const day : {0, 1, 5, 6, 28, 29, 31, 255}) {
        JoinedFieldsC fields{static_cast<std::uint16_t>(year),
                             static_cast<std::uint8_t>(month),
                             static_cast<std::uint8_t>(day),
                             static_cast<std::uint8_t>(below(256)),
                             static_cast<std::uint8_t>(below(256)),
                             static_cast<std::uint8_t>(below(256)),
                             static_cast<std::int64_t>(below(119999)) - 59999};
        digest.add(std::int64_t{joinDate(fields)});
        digest.add(joinWeekTime(fields));
      }
    }
  }
}

void probeText(DigestC& digest) {
  std::string const alphabet = "0123456789012345678901234567890123456789-:T.Z +x\n";
  std::vector<std::string> const numbers = {
      "0",          "255",        "256",         "65535",       "65536",      "2147483647",
      "2147483648", "4294967295", "4294967296",  "4294967297",  "8589934592", "-1",
      "-65535",     "-65536",     "-2147483648", "-2147483649", "-4294967296"};
  for (int i = 0; i < 300000; ++i) {
    std::string text;
    bool const isFree = below(4) == 0;
    for (int field = 0; field < (isFree ? 25 : 7); ++field) {
      text += isFree          ? std::string(1, alphabet[below(alphabet.size())])
              : below(3) == 0 ? numbers[below(numbers.size())]
                              : std::to_string(below(100));
      text += isFree ? "" : std::string(1, "-:T.Z "[below(6)]);
    }
    std::istringstream stream(text);
    YmdhmsC time = YmdhmsC::zero(TIMEBASE_GPS, 1);
    stream >> time;
    digest.add(time);
    digest.add(static_cast<std::int64_t>(stream.rdstate()));
  }
}

void probeLeapSeconds(DigestC& digest) {
  FakePresentC const present(FakePresentC::THURSDAY_MS + 123);
  LogCaptureC log;
  GPSTimeC const now(2304, 374963123);
  std::vector<UtcLeapSecondRecord> records;
  for (std::uint32_t const source : {0U, 1U, 3U, 5U}) {
    for (int const week : {2303, 2304, 2305, 2400}) {
      for (int const day : {1, 2, 7}) {
        for (int const count : {17, 18, 19}) {
          records.push_back({static_cast<LeapSecondSource>(source), 18,
                             static_cast<std::int16_t>(count), static_cast<std::uint16_t>(week),
                             static_cast<std::uint8_t>(day), count != 17 || day != 2});
        }
      }
    }
  }
  for (auto const& held : records) {
    for (auto const& incoming : records) {
      LeapSecondAssertionsT assertions;
      LeapSecondVerdictE const verdict = compareLeapSecond(
          held, incoming, [&now] { return now; }, assertions);
      digest.add(static_cast<std::int64_t>(verdict));
      digest.add(static_cast<std::int64_t>(assertions.size()));
    }
  }
  for (std::string const number :
       {"32767", "32768", "65535", "65536", "255", "256", "999999", "1000000", "1000001", "1000002",
        "99999999999", "0000000000018", "2147483648", "-1"}) {
    for (std::string const& line :
         {number + ",18,1929,7", "18," + number + ",1929,7", "18,18," + number + ",7",
          "18,18,1929," + number, "18,18," + number + ",1,1"}) {
      UtcLeapSecondRecord record = defaultLeapSecondRecord();
      std::istringstream stream(line);
      digest.add(std::int64_t{readLeapSecondStream(stream, record)});
      digest.add(record);
    }
  }
  for (int i = 0; i < 3000; ++i) {
    UtcLeapSecondProvider provider;
    UtcLeapSecondRecord record{};
    GpsC effectivity;
    if (below(2) == 0) {
      provider.setSiteLeapSecond(17, 18, static_cast<std::int32_t>(below(70000)));
    }
    provider.getLeapSecond(GpsC(anyTime()), record, &effectivity);
    digest.add(record);
    digest.add(effectivity);
    auto const count = static_cast<std::int16_t>(below(200));
    auto const source = static_cast<LeapSecondSource>(below(4));
    digest.add(std::int64_t{setUtcLeapSecond(count, count, anyTime(), source)});
    digest.add(std::int64_t{setUtcLeapSecond(records[below(records.size())], below(2) == 0)});
    getCurrentUtcLeapSecond(record);
    digest.add(record);
    digest.add(GpsC::currentTime());
  }
  setUtcLeapSecond(withdrawForcedRecord(), false);
  resetSatelliteLeapSecond();
  for (auto const& entry : log.entries()) {
    digest.add(entry.channel == "Time" ? std::string() : entry.text);
  }
}

void probeFilter(DigestC& digest) {
  for (int i = 0; i < 200000; ++i) {
    ScalarKalmanC filter;
    double correction = 0.0;
    filter.init(60376.0, std::ldexp(1.0, -static_cast<int>(below(40))), std::ldexp(1.0, -20));
    for (int step = 0; step < 3; ++step) {
      filter.predict(0.25, below(2) == 0 ? 0.0 : std::ldexp(1.0, -20));
      filter.update(60376.5, 1.0, std::ldexp(1.0, -static_cast<int>(below(40))), correction);
      digest.add(filter.value());
      digest.add(filter.stdDev());
      digest.add(correction);
    }
  }
  LogCaptureC log;
  for (ClockReferenceE const reference : {CLOCKREF_UTC, CLOCKREF_LOCAL}) {
    auto const calendar =
        boost::make_shared<FakeClockC>(FakePresentC::THURSDAY_MS, CLOCKTYPE_POSIX, reference);
    FakePresentC const present;
    setSysTimeClocks(calendar, present.steady);
    boost::signals2::scoped_connection const corrected =
        connectTimeCorrected([&digest](int week, int ms, TimeChangeT change) {
          digest.add(std::int64_t{week} * WEEK_MS + ms);
          digest.add(std::int64_t{change.count()});
        });
    boost::signals2::scoped_connection const signalled = connectTimeSignal(
        [&digest](int week, int ms) { digest.add(std::int64_t{week} * WEEK_MS + ms); });
    for (int i = 0; i < 5000; ++i) {
      present.steady->advanceMs(static_cast<std::int64_t>(below(3000)));
      GpsC time = GpsC::currentTime();
      digest.add(time);
      time += static_cast<std::int64_t>(below(2) == 0 ? below(40) : below(5000));
      time.emitTimeSignal();
      time.makeToCurrentTime(static_cast<std::int64_t>(below(50)), below(4) == 0 ? 0 : 1);
    }
    digest.add(GpsC::currentTime());
  }
}

void probeLock(DigestC& digest) {
  LogCaptureC log;
  ReaderWriterSpinLock lock;
  int reads = 0;
  int writes = 0;
  for (int i = 0; i < 200000; ++i) {
    std::uint64_t const choice = below(4);
    if (choice == 0) {
      bool const isTaken = lock.tryLockRead();
      reads += isTaken ? 1 : 0;
      digest.add(std::int64_t{isTaken});
    } else if (choice == 1) {
      bool const isTaken = lock.tryLockWrite();
      writes += isTaken ? 1 : 0;
      digest.add(std::int64_t{isTaken});
    } else if (choice == 2 && reads > 0) {
      lock.unlockRead();
      --reads;
    } else if (choice == 3 && writes > 0) {
      lock.unlockWrite();
      --writes;
    }
    digest.add(std::int64_t{lock.isWriteLocked()});
  }
}

int run(std::string const& area) {
  DigestC digest;
  if (area == "weektime") {
    probeWeekTimes(digest);
  } else if (area == "conversion") {
    probeLeapConversion(digest);
  } else if (area == "calendar") {
    probeCalendar(digest);
  } else if (area == "text") {
    probeText(digest);
  } else if (area == "leapseconds") {
    probeLeapSeconds(digest);
  } else if (area == "filter") {
    probeFilter(digest);
  } else if (area == "lock") {
    probeLock(digest);
  } else {
    std::fprintf(stderr, "mutation_probe: no area \"%s\"\n", area.c_str());
    return 2;
  }
  std::printf("%s %016llx\n", area.c_str(), static_cast<unsigned long long>(digest.value()));
  return 0;
}

}  // namespace
}  // namespace KTX::TIM::TEST

int main(int argc, char** argv) {
  return KTX::TIM::TEST::run(argc == 2 ? argv[1] : "");
}
