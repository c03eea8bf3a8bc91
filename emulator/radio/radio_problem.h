#pragma once

#include <string_view>

#include "emulator/adapter/network.h"
#include "npa/setting_keys.h"

namespace emulator {

/// Why the stored settings and certificates cannot become a configuration of the radio.
enum class RadioProblem {
  SsidMissing,
  SsidTooLong,
  SecurityUnknown,
  EncryptionUnknown,
  WepEncryptionWithKey,
  PassphraseTooShort,
  PassphraseTooLong,
  PassphraseControlCharacter,
  KeyNotHex,
  WepKeySize,
  WepKeyNotHex,
  WepAuthUnknown,
  TransmitKeyOutOfRange,
  TransmitKeyEmpty,
  ChannelOutOfRange,
  AdHocWithServer,
  AdHocWithTkip,
  MethodMissing,
  LeapUnsupported,
  MethodMakesNoKeys,
  InnerMethodUnknown,
  InnerMethodUnfitForPeap,
  UserMissing,
  PasswordMissing,
  ClientCertificateMissing,
  AuthorityMissing,
};

/// What the adapter reports about a problem.
struct RadioProblemInfo {
  RadioProblem problem;
  std::string_view text;                                 ///< the reason, for the log
  Membership membership = Membership::UnusableSettings;  ///< the trouble code
};

/// Returns what the adapter reports about a problem.
const RadioProblemInfo& infoOf(RadioProblem problem);

}  // namespace emulator
