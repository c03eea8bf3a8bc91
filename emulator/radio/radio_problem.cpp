// The table of problems.

#include "emulator/radio/radio_problem.h"

#include <algorithm>
#include <array>

namespace emulator {

namespace {

using enum RadioProblem;

constexpr auto Unusable = Membership::UnusableSettings;

constexpr std::array Problems = {
    RadioProblemInfo{SsidMissing, "there is no SSID", Unusable},
    RadioProblemInfo{SsidTooLong, "the SSID has more than 32 bytes", Unusable},
    RadioProblemInfo{SecurityUnknown, "the security is none of the codes 0 to 4", Unusable},
    RadioProblemInfo{EncryptionUnknown, "the encryption is none of the codes 0 to 4", Unusable},
    RadioProblemInfo{WepEncryptionWithKey, "a pre-shared key does not fit the encryption WEP",
                     Unusable},
    RadioProblemInfo{PassphraseTooShort, "the passphrase has fewer than 8 characters", Unusable},
    RadioProblemInfo{PassphraseTooLong, "the pre-shared key has more than 64 characters", Unusable},
    RadioProblemInfo{PassphraseControlCharacter, "the passphrase has a control character",
                     Unusable},
    RadioProblemInfo{KeyNotHex, "the pre-shared key of 64 characters is not in hex", Unusable},
    RadioProblemInfo{WepKeySize, "a WEP key has other than 5, 10, 13 or 26 characters", Unusable},
    RadioProblemInfo{WepKeyNotHex, "a WEP key of 10 or 26 characters is not in hex", Unusable},
    RadioProblemInfo{WepAuthUnknown, "the WEP authentication is none of the codes 0 to 2",
                     Unusable},
    RadioProblemInfo{TransmitKeyOutOfRange, "the WEP transmit key is not from 1 to 4", Unusable},
    RadioProblemInfo{TransmitKeyEmpty, "the WEP transmit key selects a key that is empty",
                     Unusable},
    RadioProblemInfo{ChannelOutOfRange, "the channel is not from 1 to 11", Unusable},
    RadioProblemInfo{AdHocWithServer, "an ad-hoc network has no 802.1x", Unusable},
    RadioProblemInfo{AdHocWithTkip, "an ad-hoc network with a pre-shared key has no TKIP",
                     Unusable},
    RadioProblemInfo{MethodMissing, "no EAP method is allowed", Unusable},
    RadioProblemInfo{LeapUnsupported, "the radio does not have LEAP", Unusable},
    RadioProblemInfo{MethodMakesNoKeys, "EAP-MD5 makes no keys for the encryption", Unusable},
    RadioProblemInfo{InnerMethodUnknown, "the inner authentication is none of the codes 0 to 3",
                     Unusable},
    RadioProblemInfo{InnerMethodUnfitForPeap, "PEAP has only MSCHAPv2 as inner authentication",
                     Unusable},
    RadioProblemInfo{UserMissing, "there is no 802.1x user", Unusable},
    RadioProblemInfo{PasswordMissing, "there is no 802.1x password", Unusable},
    RadioProblemInfo{ClientCertificateMissing, "the printer has no signed certificate", Unusable},
    RadioProblemInfo{AuthorityMissing,
                     "the server's certificate is to be validated, and there is no CA certificate",
                     Membership::CaMissing},
};

}  // namespace

const RadioProblemInfo& infoOf(RadioProblem problem) {
  return *std::ranges::find(Problems, problem, &RadioProblemInfo::problem);
}

}  // namespace emulator
