// The trace of a whole acquisition, line by line, as support reads it.
#include <regex>

#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

// Without the listings of capabilities and the dialog's texts: both have their own tests.
std::string Abridged(const Lines& lines) {
  const std::regex left("Adding Capability: .*|CAPTURE STATUS MESSAGE: .*| +I?CAP_\\w+: .*");
  std::string text;
  for (const std::string& line : lines) {
    if (!std::regex_match(line, left)) text += line + "\n";
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
      Current bit depth: Grayscale
Set16BitGrayscaleCapture: Grayscale set to 16-bit.
Default Twain Options
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 4
Dispatch (State = 4): DG_CONTROL / DAT_USERINTERFACE / MSG_ENABLEDS
Current TWAIN settings:
EnableDS -> TWRC_SUCCESS
Resources -> 10000000, 400000
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
