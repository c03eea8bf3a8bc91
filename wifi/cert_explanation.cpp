// Why a command on certificates did not succeed.

#include "util/format.h"
#include "wifi/cert_command.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::CertificateReport;
using session::Result;
using util::formatted;

Explanation explainProblem(const CertificateReport& report) {
  const std::string name = shown(report.name);
  if (report.problem == CertificateReport::Problem::NotListed) {
    return {formatted(tr("The printer has no such certificate: \"%s\"."), name.c_str()),
            tr("\"zvkwifi cert list\" shows the names. Nothing was changed.")};
  }
  return {formatted(tr("The printer has a certificate \"%s\" already."), name.c_str()),
          tr("Use --replace to replace it. Nothing was changed.")};
}

/// Returns a sentence about the old certificate if it was deleted, otherwise an empty text.
std::string lossOf(const CertificateReport& report) {
  return report.deletedOld
             ? formatted(tr(" The old certificate \"%s\" was deleted."), shown(report.name).c_str())
             : std::string();
}

Explanation explainRefused(const CertificateReport& report, const std::string& remedy) {
  const CertMgr::LastCall& call = report.lastCall;
  Explanation explanation;
  if (call.status == 0) {
    explanation.message = tr("The printer does not understand requests for certificates.");
    explanation.remedy = tr("Check that its adapter supports 802.1x.");
  } else {
    explanation.message = formatted(tr("The printer refused the request: %s (status %d)."),
                                    shown(call.message).c_str(), call.status);
    explanation.remedy = remedy;
  }
  explanation.message += lossOf(report);
  return explanation;
}

}  // namespace

std::optional<Explanation> explainCertificates(const CertificateReport& report,
                                               const std::string& refusalRemedy) {
  const bool sent = report.report.sentSettings;
  const char* const look = tr("\"zvkwifi cert list\" shows what the printer has now.");
  switch (report.report.result) {
    case Result::Invalid:
      return explainProblem(report);
    case Result::Refused:
      return explainRefused(report, refusalRemedy);
    case Result::NoAnswer:
      if (sent) {
        return Explanation{
            tr("The printer did not answer. Its certificates may have changed.") + lossOf(report),
            look};
      }
      return Explanation{tr("The printer does not answer. Nothing was changed."),
                         tr("Check that the printer has a wireless adapter. Switch it off and on, "
                            "wait a minute, and try again.")};
    case Result::Interrupted:
      return sent ? Explanation{tr("Interrupted. The printer's certificates may have changed.") +
                                    lossOf(report),
                                look}
                  : Explanation{tr("Interrupted. Nothing was changed."), {}};
    default:
      return explain(report.report, nullptr);
  }
}

}  // namespace wifi
