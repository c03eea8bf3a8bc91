#pragma once

#include <functional>
#include <string>
#include <vector>

#include "xml/simple_sax_handler.h"
#include "xml/simple_sax_parser.h"

/// Records every callback of a parse as a line of text, in order:
///
///     start
///     <name a="1" b="2"      attributes in the order of the list
///     "text" 4               with the length that the callback gets
///     >name
///     end
class RecordingHandler : public SimpleSAXHandler {
 public:
  void start() override { add("start"); }
  void startElement(const char* name, attributes& attrs) override;
  void endElement(const char* name) override { add(std::string(">") + name); }
  void characters(const char* text, unsigned int len) override;
  void end() override { add("end"); }

  /// The event at which the handler stops the parser; empty for none.
  std::string stopAt;

  std::vector<std::string> events;

 private:
  void add(const std::string& event);
};

/// The result of one parse.
struct Parsed {
  int result = 0;
  std::vector<std::string> events;  ///< without "start" and "end"
  std::string output;               ///< what the parser prints on standard output
};

/// Parses `document` and stops at the event `stopAt`. Expects "start" as the first event and "end"
/// as the last.
Parsed parse(const std::string& document, const std::string& stopAt = "");

/// Runs `action` and returns what it wrote to standard output.
std::string outputOf(const std::function<void()>& action);
