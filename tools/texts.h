#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

/// Texts made from the programs' tables, for the places {{NAME}} of a template.
namespace tools {

using Texts = std::map<std::string, std::string, std::less<>>;

/// Replaces each {{NAME}} of a template by the text of that name. Throws `std::runtime_error` for a
/// name that has none.
std::string filled(std::string_view text, const Texts& texts);

// Each adds the texts of one program or file: "zvkconfig commands", "zvkprinter options" and so on.
void addConfigTexts(Texts& texts);
void addPrinterTexts(Texts& texts);
void addDecoderTexts(Texts& texts);
void addDissectorTexts(Texts& texts);

}  // namespace tools
