// Reads IEEE 1284 device IDs.

#include "session/device_id.h"

#include <algorithm>
#include <array>

#include "session/texts.h"

namespace session {

namespace {

struct KeyRow {
  const char* key;
  std::optional<std::string> DeviceId::*part;
};

constexpr std::array Keys = {
    KeyRow{"mfg", &DeviceId::make},
    KeyRow{"manufacturer", &DeviceId::make},
    KeyRow{"mdl", &DeviceId::model},
    KeyRow{"model", &DeviceId::model},
    KeyRow{"sn", &DeviceId::serial},
    KeyRow{"sern", &DeviceId::serial},
    KeyRow{"serialnumber", &DeviceId::serial},
};

/// Returns true if the text starts with its length in two bytes. A length is below 8192, so its
/// high byte is below 0x20. A text without a length starts with a higher byte.
bool startsWithLength(std::string_view text) {
  return text.size() >= 2 && static_cast<unsigned char>(text.front()) < 0x20U;
}

void readField(std::string_view field, DeviceId& id) {
  const std::size_t colon = field.find(':');
  if (colon == std::string_view::npos) {
    return;
  }
  const auto key = printableText(lowerCase(field.substr(0, colon)));
  const auto row =
      std::ranges::find_if(Keys, [&key](const KeyRow& candidate) { return key == candidate.key; });
  if (row != Keys.end() && !(id.*row->part)) {
    id.*row->part = printableText(field.substr(colon + 1));
  }
}

}  // namespace

DeviceId parseDeviceId(std::string_view text) {
  if (startsWithLength(text)) {
    text.remove_prefix(2);
  }
  DeviceId id;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(';'), text.size());
    readField(text.substr(0, end), id);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return id;
}

}  // namespace session
