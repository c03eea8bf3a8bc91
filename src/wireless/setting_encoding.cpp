// Encoding of a setting by its row, and the setting objects that wnpaGenerator appends.

#include "wireless/setting_encoding.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "wireless/wnpa_generator.h"

npa::Byte codeOf(std::string_view text, std::span<const TextCode> codes) {
  const auto row = std::ranges::find(codes, text, &TextCode::text);
  return row == codes.end() ? npa::Byte{0} : row->code;
}

std::vector<npa::Byte> encodedValue(const SettingEncoding& encoding, const std::string& text) {
  using Value = SettingEncoding::Value;
  if (encoding.value == Value::Code) {
    return {0, 0, 0, codeOf(text, encoding.codes)};
  }
  const std::size_t terminator = encoding.value == Value::TerminatedText ? 1 : 0;
  const std::string_view cut = std::string_view(text).substr(0, encoding.limit - terminator);
  std::vector<npa::Byte> value(cut.begin(), cut.end());
  value.resize(encoding.value == Value::PaddedText ? encoding.limit : value.size() + terminator);
  return value;
}

void logSetting(const SettingEncoding& encoding, const std::string& text) {
  const char* const quote = encoding.quote;
  if (encoding.logsLength) {
    util::debugLine("%s = %s%s%s (%zu bytes)", encoding.label, quote, text.c_str(), quote,
                    text.size());
  } else {
    util::debugLine("%s = %s%s%s", encoding.label, quote, text.c_str(), quote);
  }
}

int wnpaGenerator::encode(const SettingEncoding& encoding) {
  const std::string& text = m_Configuration->value(encoding.source);
  logSetting(encoding, text);
  if (text.empty()) {
    return encoding.whenEmpty == SettingEncoding::WhenEmpty::Nothing
               ? 0
               : appendObject(encoding.key, {});
  }
  std::vector<npa::Byte> value = encodedValue(encoding, text);
  const bool lowByteOnly = encoding.lengthField == SettingEncoding::LengthField::LowByteOnly;
  return appendObject(encoding.key, value, lowByteOnly ? npa::lowByte(value.size()) : value.size());
}

int wnpaGenerator::appendObject(npa::SettingKey key, std::span<npa::Byte> value) {
  return appendObject(key, value, value.size());
}

int wnpaGenerator::appendObject(npa::SettingKey key, std::span<npa::Byte> value,
                                std::size_t lengthField) {
  std::array<unsigned char, npa::ObjectHeaderSize> header{};
  constructHeader(header.data(), static_cast<unsigned int>(lengthField),
                  static_cast<char>(key.object), static_cast<char>(key.group));
  appendDataToNPA(static_cast<int>(header.size()), header.data());
  appendDataToNPA(static_cast<int>(value.size()), value.data());
  return static_cast<int>(header.size() + value.size());
}

int wnpaGenerator::appendCode(npa::SettingKey key, npa::Byte code) {
  std::array<npa::Byte, 4> value = {0, 0, 0, code};
  return appendObject(key, value);
}

int wnpaGenerator::appendFlag(npa::SettingKey key, bool flag) {
  std::array<npa::Byte, 1> value = {static_cast<npa::Byte>(flag ? 1 : 0)};
  return appendObject(key, value);
}
