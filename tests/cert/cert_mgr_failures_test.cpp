#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "cert/cert_mgr.h"
#include "testing/certificate_manager.h"
#include "testing/packets.h"
#include "testing/rows.h"

// The operations of the certificate manager when a call fails or gets no reply.

namespace {

using support::Bytes;
using support::bytes;
using support::failure;
using support::replyPacket;
using support::replyXml;
using support::statusChildren;
using Names = std::vector<std::string>;

/// The outputs of the operations. A failed operation must not change them.
struct Values {
  std::string file;
  Names names = {"old"};
  Names texts = Names(7, "old");
};

struct OperationRow : support::Row {
  int (*run)(CertMgr& manager, Values& values);
  const char* errorLine;  ///< the log line; "@" stands for the status
  const char* messageLine = "D [ZVK] why not\n";
  /// The count of calls before the call that fails.
  int callsBefore = 0;
};

const std::vector<OperationRow> Operations = {
    {{"CreatCertRequest"},
     [](CertMgr& manager, Values&) {
       return manager.creatCertRequest("", "", "", "", "", "", "", nullptr);
     },
     "D [ZVK] Create Certificate Request error @\n",
     "D [ZVK] why not\n",
     1},
    {{"GetCertRequestDefaults"},
     [](CertMgr& manager, Values& v) {
       return manager.getCertRequestDefaults(v.texts[0], v.texts[1], v.texts[2], v.texts[3],
                                             v.texts[4], v.texts[5], v.texts[6]);
     },
     "D [ZVK] Get cert request defaults error @\n"},
    {{"SaveCertRequest"},
     [](CertMgr& manager, Values& v) { return manager.saveCertRequest(v.file.c_str(), nullptr); },
     "D [ZVK] Save Cert Request error @\n\n",
     "D [ZVK] why not\n\n"},
    {{"InstallSignedCert"},
     [](CertMgr& manager, Values& v) { return manager.installSignedCert(v.file.c_str(), nullptr); },
     "D [ZVK] Install Signed Cert error @\n"},
    {{"InstallCaCert"},
     [](CertMgr& manager, Values& v) { return manager.installCACert(v.file.c_str()); },
     "D [ZVK] Install CA Cert error @\n"},
    {{"DeleteCert"},
     [](CertMgr& manager, Values&) { return manager.deleteCert(nullptr); },
     "D [ZVK] Delete signed cert error @\n"},
    {{"DeleteCaCert"},
     [](CertMgr& manager, Values&) { return manager.deleteCACert("x"); },
     "D [ZVK] Delete CA cert error @\n"},
    {{"GetCaInfo"},
     [](CertMgr& manager, Values& v) {
       return manager.getCAInfo("x", v.texts[0], v.texts[1], v.texts[2]);
     },
     "D [ZVK] getCAInfo error @\n"},
    {{"GetCertFriendlyNameList"},
     [](CertMgr& manager, Values& v) { return manager.getCertFriendlyNameList(v.names); },
     "D [ZVK] Error getting list of friendly names @\n"},
    {{"GetCaCommonNameList"},
     [](CertMgr& manager, Values& v) { return manager.getCACommonNameList(v.names); },
     "D [ZVK] getCACommonNameList error @\n"},
};

class FailedCall : public support::CertManager, public testing::WithParamInterface<OperationRow> {
 protected:
  /// Runs the operation. The printer replies to the operation's last call with `reply`, and to the
  /// calls before it with success. Returns the log lines about the failure. Expects unchanged
  /// outputs.
  std::string errorOf(const Bytes& reply) {
    std::vector<Bytes> replies(static_cast<std::size_t>(GetParam().callsBefore),
                               support::success());
    replies.push_back(reply);
    answer(replies);
    Values values{.file = folder.write("f", "content")};
    EXPECT_EQ(run([&](CertMgr& manager) { return GetParam().run(manager, values); }), -1);
    EXPECT_EQ(values.names, Names{"old"});
    EXPECT_EQ(values.texts, Names(7, "old"));
    EXPECT_EQ(support::fileContent(values.file), "content");
    // Leave out the lines about reading the file.
    for (const std::string& line :
         {loading(values.file), std::string("D [ZVK] PEM_read failed?!\n")}) {
      if (output.err.starts_with(line)) {
        output.err.erase(0, line.size());
      }
    }
    return output.err;
  }

  static std::string errorLine(const std::string& status) {
    std::string line = GetParam().errorLine;
    return line.replace(line.find('@'), 1, status);
  }
};

TEST_P(FailedCall, LogsItsStatusAndThePrintersMessage) {
  EXPECT_EQ(errorOf(failure("7", "why not")), errorLine("7") + GetParam().messageLine);
  EXPECT_EQ(errorOf(failure("-12", "why not")), errorLine("-12") + GetParam().messageLine);
}

TEST_P(FailedCall, DoesNotUseTheMessageAsAFormat) {
  std::string line = GetParam().messageLine;
  EXPECT_EQ(errorOf(failure("7", "%s%n%d")), errorLine("7") + line.replace(8, 7, "%s%n%d"));
}

TEST_P(FailedCall, IncludesAReplyWithoutAStatus) {
  std::string line = GetParam().messageLine;
  line.replace(8, 7, "");
  EXPECT_EQ(errorOf(replyPacket(replyXml(""))), errorLine("0") + line);
  // These are not object-store replies.
  EXPECT_EQ(errorOf(packets::Accepted), errorLine("0") + line);
  EXPECT_EQ(errorOf(bytes("A5 00 08 50 E0 C0 03 00 01 00 E1")), errorLine("0") + line);
}

TEST_P(FailedCall, LogsNothingWithoutAReply) {
  EXPECT_EQ(errorOf(Bytes()), "");
  EXPECT_EQ(errorOf(packets::Refused), "");
}

TEST_P(FailedCall, LogsOnlyTheOpenFailureWithoutAPrinter) {
  device.openErrno = ENOENT;
  std::string lines;
  for (int i = 0; i <= GetParam().callsBefore; ++i) {
    lines += "D [ZVK] Failed to open usb device '/dev/usb/lp0'!\n";
  }
  EXPECT_EQ(errorOf(Bytes()), lines);
}

TEST_P(FailedCall, IncludesAReplyThatIsCutBeforeTheEndOfItsStatus) {
  const std::string xml = replyXml(statusChildren("1", "fine"));
  // A reply that is cut only after its status counts as a success.
  const std::size_t statusEnd = xml.find("</IntegerElem>");
  for (std::size_t size = 0; size < statusEnd; size += 7) {
    errorOf(replyPacket(xml.substr(0, size)));
  }
  errorOf(replyPacket(xml.substr(0, statusEnd - 1)));
}

TEST_P(FailedCall, DropsTheBytesE0OfTheMessage) {
  EXPECT_EQ(errorOf(failure("7", "why\xE0 not\xE0")), errorLine("7") + GetParam().messageLine);
}

INSTANTIATE_TEST_SUITE_P(Operations, FailedCall, testing::ValuesIn(Operations), support::rowName);

// --- The two readings of a status ---------------------------------------------------------------

using StatusText = support::CertManager;

TEST_F(StatusText, IsReadAsANumberByMostOperations) {
  for (const char* text : {" 1", "01", "1x", "+1"}) {
    answer({replyPacket(replyXml(statusChildren(text)))});
    EXPECT_EQ(run([](CertMgr& manager) { return manager.deleteCACert("x"); }), 0) << text;
  }
}

TEST_F(StatusText, LeavesAListUnchangedUnlessItIsExactlyOne) {
  answer({replyPacket(replyXml(statusChildren("01") + support::listChild({"new"})))});
  Names names = {"old"};
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.getCertFriendlyNameList(names); }), 0);
  EXPECT_EQ(names, Names{"old"});
  EXPECT_EQ(output.err, "D [ZVK] List of friendly names (1):\nD [ZVK] [0] old\n");
}

TEST_F(StatusText, MustBeExactlyOneForTheDefaultsOfARequest) {
  answer({replyPacket(replyXml(statusChildren("01", "why not")))});
  Names texts(7, "old");
  EXPECT_EQ(run([&](CertMgr& manager) {
              return manager.getCertRequestDefaults(texts[0], texts[1], texts[2], texts[3],
                                                    texts[4], texts[5], texts[6]);
            }),
            -1);
  EXPECT_EQ(texts, Names(7, "old"));
  EXPECT_EQ(output.err, "D [ZVK] Get cert request defaults error 1\nD [ZVK] why not\n");
}

}  // namespace
