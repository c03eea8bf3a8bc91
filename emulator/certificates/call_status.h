#pragma once

#include <stdexcept>
#include <string_view>

namespace emulator {

/// The status of a method call, with the number that the printer sends in its reply. A call with a
/// status other than `Success` has changed nothing.
enum class CallStatus {
  Success = 1,
  NotWellFormed,
  NotACall,
  UnknownObject,
  UnknownMethod,
  WrongId,
  MissingParameter,
  UnknownParameter,
  RepeatedParameter,
  WrongType,
  InvalidName,
  InvalidSubject,
  NameExists,
  UnknownName,
  FactoryMade,
  NoKey,
  NotBase64,
  WrongSize,
  NoCertificate,
  KeyMismatch,
};

/// Returns the message of a status, or an empty text for an unknown number.
std::string_view statusText(int status);

/// The failure of a method call. The printer sends it as a reply.
///
///     throw CallError(CallStatus::WrongType, "ca_dot_pem_size");
class CallError : public std::runtime_error {
 public:
  /// The message is that of the status, followed by a colon and `detail` unless that is empty.
  explicit CallError(CallStatus status, std::string_view detail = {});

  CallStatus status() const { return m_Status; }

 private:
  CallStatus m_Status;
};

}  // namespace emulator
