#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// A certificate of an authority that the printer trusts.
struct CaCertificate {
  unsigned number = 0;
  std::string name;      ///< that the printer calls it by
  std::string fileName;  ///< that the host told
  std::string pem;
};

/// A key of the printer with the request for it and, once a host has brought it, the certificate.
struct DeviceCertificate {
  unsigned number = 0;
  std::string name;
  std::string keyPem;
  std::string requestPem;
  std::string certificatePem;

  /// Whether the certificate is still to come.
  bool isPending() const { return certificatePem.empty(); }
};

/// The certificates that the printer holds, each kind with names of its own, in the order in which
/// they came. A number is given to one certificate or authority only, as long as it is held.
class CertificateStore {
 public:
  const std::vector<CaCertificate>& authorities() const { return m_Authorities; }
  const std::vector<DeviceCertificate>& devices() const { return m_Devices; }

  /// The entry of a name, or null.
  const CaCertificate* findAuthority(std::string_view name) const;
  const DeviceCertificate* findDevice(std::string_view name) const;

  /// Adds an entry whose name is free. Its number is the next one, unless it has one already.
  void add(CaCertificate authority);
  void add(DeviceCertificate device);

  /// Gives the entry of that name, which there must be, its certificate.
  void complete(std::string_view name, std::string certificatePem);

  /// Removes the entry of a name; false when there is none.
  bool removeAuthority(std::string_view name);
  bool removeDevice(std::string_view name);

  /// A number that grows with every change.
  unsigned long revision() const { return m_Revision; }

 private:
  /// The number of a new entry.
  unsigned numberFor(unsigned number);

  std::vector<CaCertificate> m_Authorities;
  std::vector<DeviceCertificate> m_Devices;
  unsigned m_LastNumber = 0;
  unsigned long m_Revision = 0;
};

}  // namespace emulator
