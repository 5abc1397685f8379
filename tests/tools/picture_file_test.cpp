#include "tools/images/picture_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace zyr {
namespace {

using Bytes = std::vector<uint8_t>;

GreyPicture Gradient(uint32_t width, uint32_t height, uint32_t bits) {
  GreyPicture picture{width, height, bits, 1129, 564, {}};
  for (uint32_t i = 0; i < width * height; ++i) {
    picture.samples.push_back(static_cast<uint16_t>(i * 2654435761u >> (bits == 16 ? 16 : 24)));
  }
  return picture;
}

// What the reader, which is tested with files of another hand, does not look at.
TEST(PictureFile, PngTellsItsResolution) {
  const Bytes file = EncodePng(Gradient(5, 3, 16));
  const Bytes expected = {'p', 'H', 'Y', 's', 0, 0, 0xAD, 0xA1, 0, 0, 0x56, 0xBD, 1};
  EXPECT_NE(std::search(file.begin(), file.end(), expected.begin(), expected.end()), file.end());
}

TEST(PictureFile, BmpIsBottomUpAndPadded) {
  const Bytes file = EncodeBmp({2, 2, 8, 0, 0, {1, 2, 3, 4}});
  ASSERT_EQ(file.size(), 1078u + 8);
  EXPECT_EQ(Bytes(file.begin() + 1078, file.end()), (Bytes{3, 4, 0, 0, 1, 2, 0, 0}));
  EXPECT_EQ(Bytes(file.begin() + 54 + 4 * 200, file.begin() + 54 + 4 * 201),
            (Bytes{200, 200, 200, 0}));
}

class PictureFiles : public testing::Test {
 protected:
  PictureFiles() { std::filesystem::create_directories(folder_); }
  ~PictureFiles() override { std::filesystem::remove_all(folder_); }
  std::string Path(const char* name) const { return (folder_ / name).string(); }

  const std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / "zyr_picture_file_test";
};

TEST_F(PictureFiles, TellOfThemselvesWhatWasWritten) {
  for (const PictureFormat format : {PictureFormat::kBmp, PictureFormat::kTiff}) {
    const uint32_t bits = format == PictureFormat::kBmp ? 8 : 16;
    const std::string path = Path("a");
    ASSERT_TRUE(WritePicture(Gradient(7, 5, bits), format, path));
    const std::optional<PictureInfo> info = InspectPicture(path);
    ASSERT_TRUE(info) << bits;
    EXPECT_TRUE(info->width == 7 && info->height == 5);
    EXPECT_EQ(info->bits, bits);
    EXPECT_NEAR(info->xDpi, 1129, 0.02);
    EXPECT_NEAR(info->yDpi, 564, 0.02);
    EXPECT_EQ(info->fileSize, std::filesystem::file_size(path));
  }
}

TEST_F(PictureFiles, InspectsJpegAndWithstandsTornFiles) {
  // JFIF at 118 dots per centimetre, then a frame of 5 rows and 300 columns.
  const Bytes jpeg = {0xFF, 0xD8, 0xFF, 0xE0, 0,   16, 'J',  'F', 'I', 'F',  0,
                      1,    1,    2,    0,    118, 0,  118,  0,   0,   0xFF, 0xC0,
                      0,    11,   8,    0,    5,   1,  0x2C, 1,   1,   0x11, 0};
  ASSERT_TRUE(WriteBytes(jpeg, Path("a.jpg")));
  const std::optional<PictureInfo> info = InspectPicture(Path("a.jpg"));
  ASSERT_TRUE(info);
  EXPECT_TRUE(info->width == 300 && info->height == 5 && info->bits == 8);
  EXPECT_NEAR(info->xDpi, 299.72, 0.01);
  for (size_t length = 0; length < jpeg.size(); ++length) {
    ASSERT_TRUE(WriteBytes(Bytes(jpeg.begin(), jpeg.begin() + length), Path("torn.jpg")));
    EXPECT_FALSE(InspectPicture(Path("torn.jpg"))) << length;
  }
  EXPECT_FALSE(InspectPicture(Path("missing.bmp")));
}

TEST_F(PictureFiles, NothingIsLeftOfAFileThatCannotBeWritten) {
  for (const auto format : {PictureFormat::kPng, PictureFormat::kBmp, PictureFormat::kTiff})
    EXPECT_FALSE(WritePicture(Gradient(2, 2, 8), format, Path("no such folder/a")));
}

}  // namespace
}  // namespace zyr
