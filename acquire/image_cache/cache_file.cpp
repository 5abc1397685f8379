#include "acquire/image_cache/cache_file.h"

namespace zyr {
namespace {

constexpr uint32_t kGreatestDepth = 16;
constexpr uint64_t kMostPixelBytes = 512 * 1024 * 1024;
constexpr uint32_t kLongestSensorId = 65'535;

bool ReadDescription(BufferedFile& file, ImageDescription* description) {
  uint32_t isZyr303 = 0;
  const bool complete =
      file.ReadUint32(&isZyr303) && file.ReadUint32(&description->bitsPerPixel) &&
      file.ReadUint32(&description->width) && file.ReadUint32(&description->height) &&
      file.ReadUint32(&description->xResolution) && file.ReadUint32(&description->yResolution) &&
      file.ReadUint32(&description->captureTime) && file.ReadUint32(&description->frameNumber) &&
      file.ReadString(&description->sensorId, kLongestSensorId);
  description->isZyr303 = isZyr303 != 0;
  return complete;
}

bool WriteDescription(BufferedFile& file, const ImageDescription& description) {
  return file.WriteUint32(description.isZyr303 ? 1 : 0) &&
         file.WriteUint32(description.bitsPerPixel) && file.WriteUint32(description.width) &&
         file.WriteUint32(description.height) && file.WriteUint32(description.xResolution) &&
         file.WriteUint32(description.yResolution) && file.WriteUint32(description.captureTime) &&
         file.WriteUint32(description.frameNumber) && file.WriteString(description.sensorId);
}

bool WriteAll(BufferedFile& file, std::span<const uint8_t> bytes) {
  return file.Write(bytes.data(), bytes.size()) == static_cast<int64_t>(bytes.size());
}

bool WriteRowsReversed(BufferedFile& file, std::span<const uint8_t> pixels, size_t rowBytes) {
  for (size_t end = pixels.size(); end >= rowBytes; end -= rowBytes) {
    if (!WriteAll(file, pixels.subspan(end - rowBytes, rowBytes))) return false;
  }
  return true;
}

}  // namespace

bool IsStorable(const ImageDescription& description) {
  const uint64_t pixels = uint64_t{description.width} * description.height;
  return pixels != 0 && pixels <= kMostPixelBytes / description.BytesPerPixel() &&
         description.bitsPerPixel != 0 && description.bitsPerPixel <= kGreatestDepth &&
         description.sensorId.size() <= kLongestSensorId;
}

std::optional<ImageDescription> OpenCacheFile(BufferedFile& file, const std::string& path) {
  ImageDescription description;
  if (!file.OpenRead(path) || !ReadDescription(file, &description) || !IsStorable(description)) {
    return std::nullopt;
  }
  const int64_t position = file.Tell();
  const int64_t length = file.Length();
  if (position < 0 || length - position < static_cast<int64_t>(description.PixelDataSize())) {
    return std::nullopt;
  }
  return description;
}

bool WriteCacheFile(const std::string& path, const ImageDescription& description,
                    std::span<const uint8_t> pixels, RowOrder order) {
  BufferedFile file(kCacheFileBuffer);
  if (!file.OpenWrite(path, true)) return false;
  const bool written =
      WriteDescription(file, description) &&
      (order == RowOrder::kReversed ? WriteRowsReversed(file, pixels, description.RowBytes())
                                    : WriteAll(file, pixels)) &&
      file.Sync();
  if (file.Close() && written) return true;
  platform::RemoveFile(path);
  return false;
}

}  // namespace zyr
