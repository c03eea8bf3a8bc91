// The list of attributes: a sorted map.

#include "xml/attributes.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "util/c_text.h"

namespace {

/// Copies the start of `text`, at most one byte less than `destination` has, and fills the rest of
/// `destination` with zeros. Returns the length of the C string in `destination`.
int copyCut(std::string_view text, std::span<char> destination) {
  if (destination.data() == nullptr || destination.empty()) {
    return 0;
  }
  const std::string_view cut = text.substr(0, std::min(text.find('\0'), destination.size() - 1));
  const auto rest = std::ranges::copy(cut, destination.begin()).out;
  std::fill(rest, destination.end(), '\0');
  return static_cast<int>(cut.size());
}

}  // namespace

void attributes::clear() {
  m_Pairs.clear();
}

bool attributes::isAttrExist(const char* name) const {
  return m_Pairs.contains(util::textOf(name));
}

void attributes::setAttribute(const char* name, const char* value) {
  setAttribute(util::textOf(name), util::textOf(value));
}

void attributes::setAttribute(std::string_view name, std::string_view value) {
  m_Pairs[std::string(name)] = value;
}

std::string attributes::getAttribute(const char* name) const {
  const auto pair = m_Pairs.find(util::textOf(name));
  return pair == m_Pairs.end() ? std::string() : pair->second;
}

int attributes::getAttribute(const char* name, char* buf, unsigned int size) const {
  const auto pair = m_Pairs.find(util::textOf(name));
  return copyCut(pair == m_Pairs.end() ? std::string_view() : pair->second, {buf, size});
}

int attributes::getAttribute(unsigned int index, char* buf, unsigned int size) const {
  const auto pair = at(index);
  return copyCut(pair == m_Pairs.end() ? std::string_view() : pair->second, {buf, size});
}

int attributes::getAttrName(unsigned int index, char* buf, unsigned int size) const {
  const auto pair = at(index);
  return copyCut(pair == m_Pairs.end() ? std::string_view() : pair->first, {buf, size});
}

std::string& attributes::operator[](std::string& name) {
  return m_Pairs[name];
}

std::string& attributes::operator[](const char* name) {
  return m_Pairs[std::string(util::textOf(name))];
}

std::string& attributes::operator[](char* name) {
  return m_Pairs[std::string(util::textOf(name))];
}

attributes::Pairs::const_iterator attributes::at(unsigned int index) const {
  return index < m_Pairs.size()
             ? std::next(m_Pairs.begin(), static_cast<Pairs::difference_type>(index))
             : m_Pairs.end();
}
