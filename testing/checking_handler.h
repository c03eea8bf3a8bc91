#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "xml/simple_sax_handler.h"

/// Checks the guarantees that the parser gives to every handler: `start` is the first callback and
/// `end` is the last callback, both occur once, elements nest properly, and text occurs only inside
/// an element. The text is not longer than `len`.
class CheckingHandler : public SimpleSAXHandler {
 public:
  void start() override;
  void startElement(const char* name, attributes& attrs) override;
  void endElement(const char* name) override;
  void characters(const char* text, unsigned int len) override;
  void end() override;

  /// Returns true if all callbacks so far kept the guarantees and the document has ended.
  bool isConsistent() const { return m_IsConsistent && m_Starts == 1 && m_Ends == 1; }
  /// Returns how many elements are open.
  std::size_t depth() const { return m_Open.size(); }

 private:
  void require(bool condition) { m_IsConsistent = m_IsConsistent && condition; }

  bool m_IsConsistent = true;
  int m_Starts = 0;
  int m_Ends = 0;
  std::vector<std::string> m_Open;
};
