// The input is an XML document. The parser must return the same result and make the same callbacks
// and error lines as the model, even if the handler stops it. The callbacks must keep the
// guarantees that `CheckingHandler` checks. Replacing entities must not make a text longer.

#include <array>
#include <string>
#include <vector>

#include "fuzz_target.h"
#include "outputs.h"
#include "testing/checking_handler.h"
#include "testing/xml_model.h"
#include "xml/attributes.h"
#include "xml/simple_sax_parser.h"

namespace {

using xml_model::Event;
using Lines = std::vector<std::string>;

/// The handler of the real parser: checks the guarantees, records the callbacks as the model's
/// events, and stops the parse at one of them.
class Recorder : public CheckingHandler {
 public:
  explicit Recorder(std::size_t last) : m_Last(last) {}

  void start() override {
    CheckingHandler::start();
    add({Event::Kind::Start, "", {}});
  }
  void startElement(const char* name, attributes& attrs) override {
    CheckingHandler::startElement(name, attrs);
    Event event{Event::Kind::Open, name, {}};
    constexpr unsigned int size = 4096;
    std::array<char, size> attribute{};
    for (unsigned int i = 0; attrs.getAttrName(i, attribute.data(), size) > 0; ++i) {
      event.attributes[attribute.data()] = attrs.getAttribute(attribute.data());
    }
    add(event);
  }
  void endElement(const char* name) override {
    CheckingHandler::endElement(name);
    add({Event::Kind::Close, name, {}});
  }
  void characters(const char* text, unsigned int len) override {
    CheckingHandler::characters(text, len);
    add({Event::Kind::Text, text, {}, len});
  }
  void end() override {
    CheckingHandler::end();
    add({Event::Kind::End, "", {}});
  }

  Lines lines;

 private:
  void add(const Event& event) {
    lines.push_back(lineOf(event));
    m_Stop = m_Stop || lines.size() > m_Last;
  }

  std::size_t m_Last;
};

/// Compares the parser with the model. Both stop at the event with the number `last`. Returns the
/// count of events.
std::size_t compare(const std::string& document, std::size_t last) {
  Recorder recorder(last);
  int result = 0;
  const fuzz::Output output =
      fuzz::outputOf([&] { result = SimpleSAXParser(recorder).parseXMLString(document); });
  fuzz::require(recorder.isConsistent());

  Lines lines;
  std::string expected;
  const auto onEvent = [&](const Event& event) {
    lines.push_back(lineOf(event));
    return lines.size() > last;
  };
  fuzz::require(xml_model::parse(document, onEvent, expected) == result);
  fuzz::require(lines == recorder.lines);
  fuzz::require(output == fuzz::Output{expected, ""});
  return lines.size();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document = fuzz::textOf(data, size);
  const std::size_t count = compare(document, document.size() + 2);
  compare(document, count / 2);
  compare(document, count / 3);

  SimpleSAXHandler handler;
  std::string text = document;
  SimpleSAXParser(handler).replaceEntities(text);
  fuzz::require(text.size() <= document.size());
  fuzz::require(document.find('&') != std::string::npos || text == document);
  return 0;
}
