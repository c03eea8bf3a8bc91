#include "decoder/call_text.h"

#include <pugixml.hpp>
#include <sstream>

namespace decoder {

namespace {

/// Calls and replies go seven elements deep.
constexpr int DeepestNesting = 32;

class Walker : public pugi::xml_tree_walker {
 public:
  bool for_each(pugi::xml_node& /*node*/) override {
    m_IsTooDeep = depth() > DeepestNesting;
    return !m_IsTooDeep;
  }

  bool isTooDeep() const { return m_IsTooDeep; }

 private:
  bool m_IsTooDeep = false;
};

/// The text of the child element called `name` of a node.
std::string namedText(pugi::xml_node node, const char* element, const char* name) {
  return node.find_child_by_attribute(element, "name", name).text().get();
}

/// The text in the element that the child called `name` of a reply's map holds.
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
  Walker walker;
  document.traverse(walker);
  if (walker.isTooDeep()) {
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
