#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Parts of manual pages in the markup of scdoc(5): *bold*, _underlined_.
namespace tools {

/// Returns a plain text with the characters of the markup escaped.
std::string scdocText(std::string_view text);

/// Returns a word in bold.
std::string bold(std::string_view word);

/// Returns a usage with its options in bold. Names in capitals, such as PATH, are underlined:
///
///     scdocUsage("--link=PATH [OPTION...]");  // *--link=*_PATH_ [_OPTION_...]
std::string scdocUsage(std::string_view usage);

/// Returns the names in capitals in a usage.
std::vector<std::string> valueNames(std::string_view usage);

/// Returns a help text as a sentence. Words that are in `names` are underlined.
std::string scdocSentence(std::string_view help, std::span<const std::string> names);

/// Returns the words in bold, as "*a*, *b* or *c*". If the words are five or more numbers, returns
/// only the first and the last, as "*1* to *11*".
std::string boldWords(std::span<const std::string_view> words);

/// Returns an entry of a list: a term, and below it the indented description.
std::string scdocEntry(std::string_view term, std::string_view description);

}  // namespace tools
