#include "imaging/formats/jpeg.h"

#include <cstdio>

#include <jpeglib.h>

#include "platform/files.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

namespace host = platform::host;

constexpr char kPath[] = R"(C:\out\picture.jpg)";

class JpegTest : public ImagingTest {
 protected:
  std::string Saved(CKIPImage& image, uint32_t quality) {
    EXPECT_TRUE(CKIPJpegSaver().Save(kPath, &image, quality, nullptr)) << LastImageErrorText();
    return host::FileBytes(kPath).value_or("");
  }
  bool Load(const std::string& bytes) {
    platform::RemoveFile(kPath);  // much faster than overwriting
    host::PutFile(kPath, bytes);
    return CKIPJpegLoader().Load(kPath, &loaded_, RecordProgress);
  }

  CKIPImage loaded_;
};

// 9 x 6 pixels of one colour, in colour spaces that the saver does not write, too.
std::string EncodedAs(J_COLOR_SPACE space, int components, bool progressive = false) {
  jpeg_compress_struct codec;
  jpeg_error_mgr errors;
  codec.err = jpeg_std_error(&errors);
  jpeg_create_compress(&codec);
  unsigned char* memory = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&codec, &memory, &size);
  codec.image_width = 9;
  codec.image_height = 6;
  codec.input_components = components;
  codec.in_color_space = space;
  jpeg_set_defaults(&codec);
  jpeg_set_colorspace(&codec, space);
  codec.optimize_coding = TRUE;
  codec.write_JFIF_header = space == JCS_GRAYSCALE ? TRUE : FALSE;
  codec.density_unit = 2;
  codec.X_density = 118;
  codec.Y_density = 59;
  if (progressive) jpeg_simple_progression(&codec);
  jpeg_start_compress(&codec, TRUE);
  std::vector<JSAMPLE> row;
  for (int i = 0; i < 9 * components; ++i) row.push_back((200 - 50 * (i % components)) & 0xFF);
  JSAMPROW rows = row.data();
  for (int y = 0; y < 6; ++y) jpeg_write_scanlines(&codec, &rows, 1);
  jpeg_finish_compress(&codec);
  jpeg_destroy_compress(&codec);
  const std::string bytes(reinterpret_cast<char*>(memory), size);
  std::free(memory);
  return bytes;
}

TEST_F(JpegTest, GreyComesBackWithCrossedResolutions) {
  const auto image = RandomGrey(37, 21);
  for (uint32_t i = 0; i < image->dataSize(); ++i) image->bits()[i] = 2 * i & 0x7F;
  const std::string bytes = Saved(*image, 100);
  EXPECT_EQ(bytes.substr(6, 4), "JFIF");
  EXPECT_EQ(bytes.substr(13, 5), std::string("\x01\x00\x96\x01\x2C", 5));
  host::PressEscape();  // before the load: forgotten
  ASSERT_TRUE(Load(bytes)) << LastImageErrorText();
  EXPECT_EQ(loaded_.name, kPath);
  EXPECT_EQ(loaded_.fileFormat, 3u);
  EXPECT_EQ(loaded_.fileSize, bytes.size());
  EXPECT_EQ(loaded_.xResolution(), 150u);
  EXPECT_EQ(loaded_.yResolution(), 300u);
  EXPECT_TRUE(loaded_.IsGrey());
  for (uint32_t i = 0; i < 21 * 37; ++i) {
    EXPECT_NEAR(loaded_.PictureRow(i / 37)[i % 37], image->PictureRow(i / 37)[i % 37], 2);
  }
  EXPECT_EQ(g_fractions.size(), 21u);
  EXPECT_EQ(g_fractions.back(), 1.0);
  EXPECT_EQ(Saved(*image, 0), Saved(*image, 1));
  EXPECT_EQ(Saved(*image, 200), bytes);
}

TEST_F(JpegTest, OtherDepthsAreConvertedOnTheWay) {
  const auto bilevel = RandomImage(37, 21, 1, ColoredPalette(2));
  EXPECT_EQ(Saved(*bilevel, 80), Saved(*ConvertToGrey8(*bilevel, nullptr), 80));
  const auto colors = RandomImage(37, 21, 8, ColoredPalette(256));
  EXPECT_EQ(Saved(*colors, 80), Saved(*ConvertTo24(*colors, nullptr), 80));
  EXPECT_FALSE(CKIPJpegSaver().Save(kPath, RandomImage(9, 9, 8).get(), 80, nullptr));
  ExpectError(0, "Out of memory");
}

TEST_F(JpegTest, ColorsAreWrittenRedFirst) {
  CKIPImage image;
  ASSERT_TRUE(image.Create(16, 16, 24));
  for (uint32_t i = 0; i < 256; ++i) image.SetRgb(i % 16, i / 16, 0x0000F0);  // red
  std::string bytes = Saved(image, 100);
  EXPECT_FALSE(Load(bytes));
  ExpectError(0x2000000D, "Unsupported color scheme");
  // Without the JFIF marker, and its components called R, G and B: Y, Cb and Cr as they stand.
  bytes.erase(2, 18);
  const size_t frame = bytes.find("\xFF\xC0");
  const size_t scan = bytes.find("\xFF\xDA");
  for (size_t i = 0; i < 3; ++i) bytes[frame + 10 + 3 * i] = bytes[scan + 5 + 2 * i] = "RGB"[i];
  ASSERT_TRUE(Load(bytes)) << LastImageErrorText();
  PaletteEntry yCbCr;
  ASSERT_TRUE(loaded_.GetColor(8, 8, &yCbCr));
  EXPECT_NEAR(yCbCr.red, 72, 2);
  EXPECT_NEAR(yCbCr.green, 87, 2);
  EXPECT_NEAR(yCbCr.blue, 248, 2);
}

TEST_F(JpegTest, LoadsTwoColorSpacesOnly) {
  ASSERT_TRUE(Load(EncodedAs(JCS_GRAYSCALE, 1)));
  EXPECT_EQ(loaded_.xResolution(), 300u);  // 118 per cm
  EXPECT_EQ(loaded_.yResolution(), 150u);
  ASSERT_TRUE(Load(EncodedAs(JCS_RGB, 3, true)));
  EXPECT_EQ(loaded_.bitsPerPixel(), 24u);
  EXPECT_EQ(loaded_.xResolution(), 1u);  // no marker
  for (const auto& [space, components] : {std::pair{JCS_CMYK, 4}, std::pair{JCS_YCbCr, 3}}) {
    EXPECT_FALSE(Load(EncodedAs(space, components)));
    ExpectError(0x2000000D, "Unsupported color scheme");
    EXPECT_FALSE(loaded_.IsValid());
  }
}

TEST_F(JpegTest, TornFilesFailOrGiveAPicture) {
  for (const bool progressive : {false, true}) {
    const std::string whole = EncodedAs(JCS_GRAYSCALE, 1, progressive);
    for (size_t size = 0; size < whole.size(); ++size) {
      std::string damaged = whole;
      damaged[size] = static_cast<char>(Random(256));
      for (const std::string& bytes : {whole.substr(0, size), damaged}) {
        const bool read = Load(bytes);
        ASSERT_EQ(read, loaded_.IsValid()) << size;
        EXPECT_EQ(read, LastImageErrorCode() == 77) << size;
        ReportImageError(77, "none");
      }
    }
  }
  EXPECT_FALSE(Load("no picture"));
  ExpectError(0x20000005, "Invalid image specified (Not a JPEG file: starts with 0x6e 0x6f)");
}

TEST_F(JpegTest, GreedyFilesAreCutOff) {
  std::string huge = EncodedAs(JCS_GRAYSCALE, 1);
  huge.replace(huge.find("\xFF\xC0") + 5, 4, "\xFF\x00\xFF\x00", 4);
  EXPECT_FALSE(Load(huge));
  ExpectError(0x20000001, "Invalid image dimensions (65280x65280)");
  std::string endless = EncodedAs(JCS_GRAYSCALE, 1, true);
  const size_t scan = endless.rfind("\xFF\xDA");
  const std::string lastScan = endless.substr(scan, endless.size() - 2 - scan);
  for (int i = 0; i < 70; ++i) endless.insert(scan, lastScan);
  EXPECT_FALSE(Load(endless));
  ExpectError(0x20000005, "Invalid image specified (Too many scans)");
}

TEST_F(JpegTest, LoadingCanBeEndedOrMissTheFile) {
  host::PressEscapeAtQuestion(4);
  EXPECT_FALSE(Load(EncodedAs(JCS_GRAYSCALE, 1)));
  ExpectError(3, "User abort");
  EXPECT_FALSE(loaded_.IsValid());
  EXPECT_TRUE(host::FileBytes(kPath).has_value());
  EXPECT_FALSE(CKIPJpegLoader().Load(kPath, nullptr, nullptr));
  ExpectError(1, "NULL image pointer specified");
  EXPECT_FALSE(CKIPJpegLoader().Load(R"(C:\out\missing.jpg)", &loaded_, nullptr));
  ExpectError(0x10000005, R"(Unable to open JPEG file 'C:\out\missing.jpg')");
}

}  // namespace
}  // namespace zyr
