#include "imaging/image/image.h"

#include <array>

#include "foundation/support/phrase_lookup.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using ImageTest = ImagingTest;
namespace host = platform::host;

TEST_F(ImageTest, NewImagesArePaddedAndWhite) {
  CKIPImage image;
  for (const auto& [width, bits, stride] :
       {std::array{1u, 8u, 4u}, {4, 8, 4}, {1, 24, 4}, {9, 1, 4}, {33, 1, 8}}) {
    ASSERT_TRUE(image.Create(width, 3, bits));
    EXPECT_EQ(PixelBytes(image), Bytes(stride * 3, 0xFF));
  }
  Palette palette(256);
  for (const uint8_t white : {255, 200}) {  // the earlier of two stands
    palette[white] = {254, 255, 255, 0};
    image.SetPalette(palette);
    ASSERT_TRUE(image.Create(5, 2, 8));
    EXPECT_EQ(PixelBytes(image), Bytes(16, white));
  }
  EXPECT_EQ(image.GetTotalSize(), 16u + 1024u);
}

TEST_F(ImageTest, CreateRefusesBadSizesAndKeepsThePicture) {
  CKIPImage image;
  ASSERT_TRUE(image.Create("", 2, 2, 0, 300, 8));
  SetPhraseLookup([](const char* text) { return "Falsch: " + std::string(text); });
  EXPECT_FALSE(image.Create("new name", 0, 0, 1, 1, 16));
  SetPhraseLookup(nullptr);
  ExpectError(0x20000000, "Falsch: Invalid bits-per-pixel (16)");
  EXPECT_EQ(image.name, "new name");
  EXPECT_FALSE(image.Create(0, 5, 8));
  ExpectError(0x20000001, "Invalid image dimensions (0x5)");
  EXPECT_FALSE(image.Create(65536, 65536, 8));  // more bytes than 32 bits count
  ExpectError(0x20000001, "Invalid image dimensions (65536x65536)");
  EXPECT_FALSE(image.Create(0x55555556, 1, 24) || image.Create(0x80000000, 1, 1));
  EXPECT_EQ(image.dataSize(), 8u);
  EXPECT_EQ(image.xResolution(), 1u);  // for 0
  EXPECT_EQ(image.yResolution(), 300u);
}

TEST_F(ImageTest, AccessorsCountFromTheTop) {
  CKIPImage image;
  ASSERT_TRUE(image.Create(10, 3, 1));
  image.SetBit(9, 0, false);
  EXPECT_EQ(image.bits()[2 * 4 + 1], 0xBF);
  image.SetByte(0, 2, 0);
  EXPECT_EQ(image.bits()[0], 0x7F);
  image.SetByte(0, 2, 5);
  EXPECT_TRUE(image.GetBit(0, 2));

  ASSERT_TRUE(image.Create(3, 2, 24));
  image.SetRgb(1, 0, 0x030201);
  image.SetBgr(2, 0, 0x030201);
  EXPECT_EQ(Bytes(image.bits() + 15, image.bits() + 21), (Bytes{3, 2, 1, 1, 2, 3}));

  ASSERT_TRUE(image.Create(1, 1, 8));
  image.SetPalette({{0, 0, 9, 0}, {12, 0, 0, 0}, {0, 10, 0, 0}, {10, 0, 0, 0}});
  image.SetRgb(0, 0, 0x0A0A0A);
  EXPECT_EQ(image.bits()[0], 2);  // the first of the two nearest colours
}

TEST_F(ImageTest, CheckedColorsTellWhatIsWrong) {
  CKIPImage image;
  EXPECT_FALSE(image.GetColorChecked(9, 9, nullptr));
  ExpectError(0x20000005, "Invalid image specified");
  ASSERT_TRUE(image.Create(3, 2, 8));
  image.SetPalette(Palette(255));
  EXPECT_FALSE(image.GetColorChecked(2, 2, nullptr));
  ExpectError(0x2000000E, "Image index out of range (2x2)");
  EXPECT_FALSE(image.GetColorChecked(2, 1, nullptr));
  ExpectError(0x2000000F, "Color index out of range (255 out of 255)");
}

TEST_F(ImageTest, CopiesAndClones) {
  for (const uint32_t bits : {1u, 8u, 24u}) {
    const auto image = RandomImage(13, 7, bits, bits == 24 ? Palette{} : ColoredPalette(2));
    image->flipped = true;
    std::unique_ptr<CKIPImage> copies[] = {image->Clone(true), std::make_unique<CKIPImage>()};
    copies[1]->SetPalette(ColoredPalette(9));
    ASSERT_TRUE(copies[1]->Copy(*image));
    for (const auto& copy : copies) {
      EXPECT_EQ(PixelBytes(*copy), PixelBytes(*image));
      EXPECT_EQ(copy->palette(), image->palette());
      EXPECT_TRUE(copy->name == "scan" && copy->yResolution() == 150 && copy->flipped);
    }
    const uint8_t white = bits == 8 ? 1 : 0xFF;  // the nearer of the two colours
    EXPECT_EQ(PixelBytes(*image->Clone(false)), Bytes(image->dataSize(), white));
  }
  EXPECT_EQ(CKIPImage().Clone(true), nullptr);
  EXPECT_FALSE(CKIPImage().Copy(CKIPImage()));
}

// Who frees too much or too little is caught by the sanitizer.
TEST_F(ImageTest, TakeOverMovesEverything) {
  auto* const source = RandomGrey(3, 4).release();
  const Bytes pixels = PixelBytes(*source);
  source->extra.extraData = std::malloc(8);
  source->extra.extraOwned = true;
  const auto target = RandomGrey(2, 2);
  target->TakeOver(source, false);
  EXPECT_EQ(PixelBytes(*target), pixels);
  EXPECT_FALSE(source->IsValid());
  ASSERT_TRUE(source->Create(4, 4, 8));
  EXPECT_TRUE(source->CopyPixelsFrom(*target));  // of as many bytes
  EXPECT_FALSE(source->CopyPixelsFrom(*RandomGrey(4, 5)));
  source->TakeExtra(*target);
  target->TakeOver(source, true);
  EXPECT_EQ(PixelBytes(*target), pixels);
  EXPECT_TRUE(target->extra.extraOwned);
}

TEST_F(ImageTest, CopyRectKeepsToTheImage) {
  constexpr int32_t kRects[][4] = {{2, 1, 3, 2},
                                   {-3, -2, 8, 20},
                                   {7, 4, 30, 30},
                                   {INT32_MIN, 0, 2, 2},
                                   {INT32_MAX, INT32_MAX, 2, 2}};
  for (const uint32_t bits : {1u, 8u, 24u}) {
    const auto image = RandomImage(9, 6, bits, bits == 24 ? Palette{} : ColoredPalette(256));
    for (const auto& [left, top, width, height] : kRects) {
      CKIPImage part;
      ASSERT_TRUE(image->CopyRect(part, left, top, width, height));
      const auto expected = part.Clone(false);
      for (int32_t i = 0; i < width * height; ++i) {
        const int64_t x = int64_t{left} + i % width;
        const int64_t y = int64_t{top} + i / width;
        PaletteEntry color;
        if (x < 0 || x >= 9 || y < 0 || y >= 6 || !image->GetColor(x, y, &color)) continue;
        expected->SetRgb(i % width, i / width, color.red | color.green << 8 | color.blue << 16);
      }
      EXPECT_EQ(PixelBytes(part), PixelBytes(*expected)) << bits << " " << left;
    }
    ASSERT_TRUE(image->CopyRect(*image, 1, 1, 2, 2));
    EXPECT_EQ(image->width(), 2u);
  }
}

TEST_F(ImageTest, DrawsFromItsOwnMemory) {
  auto image = RandomImage(5, 3, 8, ColoredPalette(300));
  int context = 0;
  EXPECT_TRUE(image->BitBlt(&context, 1, 2, 3, 4, 0, 1));
  image->flipped = true;
  EXPECT_TRUE(image->Draw(&context, 10, 20, 50, 30));
  ASSERT_EQ(host::DrawnDibs().size(), 2u);
  EXPECT_EQ(host::DrawnDibs()[0].from.y, 1);
  EXPECT_EQ(host::DrawnDibs()[0].from.height, 4);
  EXPECT_EQ(host::DrawnDibs()[1].from.height, -3);
  EXPECT_EQ(host::DrawnDibs()[1].bits, PixelBytes(*image));
  EXPECT_EQ(host::DrawnDibs()[1].palette.size(), 1024u);
  EXPECT_FALSE(CKIPImage().Draw(&context, 0, 0, 1, 1));
}

}  // namespace
}  // namespace zyr
