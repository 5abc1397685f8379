#include "tools/zyracquire/delivered_picture.h"

#include <gtest/gtest.h>

#include <vector>

namespace zyr {
namespace {

using Bytes = std::vector<uint8_t>;

void Put(Bytes* bytes, uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes->push_back(static_cast<uint8_t>(value >> (8 * i)));
}

Bytes Header(uint32_t width, int32_t height, uint32_t bits, uint32_t colors) {
  Bytes block;
  for (const uint32_t field : {40u, width, static_cast<uint32_t>(height), 1 | bits << 16, 0u, 0u,
                               44449u, 22205u, colors, 0u})
    Put(&block, field);
  return block;
}

TEST(PictureFromDib, RowsComeUprightWhateverTheirOrderAndPadding) {
  const std::vector<uint16_t> upright = {1, 2, 3, 4, 5, 6};
  const struct {
    const char* what;
    int32_t height;
    uint32_t bits;
    Bytes pixels;
  } kCases[] = {
      {"8 bits, bottom row first", 2, 8, {4, 5, 6, 0, 1, 2, 3, 0}},
      {"8 bits, top row first", -2, 8, {1, 2, 3, 0, 4, 5, 6, 0}},
      {"16 bits, not padded", 2, 16, {4, 0, 5, 0, 6, 0, 1, 0, 2, 0, 3, 0}},
      {"16 bits, padded", 2, 16, {4, 0, 5, 0, 6, 0, 0, 0, 1, 0, 2, 0, 3, 0, 0, 0}},
  };
  for (const auto& one : kCases) {
    Bytes block = Header(3, one.height, one.bits, 0);
    for (uint32_t i = 0; one.bits == 8 && i < 256; ++i) Put(&block, i * 0x010101);
    block.insert(block.end(), one.pixels.begin(), one.pixels.end());
    std::string error;
    const std::optional<GreyPicture> picture = PictureFromDib(block, &error);
    ASSERT_TRUE(picture) << one.what << ": " << error;
    EXPECT_EQ(picture->samples, upright) << one.what;
  }
}

TEST(PictureFromDib, TakesBrightnessFromTheColourTableAndResolutionFromTheHeader) {
  Bytes block = Header(4, 1, 8, 2);
  Put(&block, 0xFFFFFF);  // index 0 is white
  Put(&block, 0x000000);
  Put(&block, 0x01000100);
  std::string error;
  const std::optional<GreyPicture> picture = PictureFromDib(block, &error);
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->samples, (std::vector<uint16_t>{255, 0, 255, 0}));
  EXPECT_NEAR(picture->xDpi, 1129, 0.01);
  EXPECT_NEAR(picture->yDpi, 564, 0.01);
}

TEST(PictureFromDib, RefusesWhatItCannotRead) {
  Bytes whole = Header(3, 2, 16, 0);
  whole.resize(whole.size() + 12);
  std::string error;
  ASSERT_TRUE(PictureFromDib(whole, &error));
  for (size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(PictureFromDib(Bytes(whole.begin(), whole.begin() + size), &error)) << size;
    EXPECT_NE(error, "");
  }
  // The last has a colour table that is not all there.
  for (Bytes block : {Header(0, 2, 8, 0), Header(3, 0, 8, 0), Header(0xFFFFFFFF, 2, 16, 0),
                      Header(3, INT32_MIN, 16, 0), Header(65536, 65536, 16, 0), Header(3, 2, 24, 0),
                      Header(3, 2, 8, 0xFFFFFFFF)}) {
    block.resize(800);
    EXPECT_FALSE(PictureFromDib(block, &error));
  }
}

TW_IMAGEINFO Info(int32_t width, int32_t height, int16_t bits) {
  TW_IMAGEINFO info{};
  info.ImageWidth = width;
  info.ImageLength = height;
  info.BitsPerPixel = bits;
  return info;
}

TW_IMAGEMEMXFER Strip(uint32_t firstRow, uint32_t rows, uint32_t columns, uint32_t bytesPerRow) {
  TW_IMAGEMEMXFER strip{};
  strip.YOffset = firstRow;
  strip.Rows = rows;
  strip.Columns = columns;
  strip.BytesPerRow = bytesPerRow;
  strip.BytesWritten = rows * bytesPerRow;
  return strip;
}

TEST(StripCollector, PutsRowsTogetherAndTurnsWhiteToBlack) {
  for (const bool zeroIsWhite : {false, true}) {
    StripCollector strips(Info(3, 2, 8));
    EXPECT_TRUE(strips.Add(Strip(0, 1, 3, 4), Bytes{1, 2, 3, 99}));
    EXPECT_TRUE(strips.Add(Strip(1, 1, 3, 4), Bytes{4, 5, 6, 99}));
    EXPECT_TRUE(strips.Add(Strip(2, 0, 3, 4), Bytes{9, 9, 9, 99}));  // the empty one at the end
    GreyPicture picture;
    ASSERT_TRUE(strips.Finish(zeroIsWhite, &picture)) << strips.error();
    EXPECT_EQ(picture.samples, zeroIsWhite ? (std::vector<uint16_t>{254, 253, 252, 251, 250, 249})
                                           : (std::vector<uint16_t>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(strips.bytes(), 8u);
  }
}

// An image announced with the depth that was negotiated may yet be taken at 8 bits.
TEST(StripCollector, DepthIsThatOfTheRows) {
  for (const uint32_t bytes : {1u, 2u}) {
    StripCollector strips(Info(3, 1, 16));
    GreyPicture picture;
    ASSERT_TRUE(strips.Add(Strip(0, 1, 3, 3 * bytes), Bytes{0, 1, 2, 3, 4, 5}));
    ASSERT_TRUE(strips.Finish(false, &picture));
    EXPECT_EQ(picture.bits, 8 * bytes);
    EXPECT_EQ(picture.samples, bytes == 1 ? (std::vector<uint16_t>{0, 1, 2})
                                          : (std::vector<uint16_t>{256, 770, 1284}));
  }
}

TEST(StripCollector, BelievesNoSourceThatContradictsItself) {
  const Bytes buffer(64);
  const struct {
    const char* what;
    TW_IMAGEMEMXFER strip;
  } kCases[] = {
      {"other width", Strip(0, 1, 4, 4)},
      {"not from the start", Strip(1, 1, 3, 4)},
      {"too many rows", Strip(0, 3, 3, 4)},
      {"rows too short", Strip(0, 1, 3, 2)},
      {"larger than the buffer", Strip(0, 2, 3, 40)},
      {"product overflows", Strip(0, 2, 3, 0x80000000)},
  };
  for (const auto& wrong : kCases) {
    StripCollector strips(Info(3, 2, 8));
    EXPECT_FALSE(strips.Add(wrong.strip, buffer)) << wrong.what;
    EXPECT_NE(strips.error(), "");
    EXPECT_FALSE(strips.Add(Strip(0, 1, 3, 4), buffer)) << "nothing follows a refusal";
  }
  GreyPicture picture;
  StripCollector unfinished(Info(3, 2, 8));
  EXPECT_TRUE(unfinished.Add(Strip(0, 1, 3, 4), buffer));
  EXPECT_FALSE(unfinished.Finish(false, &picture));
  EXPECT_EQ(unfinished.error(), "The source ended the transfer after 1 of 2 rows.");
  for (const TW_IMAGEINFO& info : {Info(0, 2, 8), Info(-3, 2, 8), Info(3, 2, 24)}) {
    EXPECT_FALSE(StripCollector(info).Add(Strip(0, 1, 3, 4), buffer));
  }
}

}  // namespace
}  // namespace zyr
