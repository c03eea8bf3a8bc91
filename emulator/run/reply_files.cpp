// Reads the files that the option --object-reply= names.

#include "emulator/run/reply_files.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

#include "emulator/adapter/reply_packets.h"

namespace emulator {

namespace {

/// Returns the content of a file of at most `LargestContent` bytes.
npa::Bytes contentOf(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"),
                                                             std::fclose);
  if (!file) {
    throw std::system_error(errno, std::generic_category(), path);
  }
  npa::Bytes bytes(LargestContent + 1);
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
  if (std::ferror(file.get()) != 0) {
    throw std::system_error(errno, std::generic_category(), path);
  }
  if (bytes.size() > LargestContent) {
    throw std::runtime_error(path + ": expected at most " + std::to_string(LargestContent) +
                             " bytes, the content of one packet");
  }
  return bytes;
}

}  // namespace

Personality withReplyFiles(Personality personality) {
  for (ObjectReply& reply : personality.objectReplies) {
    if (!reply.status) {
      reply.bytes = contentOf(reply.file);
    }
  }
  return personality;
}

}  // namespace emulator
