#include "imaging/formats/tiff.h"

#include <tiffio.h>

#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using TiffTest = ImagingTest;
namespace host = platform::host;

constexpr char kPath[] = R"(C:\out\picture.tif)";

using TiffFile = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

TiffFile SaveAndOpen(CKIPImage& image) {
  CKIPTiffSaver saver;
  saver.imageDescription = "Tooth 11";
  saver.artist = "Practice";
  EXPECT_TRUE(saver.Save(kPath, &image, nullptr)) << LastImageErrorText();
  return {TIFFOpen(host::NativeOf(kPath).string().c_str(), "r"), TIFFClose};
}

template <typename Value>
Value Get(const TiffFile& tiff, uint32_t tag) {
  Value value{};
  EXPECT_TRUE(TIFFGetField(tiff.get(), tag, &value)) << tag;
  return value;
}

TEST_F(TiffTest, TagsAndRowsReadBack) {
  struct Case {
    uint32_t bits;
    Palette palette;
    uint16_t photometric;
  };
  const Case cases[] = {{1, {{0, 0, 0, 0}, {255, 255, 255, 0}}, PHOTOMETRIC_MINISBLACK},
                        {1, {{255, 255, 255, 0}, {0, 0, 0, 0}}, PHOTOMETRIC_MINISWHITE},
                        {8, NewIdentityPalette(), PHOTOMETRIC_MINISBLACK},
                        {8, ColoredPalette(300), PHOTOMETRIC_PALETTE},
                        {24, {}, PHOTOMETRIC_RGB}};
  for (const Case& one : cases) {
    const auto image = RandomImage(37, 21, one.bits, one.palette);
    const TiffFile tiff = SaveAndOpen(*image);
    ASSERT_NE(tiff, nullptr);
    const std::pair<uint32_t, int> shorts[] = {{TIFFTAG_RESOLUTIONUNIT, 2},
                                               {TIFFTAG_ORIENTATION, 1},
                                               {TIFFTAG_COMPRESSION, 1},
                                               {TIFFTAG_PLANARCONFIG, 1},
                                               {TIFFTAG_PHOTOMETRIC, one.photometric},
                                               {TIFFTAG_BITSPERSAMPLE, one.bits == 1 ? 1 : 8},
                                               {TIFFTAG_SAMPLESPERPIXEL, one.bits == 24 ? 3 : 1}};
    for (const auto& [tag, value] : shorts) EXPECT_EQ(Get<uint16_t>(tiff, tag), value) << tag;
    const std::pair<uint32_t, uint32_t> longs[] = {
        {TIFFTAG_IMAGEWIDTH, 37}, {TIFFTAG_IMAGELENGTH, 21}, {TIFFTAG_ROWSPERSTRIP, 1}};
    for (const auto& [tag, value] : longs) EXPECT_EQ(Get<uint32_t>(tiff, tag), value) << tag;
    EXPECT_EQ(Get<float>(tiff, TIFFTAG_XRESOLUTION), 300.0f);
    EXPECT_EQ(Get<float>(tiff, TIFFTAG_YRESOLUTION), 150.0f);
    EXPECT_STREQ(Get<const char*>(tiff, TIFFTAG_IMAGEDESCRIPTION), "Tooth 11");
    EXPECT_STREQ(Get<const char*>(tiff, TIFFTAG_ARTIST), "Practice");
    EXPECT_STREQ(Get<const char*>(tiff, TIFFTAG_SOFTWARE), "Korvida Imaging Package");

    uint16_t* maps[3];
    const bool hasMap = TIFFGetField(tiff.get(), TIFFTAG_COLORMAP, &maps[0], &maps[1], &maps[2]);
    ASSERT_EQ(hasMap, one.photometric == PHOTOMETRIC_PALETTE);
    for (size_t i = 0; hasMap && i < 256; ++i) {  // as they are in the palette, not scaled
      EXPECT_EQ(maps[0][i], one.palette[i].red);
      EXPECT_EQ(maps[1][i], one.palette[i].green);
      EXPECT_EQ(maps[2][i], one.palette[i].blue);
    }
    Bytes row(TIFFScanlineSize(tiff.get()));
    ASSERT_EQ(row.size(), image->stride() - image->rowPadding());
    for (uint32_t y = 0; y < 21; ++y) {
      ASSERT_EQ(TIFFReadScanline(tiff.get(), row.data(), y), 1);
      for (size_t i = 0; one.bits == 24 && i < row.size(); i += 3) std::swap(row[i], row[i + 2]);
      ASSERT_EQ(std::memcmp(row.data(), image->PictureRow(y), row.size()), 0);
    }
  }
}

// A seek and a write for each row would take three times as long.
TEST_F(TiffTest, RowsAreGathered) {
  const auto image = RandomGrey(100, 1000);
  ASSERT_TRUE(CKIPTiffSaver().Save(kPath, image.get(), nullptr));
  EXPECT_LT(host::CountsOfFiles().writes, 10);
}

TEST_F(TiffTest, UnknownCompressionIsAWriteFailure) {
  CKIPTiffSaver saver;
  saver.compression = 12345;
  testing::internal::CaptureStderr();
  EXPECT_FALSE(saver.Save(kPath, RandomGrey(5, 5).get(), nullptr));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  ExpectError(0x10000007, R"(Unable to write the image to the file 'C:\out\picture.tif')");
  EXPECT_FALSE(host::FileBytes(kPath).has_value());
}

}  // namespace
}  // namespace zyr
