// What an application gets of an image: its description, and its pixels by each of the three ways.
#include <algorithm>

#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr char kNoImages[] = "No images were available";

class ImageTransferTest : public SourceTest {
 protected:
  // The user returns one image, 3 pixels wide.
  void Return(uint32_t bitsPerPixel, const std::vector<uint16_t>& pixels) {
    Close();
    images_.DeleteAll();
    AddImage(bitsPerPixel, 3, pixels);
    GoTo(5);
    view_->Press(kCommandReturnImages);
    ASSERT_EQ(source_->state(), 6);
  }

  Bytes NativeBlock() {
    EXPECT_EQ(TransferNative(), TWRC_XFERDONE);
    EXPECT_EQ(source_->state(), 7);
    EXPECT_EQ(Status(), TWCC_SUCCESS);
    const platform::LockedBlock block(received_.back());
    const auto* bytes = static_cast<const uint8_t*>(block.address());
    return {bytes, bytes + block.size()};
  }

  TW_UINT16 Strip(uint32_t length) {
    buffer_.assign(length, 0xEE);
    transfer_.Memory = {TWMF_APPOWNS | TWMF_POINTER, length, buffer_.data()};
    return Send(DG_IMAGE, DAT_IMAGEMEMXFER, MSG_GET, &transfer_);
  }

  // `logLine` follows the line of the box.
  void Fails(TW_UINT16 type, TW_UINT16 message, void* data, const std::string& text, TW_UINT16 code,
             const char* logLine) {
    SCOPED_TRACE(logLine);
    const int32_t state = source_->state();
    Boxes();
    Trace();
    EXPECT_EQ(Send(DG_IMAGE, type, message, data), TWRC_FAILURE);
    EXPECT_EQ(source_->state(), state);
    EXPECT_EQ(Boxes(), Lines{Box(text, code)});
    const Lines lines = Trace();
    const auto error = std::find(lines.begin(), lines.end(), "Error: " + Box(text, code));
    ASSERT_NE(error, lines.end());
    EXPECT_EQ(error[1], logLine);
    EXPECT_EQ(Status(), code);
  }

  Bytes buffer_;
  TW_IMAGEMEMXFER transfer_{};
};

uint32_t Number(const Bytes& bytes, size_t offset, size_t size) {
  uint32_t value = 0;
  for (size_t i = 0; i < size; ++i) value |= uint32_t{bytes.at(offset + i)} << (8 * i);
  return value;
}

TEST_F(ImageTransferTest, DescribesTheImageInTheNegotiatedTerms) {
  Return(8, {1, 2, 3, 4, 5, 6});
  struct Case {
    TW_UINT16 units;
    double x, y;
  };
  for (const Case& each :
       {Case{TWUN_INCHES, 300, 600}, Case{TWUN_CENTIMETERS, 762, 1524}, Case{TWUN_PIXELS, 3, 2}}) {
    Negotiate(ICAP_UNITS, TWTY_UINT16, each.units);
    TW_IMAGEINFO info;
    std::memset(&info, 0x55, sizeof info);
    EXPECT_EQ(Send(DG_IMAGE, DAT_IMAGEINFO, MSG_GET, &info), TWRC_SUCCESS);
    EXPECT_DOUBLE_EQ(FromFix32(info.XResolution), each.x);
    EXPECT_DOUBLE_EQ(FromFix32(info.YResolution), each.y);
    EXPECT_EQ(+info.ImageWidth, 3);
    EXPECT_EQ(+info.ImageLength, 2);
    EXPECT_EQ(info.SamplesPerPixel, 1);
    EXPECT_EQ(info.BitsPerPixel, 16) << "as negotiated";
    EXPECT_EQ(info.BitsPerSample[0], 16);
    EXPECT_EQ(info.BitsPerSample[7], 0);
    EXPECT_EQ(info.Planar + info.Compression, 0);
    EXPECT_EQ(info.PixelType, TWPT_GRAY);
  }
  TW_IMAGELAYOUT layout{};
  EXPECT_EQ(Send(DG_IMAGE, DAT_IMAGELAYOUT, MSG_GETDEFAULT, &layout), TWRC_SUCCESS);
  EXPECT_EQ(FromFix32(layout.Frame.Left) + FromFix32(layout.Frame.Top), 0);
  EXPECT_EQ(FromFix32(layout.Frame.Right), 3);
  EXPECT_EQ(FromFix32(layout.Frame.Bottom), 2);
  EXPECT_EQ(layout.DocumentNumber + layout.PageNumber + layout.FrameNumber, 3u);
  EXPECT_EQ(Send(DG_IMAGE, DAT_IMAGELAYOUT, MSG_SET, &layout), TWRC_SUCCESS);
  EXPECT_EQ(layout.Frame.Right.Whole, 3) << "nothing is written";
}

TEST_F(ImageTransferTest, HandsOverNativeBitmaps) {
  Return(12, {0, 1, 2, 4095, 8190, 2048});
  Bytes block = NativeBlock();
  ASSERT_EQ(block.size(), 40u + 12);
  EXPECT_EQ(Number(block, 8, 4), 2u);
  EXPECT_EQ(Number(block, 14, 2), 16u);
  EXPECT_EQ(Number(block, 24, 4), 11811u);
  // Stretched, and bottom-up again. What is above 4095 wraps.
  const std::vector<uint32_t> expected = {0, 16, 32, 65535, 65534, 32776};
  for (size_t i = 0; i < 6; ++i) EXPECT_EQ(Number(block, 40 + 2 * i, 2), expected[i]) << i;

  // An image of 8 bits stays one, and under 8 bits a deep image becomes one.
  Return(8, {10, 20, 30, 40, 50, 60});
  block = NativeBlock();
  ASSERT_EQ(block.size(), 40u + 1024 + 8);
  EXPECT_EQ(Number(block, 14, 2), 8u);
  EXPECT_EQ(Number(block, 1064, 3), 0x1E140Au);
  SetDefaultBitDepth(8);
  Return(12, {0, 1, 2, 4095, 2048, 3});
  block = NativeBlock();
  EXPECT_EQ(Number(block, 14, 2), 8u);
  EXPECT_EQ(block[1068], 255);

  source_->state_ = 6;
  host::FailNextAllocations(1);
  TW_HANDLE handle = &handle;
  EXPECT_EQ(Send(DG_IMAGE, DAT_IMAGENATIVEXFER, MSG_GET, &handle), TWRC_XFERDONE);
  EXPECT_EQ(handle, nullptr) << "a finished transfer too";
}

TEST_F(ImageTransferTest, SavesInTheNegotiatedFormat) {
  Return(12, {1, 2, 3, 4, 5, 6});
  source_->transferFileName_ = "C:\\image";
  for (const auto& [format, head] :
       {std::pair{TWFF_BMP, "BM"}, std::pair{TWFF_TIFF, "II"}, std::pair{TWFF_JFIF, "\xFF\xD8"}}) {
    source_->state_ = 6;
    Negotiate(ICAP_IMAGEFILEFORMAT, TWTY_UINT16, format);
    EXPECT_EQ(Send(DG_IMAGE, DAT_IMAGEFILEXFER, MSG_GET, nullptr), TWRC_XFERDONE);
    EXPECT_EQ(Status(), TWCC_SUCCESS);
    EXPECT_EQ(host::FileBytes("C:\\image").value_or("").substr(0, 2), head);
  }
}

TEST_F(ImageTransferTest, TellsThatAFileCannotBeSaved) {
  host::PutFile("C:\\de.Phrases", "Deutsch\r\n\"Unable to save file: %s\" = \"Nein: %s\"\r\n");
  SetLanguageFile("C:\\de.Phrases");
  Return(12, {1, 2, 3});
  StartTrace();
  for (const char* path : {"C:\\none\\image.bmp", ""}) {  // without a name if none was ever set
    source_->transferFileName_ = path;
    const std::string text = std::string("Nein: ") + path;
    Fails(DAT_IMAGEFILEXFER, MSG_GET, nullptr, text, TWCC_OPERATIONERROR, text.c_str());
  }
  EXPECT_EQ(TransferNative(), TWRC_XFERDONE) << "another way still works";
}

TEST_F(ImageTransferTest, HandsOverStrips) {
  SetHistStretch(false);
  Return(12, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  struct Case {
    uint32_t length;
    std::vector<uint32_t> rows;  // of each call, up to TWRC_XFERDONE
  };
  // Where the last rows fill the buffer exactly, an empty strip follows.
  for (const Case& each : {Case{6, {1, 1, 1, 0}}, Case{11, {1, 1, 1, 0}}, Case{12, {2, 1}},
                           Case{18, {3, 0}}, Case{23, {3, 0}}, Case{24, {3}}, Case{1000, {3}}}) {
    SCOPED_TRACE(each.length);
    source_->state_ = 6;
    Bytes all;
    uint32_t row = 0;
    for (size_t i = 0; i < each.rows.size(); ++i) {
      EXPECT_EQ(Strip(each.length), i + 1 == each.rows.size() ? TWRC_XFERDONE : TWRC_SUCCESS);
      EXPECT_EQ(source_->state(), 7);
      EXPECT_EQ(+transfer_.BytesPerRow, 6u);
      EXPECT_EQ(+transfer_.Columns, 3u);
      EXPECT_EQ(+transfer_.Rows, each.rows[i]);
      EXPECT_EQ(transfer_.XOffset + transfer_.Compression, 0u);
      EXPECT_EQ(+transfer_.YOffset, row);
      EXPECT_EQ(+transfer_.BytesWritten, each.rows[i] * 6);
      all.insert(all.end(), buffer_.begin(), buffer_.begin() + transfer_.BytesWritten);
      row += each.rows[i];
    }
    EXPECT_EQ(all, (Bytes{7, 0, 8, 0, 9, 0, 4, 0, 5, 0, 6, 0, 1, 0, 2, 0, 3, 0})) << "top-down";
  }
  EXPECT_NE(images_.GetCurrent()->image8, nullptr) << "prepared with the first strip";
  Negotiate(ICAP_PIXELFLAVOR, TWTY_UINT16, TWPF_VANILLA);
  source_->state_ = 6;
  EXPECT_EQ(Strip(6), TWRC_SUCCESS);
  EXPECT_EQ(Number(buffer_, 0, 2), 65529u);
}

TEST_F(ImageTransferTest, ASecondReturnDoesNotRestartAnImageUnderWay) {
  Return(12, {1, 2, 3, 4, 5, 6});
  StartTrace();
  EXPECT_EQ(Strip(6), TWRC_SUCCESS);
  const Lines trace = Trace();
  const auto at = [&](const char* line) {
    return std::find(trace.begin(), trace.end(), line) - trace.begin();
  };
  EXPECT_EQ(at("    Passed pointer to datablock") + 1, at("      Current bit depth: Grayscale"));

  source_->NotifyXferReady();
  EXPECT_EQ(source_->state(), 7);
  EXPECT_EQ(Strip(100), TWRC_XFERDONE);
  EXPECT_EQ(+transfer_.YOffset, 1u);
}

TEST_F(ImageTransferTest, RefusesBuffersThatAreNone) {
  Return(12, {1, 2, 3, 4, 5, 6});
  StartTrace();
  constexpr char kCopy[] = "Unable to copy data to buffer";
  char small[5];
  const platform::GlobalHandle freed = platform::AllocateMovable(100, true);
  platform::FreeBlock(freed);
  for (const TW_MEMORY& memory :
       {TW_MEMORY{TWMF_POINTER, 100, nullptr}, TW_MEMORY{TWMF_POINTER, sizeof small, small},
        TW_MEMORY{TWMF_POINTER, 1000, kNowhere}, TW_MEMORY{TWMF_HANDLE, 100, freed}}) {
    transfer_.BytesWritten = 99;
    transfer_.Memory = memory;
    Fails(DAT_IMAGEMEMXFER, MSG_GET, &transfer_, kCopy, TWCC_OPERATIONERROR, kCopy);
    EXPECT_EQ(+transfer_.BytesWritten, 99u);
  }
  // A handle of movable memory serves as well as an address.
  const platform::GlobalHandle block = platform::AllocateMovable(100, true);
  transfer_.Memory = {TWMF_HANDLE, 100, block};
  EXPECT_EQ(Send(DG_IMAGE, DAT_IMAGEMEMXFER, MSG_GET, &transfer_), TWRC_XFERDONE);
  platform::FreeBlock(block);
}

TEST_F(ImageTransferTest, TracesFailuresInTheWordsOfEachTransfer) {
  constexpr char kNative[] = "General failure in response to DAT_IMAGENATIVEXFER.";
  constexpr char kImageInfo[] = "General failure in response to DAT_IMAGEINFO.";
  GoTo(6);
  StartTrace();
  TW_HANDLE handle = nullptr;
  Fails(DAT_IMAGENATIVEXFER, MSG_SET, &handle, kNative, TWCC_BADPROTOCOL,
        "DISPATCHMSG_ImageNativeXfer: Bad Protocol");
  Fails(DAT_IMAGEFILEXFER, MSG_SET, nullptr, kImageInfo, TWCC_BADPROTOCOL,
        "DISPATCHMSG_ImageFileXfer: Bad Protocol");
  Fails(DAT_IMAGEMEMXFER, MSG_SET, nullptr, kImageInfo, TWCC_BADPROTOCOL,
        "DISPATCHMSG_ImageMemXfer: Bad Protocol");
  TW_IMAGEINFO info{};
  TW_IMAGELAYOUT layout{};
  Fails(DAT_IMAGENATIVEXFER, MSG_GET, &handle, kNoImages, TWCC_OPERATIONERROR,
        "   No images were available");
  Fails(DAT_IMAGEFILEXFER, MSG_GET, nullptr, kNoImages, TWCC_OPERATIONERROR, kNoImages);
  Fails(DAT_IMAGEMEMXFER, MSG_GET, &transfer_, kNoImages, TWCC_OPERATIONERROR, kNoImages);
  Fails(DAT_IMAGEINFO, MSG_GET, &info, kNoImages, TWCC_OPERATIONERROR,
        "No images were available; ");
  EXPECT_EQ(info.ImageWidth * info.ImageLength * info.BitsPerPixel, 8);
  Fails(DAT_IMAGELAYOUT, MSG_GET, &layout, kNoImages, TWCC_OPERATIONERROR,
        "   No images were available; ");
  EXPECT_EQ(layout.Frame.Right.Whole, 22);
  EXPECT_EQ(layout.Frame.Right.Frac, 33);
  Fails(DAT_IMAGELAYOUT, MSG_SET, nullptr, kNoImages, TWCC_OPERATIONERROR,
        "   No images were available; ");
  source_->state_ = 7;
  Fails(DAT_PALETTE8, MSG_GET, nullptr, "General failure in response to DAT_PALETTE8.",
        TWCC_SEQERROR, "DISPATCHMSG_Palette8: Sequence Error!");
  Fails(DAT_IMAGEFILEXFER, MSG_GET, nullptr, kNative, TWCC_SEQERROR,
        "DISPATCHMSG_ImageFileXfer: Sequence Error!");
  Fails(DAT_IMAGENATIVEXFER, MSG_GET, &handle, kNative, TWCC_SEQERROR,
        "DISPATCHMSG_Palette8: Sequence Error!");
  Send(DG_IMAGE, DAT_IMAGENATIVEXFER, MSG_GET, &handle);
  EXPECT_EQ(Trace().end()[-2], "   twRC = TWRC_FAILURE  CC = TWCC_SEQERROR");
}

}  // namespace
}  // namespace zyr
