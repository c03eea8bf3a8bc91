// Writes and quotes the rows of the completions' tables.

#include "tools/shell_rows.h"

#include "catalogue/option_parser.h"

namespace tools {

namespace {

/// Returns the text in single quotes. Inside single quotes, only a single quote has a special
/// meaning.
std::string quoted(std::string_view text) {
  std::string result = "'";
  for (const char character : text) {
    result.append(character == '\'' ? "'\\''" : std::string(1, character));
  }
  return result + "'";
}

}  // namespace

std::string shellRows(std::span<const std::string> rows) {
  std::string text;
  for (const std::string& row : rows) {
    text.append(text.empty() ? "" : " \\\n    ").append(quoted(row));
  }
  return text;
}

std::string valueRow(std::string_view option, std::string_view command, std::string_view kind,
                     std::span<const std::string_view> words) {
  std::string row(option);
  row.append(" ").append(command.empty() ? "any" : command).append(" ").append(kind);
  return row.append(words.empty() ? "" : " ").append(catalogue::joined(words, " ", " "));
}

}  // namespace tools
