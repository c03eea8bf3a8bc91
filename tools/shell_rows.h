#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Tables for the completions of bash, zsh and fish. A row is one quoted word that begins with a
/// name and goes on after a space; all three shells read it alike.
namespace tools {

/// Rows for the list of a shell's array: each quoted, on its own continued line.
std::string shellRows(std::span<const std::string> rows);

/// A row of values: the option, the command they go with ("any" for all), their kind (words, list,
/// file, folder) and the words.
std::string valueRow(std::string_view option, std::string_view command, std::string_view kind,
                     std::span<const std::string_view> words);

}  // namespace tools
