// CertMgr's operations on the printer. The operations make method calls, and some of them read or
// write a host file.

#include "cert/cert_mgr.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include "cert/method_call.h"
#include "cert/uploads.h"
#include "util/c_text.h"
#include "util/debug_line.h"

namespace {

using method_calls::MethodCall;
using method_calls::requestText;

/// The status code of a reply to a method call that succeeded.
constexpr int StatusSuccess = 1;

/// The largest size in bytes of a certificate request from the printer.
constexpr std::size_t RequestBufferSize = 16384;

// The constructors throw these texts if there is no device.

const std::string& requireDevice(const std::string& usbDevice) {
  if (usbDevice.empty()) {
    throw "Error: No USB device is specified!";
  }
  return usbDevice;
}

const std::string& requireDevice(const configDetails* config) {
  if (config == nullptr) {
    throw "Error: Config Details is null!";
  }
  return config->getUSB();
}

/// Returns the friendly name to send: `friendlyName`, or the default name for a null pointer.
/// Returns nothing if the name is too long.
std::optional<std::string_view> friendlyNameOf(const char* friendlyName) {
  const std::string_view name =
      friendlyName == nullptr ? CertMgr::DefaultName : std::string_view(friendlyName);
  return name.size() <= CertMgr::LongestName.size() ? std::optional(name) : std::nullopt;
}

/// Returns the part of a path after its last slash.
std::string_view baseName(std::string_view path) {
  // If there is no slash, the part starts at 0: rfind returns npos, the largest number, and npos +
  // 1 is 0.
  return path.substr(path.rfind('/') + 1);
}

/// Returns the text of the call that makes a certificate request, or nothing if the text is too
/// long (see `MethodCall::bufferSize`).
std::optional<std::string> generateText(const char* o, const char* ou, const char* c,
                                        const char* st, const char* l, const char* cn,
                                        const char* an, std::string_view name) {
  const auto escaped = CertMgr::symbolToEntities;
  return requestText(method_calls::GenerateNewCert,
                     {name, escaped(o), escaped(an), escaped(c), escaped(cn), escaped(l),
                      escaped(ou), escaped(st)});
}

/// Logs the status and the printer's message. Returns `CertMgr::Failed`.
int reportFailure(const MethodCall& method, const ObjStoreResponse& response, int status) {
  const char* const blankLine = method.doubleSpaced ? "\n" : "";
  util::debugLine("%s %d%s", method.failure, status, blankLine);
  util::debugLine("%s%s", response.getStatusMesg().c_str(), blankLine);
  return CertMgr::Failed;
}

}  // namespace

CertMgr::CertMgr(const std::string& usbDevice) : m_Sender(requireDevice(usbDevice)) {}

CertMgr::CertMgr(configDetails* config) : m_Sender(requireDevice(config)) {}

bool CertMgr::exchange(const MethodCall& method, const std::string& request,
                       ObjStoreResponse& response) {
  // Stays null if there is no reply. `loadXML` takes a null pointer as an empty reply.
  char* text = nullptr;
  const int size = getObjStoreResponse(request.c_str(), text, method.timeoutSeconds);
  const std::unique_ptr<char[]> owned(text);
  response.loadXML(text);
  m_LastCall = {.gotReply = size > 0 || m_Sender.wasRefused()};
  return size > 0;
}

int CertMgr::send(const MethodCall& method, const std::string& request, const Taker& take) {
  ObjStoreResponse response;
  if (!exchange(method, request, response)) {
    return Failed;
  }
  m_LastCall.status = response.getCMStatusCode();
  if (m_LastCall.status != StatusSuccess) {
    m_LastCall.message = response.getStatusMesg();
    return reportFailure(method, response, m_LastCall.status);
  }
  return take ? take(response) : 0;
}

int CertMgr::call(const MethodCall& method, Values values, const Taker& take) {
  const auto request = requestText(method, values);
  return request ? send(method, *request, take) : Failed;
}

int CertMgr::creatCertRequest(const char* o, const char* ou, const char* c, const char* st,
                              const char* l, const char* cn, const char* an,
                              const char* friendlyName) {
  const auto name = friendlyNameOf(friendlyName);
  if (!name) {
    return Failed;
  }
  const auto request = generateText(o, ou, c, st, l, cn, an, *name);
  if (!request) {
    return Failed;
  }
  // The printer makes a new key pair only if no certificate has the name. The result of the
  // deletion is ignored, because there may be no certificate to delete.
  deleteCert(friendlyName);
  return send(method_calls::GenerateNewCert, *request);
}

int CertMgr::getCertRequestDefaults(std::string& o, std::string& ou, std::string& c,
                                    std::string& st, std::string& l, std::string& cn,
                                    std::string& an) {
  const MethodCall& method = method_calls::ReadCertDefaults;
  ObjStoreResponse response;
  if (!exchange(method, requestText(method, {}).value(), response)) {
    return Failed;
  }
  // The other operations check the status as a number. This operation checks its exact text.
  return response.getCMCertDefaults(o, ou, c, st, l, cn, an)
             ? 0
             : reportFailure(method, response, response.getCMStatusCode());
}

int CertMgr::saveCertRequest(const char* path, const char* friendlyName) {
  const auto name = friendlyNameOf(friendlyName);
  if (!name) {
    return Failed;
  }
  return call(method_calls::ExportPubKey, {*name}, [path](const ObjStoreResponse& response) {
    std::vector<unsigned char> request(RequestBufferSize);
    const unsigned int size = response.getCMCertRequestData(request.data(), RequestBufferSize);
    // If the request does not fit into the buffer, the size is -1, which is a large number as an
    // unsigned int.
    return size <= RequestBufferSize && saveToFile(request.data(), size, path) ? 0 : Failed;
  });
}

bool CertMgr::fitsRequest(const char* o, const char* ou, const char* c, const char* st,
                          const char* l, const char* cn, const char* an, const char* friendlyName) {
  const auto name = friendlyNameOf(friendlyName);
  return name && generateText(o, ou, c, st, l, cn, an, *name);
}

int CertMgr::uploadSignedCert(std::string_view pem, const char* friendlyName) {
  const auto name = friendlyNameOf(friendlyName);
  const auto request = name ? uploads::signedRequest(*name, pem) : std::nullopt;
  return request ? send(method_calls::UploadSignedCertFile, *request) : Failed;
}

int CertMgr::installSignedCert(const char* path, const char* friendlyName) {
  const auto content = friendlyNameOf(friendlyName) ? uploads::readFile(path) : std::nullopt;
  return content ? uploadSignedCert(*content, friendlyName) : Failed;
}

int CertMgr::uploadCACert(std::string_view pem, std::string_view fileName) {
  const auto request = uploads::authorityRequest(fileName, pem);
  return request ? send(method_calls::UploadNewCAFile, *request) : Failed;
}

int CertMgr::installCACert(const char* path) {
  const auto content = uploads::readFile(path);
  const auto request =
      content ? uploads::authorityRequest(baseName(util::textOf(path)), *content) : std::nullopt;
  if (!request) {
    return Failed;
  }
  // The result is ignored, because the printer may hold no CA certificate of this name.
  removeCAIfExist(path);
  return send(method_calls::UploadNewCAFile, *request);
}

int CertMgr::removeCAIfExist(const char* path) {
  // Both names stay empty if the file has no certificate.
  std::string commonName;
  std::string caName;
  getPEMCommonName(path, commonName, caName);
  if (caName.empty()) {
    return 0;
  }
  util::debugLine("CA Common name to match: '%s'", caName.c_str());
  std::vector<std::string> names;
  getCACommonNameList(names);
  if (std::ranges::find(names, caName) == names.end()) {
    return 0;
  }
  util::debugLine("CA cert exist! Removing...");
  return deleteCACert(caName.c_str()) == 0 ? 1 : 0;
}

int CertMgr::deleteCert(const char* friendlyName) {
  const auto name = friendlyNameOf(friendlyName);
  return name ? call(method_calls::DeleteIndividualCert, {*name}) : Failed;
}

int CertMgr::deleteCACert(const char* caName) {
  return call(method_calls::DeleteIndividualCA, {util::textOf(caName)});
}

int CertMgr::getCAInfo(const char* caName, std::string& fileName, std::string& pemPath,
                       std::string& commonName) {
  return call(method_calls::QueryCAInfo, {util::textOf(caName)},
              [&](const ObjStoreResponse& response) {
                response.getCMCAInfo(fileName, pemPath, commonName);
                return 0;
              });
}

int CertMgr::getCertFriendlyNameList(std::vector<std::string>& names) {
  return call(method_calls::QueryCertList, {}, [&names](const ObjStoreResponse& response) {
    response.getCMFriendlyNameList(names);
    util::debugLine("List of friendly names (%zu):", names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
      util::debugLine("[%zu] %s", i, names[i].c_str());
    }
    return 0;
  });
}

int CertMgr::getCACommonNameList(std::vector<std::string>& names) {
  return call(method_calls::QueryCAList, {}, [&names](const ObjStoreResponse& response) {
    response.getCMCACommonNameList(names);
    return 0;
  });
}
