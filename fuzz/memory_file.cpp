// Files in memory, from memfd_create.

#include "memory_file.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fuzz_target.h"

namespace fuzz {

MemoryFile::MemoryFile(std::string_view content)
    : m_Descriptor(::memfd_create("fuzz", MFD_CLOEXEC)) {
  require(static_cast<bool>(m_Descriptor));
  require(::pwrite(m_Descriptor.get(), content.data(), content.size(), 0) ==
          static_cast<ssize_t>(content.size()));
}

std::string MemoryFile::content() const {
  struct stat status = {};
  require(::fstat(m_Descriptor.get(), &status) == 0);
  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  require(::pread(m_Descriptor.get(), text.data(), text.size(), 0) == status.st_size);
  return text;
}

}  // namespace fuzz
