// The tables of the Wireshark dissector, in Lua: the names of the groups, and the settings.

#include <map>
#include <string>
#include <string_view>

#include "catalogue/hex_text.h"
#include "catalogue/setting_catalogue.h"
#include "tools/texts.h"

namespace tools {

namespace {

std::string hexNumber(npa::Byte byte) {
  return "0x" + catalogue::hexText(std::array{byte});
}

/// Returns a row of the table of settings: group, object, kind, name, and the meanings of the
/// numbers.
std::string row(const catalogue::SettingInfo& info) {
  std::string text = "  { " + hexNumber(info.key.group) + ", " + hexNumber(info.key.object) + ", " +
                     catalogue::quoted(catalogue::kindName(info.kind)) + ", " +
                     catalogue::quoted(info.name);
  if (!info.numberNames.empty()) {
    text.append(", { ");
    for (const std::string_view name : info.numberNames) {
      text.append(catalogue::quoted(name)).append(", ");
    }
    text.append("}");
  }
  return text.append(" },\n");
}

}  // namespace

void addDissectorTexts(Texts& texts) {
  std::map<npa::Byte, std::string> groups;
  std::string settings;
  for (const catalogue::SettingInfo& info : catalogue::settingCatalogue()) {
    groups[info.key.group] = catalogue::groupName(info.key.group);
    settings.append(row(info));
  }
  std::string names;
  for (const auto& [group, name] : groups) {
    names.append("  [" + hexNumber(group) + "] = " + catalogue::quoted(name) + ",\n");
  }
  texts["dissector groups"] = "{\n" + names + "}";
  texts["dissector settings"] = "{\n" + settings + "}";
}

}  // namespace tools
