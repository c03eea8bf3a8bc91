#pragma once

#include <random>
#include <string>
#include <vector>

/// A random well-formed document. It has only constructs that this project's parser and a complete
/// XML parser accept with the same meaning. The same seed gives the same document.
class RandomDocument {
 public:
  enum class Names {
    Any,            ///< every kind of name, anywhere
    SortedByDepth,  ///< few names, sorted among siblings and different at each depth. Siblings
                    ///< with equal names are adjacent, so all parsers count them alike.
    Few,            ///< few names, anywhere
  };

  RandomDocument(unsigned int seed, Names names);

  const std::string& text() const { return m_Text; }

  /// Returns the names from the root to each element, in document order.
  const std::vector<std::vector<std::string>>& elements() const { return m_Elements; }

 private:
  std::size_t below(std::size_t limit) { return m_Random() % limit; }
  bool isOneIn(std::size_t count) { return below(count) == 0; }
  std::string pick(const std::vector<std::string>& pieces) { return pieces[below(pieces.size())]; }

  std::string anyName();
  std::string elementName(std::size_t depth);
  std::string space(std::size_t least);
  std::string pieces(const std::vector<std::string>& choice, std::size_t most);
  void addSkipped();
  void addMisc();
  void addAttributes();
  void addElement(const std::string& name, std::size_t depth);
  void addContent(std::size_t depth);

  std::mt19937 m_Random;
  Names m_Names;
  std::string m_Text;
  std::vector<std::string> m_Open;
  std::vector<std::vector<std::string>> m_Elements;
};
