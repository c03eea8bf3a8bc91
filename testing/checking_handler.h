#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "xml/simple_sax_handler.h"

/// Checks, as the parser calls, what every handler may rely on: `start` first and `end` last, each
/// once, elements properly nested, text inside an element and not longer than its count.
class CheckingHandler : public SimpleSAXHandler {
 public:
  void start() override;
  void startElement(const char* name, attributes& attrs) override;
  void endElement(const char* name) override;
  void characters(const char* text, unsigned int len) override;
  void end() override;

  bool isConsistent() const { return m_IsConsistent && m_Starts == 1 && m_Ends == 1; }
  std::size_t depth() const { return m_Open.size(); }

 private:
  void require(bool condition) { m_IsConsistent = m_IsConsistent && condition; }

  bool m_IsConsistent = true;
  int m_Starts = 0;
  int m_Ends = 0;
  std::vector<std::string> m_Open;
};
