// Compares path queries on a reply with the XPath of libxml2 and pugixml. Parsing is part of the
// time.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <pugixml.hpp>
#include <string>
#include <utility>
#include <vector>

#include "cert/obj_store_response.h"
#include "contest.h"
#include "documents.h"
#include "growth.h"
#include "xml/simple_xpath.h"

namespace {

using Texts = std::vector<std::string>;
using Find = Texts (*)(const std::string& document, const std::string& path);

constexpr std::size_t ReplySize = 2048;

const xmlChar* asXml(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}

Texts findWithOurs(const std::string& document, const std::string& path) {
  return {simpleXPath(document).query(path)};
}

constexpr const char* StatusPath = "/response/MapElem/child[@name='status_code']/IntegerElem";

/// Returns the text of the first element at a path. For a list, checks that the reply's status is
/// 1, as the program does, and returns the texts of all elements.
template <bool IsList>
Texts findWithLibxml(const std::string& document, const std::string& path) {
  xmlDocPtr tree = xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr,
                                 nullptr, XML_PARSE_NONET);
  xmlXPathContextPtr context = xmlXPathNewContext(tree);
  if (IsList) {
    xmlXPathObjectPtr status = xmlXPathEvalExpression(asXml(StatusPath), context);
    if (xmlXPathCastToNumber(status) != 1) {
      std::abort();
    }
    xmlXPathFreeObject(status);
  }
  xmlXPathObjectPtr found = xmlXPathEvalExpression(asXml(path.c_str()), context);
  Texts result;
  const int count = found->nodesetval == nullptr ? 0 : found->nodesetval->nodeNr;
  for (int i = 0; i < (IsList ? count : std::min(count, 1)); ++i) {
    xmlChar* text = xmlNodeGetContent(found->nodesetval->nodeTab[i]);
    result.emplace_back(reinterpret_cast<const char*>(text));
    xmlFree(text);
  }
  xmlXPathFreeObject(found);
  xmlXPathFreeContext(context);
  xmlFreeDoc(tree);
  if (result.empty()) {
    result.emplace_back();
  }
  return result;
}

template <bool IsList>
Texts findWithPugixml(const std::string& document, const std::string& path) {
  pugi::xml_document tree;
  tree.load_buffer(document.data(), document.size());
  if (!IsList) {
    return {tree.select_node(path.c_str()).node().text().get()};
  }
  if (tree.select_node(StatusPath).node().text().as_int() != 1) {
    std::abort();
  }
  Texts result;
  for (const pugi::xpath_node& found : tree.select_nodes(path.c_str())) {
    result.emplace_back(found.node().text().get());
  }
  return result;
}

Texts listWithOurs(const std::string& document, const std::string& /*path*/) {
  ObjStoreResponse response;
  response.loadXML(document.c_str());
  Texts names;
  response.getCMFriendlyNameList(names);
  return names;
}

/// Returns a reply of `size` bytes with a list of nine certificate names. The message of the reply
/// fills the rest.
std::string listReply(std::size_t size) {
  std::string names;
  for (int i = 1; i <= 9; ++i) {
    names += bench::element("StringElem",
                            "Certificate_" + std::to_string(i) + "_Jan__5_2020_To_Dec_25_2030");
  }
  const std::string begin = R"(<?xml version="1.0" encoding="UTF-8"?><response><MapElem>)"
                            R"(<child name="status_code"><IntegerElem>1</IntegerElem></child>)"
                            R"(<child name="status_mesg"><StringElem>)";
  const std::string end = R"(</StringElem></child><child name="cert_list">)" +
                          bench::element("ListElem", names) + "</child></MapElem></response>";
  return begin + std::string(size - begin.size() - end.size(), 'x') + end;
}

/// Registers a contestant. Ends the program if the contestant finds other texts than `reference`.
void add(const std::string& task, const std::string& contestant, std::string path, Find find,
         Find reference, std::string (*makeDocument)(std::size_t)) {
  bench::contest(task, contestant, {ReplySize}, [=, path = std::move(path)](std::size_t size) {
    std::string document = makeDocument(size);
    if (find(document, path) != reference(document, path)) {
      std::abort();
    }
    return [=, document = std::move(document)] {
      benchmark::DoNotOptimize(find(document, path));
    };
  });
}

struct Value {
  const char* task;
  const char* path;
};

constexpr std::array<Value, 3> Values = {{
    {"path query, first value", StatusPath},
    {"path query, last value", "/response/MapElem/child[@name='last']/StringElem"},
    {"path query, no such value", "/response/MapElem/child[@name='absent']/StringElem"},
}};

constexpr const char* ListPath = "/response/MapElem/child[@name='cert_list']/ListElem/StringElem";

[[maybe_unused]] const bool AreAdded = [] {
  for (const auto& [task, path] : Values) {
    add(task, bench::Ours, path, findWithOurs, findWithOurs, bench::makeReply);
    add(task, "libxml2", path, findWithLibxml<false>, findWithOurs, bench::makeReply);
    add(task, "pugixml", path, findWithPugixml<false>, findWithOurs, bench::makeReply);
  }
  const std::string list = "path query, list of nine names";
  add(list, bench::Ours, ListPath, listWithOurs, listWithOurs, listReply);
  add(list, "libxml2", ListPath, findWithLibxml<true>, listWithOurs, listReply);
  add(list, "pugixml", ListPath, findWithPugixml<true>, listWithOurs, listReply);
  // The message before the list grows with the size.
  bench::growth("list of nine names, bytes", 2048, [](std::size_t size) {
    return [document = listReply(size)] {
      benchmark::DoNotOptimize(listWithOurs(document, ListPath));
    };
  });
  return true;
}();

}  // namespace
