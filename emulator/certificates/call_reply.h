#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "emulator/certificates/call_status.h"

namespace emulator {

/// The printer's reply to a method call: a status, a text that says what it means, and values.
class CallReply {
 public:
  /// A reply of success, to which values can be added.
  CallReply();
  /// A reply without values. For any number: a status that has no text of its own is "refused".
  explicit CallReply(int status);
  explicit CallReply(const CallError& error);

  /// Adds a value: a text, a binary given as Base64, or a list of texts.
  void addText(std::string_view name, std::string_view text);
  void addBinary(std::string_view name, std::string_view base64);
  void addList(std::string_view name, std::vector<std::string> texts);

  int status() const { return m_Status; }
  const std::string& message() const { return m_Message; }

  /// The reply as an XML document.
  std::string xml() const;

 private:
  struct Value {
    std::string_view name;
    std::string_view element;
    bool isList;
    std::vector<std::string> texts;
  };

  int m_Status;
  std::string m_Message;
  std::vector<Value> m_Values;
};

}  // namespace emulator
