#include "testing/checking_handler.h"

#include <cstring>

void CheckingHandler::start() {
  require(m_Starts == 0 && m_Ends == 0);
  ++m_Starts;
}

void CheckingHandler::startElement(const char* name, attributes& /*attrs*/) {
  require(m_Starts == 1 && m_Ends == 0 && std::strlen(name) > 0);
  m_Open.emplace_back(name);
}

void CheckingHandler::endElement(const char* name) {
  require(m_Ends == 0 && !m_Open.empty() && m_Open.back() == name);
  if (!m_Open.empty()) {
    m_Open.pop_back();
  }
}

void CheckingHandler::characters(const char* text, unsigned int len) {
  require(m_Ends == 0 && !m_Open.empty() && std::strlen(text) <= len);
}

void CheckingHandler::end() {
  require(m_Starts == 1 && m_Ends == 0);
  ++m_Ends;
}
