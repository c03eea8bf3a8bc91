#pragma once

#include <string>
#include <vector>

namespace CLI {
class Error;
}  // namespace CLI

namespace wifi {

/// The largest value of `--wait`.
inline constexpr int LongestWaitSeconds = 3600;

/// Throws `UsageError` if a secret is given as an option. The program does not use or show the
/// value of this option.
void rejectSecrets(const std::vector<std::string>& words);

/// Throws `UsageError` for an option without a value after "=". CLI11 would take the next word as
/// the value.
void rejectEmptyValues(const std::vector<std::string>& words);

/// Returns what is wrong with a command line, from CLI11's error. `extra` has the words that CLI11
/// did not expect. `hasCommand` is true if the line has a command.
[[nodiscard]] std::string usageProblem(const CLI::Error& error,
                                       const std::vector<std::string>& extra, bool hasCommand);

}  // namespace wifi
