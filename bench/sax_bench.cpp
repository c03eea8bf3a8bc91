// Compares SAX parsing with expat, libxml2 and the tree of pugixml. All contestants copy the same
// texts.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <expat.h>
#include <libxml/parser.h>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "contest.h"
#include "documents.h"
#include "xml/simple_sax_parser.h"

namespace {

/// All texts that a parser reports, in order.
struct Copies {
  std::string texts;

  void add(std::string_view text) { texts.append(text).push_back('\n'); }
};

class CopyingHandler : public SimpleSAXHandler {
 public:
  explicit CopyingHandler(Copies& copies) : m_Copies(copies) {}

  void startElement(const char* name, attributes& attrs) override {
    m_Copies.add(name);
    for (unsigned int i = 0;; ++i) {
      const int length = attrs.getAttrName(i, m_Buffer.data(), BufferSize);
      if (length == 0) {
        break;
      }
      m_Copies.add({m_Buffer.data(), static_cast<std::size_t>(length)});
      const int valueLength = attrs.getAttribute(i, m_Buffer.data(), BufferSize);
      m_Copies.add({m_Buffer.data(), static_cast<std::size_t>(valueLength)});
    }
  }
  void endElement(const char* name) override { m_Copies.add(name); }
  void characters(const char* text, unsigned int /*len*/) override { m_Copies.texts += text; }

 private:
  Copies& m_Copies;
  static constexpr unsigned int BufferSize = 128;

  std::array<char, BufferSize> m_Buffer{};
};

void parseWithOurs(const std::string& document, Copies& copies) {
  CopyingHandler handler(copies);
  SimpleSAXParser parser(handler);
  if (parser.parseXMLString(document.c_str()) != 0) {
    std::abort();
  }
}

void XMLCALL expatStart(void* data, const XML_Char* name, const XML_Char** attributes) {
  auto& copies = *static_cast<Copies*>(data);
  copies.add(name);
  for (; *attributes != nullptr; ++attributes) {
    copies.add(*attributes);
  }
}

void XMLCALL expatEnd(void* data, const XML_Char* name) {
  static_cast<Copies*>(data)->add(name);
}

void XMLCALL expatText(void* data, const XML_Char* text, int length) {
  static_cast<Copies*>(data)->texts.append(text, static_cast<std::size_t>(length));
}

void prepareExpat(XML_Parser parser, Copies& copies) {
  XML_SetUserData(parser, &copies);
  XML_SetElementHandler(parser, expatStart, expatEnd);
  XML_SetCharacterDataHandler(parser, expatText);
}

void parseOnce(XML_Parser parser, const std::string& document) {
  if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE) !=
      XML_STATUS_OK) {
    std::abort();
  }
}

void parseWithExpat(const std::string& document, Copies& copies) {
  XML_Parser parser = XML_ParserCreate(nullptr);
  prepareExpat(parser, copies);
  parseOnce(parser, document);
  XML_ParserFree(parser);
}

std::string_view textOf(const xmlChar* begin, std::size_t size) {
  return {reinterpret_cast<const char*>(begin), size};
}

std::string_view textOf(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

/// libxml2 passes an attribute as five pointers: name, prefix, URI, and start and end of the value.
void libxmlStart(void* data, const xmlChar* name, const xmlChar* /*prefix*/, const xmlChar* /*uri*/,
                 int /*namespaceCount*/, const xmlChar** /*namespaces*/, int count,
                 int /*defaultedCount*/, const xmlChar** parts) {
  auto& copies = *static_cast<Copies*>(data);
  copies.add(textOf(name));
  for (int i = 0; i < count; ++i, parts += 5) {
    copies.add(textOf(parts[0]));
    copies.add(textOf(parts[3], static_cast<std::size_t>(parts[4] - parts[3])));
  }
}

void libxmlEnd(void* data, const xmlChar* name, const xmlChar* /*prefix*/, const xmlChar* /*uri*/) {
  static_cast<Copies*>(data)->add(textOf(name));
}

void libxmlText(void* data, const xmlChar* text, int length) {
  static_cast<Copies*>(data)->texts.append(textOf(text, static_cast<std::size_t>(length)));
}

void parseWithLibxml(const std::string& document, Copies& copies) {
  xmlSAXHandler handler{};
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = libxmlStart;
  handler.endElementNs = libxmlEnd;
  handler.characters = libxmlText;
  if (xmlSAXUserParseMemory(&handler, &copies, document.data(),
                            static_cast<int>(document.size())) != 0) {
    std::abort();
  }
}

void copyTree(pugi::xml_node parent, Copies& copies) {
  for (const pugi::xml_node node : parent.children()) {
    if (node.type() != pugi::node_element) {
      copies.texts += node.value();
      continue;
    }
    copies.add(node.name());
    for (const pugi::xml_attribute attribute : node.attributes()) {
      copies.add(attribute.name());
      copies.add(attribute.value());
    }
    copyTree(node, copies);
    copies.add(node.name());
  }
}

void parseWithPugixml(const std::string& document, Copies& copies) {
  pugi::xml_document tree;
  if (!tree.load_buffer(document.data(), document.size())) {
    std::abort();
  }
  copyTree(tree, copies);
}

using Parse = void (*)(const std::string&, Copies&);

/// Ends the program if a parser reports other texts than the program's own parser, because the
/// times could not be compared.
void checkSameTexts(const std::string& document, Parse parse) {
  Copies ours;
  parseWithOurs(document, ours);
  Copies theirs;
  parse(document, theirs);
  if (ours.texts != theirs.texts) {
    std::fputs("The parsers disagree about the document.\n", stderr);
    std::abort();
  }
}

/// Registers a parser with a small and a large document.
void add(const char* contestant, Parse parse) {
  bench::contest("SAX parse", contestant, {2048, 1 << 20}, [parse](std::size_t size) {
    std::string document = bench::makeReply(size);
    checkSameTexts(document, parse);
    return [parse, document = std::move(document), copies = Copies()]() mutable {
      copies.texts.clear();
      parse(document, copies);
    };
  });
}

/// Uses one parser object for all documents, so the time does not include the creation of the
/// object.
void parseWithReusedExpat(const std::string& document, Copies& copies) {
  static XML_Parser parser = XML_ParserCreate(nullptr);
  XML_ParserReset(parser, nullptr);
  prepareExpat(parser, copies);
  parseOnce(parser, document);
}

[[maybe_unused]] const bool AreAdded = [] {
  add(bench::Ours, parseWithOurs);
  add("expat", parseWithExpat);
  add("expat, reused", parseWithReusedExpat);
  add("libxml2", parseWithLibxml);
  add("pugixml, tree", parseWithPugixml);
  return true;
}();

}  // namespace
