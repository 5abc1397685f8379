#include "imaging/formats/jpeg.h"

#include "platform/files.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

namespace host = platform::host;
using namespace std::string_literals;

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

// A progressive file of 9 x 6 grey pixels in scans that each refine them by one bit.
std::string InScans(int scans) {
  const std::string scan = "\xFF\xDA\0\x08\x01\x01\0\0\0\x10\0"s;
  std::string file = "\xFF\xD8\xFF\xDB\0\x43\0"s + std::string(64, '\1') +
                     "\xFF\xC2\0\x0B\x08\0\x06\0\x09\x01\x01\x11\0"s;
  while (scans-- > 0) file += scan;
  return file + "\xFF\xD9";
}

TEST_F(JpegTest, GreyComesBackWithCrossedResolutions) {
  const auto image = RandomGrey(37, 21);
  for (uint32_t i = 0; i < image->dataSize(); ++i) image->bits()[i] = 2 * i & 0x7F;
  std::string bytes = Saved(*image, 100);
  EXPECT_EQ(bytes.substr(6, 4), "JFIF");
  EXPECT_EQ(bytes.substr(13, 5), "\x01\x00\x96\x01\x2C"s);
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
  bytes.replace(13, 5, "\x02\x00\x76\x00\x3B"s);  // 118 and 59 per centimetre
  ASSERT_TRUE(Load(bytes));
  EXPECT_EQ(loaded_.xResolution(), 300u);
  EXPECT_EQ(loaded_.yResolution(), 150u);
}

TEST_F(JpegTest, OtherDepthsAreConvertedOnTheWay) {
  const auto bilevel = RandomImage(37, 21, 1, ColoredPalette(2));
  EXPECT_EQ(Saved(*bilevel, 80), Saved(*ConvertToGrey8(*bilevel, nullptr), 80));
  const auto colors = RandomImage(37, 21, 8, ColoredPalette(256));
  EXPECT_EQ(Saved(*colors, 80), Saved(*ConvertTo24(*colors, nullptr), 80));
  EXPECT_FALSE(CKIPJpegSaver().Save(kPath, RandomImage(9, 9, 8).get(), 80, nullptr));
  ExpectError(0, "Out of memory");
}

TEST_F(JpegTest, ColorsAreWrittenRedFirstAndReadAsGreyOrRgbOnly) {
  CKIPImage image;
  ASSERT_TRUE(image.Create(16, 16, 24));
  for (uint32_t i = 0; i < 256; ++i) image.SetRgb(i % 16, i / 16, 0x0000F0);  // red
  std::string bytes = Saved(image, 100);
  const std::string cmyk =
      "\xFF\xD8\xFF\xC0\0\x14\x08\0\x10\0\x10\x04\x01\x11\0\x02\x11\0\x03\x11\0\x04\x11\0"
      "\xFF\xDA\0\x0E\x04\x01\0\x02\0\x03\0\x04\0\0\x3F\0"s;
  for (const std::string& refused : {bytes, cmyk}) {
    EXPECT_FALSE(Load(refused));
    ExpectError(0x2000000D, "Unsupported color scheme");
    EXPECT_FALSE(loaded_.IsValid());
  }
  // Without the JFIF marker, and its components called R, G and B: Y, Cb and Cr as they stand.
  bytes.erase(2, 18);
  const size_t frame = bytes.find("\xFF\xC0");
  const size_t scan = bytes.find("\xFF\xDA");
  for (size_t i = 0; i < 3; ++i) bytes[frame + 10 + 3 * i] = bytes[scan + 5 + 2 * i] = "RGB"[i];
  ASSERT_TRUE(Load(bytes)) << LastImageErrorText();
  EXPECT_EQ(loaded_.xResolution(), 1u);
  PaletteEntry yCbCr;
  ASSERT_TRUE(loaded_.GetColor(8, 8, &yCbCr));
  EXPECT_NEAR(yCbCr.red, 72, 2);
  EXPECT_NEAR(yCbCr.green, 87, 2);
  EXPECT_NEAR(yCbCr.blue, 248, 2);
}

TEST_F(JpegTest, TornAndGreedyFilesFailOrGiveAPicture) {
  const std::string saved = Saved(*RandomGrey(9, 6), 50);
  for (const std::string& whole : {saved, InScans(3)}) {
    for (size_t size = 1; size < whole.size(); ++size) {
      std::string bytes = size % 2 != 0 ? whole.substr(0, size) : whole;
      bytes[Random(static_cast<uint32_t>(bytes.size()))] = static_cast<char>(Random(256));
      const bool read = Load(bytes);
      ASSERT_EQ(read, loaded_.IsValid()) << size;
      EXPECT_EQ(read, LastImageErrorCode() == 77) << size;
      ReportImageError(77, "-");
    }
  }
  EXPECT_FALSE(Load("no picture"));
  ExpectError(0x20000005, "Invalid image specified (Not a JPEG file: starts with 0x6e 0x6f)");
  std::string huge = saved;
  huge.replace(huge.find("\xFF\xC0") + 5, 4, "\xFF\x00\xFF\x00"s);
  EXPECT_FALSE(Load(huge));
  ExpectError(0x20000001, "Invalid image dimensions (65280x65280)");
  EXPECT_TRUE(Load(InScans(60)));
  EXPECT_FALSE(Load(InScans(70)));
  ExpectError(0x20000005, "Invalid image specified (Too many scans)");
}

TEST_F(JpegTest, LoadingCanBeEndedOrMissTheFile) {
  host::PressEscapeAtQuestion(4);
  EXPECT_FALSE(Load(InScans(1)));
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
