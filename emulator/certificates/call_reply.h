#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "emulator/certificates/call_status.h"

namespace emulator {

/// The printer's reply to a method call: a status, the message of this status, and values.
///
///     CallReply reply;  // success
///     reply.addText("ca_file_name", "ca.pem");
///     send(reply.xml());
class CallReply {
 public:
  /// Creates a reply of success. The caller may add values.
  CallReply();
  /// Creates a reply without values. `status` may be any number. For an unknown status the message
  /// is "refused".
  explicit CallReply(int status);
  /// Creates a reply with the status and the message of an error.
  explicit CallReply(const CallError& error);

  /// Adds a value: a text, binary data in Base64, or a list of texts. `name` must outlive the
  /// reply.
  void addText(std::string_view name, std::string_view text);
  void addBinary(std::string_view name, std::string_view base64);
  void addList(std::string_view name, std::vector<std::string> texts);

  int status() const { return m_Status; }
  const std::string& message() const { return m_Message; }

  /// Returns the reply as an XML document in UTF-8.
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
