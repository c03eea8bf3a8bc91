#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// Returns an object-store reply of exactly `size` bytes (at least 512). The reply repeats the
/// certificate defaults and a list of names. The value called "last" fills the rest.
std::string makeReply(std::size_t size);

/// Returns random bytes, the same in each call.
std::vector<unsigned char> randomBytes(std::size_t size);

/// Returns the XML element `name` with a text.
std::string element(const std::string& name, const std::string& text);

/// Returns `count` copies of `text`.
std::string repeat(const std::string& text, std::size_t count);

}  // namespace bench
