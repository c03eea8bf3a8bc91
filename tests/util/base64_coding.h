#pragma once

#include <string>

inline const std::string Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Encodes into a buffer of just the size that is needed, which must succeed.
std::string encode(const std::string& bytes);

/// Decodes into a buffer that is large enough, which must succeed and leave the rest of the buffer
/// as it was.
std::string decode(const std::string& text);
