#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "testing/bytes.h"
#include "testing/usblp_printer.h"

/// The object store's method calls and replies.
namespace support {

/// An XML reply with these children.
std::string replyXml(std::string_view children);

/// The children of a reply's status.
std::string statusChildren(std::string_view code, std::string_view message = "");

/// One child of a reply that holds a text.
std::string textChild(std::string_view name, std::string_view value);

/// The child that holds a list of names.
std::string listChild(const std::vector<std::string>& names);

/// The packet that a reply comes in: what is collected of it begins with the object store's marker.
Bytes replyPacket(std::string_view xml);

/// The whole reply to a call that succeeded, with these children beside the status.
Bytes success(std::string_view children = "");

/// The whole reply to a call that failed.
Bytes failure(std::string_view code, std::string_view message);

/// The bytes that make a method call.
Bytes callPackets(std::string_view xml);

/// A method call's XML; `params` stands in the inner list element.
std::string callXml(int requestId, std::string_view method, std::string_view params);

/// One parameter of a method call, in a map.
std::string parameter(std::string_view name, std::string_view element, std::string_view value);

/// Tests against a printer with an object store.
class ObjectStorePrinter : public UsblpPrinter {
 protected:
  /// The XML of the calls that reached the printer.
  std::vector<std::string> calls() const;
};

}  // namespace support
