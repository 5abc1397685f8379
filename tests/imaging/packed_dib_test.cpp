#include "imaging/image/packed_dib.h"

#include <bit>

#include "imaging/operations/geometry/flip.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using PackedDibTest = ImagingTest;

// The block's bytes; the block is freed.
Bytes TakeBytes(platform::GlobalHandle handle) {
  Bytes bytes;
  if (const platform::LockedBlock block(handle); block.address() != nullptr) {
    const auto* address = static_cast<const uint8_t*>(block.address());
    bytes.assign(address, address + block.size());
  }
  platform::FreeBlock(handle);
  return bytes;
}

std::unique_ptr<CKIPImage> Unpack(const Bytes& dib) {
  return ImageFromPackedDib(dib.data(), dib.size());
}

Bytes Dib(const BitmapInfoHeader& header, const Bytes& body) {
  Bytes dib(sizeof(header) + body.size());
  std::memcpy(dib.data(), &header, sizeof(header));
  std::copy(body.begin(), body.end(), dib.begin() + sizeof(header));
  return dib;
}

BitmapInfoHeader Header(int32_t width, int32_t height, uint16_t bits, uint32_t compression = 0,
                        uint32_t colors = 0, uint32_t size = 40) {
  return {size, width, height, 1, bits, compression, 0, 0, 0, colors, 0};
}

TEST_F(PackedDibTest, ImagesSurviveTheRoundTrip) {
  for (const uint32_t bits : {1u, 8u, 24u}) {
    const auto image = RandomImage(19, 5, bits, ColoredPalette(bits == 1 ? 2 : 77));
    const Bytes dib = TakeBytes(PackedDibFromImage(*image));
    const uint32_t colors = bits == 24 ? 0 : image->colorCount();
    ASSERT_EQ(dib.size(), 40u + 4 * colors + image->dataSize());
    const uint32_t fields[] = {40, 19, 5, 1 | bits << 16, 0, 0, 11811, 5906, colors, colors};
    EXPECT_EQ(std::memcmp(dib.data(), fields, sizeof(fields)), 0);
    const auto back = Unpack(dib);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(PixelBytes(*back), PixelBytes(*image));
    EXPECT_EQ(back->xResolution(), 300u);
    EXPECT_EQ(back->palette(), bits == 24 ? Palette{} : image->palette());

    EXPECT_EQ(TakeBytes(PackedDibFromImage(*image, nullptr, RowOrder::kReversed)),
              TakeBytes(PackedDibFromImage(*FlipVertical(image.get(), nullptr))));
  }
  const Palette other = ColoredPalette(4);
  const Bytes dib = TakeBytes(PackedDibFromImage(*RandomGrey(3, 3), &other));
  EXPECT_EQ(Unpack(dib)->palette(), other);
}

TEST_F(PackedDibTest, DeepImagesSurviveTheRoundTrip) {
  CKIPDeepImage image;
  ASSERT_TRUE(image.Create(5, 3, 9, 12, 300, 0));
  std::fill_n(image.GetPixels(), 27, uint16_t{0xFFF});  // outside the rows, too
  for (int i = 0; i < 14; ++i) *image.GetPixelPtr(i % 5, i / 5) = Random(4096) & 0xFFF;
  const Bytes dib = TakeBytes(PackedDibFromDeepImage(image));
  ASSERT_EQ(dib.size(), 40u + 12 * 3);
  EXPECT_EQ(dib[14], 16);
  EXPECT_EQ(dib[40 + 10], 0);  // padding
  const auto back = DeepImageFromPackedDib(dib.data(), dib.size());
  const auto reduced = Unpack(dib);
  ASSERT_TRUE(back != nullptr && reduced != nullptr);
  EXPECT_EQ(back->GetXResolution(), 300u);
  EXPECT_EQ(back->GetYResolution(), 0u);
  EXPECT_EQ(reduced->yResolution(), 1u);
  for (uint32_t i = 0; i < 15; ++i) {
    EXPECT_EQ(*back->GetPixelPtr(i % 5, i / 5), *image.GetPixelPtr(i % 5, i / 5));
    EXPECT_EQ(reduced->MemoryRow(i / 5)[i % 5], *image.GetPixelPtr(i % 5, i / 5) >> 4);
  }
}

TEST_F(PackedDibTest, ThirtyTwoBitsGoThroughTheMasks) {
  using Masks = std::vector<uint32_t>;  // red, green, blue
  for (const Masks& given : {Masks{}, {0xFF, 0xFF00, 0xFF000000}, {0, 0x80000000, 0xFFC00}}) {
    const Masks masks = given.empty() ? Masks{0xFF0000, 0xFF00, 0xFF} : given;
    Bytes body(given.size() * 4);
    if (!given.empty()) std::memcpy(body.data(), given.data(), body.size());
    for (int i = 0; i < 3 * 2 * 4; ++i) body.push_back(Random(256) & 0xFF);
    const auto image = Unpack(Dib(Header(3, -2, 32, given.empty() ? 0 : 3), body));
    ASSERT_NE(image, nullptr);
    for (uint32_t i = 0; i < 18; ++i) {
      uint64_t pixel = 0;
      std::memcpy(&pixel, &body[body.size() - 24 + i / 3 * 4], 4);
      const uint32_t mask = masks[2 - i % 3];
      const uint64_t expected = (pixel & mask) >> std::countr_zero(mask);
      EXPECT_EQ(image->MemoryRow(i / 9)[i % 9], expected & 0xFF) << masks[0] << " " << i;
    }
  }
}

TEST_F(PackedDibTest, ForeignHeaders) {
  // A table that 24 bits do not need, and more colours than there are values.
  auto image = Unpack(Dib(Header(1, 1, 24, 0, 2), {1, 1, 1, 0, 2, 2, 2, 0, 7, 8, 9, 0}));
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->bits()[0], 7);
  EXPECT_EQ(image->colorCount(), 0u);
  image = Unpack(Dib(Header(1, 1, 8, 0, 300), Bytes(1204)));
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->colorCount(), 256u);
}

TEST_F(PackedDibTest, RefusesWhatItCannotRead) {
  const auto expectRefused = [](const BitmapInfoHeader& header, uint32_t code = 0x20000005,
                                const char* text = "Invalid image specified") {
    EXPECT_EQ(Unpack(Dib(header, Bytes(1100))), nullptr) << header.biWidth;
    ExpectError(code, text);
  };
  expectRefused(Header(2, 2, 24, 1), 0x20000004, "Unsupported compression");
  expectRefused(Header(2, 2, 4), 0x20000002, "Unsupported number of color bits 4");
  expectRefused(Header(0, 2, 8), 0x20000001, "Invalid image dimensions (0x2)");
  BitmapInfoHeader header = Header(2, 2, 24);
  header.biPlanes = 2;
  expectRefused(header, 0x20000003, "Unsupported number of bit planes 2");
  expectRefused(Header(1, 1, 24, 0, ~0u));
  for (const uint16_t bits : {1, 8, 16, 24, 32}) {
    for (const int32_t size : {INT32_MIN, INT32_MAX, 0x10000, 1000}) {
      expectRefused(Header(size, size, bits));
      expectRefused(Header(1, size, bits, 3));
    }
    for (const uint32_t lie : {39u, 1138u, ~0u}) expectRefused(Header(1, 1, bits, 0, 0, lie));

    const size_t table = bits == 32 ? 12 : bits < 16 ? size_t{4} << bits : 0;
    const size_t rows = 3 * ((5 * bits + 31) / 32 * 4);
    const Bytes dib = Dib(Header(5, 3, bits, bits == 32 ? 3 : 0), Bytes(table + rows));
    for (size_t size = 0; size <= dib.size(); ++size) {
      const auto image = Unpack({dib.begin(), dib.begin() + size});
      ASSERT_EQ(image != nullptr, size == dib.size()) << bits << " " << size;
    }
  }
}

TEST_F(PackedDibTest, HandlesTellWhyTheyFail) {
  std::string message;
  EXPECT_EQ(ImageFromPackedDibHandle(nullptr, &message), nullptr);
  EXPECT_EQ(message, "No image was specified");
  const auto image = RandomGrey(3, 3);
  const platform::GlobalHandle handle = PackedDibFromImage(*image);
  EXPECT_EQ(PixelBytes(*ImageFromPackedDibHandle(handle, &message)), PixelBytes(*image));
  EXPECT_EQ(DeepImageFromPackedDibHandle(handle, &message), nullptr);
  EXPECT_EQ(message, "Invalid image was specified");
  platform::host::FailNextLocks(1);
  EXPECT_EQ(ImageFromPackedDibHandle(handle, &message), nullptr);
  EXPECT_EQ(message, "Out of memory.  Not enough memory was available to operate on the image.");
  platform::FreeBlock(handle);
  platform::host::FailNextAllocations(1);
  EXPECT_EQ(PackedDibFromImage(*image), nullptr);
  EXPECT_EQ(PackedDibFromImage(CKIPImage()), nullptr);
}

TEST_F(PackedDibTest, LoadsBitmapResources) {
  const auto module = platform::host::HostProgramResources();
  const auto source = RandomImage(5, 3, 8, ColoredPalette(20));
  const Bytes bytes = TakeBytes(PackedDibFromImage(*source));
  CKIPImage image;
  for (uint16_t size = 1; size <= bytes.size(); ++size) {
    platform::host::AddBitmap(module, size, {bytes.begin(), bytes.begin() + size});
    ASSERT_EQ(image.LoadFromResource(size), size == bytes.size()) << size;
    if (size < bytes.size()) ExpectError(0x20000005, "Invalid image specified");
  }
  EXPECT_EQ(PixelBytes(image), PixelBytes(*source));
  EXPECT_EQ(image.palette(), source->palette());
  EXPECT_EQ(image.xResolution(), 300u);
  EXPECT_FALSE(image.LoadFromResource("MISSING"));
  ExpectError(0x20000005,
              "Unable to load the bitmap from the application resources (error = 1814).");
}

}  // namespace
}  // namespace zyr
