// Parses method calls. The parser rejects texts that are not XML or do not have the form of a call.

#include "emulator/certificates/method_call.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <pugixml.hpp>
#include <utility>

#include "catalogue/hex_text.h"
#include "emulator/certificates/binary_text.h"

namespace emulator {

namespace {

using pugi::xml_node;
using Type = MethodCall::Type;

/// An XML element and the type of the value in it.
struct TypeElement {
  std::string_view element;
  Type type;
};

constexpr std::array<TypeElement, 3> TypeElements = {{
    {"StringElem", Type::Text},
    {"IntegerElem", Type::Number},
    {"BinaryElem", Type::Binary},
}};

/// Returns true if `text`, the part between & and ;, is a character reference or one of the five
/// predefined entities of XML.
bool isReference(std::string_view text) {
  constexpr std::array<std::string_view, 5> entities = {"amp", "quot", "apos", "lt", "gt"};
  if (!text.starts_with('#')) {
    return std::ranges::find(entities, text) != entities.end();
  }
  constexpr unsigned largest = 0x10FFFF;
  const bool hexadecimal = text.starts_with("#x");
  text.remove_prefix(hexadecimal ? 2 : 1);
  unsigned number = 0;
  const char* const textEnd = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), textEnd, number, hexadecimal ? 16 : 10);
  return error == std::errc() && end == textEnd && number > 0 && number <= largest;
}

/// Returns true if every & in the document starts a valid reference. pugixml does not check this.
bool hasOnlyReferences(std::string_view xml) {
  constexpr std::size_t longest = 16;  // characters after the &
  for (std::size_t at = xml.find('&'); at != std::string_view::npos; at = xml.find('&', at + 1)) {
    const std::string_view rest = xml.substr(at + 1, longest);
    const std::size_t end = rest.find(';');
    if (end == std::string_view::npos || !isReference(rest.substr(0, end))) {
      return false;
    }
  }
  return true;
}

/// Parses the document. Throws `CallError` if it is not well-formed.
void parseDocument(pugi::xml_document& document, std::string_view xml) {
  // With these flags pugixml keeps a text that is only blanks. It also keeps a document type as a
  // node, so that `parseMethodCall` can reject the document.
  constexpr unsigned flags =
      pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_doctype;
  const pugi::xml_parse_result result =
      document.load_buffer(xml.data(), xml.size(), flags, pugi::encoding_utf8);
  const bool hasZero = xml.find('\0') != std::string_view::npos;
  if (!result || hasZero || !hasOnlyReferences(xml)) {
    throw CallError(CallStatus::NotWellFormed, result ? "" : result.description());
  }
}

/// Throws `CallError` (`NotACall`) if the condition is false.
void require(bool condition, std::string_view what) {
  if (!condition) {
    throw CallError(CallStatus::NotACall, what);
  }
}

/// Returns the only child of a node if this child is an element. Otherwise returns a null node.
xml_node onlyElement(xml_node node) {
  const xml_node child = node.first_child();
  return child.type() == pugi::node_element && !child.next_sibling() ? child : xml_node();
}

/// Returns the text in an element. Throws `CallError` if the element contains anything else.
std::string textOf(xml_node element) {
  std::string text;
  for (const xml_node node : element.children()) {
    require(node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata,
            "an element inside a text");
    text.append(node.value());
  }
  return text;
}

MethodCall::Parameter parseParameter(xml_node child) {
  require(child.name() == std::string_view("child"), "a parameter is not a child element");
  MethodCall::Parameter parameter;
  parameter.name = child.attribute("name").value();
  const xml_node value = onlyElement(child);
  const auto* const found =
      std::ranges::find(TypeElements, std::string_view(value.name()), &TypeElement::element);
  if (found == TypeElements.end()) {
    throw CallError(CallStatus::WrongType, catalogue::quoted(parameter.name));
  }
  parameter.type = found->type;
  parameter.value = textOf(value);
  return parameter;
}

std::vector<MethodCall::Parameter> parseParameters(xml_node argument) {
  constexpr std::string_view list = "ListElem";
  const xml_node outer = onlyElement(argument);
  const xml_node inner = onlyElement(outer);
  require(outer.name() == list && inner.name() == list,
          "params does not hold a ListElem in a ListElem");
  std::vector<MethodCall::Parameter> parameters;
  if (inner.first_child()) {
    const xml_node map = onlyElement(inner);
    require(map.name() == std::string_view("MapElem"), "params does not hold a MapElem");
    for (const xml_node child : map.children()) {
      parameters.push_back(parseParameter(child));
    }
  }
  return parameters;
}

MethodCall parseRoot(xml_node root) {
  require(root.name() == std::string_view("method") &&
              root.attribute("name").value() == std::string_view("callMethod"),
          "the document is not a callMethod");
  MethodCall call;
  call.requestId = root.attribute("requestID").value();
  std::optional<std::string> object;
  std::optional<std::string> method;
  std::optional<std::vector<MethodCall::Parameter>> parameters;
  for (const xml_node argument : root.children()) {
    require(argument.name() == std::string_view("arg"), "the method has an element other than arg");
    const std::string_view name = argument.attribute("name").value();
    if (name == "objName" && !object) {
      object = textOf(argument);
    } else if (name == "method" && !method) {
      method = textOf(argument);
    } else if (name == "params" && !parameters) {
      parameters = parseParameters(argument);
    } else {
      throw CallError(CallStatus::NotACall, "an argument is unknown or given twice");
    }
  }
  require(object && method && parameters, "an argument is missing");
  call.object = std::move(*object);
  call.method = std::move(*method);
  call.parameters = std::move(*parameters);
  return call;
}

}  // namespace

ParsedCall parseMethodCall(std::string_view xml) {
  try {
    pugi::xml_document document;
    parseDocument(document, xml);
    const xml_node root = onlyElement(document);
    require(static_cast<bool>(root), "the document is not a single element");
    return parseRoot(root);
  } catch (const CallError& error) {
    return error;
  }
}

std::string describe(const MethodCall& call) {
  std::string text = catalogue::escaped(call.method);
  for (const MethodCall::Parameter& parameter : call.parameters) {
    text.append(" ").append(catalogue::escaped(parameter.name)).append("=");
    switch (parameter.type) {
      case Type::Text:
        text.append(catalogue::quoted(parameter.value));
        break;
      case Type::Number:
        text.append(catalogue::escaped(parameter.value));
        break;
      case Type::Binary:
        const std::optional<std::string> content = fromBase64(parameter.value);
        text.append("(").append(std::to_string(content ? content->size() : parameter.value.size()));
        text.append(content ? " bytes)" : " characters, not Base64)");
        break;
    }
  }
  return text;
}

}  // namespace emulator
