#include "xml/recording_handler.h"

#include <array>
#include <gtest/gtest.h>

#include "xml/attributes.h"

void RecordingHandler::add(const std::string& event) {
  events.push_back(event);
  if (event == stopAt) {
    m_Stop = true;
  }
}

void RecordingHandler::startElement(const char* name, attributes& attrs) {
  std::string event = std::string("<") + name;
  std::array<char, 256> text{};
  for (unsigned int i = 0; attrs.getAttrName(i, text.data(), 256) > 0; ++i) {
    event += std::string(" ") + text.data() + "=\"" + attrs.getAttribute(text.data()) + "\"";
  }
  add(event);
}

void RecordingHandler::characters(const char* text, unsigned int len) {
  add(std::string("\"") + text + "\" " + std::to_string(len));
}

std::string outputOf(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

Parsed parse(const std::string& document, const std::string& stopAt) {
  RecordingHandler handler;
  handler.stopAt = stopAt;
  Parsed parsed;
  parsed.output =
      outputOf([&] { parsed.result = SimpleSAXParser(handler).parseXMLString(document); });
  parsed.events = handler.events;
  if (parsed.events.size() < 2 || parsed.events.front() != "start" ||
      parsed.events.back() != "end") {
    ADD_FAILURE() << "the first event must be start and the last event end";
    return parsed;
  }
  parsed.events.pop_back();
  parsed.events.erase(parsed.events.begin());
  return parsed;
}
