#pragma once

#include <string>

inline const std::string Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Encodes into a buffer of exactly the needed size. Expects success.
std::string encode(const std::string& bytes);

/// Decodes into a buffer that is 8 bytes larger than needed. Expects success, and that the bytes
/// after the result are unchanged.
std::string decode(const std::string& text);
