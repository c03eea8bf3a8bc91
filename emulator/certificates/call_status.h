#pragma once

#include <stdexcept>
#include <string_view>

namespace emulator {

/// The status of a method call. The values are the numbers that the printer sends in its replies. A
/// call with a status other than `Success` has changed nothing.
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
  /// The message is the message of the status. If `detail` is not empty, a colon and `detail`
  /// follow.
  explicit CallError(CallStatus status, std::string_view detail = {});

  CallStatus status() const { return m_Status; }

 private:
  CallStatus m_Status;
};

}  // namespace emulator
