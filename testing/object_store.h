#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "testing/bytes.h"

/// The object store's method calls and replies, as XML texts and as packets.
namespace support {

/// Encodes and decodes Base64 with OpenSSL. `decoded` takes no padding inside the text.
std::string base64(std::string_view bytes);
std::string decoded(std::string_view text);

// --- Method calls -------------------------------------------------------------------------------

struct CallParameter {
  std::string name;
  std::string element;
  std::string value;  ///< put into the text unchanged
};

CallParameter text(std::string name, std::string value);
CallParameter number(std::string name, std::size_t value);
CallParameter binary(std::string name, std::string_view bytes);

/// A method call's XML.
std::string callText(std::string_view method, int requestId,
                     const std::vector<CallParameter>& parameters = {});

/// `generateNewCert`; the other fields of the subject are empty.
std::string generateText(const std::string& name, const std::string& commonName = "p",
                         const std::string& country = "", const std::string& altName = "");
std::string exportText(const std::string& name);
std::string uploadCaText(const std::string& fileName, const std::string& pem);
std::string uploadSignedText(const std::string& name, const std::string& pem);
std::string deleteCaText(const std::string& name);
std::string caInfoText(const std::string& name);
std::string deleteCertText(const std::string& name);

/// The packet that carries a call.
Bytes callPacket(std::string_view xml);
/// What a host writes for a call: that packet after the one that announces it.
Bytes callPackets(std::string_view xml);

// --- Replies ------------------------------------------------------------------------------------

/// The first bytes that are collected of a reply.
inline const Bytes ReplyMarker = bytes("E0 C0 03 00 01 00 E0");

/// An XML reply with these children.
std::string replyXml(std::string_view children);

/// The children of a reply's status.
std::string statusChildren(std::string_view code, std::string_view message = "");

/// One child of a reply: a text, or bytes in Base64.
std::string textChild(std::string_view name, std::string_view value);
std::string binaryChild(std::string_view name, std::string_view base64);

/// The child that holds a list of names.
std::string listChild(const std::vector<std::string>& names, std::string_view name = "cert_list");

/// The packet that carries a reply.
Bytes replyPacket(std::string_view xml);

/// The whole reply to a call that succeeded, with these children beside the status.
Bytes success(std::string_view children = "");

/// The whole reply to a call that failed.
Bytes failure(std::string_view code, std::string_view message);

}  // namespace support
