#pragma once

#include <optional>
#include <string>
#include <vector>

#include "catalogue/setting_catalogue.h"
#include "emulator/certificates/method_call.h"

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
    npa::SettingKey key;
    npa::Bytes value;
  };

  npa::Bytes packet;  ///< as it came
  Kind kind = Kind::Unknown;
  bool wrapped = false;
  npa::SettingKey asked{};         ///< of a query: what is asked for
  std::vector<Setting> settings;   ///< of settings to be stored
  std::optional<ParsedCall> call;  ///< of an object-store call
  std::vector<bool> secretBytes;   ///< for each byte of the packet: not to be shown
};

/// Takes a whole packet (as `PacketReader` cuts them) apart.
Message parseMessage(npa::Bytes packet);

/// What the message says, in words; secrets are masked unless `showSecrets`.
std::string describe(const Message& message, bool showSecrets);

}  // namespace emulator
