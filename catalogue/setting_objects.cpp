#include "catalogue/setting_objects.h"

#include "npa/packet.h"

namespace catalogue {

std::size_t sizeOfValue(npa::SettingKey key, std::size_t sizeField, std::size_t left) {
  constexpr std::size_t longest = 256;
  const SettingInfo* const info = findSetting(key);
  const bool isLongest =
      sizeField == 0 && left >= longest && info != nullptr && info->sizeIsLowByte;
  return isLongest ? longest : sizeField;
}

bool readSettingObjects(std::span<const npa::Byte> bytes, std::vector<SettingObject>& objects) {
  while (!bytes.empty()) {
    if (bytes.size() < npa::ObjectHeaderSize) {
      return false;
    }
    const npa::SettingKey key = {bytes[0], bytes[1]};
    const std::size_t sizeField = npa::numberAt(bytes, 3);
    bytes = bytes.subspan(npa::ObjectHeaderSize);
    const std::size_t valueSize = sizeOfValue(key, sizeField, bytes.size());
    if (bytes.size() < valueSize) {
      return false;
    }
    objects.push_back({key, bytes.first(valueSize)});
    bytes = bytes.subspan(valueSize);
  }
  return true;
}

}  // namespace catalogue
