#pragma once

#include <string_view>

namespace util {

/// Receives the text that the library writes. By default, answers go to standard output and
/// diagnostics to standard error. To redirect them, a front end derives a class from this class,
/// and registers an object before it calls another function of the library:
///
///     Progress progress;           // class Progress : public util::Output
///     util::setOutput(&progress);
class Output {
 public:
  Output() = default;
  virtual ~Output() = default;
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// Takes text for the user: results, questions and progress.
  virtual void answer(std::string_view text) = 0;
  /// Takes diagnostic lines and packet dumps, which may contain keys and passwords.
  virtual void diagnostic(std::string_view text) = 0;
  /// Shows the answers taken so far. `showProgress` calls this function.
  virtual void flushAnswers() {}
};

/// Sends all further output to `output`, or to the standard streams if `output` is null. The caller
/// owns `output` and keeps it alive until the last output.
void setOutput(Output* output);

/// Writes text for the user.
void writeAnswer(std::string_view text);

/// Writes text for the user and flushes it, because a wait follows.
void showProgress(std::string_view text);

/// Writes diagnostic text. The caller adds the line end.
void writeDiagnostic(std::string_view text);

}  // namespace util
