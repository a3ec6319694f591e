#ifndef KTX_TIM_CURRENTTIMEPROVIDER_H
#define KTX_TIM_CURRENTTIMEPROVIDER_H

namespace KTX::TIM {

class GPSTimeC;
class MjdTimeC;

/// Gives the present time to callers that want to be independent of where it comes from.
class CurrentTimeProviderI {
 public:
  virtual ~CurrentTimeProviderI() = default;

  /// The present in GPS time.
  virtual GPSTimeC getCurrentGpsTime() = 0;
  /// The present as a Modified Julian Date in TIMEBASE_GPS.
  virtual MjdTimeC getCurrentMjdTime() = 0;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_CURRENTTIMEPROVIDER_H
