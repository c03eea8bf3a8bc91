#pragma once

#include <optional>
#include <string>
#include <vector>

/// Files of sysfs and /proc. Devices and processes come and go while their files are read, so every
/// failure is an empty result.
namespace session {

/// Returns the first 4 KiB of a file, or nothing if it cannot be read.
[[nodiscard]] std::optional<std::string> readText(const std::string& path);

/// Returns the names in a folder in no particular order, or an empty list if the folder cannot be
/// read.
[[nodiscard]] std::vector<std::string> namesIn(const std::string& folder);

}  // namespace session
