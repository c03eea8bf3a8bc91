// The messages of the statuses.

#include "emulator/certificates/call_status.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace emulator {

namespace {

using enum CallStatus;

constexpr std::array<std::pair<CallStatus, std::string_view>, 20> Texts = {{
    {Success, "success"},
    {NotWellFormed, "the request is not well-formed XML"},
    {NotACall, "the request is not a method call"},
    {UnknownObject, "no such object"},
    {UnknownMethod, "no such method"},
    {WrongId, "the request's id does not belong to the method"},
    {MissingParameter, "a parameter is missing"},
    {UnknownParameter, "the method has no such parameter"},
    {RepeatedParameter, "a parameter is given twice"},
    {WrongType, "a parameter has the wrong type"},
    {InvalidName, "the name is empty or has an invalid character"},
    {InvalidSubject, "the subject is invalid"},
    {NameExists, "the name exists already"},
    {UnknownName, "nothing has that name"},
    {FactoryMade, "the factory-made certificate cannot be changed"},
    {NoKey, "the factory-made certificate has no request"},
    {NotBase64, "the file is not valid Base64"},
    {WrongSize, "the file does not have the given size"},
    {NoCertificate, "the file holds no PEM certificate"},
    {KeyMismatch, "the certificate does not belong to the key"},
}};

/// Returns the message of a status, with the detail after a colon.
std::string textOf(CallStatus status, std::string_view detail) {
  std::string text(statusText(static_cast<int>(status)));
  return detail.empty() ? text : text.append(": ").append(detail);
}

}  // namespace

std::string_view statusText(int status) {
  const auto* const found = std::ranges::find_if(
      Texts, [status](const auto& row) { return static_cast<int>(row.first) == status; });
  return found == Texts.end() ? std::string_view() : found->second;
}

CallError::CallError(CallStatus status, std::string_view detail)
    : std::runtime_error(textOf(status, detail)), m_Status(status) {}

}  // namespace emulator
