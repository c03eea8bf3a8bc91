#pragma once

#include <libintl.h>

/// The texts for people. A text in quotation marks inside `tr`, or inside `session::translatable`
/// in a table, is a message to translate. The translations are in wifi/po/.
namespace wifi {

/// The name of the translations' files.
inline constexpr const char* TextDomain = "zvkwifi";

/// Returns the translation of `text` in the user's language, or `text` itself if there is none.
[[gnu::format_arg(1)]] inline const char* tr(const char* text) {
  return ::dgettext(TextDomain, text);
}

}  // namespace wifi
