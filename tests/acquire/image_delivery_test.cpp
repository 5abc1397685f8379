#include <algorithm>

#include "imaging/formats/jpeg.h"
#include "settings/store.h"
#include "tests/acquire/acquire_test.h"

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

uint32_t Sample(const std::vector<uint8_t>& pixels, const ImageDescription& image, uint32_t x,
                uint32_t row) {
  const size_t at = row * image.RowBytes() + x * image.BytesPerPixel();
  return image.BytesPerPixel() == 1 ? pixels[at] : pixels[at] | pixels[at + 1] << 8;
}

uint16_t Stretched(uint32_t value) {
  return static_cast<uint16_t>(
      static_cast<uint64_t>(value * 0.0002442002442002442 * 65535.0 + 0.5));
}

// The upper eight of the bits that the picture uses.
uint8_t Reduced(const std::vector<uint8_t>& pixels, const ImageDescription& image, uint32_t value) {
  if (image.bitsPerPixel == 8) return static_cast<uint8_t>(value);
  uint32_t all = 0;
  for (uint32_t y = 0; y < image.height; ++y) {
    for (uint32_t x = 0; x < image.width; ++x) all |= Sample(pixels, image, x, y);
  }
  uint32_t shift = 0;
  while (all >> shift > 255) ++shift;
  return static_cast<uint8_t>(value >> shift);
}

// Rows of the delivered form, in the order of the pixels; 8-bit rows are padded to 4 bytes with
// ones.
std::string DeliveredRow(const CachedImage& image, const std::vector<uint8_t>& pixels, uint32_t row,
                         bool deep, bool stretch) {
  std::string bytes;
  for (uint32_t x = 0; x < image.width; ++x) {
    const uint32_t value = Sample(pixels, image, x, row);
    const uint32_t level = !deep     ? Reduced(pixels, image, value)
                           : stretch ? Stretched(value)
                                     : value;
    bytes += static_cast<char>(level);
    if (deep) bytes += static_cast<char>(level >> 8);
  }
  if (!deep) bytes.resize((bytes.size() + 3) / 4 * 4, '\xFF');
  return bytes;
}

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

  bool Copy(CachedImage& image, MemoryStrip* strip, const TransferTerms& terms) {
    const uint32_t xOffset = 0;
    done_ = false;
    return image.CopyToMemoryBuffer(strip, &xOffset, &yOffset_, &done_, terms);
  }

  uint32_t yOffset_ = 0;
  bool done_ = false;
};

TEST_F(DeliveryTest, NativeBitmap) {
  for (const Shape& shape : kShapes) {
    for (const bool stretch : {true, false}) {
      for (const TransferTerms& terms : {kDeep, kGrey}) {
        SetHistStretch(stretch);
        const auto image = Make(shape);
        image->TurnTopDown();
        const std::vector<uint8_t> pixels = CopyOf(image->PixelData());
        const bool deep = IsDeep(*image, terms);

        BitmapInfoHeader header;
        header.biWidth = static_cast<int32_t>(shape.width);
        header.biHeight = static_cast<int32_t>(shape.height);
        header.biBitCount = deep ? 16 : 8;
        header.biXPelsPerMeter = 23622;  // 600 and 300 dpi
        header.biYPelsPerMeter = 11811;
        const uint32_t colours = header.biClrUsed = header.biClrImportant = deep ? 0 : 256;
        std::string expected(reinterpret_cast<const char*>(&header), sizeof header);
        for (uint32_t i = 0; i < colours; ++i) AppendNumber(&expected, i * 0x010101);
        for (uint32_t row = shape.height; row-- > 0;) {
          expected += DeliveredRow(*image, pixels, row, deep, stretch);
        }
        EXPECT_EQ(TakeBytes(image->MakeNativeHandle(terms)), expected)
            << shape.width << " x " << shape.height << " x " << shape.bits;
      }
    }
  }
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

// Collects a whole transfer in strips of `length` bytes and checks the bookkeeping of each.
void TransferInStrips(CachedImage& image, const TransferTerms& terms, bool deep, uint32_t length) {
  const std::vector<uint8_t> pixels = CopyOf(image.PixelData());
  const uint32_t rowBytes = deep ? image.width * 2 : (image.width + 3) / 4 * 4;
  const uint32_t rowsThatFit = length / rowBytes;
  const uint32_t xOffset = 0;
  uint32_t yOffset = 0;
  bool done = false;
  while (!done) {
    const uint32_t first = yOffset;
    const uint32_t rows = std::min(rowsThatFit, image.height - first);
    std::string expected;
    for (uint32_t row = first; row < first + rows; ++row) {
      expected += DeliveredRow(image, pixels, row, deep, true);
    }
    // An odd address now and then, and nothing behind the strip.
    std::vector<uint8_t> memory(length + 1);
    const uint32_t shift = length % 3 == 0 ? 1 : 0;
    MemoryStrip strip{.isPointer = true, .length = length, .memory = memory.data() + shift};
    const bool byHandle = length % 4 == 1;
    if (byHandle) strip.memory = platform::AllocateMovable(length, true);
    strip.isPointer = !byHandle;
    ASSERT_TRUE(image.CopyToMemoryBuffer(&strip, &xOffset, &yOffset, &done, terms));
    ASSERT_EQ(strip.bytesPerRow, rowBytes);
    ASSERT_EQ(strip.columns, image.width);
    ASSERT_EQ(strip.rows, rows);
    ASSERT_EQ(strip.yOffset, first);
    ASSERT_EQ(strip.bytesWritten, expected.size());
    ASSERT_EQ(yOffset, first + rows);
    ASSERT_EQ(done, rowsThatFit > image.height - first) << "with room to spare behind the last row";
    const std::string got =
        byHandle ? TakeBytes(strip.memory) : std::string(memory.begin() + shift, memory.end());
    ASSERT_EQ(got.substr(0, expected.size()), expected);
  }
  ASSERT_EQ(yOffset, image.height);
}

TEST_F(DeliveryTest, StripsOfEveryLength) {
  for (const Shape& shape : kShapes) {
    for (const TransferTerms& terms : {kDeep, kGrey}) {
      const auto image = Make(shape);
      const bool deep = IsDeep(*image, terms);
      const uint32_t rowBytes = deep ? shape.width * 2 : (shape.width + 3) / 4 * 4;
      std::vector<uint8_t> memory(rowBytes);
      for (uint32_t length = 0; length < rowBytes; ++length) {
        MemoryStrip strip{.isPointer = true, .length = length, .memory = memory.data()};
        EXPECT_FALSE(Copy(*image, &strip, terms)) << "shorter than a row";
        EXPECT_EQ(strip.bytesPerRow, rowBytes);
        EXPECT_EQ(strip.columns, shape.width);
      }
      const uint32_t whole = rowBytes * shape.height;
      for (uint32_t length = rowBytes; length <= 2 * rowBytes + 1; ++length) {
        TransferInStrips(*image, terms, deep, length);
      }
      for (const uint32_t length : {whole - 1, whole, whole + 1, whole + rowBytes, 4 * whole}) {
        if (length >= rowBytes) TransferInStrips(*image, terms, deep, length);
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
    yOffset_ = 4'000'000'000;  // beyond the picture
    MemoryStrip strip{.isPointer = true, .length = 700, .memory = memory.data()};
    EXPECT_TRUE(Copy(*image, &strip, terms));
    EXPECT_TRUE(done_);
    EXPECT_EQ(strip.rows, 0u);
    yOffset_ = 0;
  }
}

// The inversion as applications have always met it: both pointers over one buffer, the writing one
// advancing by the stride in bytes.
void InvertSlowly(std::string* bytes, uint32_t width, uint32_t rows, uint32_t stride, bool deep) {
  const auto get = [&](size_t pixel) -> uint32_t {
    const auto* data = reinterpret_cast<const uint8_t*>(bytes->data());
    return deep ? data[2 * pixel] | data[2 * pixel + 1] << 8 : data[pixel];
  };
  for (uint32_t row = 0; row < rows; ++row) {
    for (uint32_t x = 0; x < width; ++x) {
      const uint32_t value = deep ? 65536 - get(row * width + x) : 255 - get(row * width + x);
      const size_t to = size_t{row} * stride + x;
      if ((to + 1) * (deep ? 2 : 1) > bytes->size()) continue;
      (*bytes)[deep ? 2 * to : to] = static_cast<char>(value);
      if (deep) (*bytes)[2 * to + 1] = static_cast<char>(value >> 8);
    }
  }
}

TEST_F(DeliveryTest, InvertsWithinTheStrip) {
  for (const Shape& shape : kShapes) {
    for (TransferTerms terms : {kDeep, kGrey}) {
      for (const uint32_t rows : {1u, 2u, 3u, shape.height}) {
        if (rows > shape.height) continue;
        const auto image = Make(shape);
        const bool deep = IsDeep(*image, terms);
        std::string expected;
        for (uint32_t row = 0; row < rows; ++row) {
          expected += DeliveredRow(*image, CopyOf(image->PixelData()), row, deep, true);
        }
        const auto length = static_cast<uint32_t>(expected.size());
        InvertSlowly(&expected, shape.width, rows, length / rows, deep);
        std::vector<uint8_t> memory(length);
        MemoryStrip strip{.isPointer = true, .length = length, .memory = memory.data()};
        terms.pixelFlavor = 1;
        yOffset_ = 0;
        ASSERT_TRUE(Copy(*image, &strip, terms));
        EXPECT_EQ(std::string(memory.begin(), memory.end()), expected)
            << shape.width << " x " << rows << " x " << shape.bits;
      }
    }
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
