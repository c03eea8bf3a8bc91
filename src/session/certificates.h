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
  std::string name;  ///< made of common name and validity; deleting needs it
  /// Both are empty if the printer does not describe the certificate.
  std::string file = {};
  std::string commonName = {};
};

/// What a command on certificates found and did.
struct CertificateReport {
  /// Why a command with the result `Invalid` changed nothing.
  enum class Problem {
    None,
    Exists,     ///< there is a certificate of that name, and it is not to be replaced
    NotListed,  ///< there is no certificate of that name
  };

  /// `sentSettings` is true if a call was sent that changes certificates.
  Report report;
  Problem problem = Problem::None;
  std::string name;  ///< of the certificate that the command is about
  /// The names of the printer's own certificates. The printer lists at most nine.
  std::vector<std::string> certificates;
  std::vector<AuthorityEntry> authorities;
  bool deletedOld = false;  ///< true if a certificate of that name was deleted first
  /// The last call: the status and text of a refusal.
  CertMgr::LastCall lastCall;
};

/// Manages the certificates of one printer. Prints nothing. An operation opens the printer, makes
/// the calls and stops at the first one that fails. Only `list` goes on if the printer refuses to
/// describe a certificate. A call that only reads is made a second time if no reply arrives.
///
///     const CertificateReport report = Certificates(printer, hooks).list();
class Certificates {
 public:
  /// Returns true if the certificate of that name is to be replaced. It is called between two
  /// exchanges.
  using Question = std::function<bool(const std::string& name)>;

  Certificates(Printer printer, Session::Hooks hooks, Machine machine = {});

  /// Reads the names of all certificates, and files and common names of the authorities.
  [[nodiscard]] CertificateReport list();

  /// Makes a key pair and a request in the printer, under `name`, and writes the request to `file`.
  /// A certificate of that name is deleted. Throws `std::runtime_error` if the file cannot be
  /// written.
  [[nodiscard]] CertificateReport request(const CertificateSubject& subject,
                                          const std::string& name, NewFile& file,
                                          const Question& mayReplace);

  /// Installs the certificate of an authority. One of the same name is deleted first.
  [[nodiscard]] CertificateReport installAuthority(const CertificateFile& file,
                                                   const Question& mayReplace);

  /// Installs the signed certificate for the key that `request` made under `name`.
  [[nodiscard]] CertificateReport install(const CertificateFile& file, const std::string& name,
                                          const Question& mayReplace);

  /// Deletes one of the printer's own certificates, or that of an authority.
  [[nodiscard]] CertificateReport remove(const std::string& name);
  [[nodiscard]] CertificateReport removeAuthority(const std::string& name);

 private:
  /// Whether a call changes certificates.
  enum class Kind { Read, Change };
  using Call = std::function<int(CertMgr&)>;

  /// Opens the printer and carries out `body`, which returns false after a failure.
  CertificateReport run(const std::string& name, const std::function<bool()>& body);
  /// Makes a call. Returns true if it succeeded; otherwise the report has the reason.
  bool make(Step step, Kind kind, const Call& call);
  bool fail(Result result, CertificateReport::Problem problem = CertificateReport::Problem::None);

  bool readCertificates();
  bool readAuthorities();
  bool describe(AuthorityEntry& authority);
  bool isListed(const std::string& name) const;
  bool isListedAuthority(const std::string& name) const;
  /// Returns true unless a certificate exists that is not to be replaced.
  bool allowReplacing(bool exists, const Question& mayReplace);

  Session::Hooks m_Hooks;
  Session::Transport m_Transport;
  Machine m_Machine;
  CertificateReport m_Report;
  std::unique_ptr<CertMgr> m_Manager;
};

}  // namespace session
