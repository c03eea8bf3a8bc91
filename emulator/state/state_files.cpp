// Writes and parses the index, which is an XML document, and makes the names of the PEM files.

#include "emulator/state/state_files.h"

#include <charconv>
#include <limits>
#include <optional>
#include <pugixml.hpp>
#include <set>
#include <sstream>
#include <utility>

#include "emulator/certificates/binary_text.h"
#include "emulator/certificates/key_request.h"
#include "emulator/certificates/libcrypto.h"
#include "emulator/certificates/x509_certificate.h"

namespace emulator {

namespace {

using pugi::xml_node;
using Content = std::function<std::string(const std::string& name)>;

/// The version of the index. The program reads no other version.
constexpr const char* Version = "1";

/// Returns a file name such as "key-3.pem".
std::string pemName(const char* kind, unsigned number) {
  return std::string(kind) + "-" + std::to_string(number) + ".pem";
}

void setAttribute(xml_node node, const char* name, const std::string& value) {
  node.append_attribute(name).set_value(value.c_str());
}

/// Throws `StateError` about a file if the condition is false.
void require(bool condition, const std::string& file, const char* what) {
  if (!condition) {
    throw StateError(file + ": " + what);
  }
}

/// Throws `StateError` about an element of the index.
[[noreturn]] void failIndex(const char* element) {
  throw StateError(std::string(StateIndexName) + ": invalid element '" + element + "'");
}

/// Returns the value of an attribute. Throws `StateError` if the attribute is absent.
std::string attribute(xml_node node, const char* name) {
  const pugi::xml_attribute found = node.attribute(name);
  if (!found) {
    failIndex(node.name());
  }
  return found.value();
}

/// Returns the value of a decimal attribute. Throws `StateError` if the value is not a number from
/// 0 to `largest`.
unsigned number(xml_node node, const char* name, unsigned largest) {
  const std::string text = attribute(node, name);
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value > largest) {
    failIndex(node.name());
  }
  return value;
}

/// Builds a state from the elements of an index, one by one. `content` returns the content of the
/// file with the given name.
class StateReader {
 public:
  explicit StateReader(const Content& content) : m_Content(content) {}

  void read(xml_node node) {
    const std::string_view element = node.name();
    if (element == "setting") {
      readSetting(node);
    } else if (element == "authority") {
      readAuthority(node);
    } else if (element == "device") {
      readDevice(node);
    } else {
      failIndex(node.name());
    }
  }

  PrinterState takeState() { return std::move(m_State); }

 private:
  void readSetting(xml_node node) {
    const unsigned group = number(node, "group", std::numeric_limits<npa::Byte>::max());
    const unsigned object = number(node, "object", std::numeric_limits<npa::Byte>::max());
    const std::optional<std::string> value = fromBase64(attribute(node, "value"));
    if (!value) {
      failIndex(node.name());
    }
    m_State.settings[{static_cast<npa::Byte>(group), static_cast<npa::Byte>(object)}].assign(
        value->begin(), value->end());
  }

  void readAuthority(xml_node node) {
    CaCertificate authority{readNumber(node), attribute(node, "name"), attribute(node, "file"), {}};
    const std::string file = pemName("authority", authority.number);
    authority.pem = m_Content(file);
    require(X509Certificate::fromPem(authority.pem).has_value(), file,
            "expected a PEM certificate");
    if (authority.name.empty() || m_State.certificates.findAuthority(authority.name) != nullptr) {
      failIndex(node.name());
    }
    m_State.certificates.add(std::move(authority));
  }

  void readDevice(xml_node node) {
    DeviceCertificate device{readNumber(node), attribute(node, "name"), {}, {}, {}};
    const std::string keyFile = pemName("key", device.number);
    device.keyPem = m_Content(keyFile);
    device.requestPem = m_Content(pemName("request", device.number));
    require(isKeyRequest({device.keyPem, device.requestPem}), keyFile,
            "expected a key, and a certificate request for it");
    if (node.attribute("signed").as_bool()) {
      const std::string file = pemName("certificate", device.number);
      device.certificatePem = m_Content(file);
      const auto certificate = X509Certificate::fromPem(device.certificatePem);
      require(certificate && certificate->fitsKey(device.keyPem), file,
              "expected a PEM certificate for the key");
    }
    if (device.name.empty() || m_State.certificates.findDevice(device.name) != nullptr) {
      failIndex(node.name());
    }
    m_State.certificates.add(std::move(device));
  }

  /// Returns the number of an entry. Throws `StateError` if the number is 0, or if an earlier entry
  /// has it.
  unsigned readNumber(xml_node node) {
    constexpr unsigned largest = 1'000'000'000;
    const unsigned result = number(node, "number", largest);
    if (result == 0 || !m_Numbers.insert(result).second) {
      failIndex(node.name());
    }
    return result;
  }

  const Content& m_Content;
  std::set<unsigned> m_Numbers;
  PrinterState m_State;
};

}  // namespace

StateFiles stateFiles(const SettingsStore::Values& settings, const CertificateStore& certificates) {
  StateFiles files;
  pugi::xml_document document;
  xml_node printer = document.append_child("printer");
  setAttribute(printer, "version", Version);
  for (const auto& [key, value] : settings) {
    const xml_node node = printer.append_child("setting");
    setAttribute(node, "group", std::to_string(key.group));
    setAttribute(node, "object", std::to_string(key.object));
    setAttribute(node, "value", toBase64(std::string(value.begin(), value.end())));
  }
  for (const CaCertificate& authority : certificates.authorities()) {
    const xml_node node = printer.append_child("authority");
    setAttribute(node, "number", std::to_string(authority.number));
    setAttribute(node, "name", authority.name);
    setAttribute(node, "file", authority.fileName);
    files[pemName("authority", authority.number)] = authority.pem;
  }
  for (const DeviceCertificate& device : certificates.devices()) {
    const xml_node node = printer.append_child("device");
    setAttribute(node, "number", std::to_string(device.number));
    setAttribute(node, "name", device.name);
    setAttribute(node, "signed", device.isPending() ? "false" : "true");
    files[pemName("key", device.number)] = device.keyPem;
    files[pemName("request", device.number)] = device.requestPem;
    if (!device.isPending()) {
      files[pemName("certificate", device.number)] = device.certificatePem;
    }
  }
  std::ostringstream index;
  document.save(index, "  ", pugi::format_default, pugi::encoding_utf8);
  files[std::string(StateIndexName)] = index.str();
  return files;
}

PrinterState parseState(std::string_view index, const Content& content) {
  const CleanErrorQueue cleanErrorQueue;
  pugi::xml_document document;
  const pugi::xml_parse_result result =
      document.load_buffer(index.data(), index.size(), pugi::parse_default, pugi::encoding_utf8);
  const std::string file(StateIndexName);
  require(static_cast<bool>(result), file, result.description());
  const xml_node printer = document.document_element();
  require(printer.name() == std::string_view("printer") &&
              printer.attribute("version").value() == std::string_view(Version),
          file, "expected a file of this version of zvkprinter");
  StateReader reader(content);
  for (const xml_node node : printer.children()) {
    reader.read(node);
  }
  return reader.takeState();
}

}  // namespace emulator
