#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Pieces of manual pages, as source of scdoc(1).
namespace tools {

/// A plain text: what would be markup is escaped.
std::string scdocText(std::string_view text);

/// Bold and underlined words.
std::string bold(std::string_view word);

/// A usage such as "--link=PATH [OPTION...]": options bold, names in capitals underlined.
std::string scdocUsage(std::string_view usage);

/// The names in capitals that a usage contains.
std::vector<std::string> valueNames(std::string_view usage);

/// A help text as a sentence. `names`, as whole words, are underlined.
std::string scdocSentence(std::string_view help, std::span<const std::string> names);

/// Words in bold with commas and "or" between them; five or more numbers as "1 to 11".
std::string boldWords(std::span<const std::string_view> words);

/// An entry of a list: a term, and indented below it the description, which may be several
/// sentences.
std::string scdocEntry(std::string_view term, std::string_view description);

}  // namespace tools
