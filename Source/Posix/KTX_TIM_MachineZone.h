#ifndef KTX_TIM_MACHINEZONE_H
#define KTX_TIM_MACHINEZONE_H

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Posix/KTX_TIM_FileStamp.h"
#include "Posix/KTX_TIM_ZoneData.h"
#include "Posix/KTX_TIM_ZoneSources.h"
#include "Posix/KTX_TIM_ZoneTable.h"
#include "support/KTX_TIM_TimeZoneInformation.h"

namespace KTX::TIM {

/// The zone that the machine itself keeps, as GetTimeZoneInformation tells it. Not thread-safe.
class MachineZoneC {
 public:
  using TableProviderT = std::function<std::shared_ptr<ZoneTableC const>()>;

  static constexpr std::uint32_t ZONE_ID_INVALID = 0xFFFFFFFF;

  /// GetTimeZoneInformation at sources.utc. A zone that cannot be read gives ZONE_ID_INVALID and
  /// an empty record. A change of the environment is seen at once, one of the machine's zone file
  /// in the next second.
  std::uint32_t getInformation(ZoneSourcesC const& sources,
                               TableProviderT const& table,
                               TimeZoneInformationC& information);

 private:
  bool isUpToDate(ZoneSourcesC const& sources);
  void load(ZoneSourcesC const& sources);
  void loadMachineFile(ZoneSourcesC const& sources);
  void loadEnvironmentZone(ZoneSourcesC const& sources);
  bool loadFile(std::string const& path);
  void setUtc();

  void compose(std::int64_t utc, TableProviderT const& table);
  void composeRecord(std::int64_t utc);
  void composeNames(std::int64_t utc, ZoneTableC const& table);
  ZoneTableC::EntryC const* entryIn(ZoneTableC const& table) const;

  // What was loaded, and from where.
  bool isLoaded = false;
  std::optional<std::string> loadedEnvironmentZone;
  std::string loadedFolder;
  FileStampC machineFileStamp;
  std::int64_t checkedAtUtc = 0;

  bool isUsable = false;
  ZoneDataC zone;
  // Empty where the zone has none that is known.
  std::string ianaName;
  // None where the zone comes from no file.
  std::optional<std::size_t> fingerprint;

  // The answer, which holds from one moment to another.
  std::int64_t validFromUtc = 0;
  std::int64_t validUntilUtc = 0;
  std::uint32_t zoneId = ZONE_ID_INVALID;
  TimeZoneInformationC answer{};
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_MACHINEZONE_H
