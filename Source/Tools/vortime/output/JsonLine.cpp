#include "output/JsonLine.h"

#include "output/TextFormat.h"

namespace KTX::VORTIME {

void JsonLineC::addName(std::string_view name) {
  members += members.empty() ? "\"" : ",\"";
  members += name;
  members += "\":";
}

JsonLineC& JsonLineC::text(std::string_view name, std::string_view value) {
  addName(name);
  appendQuoted(members, value);
  return *this;
}

JsonLineC& JsonLineC::number(std::string_view name, std::int64_t value) {
  addName(name);
  appendSigned(members, value);
  return *this;
}

JsonLineC& JsonLineC::decimal(std::string_view name, double value) {
  addName(name);
  appendShortest(members, value);
  return *this;
}

JsonLineC& JsonLineC::literal(std::string_view name, std::string_view value) {
  addName(name);
  members += value;
  return *this;
}

JsonLineC& JsonLineC::flag(std::string_view name, bool value) {
  addName(name);
  members += value ? "true" : "false";
  return *this;
}

JsonLineC& JsonLineC::object(std::string_view name, JsonLineC const& value) {
  addName(name);
  members += value.str();
  return *this;
}

}  // namespace KTX::VORTIME
