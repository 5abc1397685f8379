// Opening of cached images, and their delivery beside memcpy of the same bytes. Put TMPDIR on a
// file system in memory to measure the code and not the disk.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "acquire/image_cache/image_cache.h"
#include "platform/files.h"
#include "platform/host/host.h"
#include "settings/store.h"

namespace {

using namespace zyr;
namespace host = platform::host;

constexpr uint32_t kWidth = 1156;
constexpr uint32_t kHeight = 1600;
constexpr uint32_t kBits = 12;
const TransferTerms kDeep = {.is16BitGrayscale = [] { return true; }};
const TransferTerms kGrey = {.is16BitGrayscale = [] { return false; }};

double PeakMegabytes() {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

ImageDescription Description(uint32_t captureTime) {
  ImageDescription image;
  image.bitsPerPixel = kBits;
  image.width = kWidth;
  image.height = kHeight;
  image.xResolution = image.yResolution = 600;
  image.captureTime = captureTime;
  image.sensorId = "SN-4711";
  return image;
}

// Of full length, but with nothing on disk where the pixels are.
void PutSparseImage(uint32_t index) {
  const ImageDescription image = Description(index);
  const std::string path = GetScanToPath() + "\\CACHEDRAW_" + std::to_string(index) + ".RAW";
  WriteCacheFile(path, image, {}, RowOrder::kAsStored);
  const auto native = host::NativeOf(path);
  std::filesystem::resize_file(native, std::filesystem::file_size(native) + image.PixelDataSize());
}

// The process has done nothing else yet when these run, so that its peak is theirs.
void OpenCache(benchmark::State& state) {
  host::ResetAll();
  const auto count = static_cast<uint32_t>(state.range(0));
  for (uint32_t i = 0; i < count; ++i) PutSparseImage(i);
  for (auto _ : state) {
    ImageCache cache;
    cache.LoadAll();
    if (cache.GetCount() != count) state.SkipWithError("images are missing");
  }
  state.counters["per image"] = benchmark::Counter(
      count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.counters["peak MB"] = PeakMegabytes();
  host::ResetAll();
}
BENCHMARK(OpenCache)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

CachedImage& Image() {
  static CachedImage image;
  if (image.width == 0) {
    static_cast<ImageDescription&>(image) = Description(1);
    std::vector<uint8_t> pixels(image.PixelDataSize());
    for (size_t i = 0; i < pixels.size(); i += 2) {
      const size_t level = (i * 2654435761u) >> 7 & 4095;
      pixels[i] = static_cast<uint8_t>(level);
      pixels[i + 1] = static_cast<uint8_t>(level >> 8);
    }
    image.SetPixelData(std::move(pixels));
    image.PrepareImage();
  }
  host::UsePlainBlocks(true);
  return image;
}

void CountBytes(benchmark::State& state, size_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

// What any native transfer costs at least: the same bytes, into a new block.
void MemcpyToNewBlock(benchmark::State& state, size_t bytes) {
  const std::vector<uint8_t> source(bytes, 1);
  host::UsePlainBlocks(true);
  for (auto _ : state) {
    const platform::GlobalHandle handle = platform::AllocateMovable(bytes, false);
    {
      const platform::LockedBlock block(handle);
      std::memcpy(block.address(), source.data(), bytes);
      benchmark::ClobberMemory();
    }
    platform::FreeBlock(handle);
  }
  CountBytes(state, bytes);
}
BENCHMARK_CAPTURE(MemcpyToNewBlock, 16_bit, kWidth* kHeight * 2);
BENCHMARK_CAPTURE(MemcpyToNewBlock, 8_bit, kWidth* kHeight);

void Native(benchmark::State& state, TransferTerms terms, bool stretch) {
  CachedImage& image = Image();
  SetHistStretch(stretch);
  for (auto _ : state) platform::FreeBlock(image.MakeNativeHandle(terms));
  CountBytes(state, size_t{kWidth} * kHeight * (terms.is16BitGrayscale() ? 2 : 1));
}
BENCHMARK_CAPTURE(Native, 16_bit, kDeep, false);
BENCHMARK_CAPTURE(Native, 16_bit_stretched, kDeep, true);
BENCHMARK_CAPTURE(Native, 8_bit, kGrey, false);

// The whole picture through one buffer, as an application takes it.
void MemcpyInStrips(benchmark::State& state) {
  const auto length = static_cast<size_t>(state.range(0));
  const std::vector<uint8_t> source(size_t{kWidth} * kHeight * 2, 1);
  std::vector<uint8_t> buffer(length);
  for (auto _ : state) {
    for (size_t done = 0; done < source.size(); done += length) {
      std::memcpy(buffer.data(), source.data() + done, std::min(length, source.size() - done));
      benchmark::ClobberMemory();
    }
  }
  CountBytes(state, source.size());
}
BENCHMARK(MemcpyInStrips)->Arg(64 << 10)->Arg(1 << 20);

void Strips(benchmark::State& state, TransferTerms terms, bool stretch) {
  CachedImage& image = Image();
  SetHistStretch(stretch);
  std::vector<uint8_t> buffer(static_cast<size_t>(state.range(0)));
  MemoryStrip strip{
      .isPointer = true, .length = static_cast<uint32_t>(buffer.size()), .memory = buffer.data()};
  const uint32_t xOffset = 0;
  for (auto _ : state) {
    uint32_t yOffset = 0;
    bool done = false;
    while (!done) image.CopyToMemoryBuffer(&strip, &xOffset, &yOffset, &done, terms);
  }
  CountBytes(state, size_t{kWidth} * kHeight * (terms.is16BitGrayscale() ? 2 : 1));
}
BENCHMARK_CAPTURE(Strips, 16_bit, kDeep, false)->Arg(64 << 10)->Arg(1 << 20);
BENCHMARK_CAPTURE(Strips, 16_bit_stretched, kDeep, true)->Arg(64 << 10)->Arg(1 << 20);
BENCHMARK_CAPTURE(Strips, 8_bit, kGrey, false)->Arg(64 << 10)->Arg(1 << 20);

}  // namespace

BENCHMARK_MAIN();
