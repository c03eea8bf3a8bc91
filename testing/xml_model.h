#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// A simple model of the XML parser and of the path queries: it reads one character after the other
/// and copies every text. Tests and fuzz targets compare the real code with the model.
namespace xml_model {

/// One callback of the parser.
struct Event {
  enum class Kind { Start, Open, Close, Text, End };

  Kind kind;
  std::string text;                               ///< the name of the element, or the text
  std::map<std::string, std::string> attributes;  ///< only for `Open`
  std::size_t length = 0;                         ///< only for `Text`: the length in the document
};

/// Receives the events. Returns true to end the parse.
using OnEvent = std::function<bool(const Event&)>;

/// Parses a document. Returns the parser's result, and appends its error lines to `output`.
int parse(const std::string& document, const OnEvent& onEvent, std::string& output);

/// Returns an event as a line of text, such as `<name a="1"`, `>name` or `"text" 4`.
std::string lineOf(const Event& event);

/// Returns the result of a path query, and appends the parser's error lines to `output`.
std::string query(const std::string& document, const std::string& path, std::string& output);

/// Returns the results of the queries for `path` + "[1]", "[2]" and so on, up to the first empty
/// result. The last step of `path` must not have a filter.
std::vector<std::string> queryList(const std::string& document, const std::string& path,
                                   std::string& output);

}  // namespace xml_model
