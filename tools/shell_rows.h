#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Tables for the completions of bash, zsh and fish. A row is one quoted word: a name, a space and
/// more text. All three shells parse such a word in the same way.
namespace tools {

/// Returns the rows as the elements of a shell array: each quoted and on a separate line, with a
/// backslash at the end of each line except the last.
std::string shellRows(std::span<const std::string> rows);

/// Returns a row about the values of an option: the option, the command to which the row applies
/// ("any" if `command` is empty), the kind (words, list, file or folder) and the words.
std::string valueRow(std::string_view option, std::string_view command, std::string_view kind,
                     std::span<const std::string_view> words);

}  // namespace tools
