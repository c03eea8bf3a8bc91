// Builds the reply to a method call as an XML document.

#include "emulator/certificates/call_reply.h"

#include <pugixml.hpp>
#include <sstream>
#include <utility>

namespace emulator {

namespace {

constexpr std::string_view TextElement = "StringElem";

/// Appends an element that contains a text.
void appendText(pugi::xml_node parent, std::string_view element, const std::string& text) {
  parent.append_child(std::string(element).c_str())
      .append_child(pugi::node_pcdata)
      .set_value(text.c_str());
}

/// Appends a `child` element called `name` to a map, and returns the element.
pugi::xml_node appendChild(pugi::xml_node map, std::string_view name) {
  pugi::xml_node child = map.append_child("child");
  child.append_attribute("name").set_value(std::string(name).c_str());
  return child;
}

}  // namespace

CallReply::CallReply() : CallReply(static_cast<int>(CallStatus::Success)) {}

CallReply::CallReply(int status) : m_Status(status), m_Message(statusText(status)) {
  if (m_Message.empty()) {
    m_Message = "refused";
  }
}

CallReply::CallReply(const CallError& error)
    : m_Status(static_cast<int>(error.status())), m_Message(error.what()) {}

void CallReply::addText(std::string_view name, std::string_view text) {
  m_Values.push_back({name, TextElement, false, {std::string(text)}});
}

void CallReply::addBinary(std::string_view name, std::string_view base64) {
  m_Values.push_back({name, "BinaryElem", false, {std::string(base64)}});
}

void CallReply::addList(std::string_view name, std::vector<std::string> texts) {
  m_Values.push_back({name, TextElement, true, std::move(texts)});
}

std::string CallReply::xml() const {
  pugi::xml_document document;
  pugi::xml_node declaration = document.append_child(pugi::node_declaration);
  declaration.append_attribute("version").set_value("1.0");
  declaration.append_attribute("encoding").set_value("UTF-8");
  const pugi::xml_node map = document.append_child("response").append_child("MapElem");
  appendText(appendChild(map, "status_code"), "IntegerElem", std::to_string(m_Status));
  appendText(appendChild(map, "status_mesg"), TextElement, m_Message);
  for (const Value& value : m_Values) {
    pugi::xml_node parent = appendChild(map, value.name);
    if (value.isList) {
      parent = parent.append_child("ListElem");
    }
    for (const std::string& text : value.texts) {
      appendText(parent, value.element, text);
    }
  }
  std::ostringstream stream;
  document.save(stream, "", pugi::format_raw, pugi::encoding_utf8);
  return stream.str();
}

}  // namespace emulator
