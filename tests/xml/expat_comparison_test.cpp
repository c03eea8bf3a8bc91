// Compares the parser's events with those of expat, for documents that both accept.

#include <expat.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "xml/random_document.h"
#include "xml/recording_handler.h"

namespace {

using Events = std::vector<std::string>;

/// Records expat's events in the form of `RecordingHandler`: a text as one run without leading
/// white space, with the count of its characters in the document.
class ExpatRecorder {
 public:
  Events record(const std::string& document) {
    XML_SetUserData(m_Parser.get(), this);
    XML_SetElementHandler(m_Parser.get(), startElement, endElement);
    XML_SetCharacterDataHandler(m_Parser.get(), characters);
    XML_SetCommentHandler(m_Parser.get(), comment);
    XML_SetProcessingInstructionHandler(m_Parser.get(), instruction);
    EXPECT_EQ(
        XML_Parse(m_Parser.get(), document.data(), static_cast<int>(document.size()), XML_TRUE),
        XML_STATUS_OK)
        << XML_ErrorString(XML_GetErrorCode(m_Parser.get())) << " at "
        << XML_GetCurrentByteIndex(m_Parser.get());
    return m_Events;
  }

 private:
  struct Free {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  static ExpatRecorder& self(void* data) { return *static_cast<ExpatRecorder*>(data); }

  static void startElement(void* data, const XML_Char* name, const XML_Char** attributes) {
    self(data).endText();
    std::map<std::string, std::string> sorted;
    for (; *attributes != nullptr; attributes += 2) {
      sorted[attributes[0]] = attributes[1];
    }
    std::string event = std::string("<") + name;
    for (const auto& [key, value] : sorted) {
      event.append(" ").append(key).append("=\"").append(value).append("\"");
    }
    self(data).m_Events.push_back(event);
  }

  static void endElement(void* data, const XML_Char* name) {
    self(data).endText();
    self(data).m_Events.push_back(std::string(">") + name);
  }

  static void characters(void* data, const XML_Char* text, int length) {
    self(data).m_Text.append(text, static_cast<std::size_t>(length));
    self(data).m_Count += XML_GetCurrentByteCount(self(data).m_Parser.get());
  }

  static void comment(void* data, const XML_Char* /*text*/) { self(data).endText(); }

  static void instruction(void* data, const XML_Char* /*target*/, const XML_Char* /*text*/) {
    self(data).endText();
  }

  void endText() {
    const std::size_t leading = m_Text.find_first_not_of(" \t\r\n");
    if (leading != std::string::npos) {
      const long count = m_Count - static_cast<long>(leading);
      m_Events.push_back("\"" + m_Text.substr(leading) + "\" " + std::to_string(count));
    }
    m_Text.clear();
    m_Count = 0;
  }

  std::unique_ptr<XML_ParserStruct, Free> m_Parser{XML_ParserCreate(nullptr)};
  Events m_Events;
  std::string m_Text;
  long m_Count = 0;
};

}  // namespace

TEST(ExpatComparison, FindsTheSameEventsInRandomDocuments) {
  std::size_t events = 0;
  for (unsigned int seed = 1; seed <= 800; ++seed) {
    const std::string document = RandomDocument(seed, RandomDocument::Names::Any).text();
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + document);
    RecordingHandler handler;
    ASSERT_EQ(SimpleSAXParser(handler).parseXMLString(document), 0);
    Events expected = ExpatRecorder().record(document);
    expected.insert(expected.begin(), "start");
    expected.emplace_back("end");
    ASSERT_EQ(handler.events, expected);
    events += expected.size();
  }
  EXPECT_GT(events, 15'000U);
}
