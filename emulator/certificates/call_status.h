#pragma once

#include <stdexcept>
#include <string_view>

namespace emulator {

/// What comes of a method call, as the printer numbers it in its reply. Whatever is not `Success`
/// has changed nothing.
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

/// The text that goes with a status; empty for a number that is none.
std::string_view statusText(int status);

/// A method call that fails.
class CallError : public std::runtime_error {
 public:
  /// The text is that of the status, with `detail` behind it if there is one.
  explicit CallError(CallStatus status, std::string_view detail = {});

  CallStatus status() const { return m_Status; }

 private:
  CallStatus m_Status;
};

}  // namespace emulator
