// makephantom: see kPhantomHelp.
#include <cstdio>
#include <fstream>
#include <iterator>

#include "tools/images/picture_file.h"
#include "tools/makephantom/cache_record.h"
#include "tools/makephantom/phantom.h"
#include "tools/makephantom/phantom_options.h"

namespace zyr {
namespace {

bool Write(const std::vector<uint8_t>& bytes, const std::string& path) {
  if (WriteBytes(bytes, path)) return true;
  std::fprintf(stderr, "makephantom: %s cannot be written\n", path.c_str());
  return false;
}

std::string CacheFileName(const std::string& folder, uint32_t index) {
  const std::string number = index == 0 ? "" : "_" + std::to_string(index);
  return folder + "/CACHEDRAW" + number + ".RAW";
}

std::string PngName(const PhantomOptions& options, uint32_t index) {
  if (options.count == 1) return options.png;
  const size_t dot = options.png.rfind('.');
  const size_t end = dot == std::string::npos ? options.png.size() : dot;
  return options.png.substr(0, end) + "-" + std::to_string(index + 1) + options.png.substr(end);
}

CacheRecord MakeRecord(const PhantomOptions& options, uint32_t index,
                       const std::vector<uint16_t>& picture) {
  CacheRecord record;
  record.isZyr303 = options.isZyr303 ? 1 : 0;
  record.bitsPerPixel = options.depth;
  record.width = options.width;
  record.height = options.height;
  record.xResolution = static_cast<uint32_t>(25400 / options.micrometresPerPixel + 0.5);
  record.yResolution = record.xResolution;
  record.captureTime = options.captureTime + 60 * index;
  record.sensorId = options.isZyr303 ? "303D-000001" : "2000D-000001";
  record.samples.reserve(picture.size());
  for (size_t y = options.height; y-- > 0;) {
    for (size_t x = 0; x < options.width; ++x) {
      const uint16_t sample = picture[y * options.width + x];
      record.samples.push_back(options.depth == 8 ? static_cast<uint16_t>(sample >> 4) : sample);
    }
  }
  return record;
}

GreyPicture MakePicture(const PhantomOptions& options, const std::vector<uint16_t>& samples) {
  GreyPicture picture;
  picture.width = options.width;
  picture.height = options.height;
  picture.xDpi = picture.yDpi = 25400 / options.micrometresPerPixel;
  picture.samples.reserve(samples.size());
  for (const uint16_t sample : samples)
    picture.samples.push_back(static_cast<uint16_t>(sample >> 4));
  return picture;
}

bool MakeImage(const PhantomOptions& options, uint32_t index) {
  const std::vector<uint16_t> samples = DrawPhantom(
      {options.width, options.height, options.micrometresPerPixel, options.seed + index});
  if (!options.png.empty() &&
      !Write(EncodePng(MakePicture(options, samples)), PngName(options, index)))
    return false;
  return options.outFolder.empty() || Write(EncodeCacheRecord(MakeRecord(options, index, samples)),
                                            CacheFileName(options.outFolder, index));
}

bool WriteExpected(const PhantomOptions& options) {
  std::ifstream file(options.expect, std::ios::binary);
  const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
  const std::optional<CacheRecord> record = DecodeCacheRecord(bytes);
  if (!record) {
    std::fprintf(stderr, "makephantom: %s is no whole cache file\n", options.expect.c_str());
    return false;
  }
  return Write(EncodePgm(ExpectedPicture(*record, options.expectBits)), options.pgm);
}

int Run(const PhantomOptions& options) {
  if (options.help) {
    std::fputs(kPhantomHelp, stdout);
    return 0;
  }
  if (!options.error.empty()) {
    std::fprintf(stderr, "makephantom: %s Try --help.\n", options.error.c_str());
    return 2;
  }
  if (!options.expect.empty()) return WriteExpected(options) ? 0 : 1;
  for (uint32_t index = 0; index < options.count; ++index) {
    if (!MakeImage(options, index)) return 1;
  }
  return 0;
}

}  // namespace
}  // namespace zyr

int main(int argc, char** argv) {
  return zyr::Run(zyr::ParsePhantomOptions({argv + 1, argv + argc}));
}
