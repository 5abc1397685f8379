// The trace of a whole acquisition, line by line, as support reads it.
#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

bool StartsWith(const std::string& line, const std::string& head) {
  return line.compare(0, head.size(), head) == 0;
}

// Without the listings of capabilities, of which only the number of lines is left, and without the
// dialog's texts: both have their own tests.
std::string Abridged(const Lines& lines) {
  std::string text;
  size_t skipped = 0;
  bool inListing = false;
  for (const std::string& line : lines) {
    if (StartsWith(line, "Adding Capability: ") || (inListing && StartsWith(line, "     "))) {
      ++skipped;
      continue;
    }
    if (skipped != 0) text += "  (" + std::to_string(skipped) + " capabilities)\n";
    skipped = 0;
    inListing = line == "Default Twain Options" || line == "Current TWAIN settings:";
    const bool isStatus = StartsWith(line, "CAPTURE STATUS MESSAGE: ");
    text += (isStatus ? line.substr(0, line.find(" -> ")) : line) + "\n";
  }
  return text;
}

using TraceTest = SourceTest;

TEST_F(TraceTest, OfAnAcquisition) {
  AddImage(12, 2, {1, 2, 3, 4, 5, 6});
  application_.Version = {4, 21, 0, 0, ""};
  application_.SupportedGroups = 0x10000003;
  std::memset(application_.Manufacturer, 'm', sizeof application_.Manufacturer);  // has no end
  StartTrace();
  TW_IDENTITY identity{};
  Send(DG_CONTROL, DAT_IDENTITY, MSG_GET, &identity);
  Open();
  Enable();
  host::OnManagerCall([&](const host::ManagerCall& call) {
    if (call.message == MSG_CLOSEDSREQ) return;
    TW_IMAGEINFO info{};
    Send(DG_IMAGE, DAT_IMAGEINFO, MSG_GET, &info);
    TransferNative();
  });
  view_->Press(kCommandReturnImages);
  Pending(MSG_ENDXFER);
  Disable();
  Close();
  EXPECT_EQ(Abridged(Trace()), R"(Dispatch (State = 3): DG_CONTROL / DAT_IDENTITY / MSG_GET
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 3
Dispatch (State = 3): DG_CONTROL / DAT_IDENTITY / MSG_OPENDS
Calling Application:
     ID = 00000007
     Version = 4.21
     ProtocolMajor = 1
     ProtocolMinor = 9
     SupportedGroups = 10000003
     Manufacturer = mmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmm
     ProductFamily = 
     ProductName = 
  (23 capabilities)
      Current bit depth: Grayscale
Set16BitGrayscaleCapture: Grayscale set to 16-bit.
Default Twain Options
  (24 capabilities)
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 4
Dispatch (State = 4): DG_CONTROL / DAT_USERINTERFACE / MSG_ENABLEDS
Current TWAIN settings:
  (24 capabilities)
EnableDS -> TWRC_SUCCESS
Resources -> 10000000, 400000
CAPTURE STATUS MESSAGE: What Is This Message Area?
CAPTURE STATUS MESSAGE: Step #1: Acquire New Image
CAPTURE STATUS MESSAGE: Generating Displayable Image
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 5
NotifyXferReady
Dispatch (State = 6): DG_IMAGE / DAT_IMAGEINFO / MSG_GET
      Current bit depth: Grayscale
      Current bit depth: Grayscale
   Returned Image Info
      Image Size: (2, 3)
      Resolution: (300.00, 600.00)
      Pixel Type: Grayscale
      Samples Per Pixel: 1
      Bits Per Sample: 16, 0, 0, 0, 0, 0, 0, 0
      Bits Per Pixel: 16
      Planar: Chunky
      Compression: None
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 6
Dispatch (State = 6): DG_IMAGE / DAT_IMAGENATIVEXFER / MSG_GET
DISPATCHMSG_ImageNativeXfer
      Current bit depth: Grayscale
    Converting to 16-bit HDIB
   twRC = TWRC_XFERDONE  CC = TWCC_SUCCESS
   RC = TWRC_XFERDONE  CC = TWCC_SUCCESS  State = 7
Dispatch (State = 7): DG_CONTROL / DAT_PENDINGXFERS / MSG_ENDXFER
Current scanned image cleared
CAPTURE STATUS MESSAGE: Step #1: Acquire New Image
GetNumberOfTransfersAvailable() = 0 <=> returning 0
Posting auto close message
NotifyCloseDSReq
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 5
Dispatch (State = 5): DG_CONTROL / DAT_USERINTERFACE / MSG_DISABLEDS
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 4
Dispatch (State = 4): DG_CONTROL / DAT_IDENTITY / MSG_CLOSEDS
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 3
)");
}

}  // namespace
}  // namespace zyr
