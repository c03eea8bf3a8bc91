#pragma once

#include <map>
#include <string>
#include <string_view>

/// The attributes of one start tag: name-value pairs with unique names, kept in the bytewise order
/// of the names. The order in which they stood in the tag is not kept.
///
/// Texts are C strings; a null pointer counts as the empty text. A copy is independent of the list
/// it was copied from.
class attributes {
 public:
  attributes() = default;
  virtual ~attributes() = default;
  attributes(const attributes& other) : m_Pairs(other.m_Pairs) {}
  attributes& operator=(const attributes& other) {
    if (this != &other) {
      m_Pairs = other.m_Pairs;
    }
    return *this;
  }
  attributes(attributes&&) noexcept = default;
  attributes& operator=(attributes&&) noexcept = default;

  /// Removes every pair.
  void clear();

  /// True when `name` is in the list.
  bool isAttrExist(const char* name) const;

  /// Stores `value` under `name` in place of any value that the name had.
  void setAttribute(const char* name, const char* value);
  void setAttribute(std::string_view name, std::string_view value);

  /// Returns a copy of the value of `name`, or an empty text when the name is absent.
  std::string getAttribute(const char* name) const;

  /// Writes the value of `name` into `buf`, which has `size` bytes: at most `size - 1` bytes of it,
  /// and zeros behind them. Returns how many bytes were written before the zeros; 0, with nothing
  /// but zeros written, when the name is absent.
  int getAttribute(const char* name, char* buf, unsigned int size) const;

  /// As above, for the value of the pair at position `index`, from 0, in the order of the names.
  /// The time grows with `index`.
  int getAttribute(unsigned int index, char* buf, unsigned int size) const;

  /// As above, for the name of the pair at position `index`.
  int getAttrName(unsigned int index, char* buf, unsigned int size) const;

  /// The value stored under `name`, for reading and writing; an absent name is inserted first, with
  /// an empty value. The reference lives as long as its pair.
  std::string& operator[](std::string& name);
  std::string& operator[](const char* name);
  std::string& operator[](char* name);

 private:
  using Pairs = std::map<std::string, std::string, std::less<>>;

  Pairs::const_iterator at(unsigned int index) const;
  std::string& valueOf(std::string_view name);

  Pairs m_Pairs;
  /// One pair that was removed, for the next one: most tags have one attribute or none.
  Pairs::node_type m_Spare;
};
