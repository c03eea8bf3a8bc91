#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "session/profile.h"

/// Profiles and their errors for tests.
namespace profiles {

/// The parts of a `ProfileError`, or empty parts if there was none.
struct Problem {
  std::string subject;
  std::string got;
  std::string expected;

  bool operator==(const Problem&) const = default;

  friend std::ostream& operator<<(std::ostream& stream, const Problem& problem) {
    return stream << "subject \"" << problem.subject << "\", got \"" << problem.got
                  << "\", expected \"" << problem.expected << '"';
  }
};

inline const Problem NoProblem = {};

/// Runs `action` and returns the parts of the `ProfileError` that it throws.
template <typename Action>
Problem problemOf(Action action) {
  try {
    action();
  } catch (const session::ProfileError& error) {
    return {error.subject, error.got, error.expected};
  }
  return NoProblem;
}

using Settings = std::vector<std::pair<std::string, std::string>>;

/// Returns a reader with these options.
inline session::ProfileReader readerOf(const Settings& settings) {
  session::ProfileReader reader;
  for (const auto& [key, value] : settings) {
    reader.set(key, value, "--" + key);
  }
  return reader;
}

/// Returns the profile of these options.
inline session::Profile profileOf(const Settings& settings) {
  return readerOf(settings).finish();
}

}  // namespace profiles
