#pragma once

#include <pugixml.hpp>
#include <string>
#include <vector>

namespace support {

/// A reply of the object store, parsed with pugixml instead of the program's own parser. The
/// operations return the values of the reply's children. For an absent child they return an empty
/// value.
class ReplyText {
 public:
  explicit ReplyText(const std::string& xml) { m_Document.load_buffer(xml.data(), xml.size()); }

  int status() const { return child("status_code").child("IntegerElem").text().as_int(); }
  std::string message() const { return value("status_mesg"); }
  std::string value(const char* name) const { return child(name).child("StringElem").text().get(); }
  std::string binary(const char* name) const {
    return child(name).child("BinaryElem").text().get();
  }
  std::vector<std::string> list() const {
    std::vector<std::string> texts;
    for (const pugi::xml_node node : child("cert_list").child("ListElem")) {
      texts.emplace_back(node.text().get());
    }
    return texts;
  }

 private:
  pugi::xml_node child(const char* name) const {
    return m_Document.child("response")
        .child("MapElem")
        .find_child_by_attribute("child", "name", name);
  }

  pugi::xml_document m_Document;
};

}  // namespace support
