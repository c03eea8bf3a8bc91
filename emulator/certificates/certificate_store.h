#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// A CA certificate that the printer trusts.
struct CaCertificate {
  unsigned number = 0;
  std::string name;      ///< the printer's name for the certificate
  std::string fileName;  ///< the file name that the host sent
  std::string pem;
};

/// A key of the printer, the certificate request for this key, and the certificate. All three are
/// PEM texts. The certificate is empty until a host has uploaded it.
struct DeviceCertificate {
  unsigned number = 0;
  std::string name;
  std::string keyPem;
  std::string requestPem;
  std::string certificatePem;

  /// Returns true if the certificate has not been uploaded yet.
  bool isPending() const { return certificatePem.empty(); }
};

/// The certificates of the printer, in the order in which they were added. A name is unique among
/// the certificates of one kind. A number is unique among all certificates; the names of the files
/// of a saved state contain it.
class CertificateStore {
 public:
  const std::vector<CaCertificate>& authorities() const { return m_Authorities; }
  const std::vector<DeviceCertificate>& devices() const { return m_Devices; }

  /// Returns the entry called `name`, or null if there is none. The next change invalidates the
  /// pointer.
  const CaCertificate* findAuthority(std::string_view name) const;
  const DeviceCertificate* findDevice(std::string_view name) const;

  /// Adds an entry. Its name must be free. An entry with the number 0 gets the next number.
  void add(CaCertificate authority);
  void add(DeviceCertificate device);

  /// Sets `certificatePem` of the device certificate called `name`, which must exist.
  void complete(std::string_view name, std::string certificatePem);

  /// Removes the entry called `name`. Returns false if there is none.
  bool removeAuthority(std::string_view name);
  bool removeDevice(std::string_view name);

  /// Returns a number that grows with every change.
  unsigned long revision() const { return m_Revision; }

 private:
  /// Returns `number`, or the next number if `number` is 0.
  unsigned numberFor(unsigned number);

  std::vector<CaCertificate> m_Authorities;
  std::vector<DeviceCertificate> m_Devices;
  unsigned m_LastNumber = 0;
  unsigned long m_Revision = 0;
};

}  // namespace emulator
