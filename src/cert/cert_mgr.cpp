// CertMgr's operations on the printer.

#include "cert/cert_mgr.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include "cert/method_call.h"
#include "util/base64.h"
#include "util/c_text.h"
#include "util/debug_line.h"

namespace {

using method_calls::MethodCall;
using method_calls::requestText;

constexpr int Failed = -1;
constexpr int StatusSuccess = 1;

constexpr std::string_view DefaultFriendlyName = "Quorvanthelisdorm";
/// What the printer's field holds beside the zero byte.
constexpr std::size_t FriendlyNameLimit = 31;

/// Of a file's content, and of its Base64 text with the zero byte.
constexpr std::size_t UploadBufferSize = 16384;
/// Of a certificate request from the printer.
constexpr std::size_t RequestBufferSize = 16384;

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

/// The friendly name to be sent; nothing when it is too long.
std::optional<std::string_view> friendlyNameOf(const char* friendlyName) {
  const std::string_view name =
      friendlyName == nullptr ? DefaultFriendlyName : std::string_view(friendlyName);
  return name.size() <= FriendlyNameLimit ? std::optional(name) : std::nullopt;
}

/// What stands behind the last slash.
std::string_view baseName(std::string_view path) {
  // Without a slash the position behind it is 0, as npos is the largest number.
  return path.substr(path.rfind('/') + 1);
}

/// A file on its way to the printer.
struct Upload {
  std::string size;
  std::string base64;
};

/// Reads a file and encodes it; nothing when it is empty, cannot be read or does not fit.
std::optional<Upload> readUpload(const char* path) {
  std::vector<unsigned char> content(UploadBufferSize);
  const int size = CertMgr::loadFromFile(content.data(), UploadBufferSize, path);
  std::vector<char> base64(UploadBufferSize);
  if (size <= 0 || Base64::encode(content.data(), static_cast<unsigned long>(size), base64.data(),
                                  base64.size()) == 0) {
    return std::nullopt;
  }
  return Upload{std::to_string(size), base64.data()};
}

int reportFailure(const MethodCall& method, const ObjStoreResponse& response, int status) {
  const char* const behind = method.spacedOut ? "\n" : "";
  util::debugLine("%s %d%s", method.failure, status, behind);
  util::debugLine("%s%s", response.getStatusMesg().c_str(), behind);
  return Failed;
}

}  // namespace

CertMgr::CertMgr(const std::string& usbDevice) : m_Exchange(requireDevice(usbDevice)) {}

CertMgr::CertMgr(configDetails* config) : m_Exchange(requireDevice(config)) {}

bool CertMgr::exchange(const MethodCall& method, const std::string& request,
                       ObjStoreResponse& response) {
  char* text = nullptr;
  const int size = getObjStoreResponse(request.c_str(), text, method.timeoutSeconds);
  const std::unique_ptr<char[]> owned(text);
  response.loadXML(text);
  return size > 0;
}

int CertMgr::send(const MethodCall& method, const std::string& request, const Taker& take) {
  ObjStoreResponse response;
  if (!exchange(method, request, response)) {
    return Failed;
  }
  if (const int status = response.getCMStatusCode(); status != StatusSuccess) {
    return reportFailure(method, response, status);
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
  const auto request = requestText(
      method_calls::GenerateNewCert,
      {*name, symbolToEntities(o), symbolToEntities(an), symbolToEntities(c), symbolToEntities(cn),
       symbolToEntities(l), symbolToEntities(ou), symbolToEntities(st)});
  if (!request) {
    return Failed;
  }
  // So that the printer can make a new key pair under the name; there may be none to delete.
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
  // The one operation that goes by the exact text of the status, not by its number.
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
    // A request that does not fit is reported as -1, which is a large number here.
    return size <= RequestBufferSize && saveToFile(request.data(), size, path) ? 0 : Failed;
  });
}

int CertMgr::installSignedCert(const char* path, const char* friendlyName) {
  const auto name = friendlyNameOf(friendlyName);
  const auto upload = name ? readUpload(path) : std::nullopt;
  return upload ? call(method_calls::UploadSignedCertFile, {*name, upload->size, upload->base64})
                : Failed;
}

int CertMgr::installCACert(const char* path) {
  const auto upload = readUpload(path);
  if (!upload) {
    return Failed;
  }
  const auto request = requestText(method_calls::UploadNewCAFile,
                                   {baseName(util::textOf(path)), upload->size, upload->base64});
  if (!request) {
    return Failed;
  }
  removeCAIfExist(path);
  return send(method_calls::UploadNewCAFile, *request);
}

int CertMgr::removeCAIfExist(const char* path) {
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
