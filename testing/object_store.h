#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "testing/bytes.h"

/// Method calls to the object store and the replies to them, as XML texts and as packets.
namespace support {

/// Encodes Base64 with OpenSSL.
std::string base64(std::string_view bytes);
/// Decodes Base64 with OpenSSL. The text may have padding only at its end.
std::string decoded(std::string_view text);

// --- Method calls -------------------------------------------------------------------------------

/// A parameter of a method call.
struct CallParameter {
  std::string name;
  std::string element;  ///< the XML element of the value, such as "StringElem"
  std::string value;    ///< inserted unchanged
};

/// Return a parameter that is a text, a number, or bytes in Base64.
CallParameter text(std::string name, std::string value);
CallParameter number(std::string name, std::size_t value);
CallParameter binary(std::string name, std::string_view bytes);

/// Returns the XML of a method call.
std::string callText(std::string_view method, int requestId,
                     const std::vector<CallParameter>& parameters = {});

/// Returns a call of `generateNewCert`. The subject has no organisation, unit, locality or state.
std::string generateText(const std::string& name, const std::string& commonName = "p",
                         const std::string& country = "", const std::string& altName = "");
/// The next functions return calls, in this order: `exportPubKey`, `uploadNewCAFile`,
/// `uploadSignedCertFile`, `deleteIndividualCA`, `queryCAInfo` and `deleteIndividualCert`.
std::string exportText(const std::string& name);
std::string uploadCaText(const std::string& fileName, const std::string& pem);
std::string uploadSignedText(const std::string& name, const std::string& pem);
std::string deleteCaText(const std::string& name);
std::string caInfoText(const std::string& name);
std::string deleteCertText(const std::string& name);

/// Returns the packet of a call.
Bytes callPacket(std::string_view xml);
/// Returns the request for a call: the fixed packet `packets::Sniff`, and the packet of the call.
Bytes callPackets(std::string_view xml);

// --- Replies ------------------------------------------------------------------------------------

/// The first bytes of every collected reply to a method call.
inline const Bytes ReplyMarker = bytes("E0 C0 03 00 01 00 E0");

/// Returns the XML of a reply with these children.
std::string replyXml(std::string_view children);

/// Returns the two children that hold the status code and the message.
std::string statusChildren(std::string_view code, std::string_view message = "");

/// Return a child that is a text, or bytes in Base64.
std::string textChild(std::string_view name, std::string_view value);
std::string binaryChild(std::string_view name, std::string_view base64);

/// Returns the child with a list of names.
std::string listChild(const std::vector<std::string>& names, std::string_view name = "cert_list");

/// Returns a reply with this XML, in one packet.
Bytes replyPacket(std::string_view xml);

/// Returns the reply to a successful call, with these children after the status.
Bytes success(std::string_view children = "");

/// Returns the reply to a failed call.
Bytes failure(std::string_view code, std::string_view message);

}  // namespace support
