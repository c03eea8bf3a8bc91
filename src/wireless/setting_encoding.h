#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "npa/setting_keys.h"
#include "settings/config_details.h"

/// A text and the number that the adapter has for it.
struct TextCode {
  std::string_view text;
  npa::Byte code;
};

/// Returns the code of a text, compared exactly; 0 for one that is not in the list.
[[nodiscard]] npa::Byte codeOf(std::string_view text, std::span<const TextCode> codes);

/// How the text of one setting becomes a setting object, and the line that logs it. Each is a row
/// of `encodings` (setting_encodings.h).
struct SettingEncoding {
  enum class Value {
    Text,            ///< the text
    TerminatedText,  ///< the text and a zero byte
    PaddedText,      ///< the text and zero bytes up to `limit`
    Code,            ///< a four-byte number, that of the text in `codes`
  };
  enum class WhenEmpty { Nothing, HeaderAlone };
  enum class LengthField { Whole, LowByteOnly };

  static constexpr std::size_t Unlimited = std::numeric_limits<std::size_t>::max();

  npa::SettingKey key;
  const std::string& (*source)(const configDetails&);
  /// The line reads `label = text`, with `quote` on either side of the text.
  const char* label;
  const char* quote = "";
  /// Whether the line ends in the length of the text as configured.
  bool logsLength = false;
  Value value = Value::Text;
  /// The size of the largest value in bytes; a longer text is cut.
  std::size_t limit = Unlimited;
  std::span<const TextCode> codes = {};
  /// What is appended for an empty text.
  WhenEmpty whenEmpty = WhenEmpty::Nothing;
  /// Which bytes of the value's size the object's length field has.
  LengthField lengthField = LengthField::Whole;
};

/// The source of a setting that a getter without arguments returns:
/// `from<&configDetails::getSSID>`.
template <auto Getter>
const std::string& from(const configDetails& configuration) {
  return (configuration.*Getter)();
}

/// Returns the object's value for a text.
[[nodiscard]] std::vector<npa::Byte> encodedValue(const SettingEncoding& encoding,
                                                  const std::string& text);

/// Writes the diagnostic line of a setting.
void logSetting(const SettingEncoding& encoding, const std::string& text);
