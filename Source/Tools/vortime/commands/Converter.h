#ifndef KTX_VORTIME_CONVERTER_H
#define KTX_VORTIME_CONVERTER_H

#include <cstdint>
#include <string>
#include <string_view>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "commands/ConvertCommand.h"
#include "output/JsonLine.h"
#include "output/OutputFile.h"

namespace KTX::VORTIME {

/// Converts values and writes a result for each: the time as the options ask for, or that the value
/// is refused. Says on standard error why a value is refused.
class ConverterC {
 public:
  /// How many bytes of a refused value are shown.
  static constexpr std::size_t MAX_SHOWN = 80;

  /// Both must outlive the converter.
  ConverterC(ConvertCommandOptionsC const& convertOptions, OutputFileC& output)
      : options(convertOptions), out(output) {}

  void convert(std::string_view value);
  /// Refuses a value without a look at it.
  void refuse(std::string_view value, std::string const& reason);

  bool hasRefused() const { return refusals != 0; }
  /// How many values are of a date with another leap second count than the library's.
  std::uint64_t historicCount() const { return historic; }

 private:
  void noteHistory(TIM::GpsTimeC const& time);
  bool appendResult(std::string_view value, TIM::GpsTimeC const& time, std::string& reason);
  bool appendOverview(TIM::GpsTimeC const& time, std::string& reason);
  bool appendJson(std::string_view value, TIM::GpsTimeC const& time, std::string& reason);

  ConvertCommandOptionsC const& options;
  OutputFileC& out;
  std::uint64_t refusals = 0;
  std::uint64_t historic = 0;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_CONVERTER_H
