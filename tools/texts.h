#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

/// Texts made from the programs' tables. They replace {{NAME}} in the templates of manual pages,
/// completions and other files:
///
///     Texts texts;
///     addConfigTexts(texts);
///     filled("Commands: {{zvkconfig names}}", texts);
namespace tools {

/// The texts by their names.
using Texts = std::map<std::string, std::string, std::less<>>;

/// Returns a template with each {{NAME}} replaced by the text of that name. Throws
/// `std::runtime_error` if there is no text of that name.
std::string filled(std::string_view text, const Texts& texts);

// Each function adds the texts of one program or of the dissector. The name of a text begins with
// the name of its program or with "dissector", such as "zvkconfig commands".
void addConfigTexts(Texts& texts);
void addPrinterTexts(Texts& texts);
void addDecoderTexts(Texts& texts);
void addWifiTexts(Texts& texts);
void addDissectorTexts(Texts& texts);

}  // namespace tools
