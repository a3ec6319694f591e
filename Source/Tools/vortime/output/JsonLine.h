#ifndef KTX_VORTIME_JSONLINE_H
#define KTX_VORTIME_JSONLINE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace KTX::VORTIME {

/// Composes one JSON object. Names need no escapes.
class JsonLineC {
 public:
  JsonLineC& text(std::string_view name, std::string_view value);
  JsonLineC& number(std::string_view name, std::int64_t value);
  JsonLineC& decimal(std::string_view name, double value);
  /// value must be the text of a JSON value, as a number or null.
  JsonLineC& literal(std::string_view name, std::string_view value);
  JsonLineC& flag(std::string_view name, bool value);
  JsonLineC& object(std::string_view name, JsonLineC const& value);

  /// The object, without a line end.
  std::string str() const { return "{" + members + "}"; }

 private:
  void addName(std::string_view name);

  std::string members;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_JSONLINE_H
