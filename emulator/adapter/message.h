#pragma once

#include <optional>
#include <string>
#include <vector>

#include "catalogue/setting_catalogue.h"
#include "emulator/certificates/method_call.h"

namespace emulator {

/// A request packet and its parts.
struct Message {
  enum class Kind {
    Query,          ///< asks for one setting
    StoreSettings,  ///< has settings to store
    Announcement,   ///< the fixed packet that precedes a method call
    MethodCall,     ///< calls a method of the object store, in XML
    Unknown,        ///< none of these kinds
    Malformed,      ///< a known kind with lengths that contradict each other
  };

  struct Setting {
    npa::SettingKey key;
    npa::Bytes value;
  };

  npa::Bytes packet;  ///< all bytes, with the wrapper
  Kind kind = Kind::Unknown;
  bool wrapped = false;
  npa::SettingKey asked{};        ///< Query: the setting
  std::vector<Setting> settings;  ///< StoreSettings, Malformed: the settings that are complete
  std::optional<ParsedCall>
      call;  ///< MethodCall: the call, or the reason why the text is not a call
  std::vector<bool> secretBytes;  ///< for each byte of the packet, whether the log masks it
};

/// Parses a complete packet.
Message parseMessage(npa::Bytes packet);

/// Returns a line of text about the message. Masks secrets unless `showSecrets` is set.
std::string describe(const Message& message, bool showSecrets);

}  // namespace emulator
