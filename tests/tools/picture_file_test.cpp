#include "tools/images/picture_file.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

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

uint32_t Big32(const Bytes& bytes, size_t at) {
  uint32_t value = 0;
  for (size_t i = 0; i < 4; ++i) value = value << 8 | bytes[at + i];
  return value;
}

// Bit by bit, as the standard defines it.
uint32_t SlowCrc(const uint8_t* bytes, size_t count) {
  uint32_t crc = 0xFFFFFFFFu;
  for (size_t i = 0; i < count; ++i) {
    crc ^= bytes[i];
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320u : crc >> 1;
  }
  return ~crc;
}

// A reader for PNG files of one block of data; everything that it meets is checked.
struct Png {
  Bytes header;
  Bytes resolution;
  Bytes lines;
};

// Far more room than any picture here takes.
Bytes Unpacked(const Bytes& stream) {
  Bytes lines(1 << 20);
  uLongf size = static_cast<uLongf>(lines.size());
  EXPECT_EQ(uncompress(lines.data(), &size, stream.data(), static_cast<uLong>(stream.size())),
            Z_OK);
  lines.resize(size);
  return lines;
}

void ReadPng(const Bytes& file, Png* png) {
  ASSERT_EQ(std::memcmp(file.data(), "\x89PNG\r\n\x1A\n", 8), 0);
  for (size_t at = 8; at < file.size();) {
    const size_t length = Big32(file, at);
    ASSERT_LE(at + 12 + length, file.size());
    EXPECT_EQ(Big32(file, at + 8 + length), SlowCrc(&file[at + 4], length + 4));
    const std::string type(file.begin() + at + 4, file.begin() + at + 8);
    const Bytes data(file.begin() + at + 8, file.begin() + at + 8 + length);
    if (type == "IHDR") png->header = data;
    if (type == "pHYs") png->resolution = data;
    if (type == "IDAT") png->lines = Unpacked(data);
    at += 12 + length;
  }
}

TEST(PictureFile, PngHoldsEverySampleInOrder) {
  for (const GreyPicture& picture : {Gradient(5, 3, 16), Gradient(301, 260, 8)}) {
    Png png;
    ReadPng(EncodePng(picture), &png);
    EXPECT_EQ(Big32(png.header, 0), picture.width);
    EXPECT_EQ(Big32(png.header, 4), picture.height);
    EXPECT_EQ(Bytes(png.header.begin() + 8, png.header.end()),
              (Bytes{static_cast<uint8_t>(picture.bits), 0, 0, 0, 0}));
    EXPECT_EQ(Big32(png.resolution, 0), 44449u);
    EXPECT_EQ(Big32(png.resolution, 4), 22205u);
    Bytes lines;
    for (size_t i = 0; i < picture.samples.size(); ++i) {
      if (i % picture.width == 0) lines.push_back(0);
      if (picture.bits == 16) lines.push_back(static_cast<uint8_t>(picture.samples[i] >> 8));
      lines.push_back(static_cast<uint8_t>(picture.samples[i]));
    }
    EXPECT_TRUE(png.lines == lines);
  }
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
  const std::string bmp = Path("a.bmp");
  const std::string tiff = Path("a.tif");
  ASSERT_TRUE(WritePicture(Gradient(7, 5, 8), PictureFormat::kBmp, bmp));
  ASSERT_TRUE(WritePicture(Gradient(7, 5, 16), PictureFormat::kTiff, tiff));
  for (const std::string& path : {bmp, tiff}) {
    const std::optional<PictureInfo> info = InspectPicture(path);
    ASSERT_TRUE(info) << path;
    EXPECT_EQ(info->width, 7u);
    EXPECT_EQ(info->height, 5u);
    EXPECT_EQ(info->bits, path == bmp ? 8u : 16u);
    EXPECT_NEAR(info->xDpi, 1129, 0.02);
    EXPECT_NEAR(info->yDpi, 564, 0.02);
    EXPECT_EQ(info->fileSize, std::filesystem::file_size(path));
  }
}

TEST_F(PictureFiles, TiffHoldsSixteenBitSamples) {
  const GreyPicture picture = Gradient(9, 4, 16);
  ASSERT_TRUE(WritePicture(picture, PictureFormat::kTiff, Path("a.tif")));
  std::ifstream file(Path("a.tif"), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  std::string samples;
  for (const uint16_t sample : picture.samples) {
    samples += static_cast<char>(sample & 0xFF);
    samples += static_cast<char>(sample >> 8);
  }
  EXPECT_NE(bytes.find(samples), std::string::npos);
}

TEST_F(PictureFiles, InspectsJpegAndWithstandsTornFiles) {
  // JFIF at 118 dots per centimetre, then a frame of 5 rows and 300 columns.
  const Bytes jpeg = {0xFF, 0xD8, 0xFF, 0xE0, 0,   16, 'J',  'F', 'I', 'F',  0,
                      1,    1,    2,    0,    118, 0,  118,  0,   0,   0xFF, 0xC0,
                      0,    11,   8,    0,    5,   1,  0x2C, 1,   1,   0x11, 0};
  ASSERT_TRUE(WriteBytes(jpeg, Path("a.jpg")));
  const std::optional<PictureInfo> info = InspectPicture(Path("a.jpg"));
  ASSERT_TRUE(info);
  EXPECT_EQ(info->width, 300u);
  EXPECT_EQ(info->height, 5u);
  EXPECT_EQ(info->bits, 8u);
  EXPECT_NEAR(info->xDpi, 299.72, 0.01);
  for (size_t length = 0; length < jpeg.size(); ++length) {
    ASSERT_TRUE(WriteBytes(Bytes(jpeg.begin(), jpeg.begin() + length), Path("torn.jpg")));
    EXPECT_FALSE(InspectPicture(Path("torn.jpg"))) << length;
  }
  EXPECT_FALSE(InspectPicture(Path("missing.bmp")));
}

TEST_F(PictureFiles, NothingIsLeftOfAFileThatCannotBeWritten) {
  const GreyPicture picture = Gradient(2, 2, 8);
  for (const PictureFormat format :
       {PictureFormat::kPng, PictureFormat::kBmp, PictureFormat::kTiff}) {
    EXPECT_FALSE(WritePicture(picture, format, Path("no such folder/a")));
  }
}

}  // namespace
}  // namespace zyr
