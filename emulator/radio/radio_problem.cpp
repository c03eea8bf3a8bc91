// The table of problems.

#include "emulator/radio/radio_problem.h"

#include <algorithm>
#include <array>

namespace emulator {

namespace {

using enum RadioProblem;

constexpr std::array Problems = {
    RadioProblemInfo{SsidMissing, "there is no SSID"},
    RadioProblemInfo{SsidTooLong, "the SSID has more than 32 bytes"},
    RadioProblemInfo{SecurityUnknown, "the security is none of the codes 0 to 4"},
    RadioProblemInfo{EncryptionUnknown, "the encryption is none of the codes 0 to 4"},
    RadioProblemInfo{WepEncryptionWithKey, "a pre-shared key does not fit the encryption WEP"},
    RadioProblemInfo{PassphraseTooShort, "the passphrase has fewer than 8 characters"},
    RadioProblemInfo{PassphraseTooLong, "the pre-shared key has more than 64 characters"},
    RadioProblemInfo{PassphraseControlCharacter, "the passphrase has a control character"},
    RadioProblemInfo{KeyNotHex, "the pre-shared key of 64 characters is not in hex"},
    RadioProblemInfo{WepKeySize, "a WEP key has other than 5, 10, 13 or 26 characters"},
    RadioProblemInfo{WepKeyNotHex, "a WEP key of 10 or 26 characters is not in hex"},
    RadioProblemInfo{WepAuthUnknown, "the WEP authentication is none of the codes 0 to 2"},
    RadioProblemInfo{TransmitKeyOutOfRange, "the WEP transmit key is not from 1 to 4"},
    RadioProblemInfo{TransmitKeyEmpty, "the WEP transmit key selects a key that is empty"},
    RadioProblemInfo{ChannelOutOfRange, "the channel is not from 1 to 11"},
    RadioProblemInfo{AdHocWithServer, "an ad-hoc network has no 802.1x"},
    RadioProblemInfo{AdHocWithTkip, "an ad-hoc network with a pre-shared key has no TKIP"},
    RadioProblemInfo{MethodMissing, "no EAP method is allowed"},
    RadioProblemInfo{LeapUnsupported, "the radio does not have LEAP"},
    RadioProblemInfo{MethodMakesNoKeys, "EAP-MD5 makes no keys for the encryption"},
    RadioProblemInfo{InnerMethodUnknown, "the inner authentication is none of the codes 0 to 3"},
    RadioProblemInfo{InnerMethodUnfitForPeap, "PEAP has only MSCHAPv2 as inner authentication"},
    RadioProblemInfo{UserMissing, "there is no 802.1x user"},
    RadioProblemInfo{PasswordMissing, "there is no 802.1x password"},
    RadioProblemInfo{ClientCertificateMissing, "the printer has no signed certificate"},
    RadioProblemInfo{AuthorityMissing,
                     "the server's certificate is to be validated, and there is no CA certificate",
                     Membership::CaMissing},
};

}  // namespace

const RadioProblemInfo& infoOf(RadioProblem problem) {
  return *std::ranges::find(Problems, problem, &RadioProblemInfo::problem);
}

}  // namespace emulator
