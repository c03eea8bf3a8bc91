// Parses and indents the XML of method calls and their replies with pugixml.

#include "decoder/call_text.h"

#include <pugixml.hpp>
#include <sstream>

namespace decoder {

namespace {

/// The largest accepted depth of elements. The depth of usual calls and replies is at most 7.
constexpr int DeepestNesting = 32;

/// Walks through a document until an element is nested too deeply.
class DepthCheck : public pugi::xml_tree_walker {
 public:
  bool for_each(pugi::xml_node& /*node*/) override {
    m_IsTooDeep = depth() > DeepestNesting;
    return !m_IsTooDeep;
  }

  bool isTooDeep() const { return m_IsTooDeep; }

 private:
  bool m_IsTooDeep = false;
};

/// Returns the text of the child `element` whose attribute "name" is `name`.
std::string namedText(pugi::xml_node node, const char* element, const char* name) {
  return node.find_child_by_attribute(element, "name", name).text().get();
}

/// Returns the text of the value called `name` in the map of a reply.
std::string replyText(pugi::xml_node map, const char* name) {
  return map.find_child_by_attribute("child", "name", name).first_child().text().get();
}

}  // namespace

std::optional<CallText> readCallText(std::string_view xml) {
  pugi::xml_document document;
  if (xml.find('\0') != std::string_view::npos ||
      !document.load_buffer(xml.data(), xml.size(), pugi::parse_full, pugi::encoding_utf8)) {
    return std::nullopt;
  }
  DepthCheck depthCheck;
  document.traverse(depthCheck);
  if (depthCheck.isTooDeep()) {
    return std::nullopt;
  }
  CallText text;
  std::ostringstream stream;
  document.save(stream, "  ", pugi::format_indent | pugi::format_no_declaration,
                pugi::encoding_utf8);
  text.indented = stream.str();
  const pugi::xml_node call = document.child("method");
  text.method = namedText(call, "arg", "method");
  text.requestId = call.attribute("requestID").value();
  const pugi::xml_node map = document.child("response").child("MapElem");
  text.status = replyText(map, "status_code");
  text.message = replyText(map, "status_mesg");
  return text;
}

}  // namespace decoder
