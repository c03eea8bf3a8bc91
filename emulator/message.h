#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "emulator/method_call.h"
#include "emulator/packet_reader.h"
#include "emulator/setting_catalogue.h"

namespace emulator {

/// One request packet, taken apart.
struct Message {
  enum class Kind {
    Query,            ///< asks for one setting
    StoreSettings,    ///< settings to be stored
    Sniff,            ///< the fixed packet ahead of an object-store call
    ObjectStoreCall,  ///< a method call in XML
    Unknown,          ///< a packet of no known kind
    Malformed,        ///< a known kind whose lengths contradict each other
  };

  struct Setting {
    SettingKey key;
    Bytes value;
  };

  Bytes packet;  ///< as it came
  Kind kind = Kind::Unknown;
  bool wrapped = false;
  SettingKey asked{};              ///< of a query: what is asked for
  std::vector<Setting> settings;   ///< of settings to be stored
  std::optional<ParsedCall> call;  ///< of an object-store call
  std::vector<bool> secretBytes;   ///< for each byte of the packet: not to be shown
};

/// Takes a whole packet (as `PacketReader` cuts them) apart.
Message parseMessage(Bytes packet);

/// What the message says, in words; secrets are masked unless `showSecrets`.
std::string describe(const Message& message, bool showSecrets);

}  // namespace emulator
