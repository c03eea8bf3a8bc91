#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// An object-store reply of exactly `size` bytes (at least 512): the certificate defaults and a
/// list of names, over and over, with a last value named "last" that fills the rest.
std::string makeReply(std::size_t size);

/// The same random bytes each time.
std::vector<unsigned char> randomBytes(std::size_t size);

/// The element `name` with a text.
std::string element(const std::string& name, const std::string& text);

/// `count` copies of `text`.
std::string repeat(const std::string& text, std::size_t count);

}  // namespace bench
