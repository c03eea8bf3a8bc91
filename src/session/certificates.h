#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cert/cert_mgr.h"
#include "session/certificate_file.h"
#include "session/certificate_subject.h"
#include "session/machine.h"
#include "session/new_file.h"
#include "session/printer.h"
#include "session/session.h"

namespace session {

/// The certificate of an authority, as the printer describes it.
struct AuthorityEntry {
  std::string name;  ///< common name and validity; `removeAuthority` takes this name
  /// Both are empty if the printer does not describe the certificate.
  std::string file = {};
  std::string commonName = {};
};

/// What a command on certificates found and did.
struct CertificateReport {
  /// Why a command with the result `Invalid` changed nothing.
  enum class Problem {
    None,
    Exists,     ///< a certificate `name` exists, and the answer was not to replace it
    NotListed,  ///< the printer lists no certificate `name`
  };

  /// Its `sentSettings` is true if a call that changes certificates was sent.
  Report report;
  Problem problem = Problem::None;
  std::string name;  ///< the certificate that the command is about; empty for `list`
  /// The names of the printer's own certificates, at most nine: no more are read.
  std::vector<std::string> certificates;
  std::vector<AuthorityEntry> authorities;  ///< at most nine
  bool deletedOld = false;  ///< true if an older certificate `name` was deleted first
  /// How the last method call ended, with the status and the text of a refusal.
  CertMgr::LastCall lastCall;
};

/// Manages the certificates of one printer. Prints nothing. An operation opens the printer, makes
/// its method calls and stops at the first call that fails. Two failures do not stop it: in `list`,
/// the printer refuses to describe a certificate, and in `request`, the printer does not delete the
/// old certificate. A call that only reads is made a second time if no reply arrives.
///
///     const CertificateReport report = Certificates(printer, hooks).list();
class Certificates {
 public:
  /// Returns true if the existing certificate `name` may be replaced. An operation calls this
  /// function between two exchanges.
  using Question = std::function<bool(const std::string& name)>;

  Certificates(Printer printer, Session::Hooks hooks, Machine machine = {});

  /// Reads the names of the certificates, and for each certificate of an authority also the file
  /// name and the common name.
  [[nodiscard]] CertificateReport list();

  /// Makes the printer generate a key pair and a certificate request under `name`, and writes the
  /// request to `file`. If the printer has a certificate of that name and `mayReplace` returns
  /// true, deletes that certificate first. Throws `std::runtime_error` if the file cannot be
  /// written.
  [[nodiscard]] CertificateReport request(const CertificateSubject& subject,
                                          const std::string& name, NewFile& file,
                                          const Question& mayReplace);

  /// Installs the certificate of an authority. If the printer has a certificate of the same name
  /// and `mayReplace` returns true, deletes the old certificate first.
  [[nodiscard]] CertificateReport installAuthority(const CertificateFile& file,
                                                   const Question& mayReplace);

  /// Installs the signed certificate for the key that `request` made under `name`.
  [[nodiscard]] CertificateReport install(const CertificateFile& file, const std::string& name,
                                          const Question& mayReplace);

  /// Deletes one of the printer's own certificates.
  [[nodiscard]] CertificateReport remove(const std::string& name);
  /// Deletes the certificate of an authority.
  [[nodiscard]] CertificateReport removeAuthority(const std::string& name);

 private:
  /// Whether a call changes certificates.
  enum class Kind { Read, Change };
  using Call = std::function<int(CertMgr&)>;

  /// Opens the printer and calls `body`, which returns false after a failure.
  CertificateReport run(const std::string& name, const std::function<bool()>& body);
  /// Makes a call. Returns true if it succeeded; otherwise the report has the reason.
  bool make(Step step, Kind kind, const Call& call);
  bool fail(Result result, CertificateReport::Problem problem = CertificateReport::Problem::None);

  bool readCertificates();
  bool readAuthorities();
  bool describe(AuthorityEntry& authority);
  bool isListed(const std::string& name) const;
  bool isListedAuthority(const std::string& name) const;
  /// Returns true if `exists` is false or `mayReplace` returns true. Otherwise the report has the
  /// reason.
  bool allowReplacing(bool exists, const Question& mayReplace);

  Session::Hooks m_Hooks;
  Session::Transport m_Transport;
  Machine m_Machine;
  CertificateReport m_Report;
  std::unique_ptr<CertMgr> m_Manager;
};

}  // namespace session
