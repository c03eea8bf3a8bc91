// The reports of udhcpc.

#include "emulator/radio/lease_pipe.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace emulator {

namespace {

struct KindRow {
  std::string_view word;
  LeaseEvent::Kind kind;
};
constexpr std::array Kinds = {
    KindRow{"bound", LeaseEvent::Kind::Bound},   KindRow{"renew", LeaseEvent::Kind::Bound},
    KindRow{"deconfig", LeaseEvent::Kind::Lost}, KindRow{"leasefail", LeaseEvent::Kind::Failed},
    KindRow{"nak", LeaseEvent::Kind::Failed},
};

void check(bool isGood, const std::string& path) {
  if (!isGood) {
    throw std::system_error(errno, std::generic_category(), path);
  }
}

/// Returns the script. udhcpc sets the variables `interface`, `ip` and `mask`. `mask` is the length
/// of the prefix.
std::string scriptFor(const std::string& pipe) {
  return "#!/bin/sh\n"
         "case \"$1\" in\n"
         "  deconfig) ip -4 addr flush dev \"$interface\" ;;\n"
         "  bound | renew)\n"
         "    ip -4 addr flush dev \"$interface\"\n"
         "    ip -4 addr add \"$ip/${mask:-24}\" dev \"$interface\"\n"
         "    ;;\n"
         "esac\n"
         "echo \"$1 $ip\" >'" +
         pipe + "'\n";
}

}  // namespace

std::optional<LeaseEvent> parseLease(const std::string& line) {
  const std::size_t blank = line.find(' ');
  const auto* const row = std::ranges::find(Kinds, line.substr(0, blank), &KindRow::word);
  if (row == Kinds.end()) {
    return std::nullopt;
  }
  LeaseEvent event{row->kind};
  if (event.kind == LeaseEvent::Kind::Bound &&
      (blank == std::string::npos ||
       ::inet_pton(AF_INET, line.substr(blank + 1).c_str(), event.address.data()) != 1)) {
    return std::nullopt;
  }
  return event;
}

LeasePipe::LeasePipe(const PrivateFolder& folder) : m_Script(folder.path("udhcpc-script")) {
  const std::string pipe = folder.path("lease");
  check(::mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR) == 0, pipe);
  // O_RDWR makes this program a writer too. A pipe that has a writer never reports an end of file.
  m_Pipe = util::UniqueFd(::open(pipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  check(static_cast<bool>(m_Pipe), pipe);
  folder.write("udhcpc-script", scriptFor(pipe));
  check(::chmod(m_Script.c_str(), S_IRWXU) == 0, m_Script);
}

std::optional<LeaseEvent> LeasePipe::next() {
  std::array<char, 256> buffer{};
  ssize_t count = 0;
  while ((count = ::read(m_Pipe.get(), buffer.data(), buffer.size())) > 0) {
    m_Pending.append(buffer.data(), static_cast<std::size_t>(count));
  }
  for (std::size_t end = 0; (end = m_Pending.find('\n')) != std::string::npos;) {
    const std::optional<LeaseEvent> event = parseLease(m_Pending.substr(0, end));
    m_Pending.erase(0, end + 1);
    if (event) {
      return event;
    }
  }
  return std::nullopt;
}

}  // namespace emulator
