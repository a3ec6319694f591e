#include "commands/ZoneCommand.h"

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"
#include "commands/Results.h"
#include "output/JsonLine.h"
#include "output/TextFormat.h"
#include "system/FileName.h"
#include "system/StandardStreams.h"
#include "system/VisibleText.h"

namespace KTX::VORTIME {
namespace {

constexpr std::size_t NAME_WIDTH = 35;

constexpr char const* EMPTY_NAME = "a zone name must not be empty";

ExitCodeE fail(std::string const& text) {
  printError(text);
  return EXIT_NOTHING_FOUND;
}

std::string ianaOf(std::wstring const& windowsName) {
  std::wstring iana;
  TIM::getIanaZoneName(windowsName, iana);
  return narrowText(iana);
}

// False for a name that is no zone of the system.
bool readZone(std::wstring const& name, std::wstring& display, std::int32_t& bias) {
  TIM::TimeZoneC& zones = TIM::getTimeZoneInstance();
  // A backslash would lead to a key inside that of a zone.
  return !name.empty() && name.find(L'\\') == std::wstring::npos &&
         zones.getTimeZoneDisplayName(name, display) == TIM::RC_OK &&
         zones.getTimeZoneBias(name, bias) == TIM::RC_OK;
}

// The key name for a Windows or IANA name; the library's own search would fall back on the bias.
bool findZone(std::wstring const& name, std::wstring& keyName) {
  std::wstring display;
  std::int32_t bias = 0;
  if (readZone(name, display, bias)) {
    keyName = name;
    return true;
  }
  return TIM::getWindowsZoneName(name, keyName) == TIM::RC_OK && readZone(keyName, display, bias);
}

}  // namespace

ExitCodeE runZoneList(bool isJson, int resultDescriptor) {
  TIM::TimeZoneC::ZoneNamesT zones;
  if (TIM::getTimeZoneInstance().getTimeZoneList(zones) != TIM::RC_OK) {
    return fail("the zones of the system cannot be listed");
  }
  std::string text;
  for (auto const& [name, display] : zones) {
    if (isJson) {
      text += JsonLineC()
                  .text("name", narrowText(name))
                  .text("display", narrowText(display))
                  .text("iana", ianaOf(name))
                  .str();
    } else {
      appendLeft(text, visible(narrowText(name)), NAME_WIDTH);
      appendVisible(text, narrowText(display));
    }
    text += '\n';
  }
  return writeResults(text, resultDescriptor);
}

ExitCodeE runZoneCurrent(bool isJson, int resultDescriptor) {
  TIM::TimeZoneC& zones = TIM::getTimeZoneInstance();
  std::wstring name;
  if (zones.getTimeZone(name) != TIM::RC_OK) {
    return fail("the zone of the system is not known");
  }
  std::string const offsetText = narrowText(zones.getTimeZoneOffsetText());
  std::int16_t const offset = zones.getUtcOffset(TIM::GpsC::currentTime());
  std::string const text = isJson ? JsonLineC()
                                            .text("name", narrowText(name))
                                            .text("iana", ianaOf(name))
                                            .text("offset_text", offsetText)
                                            .number("utc_offset_minutes", offset)
                                            .str() +
                                        '\n'
                                  : "name         " + visible(narrowText(name)) +
                                        "\nIANA         " + visible(ianaOf(name)) +
                                        "\noffset text  " + visible(offsetText) +
                                        "\nUTC offset   " + std::to_string(offset) + " min\n";
  return writeResults(text, resultDescriptor);
}

ExitCodeE runZoneShow(std::string const& name, bool isJson, int resultDescriptor) {
  if (name.empty()) {
    return fail(EMPTY_NAME);
  }
  std::wstring const wide = wideFileName(name);
  std::wstring display;
  std::int32_t bias = 0;
  if (!readZone(wide, display, bias)) {
    return fail("no zone of the system has the key name " + name);
  }
  std::string const text = isJson ? JsonLineC()
                                            .text("name", name)
                                            .text("display", narrowText(display))
                                            .text("iana", ianaOf(wide))
                                            .number("bias_minutes", bias)
                                            .str() +
                                        '\n'
                                  : "name         " + visible(name) + "\ndisplay      " +
                                        visible(narrowText(display)) + "\nIANA         " +
                                        visible(ianaOf(wide)) + "\nbias         " +
                                        std::to_string(bias) + " min\n";
  return writeResults(text, resultDescriptor);
}

ExitCodeE runZoneMap(std::string const& name, bool isJson, int resultDescriptor) {
  if (name.empty()) {
    return fail(EMPTY_NAME);
  }
  std::wstring const wide = wideFileName(name);
  std::wstring mapped;
  bool const isIana = TIM::getWindowsZoneName(wide, mapped) == TIM::RC_OK;
  if (!isIana && TIM::getIanaZoneName(wide, mapped) != TIM::RC_OK) {
    return fail("neither a Windows nor an IANA zone name of the table: " + name);
  }
  std::string const windows = isIana ? narrowText(mapped) : name;
  std::string const iana = isIana ? name : narrowText(mapped);
  std::string const text =
      isJson ? JsonLineC().text("windows", windows).text("iana", iana).str() + '\n'
             : visible(narrowText(mapped)) + '\n';
  return writeResults(text, resultDescriptor);
}

ExitCodeE runZoneResolve(std::string const& name,
                         std::optional<std::int32_t> bias,
                         bool isJson,
                         int resultDescriptor) {
  if (name.empty()) {
    return fail(EMPTY_NAME);
  }
  std::wstring resolved;
  bool const isByName = findZone(wideFileName(name), resolved);
  if (!isByName && !bias) {
    return fail("no zone has the name " + name);
  }
  if (!isByName && TIM::getTimeZoneInstance().findTimeZoneByBias(*bias, resolved) != TIM::RC_OK) {
    return fail("no zone has the name " + name + " or the bias " + std::to_string(*bias) + " min");
  }
  std::string text;
  if (isJson) {
    text = JsonLineC()
               .text("name", name)
               .text("resolved", narrowText(resolved))
               .text("by", isByName ? "name" : "bias")
               .str();
  } else {
    text = visible(narrowText(resolved));
    text += isByName ? ""
                     : " (by the bias " + std::to_string(*bias) + " min; the name " +
                           visible(name) + " is unknown)";
  }
  return writeResults(text + '\n', resultDescriptor);
}

}  // namespace KTX::VORTIME
