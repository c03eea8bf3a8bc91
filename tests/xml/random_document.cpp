#include "xml/random_document.h"

#include <algorithm>
#include <set>

namespace {

using Pieces = std::vector<std::string>;

const Pieces Spaces = {" ", "\n", "\t"};
const Pieces NameStarts = {"a", "b", "Z", "_", ":", "x", "M", "l"};
const Pieces NameParts = {"a", "Q", "0", "9", "-", ".", "_", ":", "x", "m", "L"};
const Pieces TextPieces = {"a",      "Bc",       "1",    " ",      "\n",   "\t", "'", "\"",
                           "&amp;",  "&lt;",     "&gt;", "&quot;", ">",    "\\", "é", "€",
                           "&apos;", "&amp;lt;", ";",    "  x",    "amp;", "=",  "/", "-"};
const Pieces ValuePieces = {"a", "1", " ", "'", ">", "&amp;", "&lt;", "&quot;", "é", ";", "/"};
const Pieces SkippedPieces = {"a", " ", "<b>", "</b>", "&amp;", "\"", "'", "\n", "- ", "é", "? "};

bool isReserved(const std::string& name) {
  std::string prefix = name.substr(0, 3);
  std::ranges::transform(prefix, prefix.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; });
  return prefix == "xml" && !name.starts_with("xMl");
}

}  // namespace

RandomDocument::RandomDocument(unsigned int seed, Names names) : m_Random(seed), m_Names(names) {
  if (isOneIn(2)) {
    m_Text = R"(<?xml version="1.0" encoding="UTF-8"?>)";
  }
  addMisc();
  addElement(elementName(0), 0);
  addMisc();
}

std::string RandomDocument::anyName() {
  std::string name;
  do {
    name = pick(NameStarts) + pieces(NameParts, 4);
    // In libxml2, a colon in a name is the separator of a namespace.
  } while (isReserved(name) || (m_Names != Names::Any && name.find(':') != std::string::npos));
  return name;
}

std::string RandomDocument::elementName(std::size_t depth) {
  switch (m_Names) {
    case Names::Any:
      return anyName();
    case Names::Few:
      return pick({"a", "b", "c"});
    case Names::SortedByDepth:
      break;
  }
  return pick({"a", "b", "c"}) + std::to_string(depth);
}

std::string RandomDocument::space(std::size_t least) {
  std::string text;
  for (std::size_t count = least + below(3) / 2; count > 0; --count) {
    text += pick(Spaces);
  }
  return text;
}

std::string RandomDocument::pieces(const Pieces& choice, std::size_t most) {
  std::string text;
  for (std::size_t count = below(most + 1); count > 0; --count) {
    text += pick(choice);
  }
  return text;
}

/// Adds a comment or a processing instruction.
void RandomDocument::addSkipped() {
  if (isOneIn(2)) {
    m_Text += "<!-- " + pieces(SkippedPieces, 5) + " -->";
  } else {
    m_Text += "<?" + anyName() + " " + pieces(SkippedPieces, 5) + " ?>";
  }
}

/// Adds white space, comments and processing instructions. They may precede or follow the root
/// element.
void RandomDocument::addMisc() {
  for (std::size_t count = below(3); count > 0; --count) {
    m_Text += space(0);
    addSkipped();
  }
  m_Text += space(0);
}

void RandomDocument::addAttributes() {
  std::set<std::string> used;
  for (std::size_t count = below(4); count > 0; --count) {
    const std::string name = isOneIn(3) ? anyName() : pick({"n", "m"});
    if (used.insert(name).second) {
      m_Text += space(1) + name + space(0) + "=" + space(0);
      m_Text += "\"" + (isOneIn(2) ? pick({"1", "2"}) : pieces(ValuePieces, 4)) + "\"";
    }
  }
}

void RandomDocument::addElement(const std::string& name, std::size_t depth) {
  m_Open.push_back(name);
  m_Elements.push_back(m_Open);
  m_Text += "<" + name;
  addAttributes();
  m_Text += space(0);
  if (isOneIn(5)) {
    m_Text += "/>";
  } else {
    m_Text += ">";
    addContent(depth);
    m_Text += "</" + name + space(0) + ">";
  }
  m_Open.pop_back();
}

void RandomDocument::addContent(std::size_t depth) {
  std::vector<std::string> children;
  for (std::size_t count = depth < 5 ? below(5) : 0; count > 0; --count) {
    children.push_back(elementName(depth + 1));
  }
  if (m_Names == Names::SortedByDepth) {
    std::ranges::sort(children);
  }
  for (const std::string& child : children) {
    m_Text += pieces(TextPieces, 3);
    if (isOneIn(6)) {
      addSkipped();
      m_Text += pieces(TextPieces, 2);
    }
    addElement(child, depth + 1);
  }
  m_Text += pieces(TextPieces, 3);
}
