// One path query on a reply beside libxml2's parser and XPath.

#include <array>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <string>

#include "documents.h"
#include "xml/simple_xpath.h"

namespace {

constexpr std::size_t ReplySize = 2048;

/// The value at the front of the reply, the one at its end, and one that is not there.
constexpr std::array<const char*, 3> Paths = {
    "/response/MapElem/child[@name='status_code']/IntegerElem",
    "/response/MapElem/child[@name='last']/StringElem",
    "/response/MapElem/child[@name='absent']/StringElem",
};

const xmlChar* asXml(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}

std::string queryLibxml(const std::string& document, const char* path) {
  xmlDocPtr tree = xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr,
                                 nullptr, XML_PARSE_NONET);
  xmlXPathContextPtr context = xmlXPathNewContext(tree);
  xmlXPathObjectPtr found = xmlXPathEvalExpression(asXml(path), context);
  std::string result;
  if (found->nodesetval != nullptr && found->nodesetval->nodeNr > 0) {
    xmlChar* text = xmlNodeGetContent(found->nodesetval->nodeTab[0]);
    result = reinterpret_cast<const char*>(text);
    xmlFree(text);
  }
  xmlXPathFreeObject(found);
  xmlXPathFreeContext(context);
  xmlFreeDoc(tree);
  return result;
}

const char* pathOf(const benchmark::State& state) {
  return Paths.at(static_cast<std::size_t>(state.range(0)));
}

void queryOurs(benchmark::State& state) {
  const std::string document = bench::makeReply(ReplySize);
  const char* path = pathOf(state);
  if (simpleXPath(document).query(path) != queryLibxml(document, path)) {
    std::abort();
  }
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(simpleXPath(document).query(path));
  }
}

void queryTheirs(benchmark::State& state) {
  const std::string document = bench::makeReply(ReplySize);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(queryLibxml(document, pathOf(state)));
  }
}

}  // namespace

BENCHMARK(queryOurs)->Name("query/zvkconfig")->DenseRange(0, 2);
BENCHMARK(queryTheirs)->Name("query/libxml2")->DenseRange(0, 2);
