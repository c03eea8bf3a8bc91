#include "session/certificates.h"

#include <algorithm>
#include <utility>

namespace session {

namespace {

using Problem = CertificateReport::Problem;

/// How many names of a list are read at most. A list with this many names may be incomplete.
constexpr std::size_t LongestList = 9;
/// A call that only reads is repeated once if no reply arrives.
constexpr int ReadAttempts = 2;
constexpr int StatusSuccess = 1;

/// Returns a name with its special characters escaped, because the calls insert it into XML
/// unchanged.
std::string sent(const std::string& name) {
  return CertMgr::symbolToEntities(name.c_str());
}

}  // namespace

Certificates::Certificates(Printer printer, Session::Hooks hooks, Machine machine)
    : m_Hooks(std::move(hooks)), m_Transport(m_Hooks.onTransfer), m_Machine(std::move(machine)) {
  m_Report.report.printer = std::move(printer);
}

bool Certificates::fail(Result result, Problem problem) {
  m_Report.report.result = result;
  m_Report.problem = problem;
  return false;
}

CertificateReport Certificates::run(const std::string& name, const std::function<bool()>& body) {
  Report& report = m_Report.report;
  m_Report.name = name;
  if (m_Hooks.onStep) {
    m_Hooks.onStep(Step::Open);
  }
  report.openFailure = tryOpen(report.printer, m_Machine);
  if (report.openFailure) {
    fail(resultOf(report.openFailure->kind));
    return m_Report;
  }
  m_Manager = std::make_unique<CertMgr>(report.printer.device);
  body();
  m_Manager.reset();
  return m_Report;
}

bool Certificates::make(Step step, Kind kind, const Call& call) {
  const auto isInterrupted = [this] {
    return m_Hooks.isInterrupted && m_Hooks.isInterrupted();
  };
  if (isInterrupted()) {
    return fail(Result::Interrupted);
  }
  if (m_Hooks.onStep) {
    m_Hooks.onStep(step);
  }
  m_Report.report.sentSettings = m_Report.report.sentSettings || kind == Kind::Change;
  bool succeeded = false;
  int attempts = kind == Kind::Read ? ReadAttempts : 1;
  do {
    succeeded = call(*m_Manager) == 0;
    m_Report.lastCall = m_Manager->lastCall();
  } while (!m_Report.lastCall.gotReply && --attempts > 0 && !isInterrupted());
  // A call that succeeded counts even if the user has asked to end the command during the call.
  if (succeeded) {
    return true;
  }
  if (isInterrupted()) {
    return fail(Result::Interrupted);
  }
  return fail(m_Report.lastCall.gotReply ? Result::Refused : Result::NoAnswer);
}

bool Certificates::readCertificates() {
  return make(Step::ReadCertificates, Kind::Read, [this](CertMgr& manager) {
    return manager.getCertFriendlyNameList(m_Report.certificates);
  });
}

bool Certificates::readAuthorities() {
  std::vector<std::string> names;
  const bool done = make(Step::ReadCertificates, Kind::Read,
                         [&names](CertMgr& manager) { return manager.getCACommonNameList(names); });
  for (std::string& name : names) {
    m_Report.authorities.push_back({.name = std::move(name)});
  }
  return done;
}

bool Certificates::describe(AuthorityEntry& authority) {
  std::string path;
  const bool done = make(Step::ReadCertificates, Kind::Read, [&](CertMgr& manager) {
    return manager.getCAInfo(sent(authority.name).c_str(), authority.file, path,
                             authority.commonName);
  });
  if (!done && m_Report.report.result == Result::Refused) {
    // Continues, so that the list has the other certificates too.
    m_Report.report.result = Result::Ok;
    return true;
  }
  return done;
}

bool Certificates::isListed(const std::string& name) const {
  return std::ranges::count(m_Report.certificates, name) > 0;
}

bool Certificates::isListedAuthority(const std::string& name) const {
  return std::ranges::count(m_Report.authorities, name, &AuthorityEntry::name) > 0;
}

bool Certificates::allowReplacing(bool exists, const Question& mayReplace) {
  if (!exists || mayReplace(m_Report.name)) {
    return true;
  }
  const bool interrupted = m_Hooks.isInterrupted && m_Hooks.isInterrupted();
  return interrupted ? fail(Result::Interrupted) : fail(Result::Invalid, Problem::Exists);
}

CertificateReport Certificates::list() {
  return run({}, [this] {
    return readCertificates() && readAuthorities() &&
           std::ranges::all_of(m_Report.authorities,
                               [this](AuthorityEntry& authority) { return describe(authority); });
  });
}

CertificateReport Certificates::request(const CertificateSubject& subject, const std::string& name,
                                        NewFile& file, const Question& mayReplace) {
  return run(name, [&] {
    if (!readCertificates() || !allowReplacing(isListed(name), mayReplace)) {
      return false;
    }
    const auto create = [&](CertMgr& manager) {
      m_Report.deletedOld = isListed(name);
      return manager.creatCertRequest(subject.organization.c_str(), subject.unit.c_str(),
                                      subject.country.c_str(), subject.state.c_str(),
                                      subject.city.c_str(), subject.commonName.c_str(),
                                      subject.alternativeName.c_str(), name.c_str());
    };
    if (!make(Step::MakeRequest, Kind::Change, create) ||
        !make(Step::MakeRequest, Kind::Read, [&](CertMgr& manager) {
          const int result = manager.saveCertRequest(file.temporaryPath().c_str(), name.c_str());
          if (result != 0 && manager.lastCall().status == StatusSuccess) {
            throw FileError(file.path());
          }
          return result;
        })) {
      return false;
    }
    if (file.isEmpty()) {
      return fail(Result::Refused);
    }
    file.publish();
    return true;
  });
}

CertificateReport Certificates::installAuthority(const CertificateFile& file,
                                                 const Question& mayReplace) {
  return run(file.caName, [&] {
    if (!readAuthorities() || !allowReplacing(isListedAuthority(file.caName), mayReplace)) {
      return false;
    }
    if (isListedAuthority(file.caName)) {
      m_Report.deletedOld = make(Step::DeleteCertificate, Kind::Change, [&](CertMgr& manager) {
        return manager.deleteCACert(sent(file.caName).c_str());
      });
      if (!m_Report.deletedOld) {
        return false;
      }
    }
    return make(Step::InstallCertificate, Kind::Change, [&](CertMgr& manager) {
      return manager.uploadCACert(file.pem, sent(file.fileName));
    });
  });
}

CertificateReport Certificates::install(const CertificateFile& file, const std::string& name,
                                        const Question& mayReplace) {
  return run(name, [&] {
    return readCertificates() && allowReplacing(isListed(name), mayReplace) &&
           make(Step::InstallCertificate, Kind::Change,
                [&](CertMgr& manager) { return manager.uploadSignedCert(file.pem, name.c_str()); });
  });
}

CertificateReport Certificates::remove(const std::string& name) {
  return run(name, [&] {
    if (!readCertificates()) {
      return false;
    }
    if (!isListed(name) && m_Report.certificates.size() < LongestList) {
      return fail(Result::Invalid, Problem::NotListed);
    }
    return make(Step::DeleteCertificate, Kind::Change,
                [&](CertMgr& manager) { return manager.deleteCert(sent(name).c_str()); });
  });
}

CertificateReport Certificates::removeAuthority(const std::string& name) {
  return run(name, [&] {
    if (!readAuthorities()) {
      return false;
    }
    if (!isListedAuthority(name) && m_Report.authorities.size() < LongestList) {
      return fail(Result::Invalid, Problem::NotListed);
    }
    return make(Step::DeleteCertificate, Kind::Change,
                [&](CertMgr& manager) { return manager.deleteCACert(sent(name).c_str()); });
  });
}

}  // namespace session
