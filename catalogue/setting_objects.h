#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "catalogue/setting_catalogue.h"

namespace catalogue {

/// One setting object, `group object 00 size(2) value`, inside bytes that somebody else keeps.
struct SettingObject {
  npa::SettingKey key;
  std::span<const npa::Byte> value;
};

/// The size of a setting's value before `left` bytes. Where the length field holds but the low byte
/// of it, 0 stands for 256: hosts leave such a setting out when it is empty.
std::size_t sizeOfValue(npa::SettingKey key, std::size_t sizeField, std::size_t left);

/// Appends the objects that `bytes` consists of to `objects`. Returns whether they fill the bytes
/// exactly; if not, those in front of the one that does not fit are appended.
bool readSettingObjects(std::span<const npa::Byte> bytes, std::vector<SettingObject>& objects);

}  // namespace catalogue
