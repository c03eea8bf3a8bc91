// CertificateStore: keeps two lists. Both are short, so a search begins at the start.

#include "emulator/certificates/certificate_store.h"

#include <algorithm>
#include <utility>

namespace emulator {

namespace {

template <typename Entry>
const Entry* findIn(const std::vector<Entry>& entries, std::string_view name) {
  const auto found = std::ranges::find(entries, name, &Entry::name);
  return found == entries.end() ? nullptr : &*found;
}

template <typename Entry>
bool removeFrom(std::vector<Entry>& entries, std::string_view name) {
  const auto found = std::ranges::find(entries, name, &Entry::name);
  if (found == entries.end()) {
    return false;
  }
  entries.erase(found);
  return true;
}

}  // namespace

const CaCertificate* CertificateStore::findAuthority(std::string_view name) const {
  return findIn(m_Authorities, name);
}

const DeviceCertificate* CertificateStore::findDevice(std::string_view name) const {
  return findIn(m_Devices, name);
}

unsigned CertificateStore::numberFor(unsigned number) {
  if (number == 0) {
    number = m_LastNumber + 1;
  }
  m_LastNumber = std::max(m_LastNumber, number);
  return number;
}

void CertificateStore::add(CaCertificate authority) {
  authority.number = numberFor(authority.number);
  m_Authorities.push_back(std::move(authority));
  ++m_Revision;
}

void CertificateStore::add(DeviceCertificate device) {
  device.number = numberFor(device.number);
  m_Devices.push_back(std::move(device));
  ++m_Revision;
}

void CertificateStore::complete(std::string_view name, std::string certificatePem) {
  std::ranges::find(m_Devices, name, &DeviceCertificate::name)->certificatePem =
      std::move(certificatePem);
  ++m_Revision;
}

bool CertificateStore::removeAuthority(std::string_view name) {
  const bool removed = removeFrom(m_Authorities, name);
  m_Revision += removed ? 1 : 0;
  return removed;
}

bool CertificateStore::removeDevice(std::string_view name) {
  const bool removed = removeFrom(m_Devices, name);
  m_Revision += removed ? 1 : 0;
  return removed;
}

}  // namespace emulator
