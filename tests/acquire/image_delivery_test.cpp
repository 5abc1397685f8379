#include <algorithm>

#include "imaging/formats/jpeg.h"
#include "settings/store.h"
#include "tests/acquire/acquire_test.h"
#include "tests/hardware/golden_text.h"

namespace zyr::test {
namespace {

struct Shape {
  uint32_t width;
  uint32_t height;
  uint32_t bits;
};
constexpr Shape kShapes[] = {{1, 1, 12}, {1, 5, 8},  {2, 3, 12}, {3, 4, 8},  {4, 4, 8},
                             {5, 1, 8},  {7, 6, 12}, {9, 3, 12}, {13, 5, 8}, {33, 7, 12}};

const TransferTerms kDeep = {.is16BitGrayscale = [] { return true; }};
const TransferTerms kGrey = {.is16BitGrayscale = [] { return false; }};

// Of each shape, depth and stretch: the CRC-32 of the native form, and of inverted strips with one
// row, two rows and so on. The inversion is as applications have always met it: both pointers over
// one buffer, the writing one advancing by the stride in bytes.
constexpr char kGolden[] =
#include "tests/acquire/golden/forms.inc"
    ;

class DeliveryTest : public AcquireTest {
 protected:
  std::unique_ptr<CachedImage> Make(const Shape& shape) {
    auto image = NewImage(shape.width, shape.height, shape.bits);
    std::vector<uint8_t> pixels = PixelsOf(*image);
    if (shape.bits == 12) pixels[1] |= 0x08;
    image->SetPixelData(pixels);
    return image;
  }
  static bool IsDeep(const CachedImage& image, const TransferTerms& terms) {
    return terms.is16BitGrayscale() && image.bitsPerPixel > 8;
  }

  static uint32_t RowBytes(const CachedImage& image, const TransferTerms& terms) {
    return IsDeep(image, terms) ? image.width * 2 : (image.width + 3) / 4 * 4;
  }
  static std::span<const uint8_t> AsBytes(const std::string& text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
  }
  static MemoryStrip StripIn(std::vector<uint8_t>& memory) {
    return {
        .isPointer = true, .length = static_cast<uint32_t>(memory.size()), .memory = memory.data()};
  }
  void TransferInStrips(CachedImage& image, const TransferTerms& terms, uint32_t length);

  bool Copy(CachedImage& image, MemoryStrip* strip, const TransferTerms& terms) {
    const uint32_t xOffset = 0;
    return image.CopyToMemoryBuffer(strip, &xOffset, &yOffset_, &done_, terms);
  }

  uint32_t yOffset_ = 0;
  bool done_ = false;
};

TEST_F(DeliveryTest, NativeFormAndInvertedStrips) {
  std::string forms = "width height bits deep stretch: native inverted\n";
  for (const Shape& shape : kShapes) {
    for (TransferTerms terms : {kDeep, kGrey}) {
      for (const bool stretch : {true, false}) {
        SetHistStretch(stretch);
        const auto image = Make(shape);
        const std::string native = TakeBytes(image->MakeNativeHandle(terms));
        forms += FormatText("%u %u %u %d %d: ", shape.width, shape.height, shape.bits,
                            IsDeep(*image, terms), stretch) +
                 CrcOf(AsBytes(native));
        terms.pixelFlavor = 1;
        for (uint32_t rows = 1; rows <= shape.height; ++rows) {
          std::vector<uint8_t> memory(RowBytes(*image, terms) * rows);
          MemoryStrip strip = StripIn(memory);
          yOffset_ = 0;
          ASSERT_TRUE(Copy(*image, &strip, terms));
          forms += ' ' + CrcOf(memory);
        }
        forms += '\n';
      }
    }
  }
  ExpectGolden("forms.inc", kGolden, forms);
}

TEST_F(DeliveryTest, NativeWithoutMemoryGivesNull) {
  const auto image = Make({7, 6, 12});
  for (const TransferTerms& terms : {kDeep, kGrey}) {
    host::FailNextAllocations(1);
    EXPECT_EQ(image->MakeNativeHandle(terms), nullptr);
    host::FailNextLocks(1);
    EXPECT_EQ(image->MakeNativeHandle(terms), nullptr);
  }
  EXPECT_EQ(CachedImage().MakeNativeHandle(kGrey), nullptr);
}

// A whole transfer in strips of `length` bytes, whose rows are those of the native form from its
// end.
void DeliveryTest::TransferInStrips(CachedImage& image, const TransferTerms& terms,
                                    uint32_t length) {
  const std::string native = TakeBytes(image.MakeNativeHandle(terms));
  const uint32_t rowBytes = RowBytes(image, terms);
  const uint32_t rowsThatFit = length / rowBytes;
  yOffset_ = 0;
  done_ = false;
  while (!done_) {
    const uint32_t first = yOffset_;
    const uint32_t rows = std::min(rowsThatFit, image.height - first);
    std::string expected;
    for (uint32_t row = first; row < first + rows; ++row) {
      expected += native.substr(native.size() - (row + 1) * rowBytes, rowBytes);
    }
    // An odd address now and then, and nothing behind the strip.
    std::vector<uint8_t> memory(length + 1);
    const uint32_t shift = length % 3 == 0 ? 1 : 0;
    MemoryStrip strip{.isPointer = true, .length = length, .memory = memory.data() + shift};
    const bool byHandle = length % 4 == 1;
    if (byHandle) strip.memory = platform::AllocateMovable(length, true);
    strip.isPointer = !byHandle;
    ASSERT_TRUE(Copy(image, &strip, terms));
    ASSERT_EQ(strip.bytesPerRow, rowBytes);
    ASSERT_EQ(strip.columns, image.width);
    ASSERT_EQ(strip.rows, rows);
    ASSERT_EQ(strip.yOffset, first);
    ASSERT_EQ(strip.bytesWritten, expected.size());
    ASSERT_EQ(yOffset_, first + rows);
    ASSERT_EQ(done_, rowsThatFit > image.height - first) << "room to spare behind the last row";
    const std::string got =
        byHandle ? TakeBytes(strip.memory) : std::string(memory.begin() + shift, memory.end());
    ASSERT_EQ(got.substr(0, expected.size()), expected);
  }
  ASSERT_EQ(yOffset_, image.height);
}

TEST_F(DeliveryTest, StripsOfEveryLength) {
  for (const Shape& shape : kShapes) {
    for (const TransferTerms& terms : {kDeep, kGrey}) {
      const auto image = Make(shape);
      const uint32_t rowBytes = RowBytes(*image, terms);
      std::vector<uint8_t> memory(rowBytes);
      for (uint32_t length = 0; length < rowBytes; ++length) {
        MemoryStrip strip{.isPointer = true, .length = length, .memory = memory.data()};
        EXPECT_FALSE(Copy(*image, &strip, terms)) << "shorter than a row";
        EXPECT_EQ(strip.bytesPerRow, rowBytes);
        EXPECT_EQ(strip.columns, shape.width);
      }
      const uint32_t whole = rowBytes * shape.height;
      for (uint32_t length = rowBytes; length <= 2 * rowBytes + 1; ++length) {
        TransferInStrips(*image, terms, length);
      }
      for (const uint32_t length : {whole - 1, whole, whole + 1, whole + rowBytes, 4 * whole}) {
        if (length >= rowBytes) TransferInStrips(*image, terms, length);
      }
    }
  }
}

TEST_F(DeliveryTest, RefusesMemoryThatIsNotWhatItIsSaidToBe) {
  for (const TransferTerms& terms : {kDeep, kGrey}) {
    const auto image = Make({33, 7, 12});
    std::vector<uint8_t> memory(700, 0xAA);
    const platform::GlobalHandle small = platform::AllocateMovable(100, true);
    const platform::GlobalHandle freed = platform::AllocateMovable(700, true);
    platform::FreeBlock(freed);
    host::DenyWritingTo(memory.data() + 200, 1);
    const MemoryStrip strips[] = {
        {.isPointer = true, .length = 700, .memory = nullptr},
        {.isPointer = true, .length = 700, .memory = memory.data()},
        {.isPointer = true, .length = 0xFFFFFFFF, .memory = memory.data()},
        {.isPointer = true, .length = 700, .memory = reinterpret_cast<void*>(uintptr_t{12})},
        {.length = 700, .memory = nullptr},
        {.length = 700, .memory = small},
        {.length = 700, .memory = freed},
        {.length = 700, .memory = memory.data()},  // no handle
    };
    for (MemoryStrip strip : strips) {
      EXPECT_FALSE(Copy(*image, &strip, terms));
      EXPECT_EQ(strip.bytesWritten, 0u);
      EXPECT_EQ(yOffset_, 0u);
      EXPECT_FALSE(done_);
    }
    EXPECT_FALSE(Copy(*image, nullptr, terms));
    EXPECT_EQ(std::count(memory.begin(), memory.end(), 0xAA), 700) << "nothing was written";
    EXPECT_EQ(TakeBytes(small), std::string(100, '\0'));

    host::ResetGlobalMemory();
    done_ = false;
    yOffset_ = 4'000'000'000;  // beyond the picture
    MemoryStrip strip{.isPointer = true, .length = 700, .memory = memory.data()};
    EXPECT_TRUE(Copy(*image, &strip, terms));
    EXPECT_TRUE(done_);
    EXPECT_EQ(strip.rows, 0u);
    yOffset_ = 0;
    done_ = false;
  }
}

// An image that is not delivered would be deleted all the same at the end of its transfer.
TEST_F(DeliveryTest, EscapeDoesNotKeepAnImageFromBeingPrepared) {
  const auto image = NewImage(4, 6, 12);
  host::PressEscapeAtQuestion(3);
  EXPECT_NE(image->PrepareImage(), nullptr);
}

TEST_F(DeliveryTest, WritesUprightFilesInTheFormatAskedFor) {
  const auto image = NewImage(16, 16, 8);
  std::vector<uint8_t> darkBelow(256, 250);
  std::fill_n(darkBelow.begin(), 128, uint8_t{5});
  image->SetPixelData(darkBelow);
  for (const bool turned : {false, true}) {
    if (turned) image->TurnTopDown();
    ASSERT_TRUE(image->SaveToFile("C:\\out.bmp", {.imageFileFormat = 2}));
    const std::string bmp = *host::FileBytes("C:\\out.bmp");
    EXPECT_EQ(bmp.substr(0, 2), "BM");
    EXPECT_EQ(bmp.substr(14 + 40 + 1024, 128), std::string(128, 5)) << "bottom rows first";
    ASSERT_TRUE(image->SaveToFile("C:\\out.tif", {.imageFileFormat = 0}));
    const std::string tiff = *host::FileBytes("C:\\out.tif");
    EXPECT_EQ(tiff.substr(0, 2), "II");
    EXPECT_LT(tiff.find(std::string(128, '\xFA')), tiff.find(std::string(128, 5)));
    ASSERT_TRUE(image->SaveToFile("C:\\out.jpg", {.imageFileFormat = 4}));
    CKIPImage jpeg;
    ASSERT_TRUE(CKIPJpegLoader().Load("C:\\out.jpg", &jpeg, nullptr));
    EXPECT_GT(jpeg.PictureRow(0)[0], 245);
    EXPECT_LT(jpeg.PictureRow(15)[0], 10);
  }
  EXPECT_FALSE(image->SaveToFile("C:\\no such folder\\out.bmp", {}));
  EXPECT_FALSE(image->SaveToFile("", {}));
}

}  // namespace
}  // namespace zyr::test
