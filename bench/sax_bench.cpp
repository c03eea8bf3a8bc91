// SAX parsing beside expat, with callbacks that copy the same texts.

#include <array>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <expat.h>
#include <string>
#include <string_view>

#include "documents.h"
#include "xml/simple_sax_parser.h"

namespace {

/// Every text that a parser reports, one behind the other.
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

void parseWithExpat(XML_Parser parser, const std::string& document) {
  if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE) !=
      XML_STATUS_OK) {
    std::abort();
  }
}

/// Both parsers must report the same texts, or comparing their times says nothing.
void checkSameTexts(const std::string& document) {
  Copies ours;
  parseWithOurs(document, ours);
  Copies theirs;
  XML_Parser parser = XML_ParserCreate(nullptr);
  prepareExpat(parser, theirs);
  parseWithExpat(parser, document);
  XML_ParserFree(parser);
  if (ours.texts != theirs.texts) {
    std::fputs("The parsers disagree about the document.\n", stderr);
    std::abort();
  }
}

void saxOurs(benchmark::State& state) {
  const std::string document = bench::makeReply(static_cast<std::size_t>(state.range(0)));
  checkSameTexts(document);
  Copies copies;
  while (state.KeepRunning()) {
    copies.texts.clear();
    parseWithOurs(document, copies);
    benchmark::DoNotOptimize(copies.texts.data());
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

/// A new parser for each document, as ours.
void saxExpat(benchmark::State& state) {
  const std::string document = bench::makeReply(static_cast<std::size_t>(state.range(0)));
  Copies copies;
  while (state.KeepRunning()) {
    copies.texts.clear();
    XML_Parser parser = XML_ParserCreate(nullptr);
    prepareExpat(parser, copies);
    parseWithExpat(parser, document);
    XML_ParserFree(parser);
    benchmark::DoNotOptimize(copies.texts.data());
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

/// One parser for all documents, which spares expat its setting up.
void saxExpatReused(benchmark::State& state) {
  const std::string document = bench::makeReply(static_cast<std::size_t>(state.range(0)));
  Copies copies;
  XML_Parser parser = XML_ParserCreate(nullptr);
  while (state.KeepRunning()) {
    copies.texts.clear();
    XML_ParserReset(parser, nullptr);
    prepareExpat(parser, copies);
    parseWithExpat(parser, document);
    benchmark::DoNotOptimize(copies.texts.data());
  }
  XML_ParserFree(parser);
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(saxOurs)->Name("sax/zvkconfig")->Arg(2048)->Arg(1 << 20);
BENCHMARK(saxExpat)->Name("sax/expat")->Arg(2048)->Arg(1 << 20);
BENCHMARK(saxExpatReused)->Name("sax/expat reused")->Arg(2048)->Arg(1 << 20);
