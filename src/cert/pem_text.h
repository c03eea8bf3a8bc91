#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What is in a PEM text (RFC 7468).
struct PemText {
  /// The values of a certificate that matter to a printer.
  struct Certificate {
    std::string commonName;  ///< the part of the one-line subject after "CN="; may be empty
    std::string caName;  ///< the printer's name for the certificate; empty without a common name
    std::time_t notBefore = 0;
    std::time_t notAfter = 0;
    /// True if the basic constraints make it the certificate of an authority.
    bool isAuthority = false;
  };

  /// The labels of the blocks, such as "CERTIFICATE".
  std::vector<std::string> labels;
  /// True if a block is damaged. `labels` then has only the blocks before the damaged one.
  bool isDamaged = false;
  /// The certificate in the first block. Empty if that block is not a readable certificate.
  std::optional<Certificate> certificate;
};

/// Reads a PEM text. Never asks for a pass phrase.
[[nodiscard]] PemText readPemText(std::string_view text);
