#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "npa/setting_keys.h"
#include "settings/option_table.h"

/// A configured text and the adapter's number for it.
struct TextCode {
  std::string_view text;
  npa::Byte code;
};

/// Returns the code of a text, or 0 if the text is not in the list. The spelling must be exact.
[[nodiscard]] npa::Byte codeOf(std::string_view text, std::span<const TextCode> codes);

/// How a setting's text becomes a setting object, and how it is logged. The rows are in `encodings`
/// (setting_encodings.h):
///
///     constexpr SettingEncoding Ssid = {.key = npa::settings::Ssid,
///                                       .source = Setting::Ssid,
///                                       .label = "SSID",
///                                       .value = Value::TerminatedText};
struct SettingEncoding {
  enum class Value {
    Text,            ///< the text
    TerminatedText,  ///< the text and a zero byte
    PaddedText,      ///< the text and zero bytes up to `limit`
    Code,            ///< the number of the text in `codes`, in four bytes
  };
  /// What is appended for an empty text: nothing, or a setting object of size 0.
  enum class WhenEmpty { Nothing, HeaderAlone };
  /// Which bytes of the value's size are written to the object's length field: both, or only the
  /// low byte.
  enum class LengthField { Whole, LowByteOnly };

  static constexpr std::size_t Unlimited = std::numeric_limits<std::size_t>::max();

  /// The setting of the adapter.
  npa::SettingKey key;
  /// The configured setting that has the text.
  Setting source;
  /// The log line is `label = text`, with `quote` on both sides of the text.
  const char* label;
  const char* quote = "";
  /// True if the log line ends with the length of the configured text.
  bool logsLength = false;
  /// The rule that makes the value from the text.
  Value value = Value::Text;
  /// The size of the largest value in bytes, including a zero byte. A longer text is cut.
  std::size_t limit = Unlimited;
  /// The codes of a `Value::Code`. A text that is not in the list has the code 0.
  std::span<const TextCode> codes = {};
  WhenEmpty whenEmpty = WhenEmpty::Nothing;
  LengthField lengthField = LengthField::Whole;
};

/// Returns the bytes of the value for a text, cut to the limit.
[[nodiscard]] std::vector<npa::Byte> encodedValue(const SettingEncoding& encoding,
                                                  const std::string& text);

/// Writes the diagnostic line of a setting, even if its text is empty. If the setting is a secret,
/// the line contains the secret in clear text.
void logSetting(const SettingEncoding& encoding, const std::string& text);
