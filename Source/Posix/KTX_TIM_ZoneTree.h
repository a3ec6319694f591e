#ifndef KTX_TIM_ZONETREE_H
#define KTX_TIM_ZONETREE_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "Posix/KTX_TIM_MachineZone.h"
#include "Posix/KTX_TIM_ZoneSources.h"
#include "Posix/KTX_TIM_ZoneTable.h"
#include "support/KTX_TIM_SystemCalls.h"
#include "support/KTX_TIM_TimeZoneInformation.h"

namespace KTX::TIM {

/// The registry's part with the time zones, made from the machine's tz database, with the calls
/// and codes of SystemCallsI. Nothing is read before the first call; the table is made anew when
/// a new year has begun or the database's folder changes. Thread-safe.
class ZoneTreeC {
 public:
  using SourcesProviderT = std::function<ZoneSourcesC()>;

  /// The machine's own zones.
  ZoneTreeC();
  /// Zones from elsewhere, at any time.
  explicit ZoneTreeC(SourcesProviderT sourcesProvider);

  std::uint32_t getTimeZoneInformation(TimeZoneInformationC& information);
  std::int32_t openKey(KeyHandleT parent, std::u16string const& path, KeyHandleT& key);
  std::int32_t enumerateKey(KeyHandleT key,
                            std::uint32_t index,
                            char16_t* name,
                            std::uint32_t& nameLength);
  std::int32_t queryValue(KeyHandleT key,
                          std::u16string const& name,
                          void* data,
                          std::uint32_t& sizeBytes);
  /// Keeps the tree usable in the child of a fork(). For one tree of the process.
  void keepUsableAfterFork();
  /// Keys hold nothing that would have to be given back.
  void closeKey(KeyHandleT /*key*/) {}

 private:
  using TableT = std::shared_ptr<ZoneTableC const>;

  // The table in use, made or made anew where that is due.
  TableT presentTable(ZoneSourcesC const& sources) KTX_TIM_REQUIRES(mutex);
  TableT presentTable();
  // The table in use as it is; null when there is none yet.
  TableT lastTable();

  SourcesProviderT const provider;
  Mutex mutex;
  TableT table KTX_TIM_GUARDED_BY(mutex);
  std::string tableFolder KTX_TIM_GUARDED_BY(mutex);
  MachineZoneC machineZone KTX_TIM_GUARDED_BY(mutex);
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_ZONETREE_H
