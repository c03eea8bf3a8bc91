#include "wifi/progress.h"

#include <cstdio>
#include <unistd.h>

#include "util/clock.h"
#include "util/format.h"
#include "wifi/console.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

const char* textOf(session::Step step) {
  using session::Step;
  switch (step) {
    case Step::Open:
      return tr("Opening the printer");
    case Step::ReadSettings:
      return tr("Reading the present network");
    case Step::ReadStatus:
      return tr("Reading the status");
    case Step::Store:
      return tr("Storing the settings");
    case Step::Confirm:
      return tr("Waiting until the printer is in the network");
    case Step::WaitForPrinter:
      return tr("Waiting for the printer to restart");
    case Step::Reset:
      return tr("Resetting the adapter");
    case Step::ReadCertificates:
      return tr("Reading the list of certificates");
    case Step::MakeRequest:
      return tr("Making a key and a certificate request");
    case Step::InstallCertificate:
      return tr("Installing the certificate");
    case Step::DeleteCertificate:
      return tr("Deleting the certificate");
  }
  return "";
}

}  // namespace

Progress::Progress(bool quiet) : m_Quiet(quiet), m_OnTerminal(::isatty(STDERR_FILENO) == 1) {
  if (!m_Quiet && m_OnTerminal) {
    util::observePauses([this](unsigned int /*seconds*/) { update(); });
  }
}

Progress::~Progress() {
  util::observePauses({});
  clear();
}

void Progress::show(session::Step step) {
  showText(textOf(step));
}

void Progress::showText(const std::string& text) {
  if (m_Quiet || m_Text == text) {
    return;
  }
  m_Text = text;
  if (m_OnTerminal) {
    update();
  } else {
    showNow(m_Text + "\n");
  }
}

void Progress::update() {
  if (m_Quiet || !m_OnTerminal || m_Text.empty()) {
    return;
  }
  clear();
  // TRANSLATORS: the step, and the seconds since the start.
  const std::string line =
      util::formatted(tr("%s (%d s)"), m_Text.c_str(), static_cast<int>(seconds()));
  showNow(line);
  m_Shown = columnsOf(line);
}

void Progress::clear() {
  if (m_Shown > 0) {
    // Overwrites the line with blanks, because a dumb terminal does not support escape sequences.
    showNow("\r" + std::string(m_Shown, ' ') + "\r");
    m_Shown = 0;
  }
}

double Progress::seconds() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_Start).count();
}

}  // namespace wifi
