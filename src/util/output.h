#pragma once

#include <string_view>

namespace util {

/// Receives all that the library writes. By default answers go to standard output and diagnostics
/// to standard error, as zvkconfig has it. A front end that wants them elsewhere derives from this
/// class and says so once, before it calls anything else:
///
///     Progress progress;           // class Progress : public util::Output
///     util::setOutput(&progress);
class Output {
 public:
  Output() = default;
  virtual ~Output() = default;
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// Takes what the user asked for, questions and progress included.
  virtual void answer(std::string_view text) = 0;
  /// Takes diagnostic lines and packet dumps. They contain keys and passwords.
  virtual void diagnostic(std::string_view text) = 0;
  /// Shows the answers taken so far. Called before a wait.
  virtual void flushAnswers() {}
};

/// Sends all further output to `output`, which the caller owns and which must outlive its use; to
/// the standard streams if it is null.
void setOutput(Output* output);

/// Writes text that the user asked for.
void writeAnswer(std::string_view text);

/// Writes the same and shows it at once, for a text that a wait follows.
void showProgress(std::string_view text);

/// Writes diagnostic text. The caller adds the line end.
void writeDiagnostic(std::string_view text);

}  // namespace util
