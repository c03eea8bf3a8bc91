#pragma once

#include <functional>
#include <string>
#include <vector>

#include "xml/simple_sax_handler.h"
#include "xml/simple_sax_parser.h"

/// Keeps every callback of a parse as a line of text, in order:
///
///     start
///     <name a="1" b="2"      attributes in the order of the list
///     "text" 4               with the count that came along
///     >name
///     end
class RecordingHandler : public SimpleSAXHandler {
 public:
  void start() override { add("start"); }
  void startElement(const char* name, attributes& attrs) override;
  void endElement(const char* name) override { add(std::string(">") + name); }
  void characters(const char* text, unsigned int len) override;
  void end() override { add("end"); }

  /// Asks the parser to stop when this event comes.
  std::string stopAt;

  std::vector<std::string> events;

 private:
  void add(const std::string& event);
};

/// What came of one parse.
struct Parsed {
  int result = 0;
  std::vector<std::string> events;  ///< without "start" and "end", which are checked to be there
  std::string output;               ///< on standard output
};

/// Parses `document`, asking to stop when the event `stopAt` comes.
Parsed parse(const std::string& document, const std::string& stopAt = "");

/// Runs `action` and returns what it wrote to standard output.
std::string outputOf(const std::function<void()>& action);
