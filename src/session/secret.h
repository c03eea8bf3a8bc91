#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace session {

/// A key or a password. Its bytes are always in heap memory, because the programs clear heap memory
/// when they free it. A short `std::string` would leave copies on the stack.
class Secret {
 public:
  Secret() { m_Bytes.reserve(UsualSize); }
  explicit Secret(std::string_view text) : m_Bytes(text.begin(), text.end()) {}

  void append(char c) { m_Bytes.push_back(c); }
  /// Frees the memory, so that the program clears it.
  void clear() { m_Bytes = std::vector<char>(); }

  [[nodiscard]] bool isEmpty() const { return m_Bytes.empty(); }
  [[nodiscard]] std::string_view text() const { return {m_Bytes.data(), m_Bytes.size()}; }

  bool operator==(const Secret&) const = default;

 private:
  /// Longer than any secret that is accepted.
  static constexpr std::size_t UsualSize = 256;

  std::vector<char> m_Bytes;
};

}  // namespace session
