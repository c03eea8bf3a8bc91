#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The content of a PEM text (RFC 7468).
struct PemText {
  /// The values of a certificate that the programs use.
  struct Certificate {
    std::string commonName;  ///< the part of the one-line subject after "CN="; may be empty
    std::string caName;  ///< the printer's name for the certificate; empty without a common name
    std::time_t notBefore = 0;
    std::time_t notAfter = 0;
    /// True if the basic constraints mark a CA certificate.
    bool isAuthority = false;
  };

  /// The labels of the blocks, such as "CERTIFICATE".
  std::vector<std::string> labels;
  /// True if a block is damaged. `labels` then has only the labels of the blocks before the damaged
  /// block.
  bool isDamaged = false;
  /// The certificate in the first block. Empty if that block is not a readable certificate.
  std::optional<Certificate> certificate;
};

/// Reads a PEM text. Never asks for a pass phrase.
[[nodiscard]] PemText readPemText(std::string_view text);
