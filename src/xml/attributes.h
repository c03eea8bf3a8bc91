#pragma once

#include <map>
#include <string>
#include <string_view>

/// The attributes of one start tag: name-value pairs with unique names, in the bytewise order of
/// the names. The order of the attributes in the tag is lost. In the operations with C strings a
/// null pointer counts as an empty text.
///
///     attributes attrs;
///     attrs.setAttribute("name", "status_code");
///     attrs.getAttribute("name");  // "status_code"
class attributes {
 public:
  attributes() = default;
  virtual ~attributes() = default;
  attributes(const attributes&) = default;
  attributes& operator=(const attributes&) = default;
  attributes(attributes&&) noexcept = default;
  attributes& operator=(attributes&&) noexcept = default;

  /// Removes all pairs.
  void clear();

  /// Returns true if `name` is in the list.
  bool isAttrExist(const char* name) const;

  /// Stores `value` under `name` and replaces an earlier value.
  void setAttribute(const char* name, const char* value);
  /// Does the same for texts that may contain zero bytes.
  void setAttribute(std::string_view name, std::string_view value);

  /// Returns a copy of the value of `name`, or an empty text if the name is absent.
  std::string getAttribute(const char* name) const;

  /// Writes at most `size - 1` bytes of the value of `name` to `buf` and fills the rest of the
  /// `size` bytes with zeros. Returns the count of bytes before the zeros. If the name is absent,
  /// writes only zeros and returns 0.
  int getAttribute(const char* name, char* buf, unsigned int size) const;

  /// Does the same for the value at position `index`. Positions are counted from 0 in the order of
  /// the names. The time of the call grows with `index`.
  int getAttribute(unsigned int index, char* buf, unsigned int size) const;

  /// Does the same for the name at position `index`, instead of the value.
  int getAttrName(unsigned int index, char* buf, unsigned int size) const;

  /// Returns the value of `name`, for reading and writing. Inserts an absent name with an empty
  /// value first. The reference is valid until the pair is removed.
  std::string& operator[](std::string& name);
  std::string& operator[](const char* name);
  std::string& operator[](char* name);

 private:
  using Pairs = std::map<std::string, std::string, std::less<>>;

  /// Returns the pair at position `index`, or the end if there is none.
  Pairs::const_iterator at(unsigned int index) const;

  Pairs m_Pairs;
};
