#include "decoder/capture_input.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>

#include "decoder/decoded.h"
#include "testing/usb_capture.h"

namespace {

using support::bytes;
using support::UsbCapture;

const std::string QueryHex = "A5 00 06 50 E0 D8 00 28 08";
const std::string QueryWords = "request, bare, 9 bytes: query\n    wireless network 28 08: SSID\n";
const support::Bytes Query = bytes(QueryHex);
const support::Bytes Reply = bytes("A5 00 0A 50 E0 D8 00 28 08 00 02 68 69");
const std::string ReplyWords =
    "reply, bare, 13 bytes: value\n    wireless network 28 08: SSID = \"hi\"\n";

std::string wordsOf(const UsbCapture& capture) {
  return ::wordsOf(capture.content());
}

TEST(CaptureInput, MayHaveEitherLinkType) {
  for (const int linkType : {DLT_USB_LINUX, DLT_USB_LINUX_MMAPPED}) {
    UsbCapture capture(linkType);
    capture.out(Query);
    capture.in(Reply);
    EXPECT_EQ(wordsOf(capture), "frame 1 (1:5): " + QueryWords + "frame 4 (1:5): " + ReplyWords);
    EXPECT_EQ(decoded(capture.content()).status, 0);
  }
}

TEST(CaptureInput, JoinsTransfersOfAnEndpoint) {
  UsbCapture capture;
  capture.out(bytes("A5 00"));
  capture.in(bytes("A5 00 0A 50 E0"));
  capture.out(bytes("06 50 E0 D8 00 28 08 A5 00 06 50 E0 D8 00 28 08"));
  capture.in({});
  capture.in(bytes("D8 00 28 08 00 02 68 69"));
  EXPECT_EQ(wordsOf(capture), "frames 1-5 (1:5): " + QueryWords + "frame 5 (1:5): " + QueryWords +
                                  "frames 4-10 (1:5): " + ReplyWords);
}

TEST(CaptureInput, SeparatesDevicesBusesAndEndpoints) {
  UsbCapture capture;
  const auto half = [](std::size_t begin, std::size_t end) {
    return support::Bytes(Reply.begin() + static_cast<std::ptrdiff_t>(begin),
                          Reply.begin() + static_cast<std::ptrdiff_t>(end));
  };
  for (const auto& piece : {half(0, 6), half(6, 13)}) {
    const auto length = static_cast<std::uint32_t>(piece.size());
    capture.add({.event = URB_COMPLETE, .endpoint = 0x82, .length = length, .data = piece});
    capture.add({.event = URB_COMPLETE, .endpoint = 0x81, .length = length, .data = piece});
    capture.add(
        {.event = URB_COMPLETE, .endpoint = 0x82, .length = length, .data = piece, .device = 6});
    capture.add(
        {.event = URB_COMPLETE, .endpoint = 0x82, .length = length, .data = piece, .bus = 2});
  }
  EXPECT_EQ(wordsOf(capture),
            "frames 1-5 (1:5): " + ReplyWords + "frames 2-6 (1:5): " + ReplyWords +
                "frames 3-7 (1:6): " + ReplyWords + "frames 4-8 (2:5): " + ReplyWords);
  decoder::Options options;
  options.device = "2:5";
  EXPECT_EQ(decodedWith(options, capture.content()).words, "frames 4-8 (2:5): " + ReplyWords);
}

TEST(CaptureInput, UsesTheTransferredPartOfATransferToThePrinter) {
  UsbCapture capture;
  // The first transfer moves only four bytes. The next transfer moves the other bytes.
  capture.add({.event = URB_SUBMIT, .transfer = 7, .length = 9, .data = Query});
  capture.add({.event = URB_COMPLETE, .transfer = 7, .length = 4});
  const support::Bytes rest(Query.begin() + 4, Query.end());
  capture.add({.event = URB_SUBMIT, .transfer = 7, .length = 5, .data = rest});
  capture.add({.event = URB_COMPLETE, .transfer = 7, .length = 5});
  // A transfer that cannot be submitted moves nothing.
  capture.add({.event = URB_SUBMIT, .transfer = 8, .length = 9, .data = Query});
  capture.add({.event = URB_ERROR, .transfer = 8});
  EXPECT_EQ(wordsOf(capture), "frames 1-3 (1:5): " + QueryWords);
}

TEST(CaptureInput, UsesTransfersCompletelyIfTheirCompletionIsMissing) {
  UsbCapture capture;
  capture.add({.event = URB_SUBMIT, .transfer = 7, .length = 9, .data = Query});
  capture.add({.event = URB_SUBMIT, .transfer = 7, .length = 9, .data = Query});
  capture.add({.event = URB_SUBMIT, .transfer = 6, .length = 9, .data = Query});
  EXPECT_EQ(wordsOf(capture), "frame 1 (1:5): " + QueryWords + "frame 2 (1:5): " + QueryWords +
                                  "frame 3 (1:5): " + QueryWords);
}

TEST(CaptureInput, ReportsBytesThatAreNotCaptured) {
  UsbCapture capture;
  // The first transfer has no submission, the second has cut data, the third has no data.
  capture.add({.event = URB_COMPLETE, .transfer = 7, .length = 9});
  capture.add({.event = URB_COMPLETE, .endpoint = 0x82, .length = 100, .data = Query});
  capture.add({.event = URB_COMPLETE, .endpoint = 0x82, .length = 2});
  const Decoded result = decoded(capture.content());
  EXPECT_EQ(result.words,
            "frame 1 (1:5): 9 bytes missing from the capture\n"
            "frame 2 (1:5): "
            "reply, bare, 9 bytes: query\n    wireless network 28 08: SSID\n"
            "frame 2 (1:5): 91 bytes missing from the capture\n"
            "frame 3 (1:5): 2 bytes missing from the capture\n");
  EXPECT_EQ(result.status, 1);
}

TEST(CaptureInput, SkipsOtherTransfersThanBulk) {
  UsbCapture capture;
  capture.add({.event = URB_SUBMIT, .length = 9, .data = Query, .type = URB_CONTROL});
  capture.add({.event = 'X', .length = 9, .data = Query});
  capture.add({.event = URB_SUBMIT, .endpoint = 0x82, .length = 9, .data = Query});
  EXPECT_EQ(wordsOf(capture), "");
  capture.add({.event = URB_SUBMIT, .length = 9, .data = Query, .flaggedEmpty = true});
  EXPECT_EQ(wordsOf(capture), "frame 4 (1:5): 9 bytes missing from the capture\n");
}

TEST(CaptureInput, IsReadUpToACut) {
  UsbCapture capture;
  capture.out(Query);
  const std::string whole = capture.content();
  const Decoded result = decoded(std::string_view(whole).substr(0, whole.size() - 1));
  EXPECT_EQ(result.words,
            "frame 1 (1:5): " + QueryWords +
                "frame 2: the rest of the capture cannot be read: truncated dump file; tried "
                "to read 64 captured bytes, only got 63\n");
  EXPECT_EQ(result.status, 1);
}

TEST(CaptureInput, SkipsARecordThatIsTooShortForItsHeader) {
  UsbCapture capture;
  capture.out(Query);
  std::string content = capture.content();
  // Change both sizes of the second record, in the host's byte order, to 47 captured bytes.
  const std::uint32_t size = 47;
  const std::size_t secondHeader = content.size() - 64 - 8;
  for (const std::size_t offset : {secondHeader, secondHeader + sizeof size}) {
    std::memcpy(&content[offset], &size, sizeof size);
  }
  content.resize(content.size() - 64 + size);
  EXPECT_EQ(::wordsOf(content), "frame 1 (1:5): " + QueryWords);
}

std::string complaintAbout(std::string_view input) {
  decoder::Options options;
  options.form = decoder::Options::Form::Capture;
  try {
    decodedWith(options, input);
  } catch (const decoder::CaptureError& error) {
    return error.what();
  }
  return "none";
}

TEST(CaptureInput, IsRejectedIfItIsNotAUsbCapture) {
  EXPECT_EQ(complaintAbout(""), "the file is empty");
  EXPECT_EQ(complaintAbout("A5 00 06 50 E0 D8 00 28 08"), "unknown file format");
  EXPECT_TRUE(complaintAbout("\xD4\xC3\xB2\xA1").starts_with("truncated dump file"));
  EXPECT_EQ(complaintAbout(UsbCapture(DLT_EN10MB).content()),
            "expected link type USB_LINUX or USB_LINUX_MMAPPED, got EN10MB");
}

TEST(CaptureInput, IsReadAsTextIfTheOptionsSaySo) {
  decoder::Options options;
  options.form = decoder::Options::Form::Text;
  UsbCapture capture;
  capture.out(Query);
  EXPECT_EQ(decodedWith(options, capture.content()).words, "");
}

TEST(CaptureInput, IsRecognizedByItsFirstBytes) {
  EXPECT_TRUE(decoder::isCapture(UsbCapture().content()));
  for (const std::string_view magic :
       {"\xA1\xB2\xC3\xD4", "\xA1\xB2\x3C\x4D", "\x0A\x0D\x0D\x0A"}) {
    EXPECT_TRUE(decoder::isCapture(magic));
  }
  EXPECT_FALSE(decoder::isCapture(""));
  EXPECT_FALSE(decoder::isCapture("\xD4\xC3\xB2"));
  EXPECT_FALSE(decoder::isCapture(QueryHex));
}

}  // namespace
