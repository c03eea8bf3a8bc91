// Reads sysfs and /proc.

#include "session/system_files.h"

#include <fcntl.h>
#include <filesystem>
#include <span>
#include <system_error>
#include <unistd.h>

#include "util/unique_fd.h"

namespace session {

namespace {

constexpr std::size_t LongestText = 4096;

}  // namespace

std::optional<std::string> readText(const std::string& path) {
  const util::UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  if (!file) {
    return std::nullopt;
  }
  std::string text(LongestText, '\0');
  std::size_t size = 0;
  while (size < text.size()) {
    const auto rest = std::span(text).subspan(size);
    const ssize_t count = ::read(file.get(), rest.data(), rest.size());
    if (count < 0) {
      return std::nullopt;
    }
    if (count == 0) {
      break;
    }
    size += static_cast<std::size_t>(count);
  }
  text.resize(size);
  return text;
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    names.push_back(entry->path().filename().string());
  }
  return names;
}

}  // namespace session
