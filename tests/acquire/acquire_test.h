// What the tests of the image cache share.
#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "acquire/image_cache/cached_image.h"
#include "acquire/image_cache/image_cache.h"
#include "foundation/support/format.h"
#include "imaging/image/packed_dib.h"
#include "platform/global_memory.h"
#include "platform/host/host.h"

namespace zyr::test {

namespace host = platform::host;

inline constexpr char kFolder[] = "C:\\ZYRTwain";

// Every test starts from doubles in their first state and gives back what it took.
class AcquireTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }
  void TearDown() override {
    EXPECT_EQ(host::LiveBlocks(), 0u);
    EXPECT_EQ(host::HeldLocks(), 0u);
    EXPECT_EQ(host::MemoryMisuses(), 0u);
    EXPECT_EQ(host::CountsOfFiles().openHandles, 0);
    EXPECT_EQ(host::LiveProgressWindows(), 0);
    host::ResetAll();
  }
};

// No two rows alike, and levels that use the whole depth.
inline std::vector<uint8_t> PixelsOf(const ImageDescription& image) {
  const uint32_t levels = image.bitsPerPixel == 8 ? 256 : 1u << image.bitsPerPixel;
  std::vector<uint8_t> pixels;
  for (uint32_t i = 0; i < image.width * image.height; ++i) {
    const uint32_t level = (i * 2654435761u + image.captureTime) >> 7 & (levels - 1);
    pixels.push_back(static_cast<uint8_t>(level));
    if (image.BytesPerPixel() == 2) pixels.push_back(static_cast<uint8_t>(level >> 8));
  }
  return pixels;
}

inline std::unique_ptr<CachedImage> NewImage(uint32_t width, uint32_t height, uint32_t bits) {
  auto image = std::make_unique<CachedImage>();
  image->width = width;
  image->height = height;
  image->bitsPerPixel = bits;
  image->xResolution = 600;
  image->yResolution = 300;
  image->captureTime = 1'700'000'000;
  image->sensorId = "SN-4711";
  image->fileName = std::string(kFolder) + "\\CACHEDRAW.RAW";
  image->SetPixelData(PixelsOf(*image));
  return image;
}

inline std::vector<uint8_t> CopyOf(std::span<const uint8_t> bytes) {
  return {bytes.begin(), bytes.end()};
}

inline std::string CrcOf(std::span<const uint8_t> bytes) {
  return FormatText("%08lx", crc32(0, bytes.data(), static_cast<uInt>(bytes.size())));
}

inline void AppendNumber(std::string* bytes, uint32_t value) {
  for (int i = 0; i < 4; ++i) *bytes += static_cast<char>(value >> (8 * i));
}

// The cache file as other programs write and read it.
inline std::string CacheFileOf(const ImageDescription& image, const std::vector<uint8_t>& pixels) {
  std::string bytes;
  for (uint32_t field : {uint32_t{image.isZyr303}, image.bitsPerPixel, image.width, image.height,
                         image.xResolution, image.yResolution, image.captureTime, image.frameNumber,
                         static_cast<uint32_t>(image.sensorId.size())}) {
    AppendNumber(&bytes, field);
  }
  return bytes + image.sensorId + std::string(pixels.begin(), pixels.end());
}

// Puts a whole cache file into the folder, past the code under test.
inline ImageDescription PutCacheFile(const std::string& name, uint32_t captureTime,
                                     uint32_t frameNumber = 1) {
  ImageDescription image;
  image.bitsPerPixel = 12;
  image.width = 5;
  image.height = 4;
  image.xResolution = image.yResolution = 600;
  image.captureTime = captureTime;
  image.frameNumber = frameNumber;
  image.sensorId = name;
  host::PutFile(std::string(kFolder) + "\\" + name, CacheFileOf(image, PixelsOf(image)));
  return image;
}

// The block's bytes; frees it.
inline std::string TakeBytes(platform::GlobalHandle handle) {
  std::string bytes;
  if (const platform::LockedBlock block(handle); block.address() != nullptr) {
    bytes.assign(static_cast<const char*>(block.address()), block.size());
  }
  platform::FreeBlock(handle);
  return bytes;
}

inline platform::GlobalHandle BlockOf(const std::string& bytes) {
  const platform::GlobalHandle handle = platform::AllocateMovable(bytes.size(), true);
  const platform::LockedBlock block(handle);
  std::memcpy(block.address(), bytes.data(), bytes.size());
  return handle;
}

}  // namespace zyr::test
