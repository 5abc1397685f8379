// Writing of image files and the reduction and stretch of depths, beside OpenCV on one thread doing
// the same to the same picture. Put TMPDIR on a file system in memory to measure the code and not
// the disk.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include "imaging/formats/bmp.h"
#include "imaging/formats/jpeg.h"
#include "imaging/formats/tiff.h"
#include "imaging/image/raw_pixels.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/levels/stretch.h"
#include "platform/files.h"
#include "platform/host/files.h"

namespace {

constexpr uint32_t kWidth = 1156;
constexpr uint32_t kHeight = 1600;
constexpr char kPath[] = R"(C:\bench\picture)";

// Dark and bright shapes without edges under the noise of few quanta, 12 bits.
std::vector<uint16_t> XRay() {
  std::mt19937 generator(1);
  std::normal_distribution<double> noise(0, 1);
  std::vector<uint16_t> samples;
  samples.reserve(size_t{kWidth} * kHeight);
  for (uint32_t y = 0; y < kHeight; ++y) {
    for (uint32_t x = 0; x < kWidth; ++x) {
      const double level =
          1900 + 900 * std::sin(x * 0.011) * std::cos(y * 0.007) + 600 * std::sin((x + y) * 0.021);
      const double noisy = level + noise(generator) * std::sqrt(level) * 0.8;
      samples.push_back(static_cast<uint16_t>(std::min(std::max(noisy, 0.0), 4095.0)));
    }
  }
  return samples;
}

const std::vector<uint16_t>& Samples() {
  static const std::vector<uint16_t> samples = XRay();
  return samples;
}

zyr::CKIPImage& Picture() {
  static const std::unique_ptr<zyr::CKIPImage> picture =
      zyr::ImageFromRaw16(Samples().data(), kWidth, kHeight, 0, 300, 300, {});
  return *picture;
}

// The same picture, top row first.
const cv::Mat& Matrix() {
  static const cv::Mat matrix = [] {
    cv::Mat rows(kHeight, kWidth, CV_8U);
    for (uint32_t y = 0; y < kHeight; ++y) {
      std::copy_n(Picture().PictureRow(y), kWidth, rows.ptr(static_cast<int>(y)));
    }
    return rows;
  }();
  return matrix;
}

cv::Mat DeepMatrix() {
  return cv::Mat(kHeight, kWidth, CV_16U, const_cast<uint16_t*>(Samples().data()));
}

void PrepareFolder() { zyr::platform::host::PutFile(std::string(kPath) + "-", ""); }

// Overwriting makes some file systems wait for the disk: each file is new.
template <typename Save>
void MeasureSave(benchmark::State& state, Save save) {
  PrepareFolder();
  Picture();
  Matrix();
  for (auto _ : state) {
    if (!save()) state.SkipWithError("not written");
    state.PauseTiming();
    zyr::platform::RemoveFile(kPath);
    state.ResumeTiming();
  }
}

bool EncodeAndWrite(const char* extension, const std::vector<int>& parameters) {
  std::vector<uchar> bytes;
  if (!cv::imencode(extension, Matrix(), bytes, parameters)) return false;
  std::FILE* file = std::fopen(zyr::platform::NativePath(kPath).c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}

void BmpOurs(benchmark::State& state) {
  MeasureSave(state, [] { return zyr::CKIPBmpSaver().Save(kPath, &Picture(), nullptr); });
}
void BmpOpenCv(benchmark::State& state) {
  MeasureSave(state, [] { return EncodeAndWrite(".bmp", {}); });
}
void TiffOurs(benchmark::State& state) {
  MeasureSave(state, [] { return zyr::CKIPTiffSaver().Save(kPath, &Picture(), nullptr); });
}
void TiffOpenCv(benchmark::State& state) {
  MeasureSave(state, [] { return EncodeAndWrite(".tiff", {cv::IMWRITE_TIFF_COMPRESSION, 1}); });
}
void JpegOurs(benchmark::State& state) {
  const auto quality = static_cast<uint32_t>(state.range(0));
  MeasureSave(state,
              [&] { return zyr::CKIPJpegSaver().Save(kPath, &Picture(), quality, nullptr); });
}
void JpegOpenCv(benchmark::State& state) {
  const int quality = static_cast<int>(state.range(0));
  MeasureSave(state, [&] { return EncodeAndWrite(".jpg", {cv::IMWRITE_JPEG_QUALITY, quality}); });
}

void JpegLoadOurs(benchmark::State& state) {
  PrepareFolder();
  zyr::CKIPJpegSaver().Save(kPath, &Picture(), 100, nullptr);
  for (auto _ : state) {
    zyr::CKIPImage image;
    if (!zyr::CKIPJpegLoader().Load(kPath, &image, nullptr)) state.SkipWithError("not read");
  }
}
void JpegLoadOpenCv(benchmark::State& state) {
  PrepareFolder();
  zyr::CKIPJpegSaver().Save(kPath, &Picture(), 100, nullptr);
  const std::string path = zyr::platform::NativePath(kPath);
  for (auto _ : state) {
    if (cv::imread(path, cv::IMREAD_GRAYSCALE).empty()) state.SkipWithError("not read");
  }
}

void ReduceOurs(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        zyr::ImageFromRaw16(Samples().data(), kWidth, kHeight, 0, 300, 300, {}));
  }
}
void ReduceByTableOurs(benchmark::State& state) {
  zyr::DepthMapping mapping;
  mapping.gamma = 1.8;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        zyr::ImageFromRaw16(Samples().data(), kWidth, kHeight, 0, 300, 300, mapping));
  }
}
void ReduceOpenCv(benchmark::State& state) {
  for (auto _ : state) {
    cv::Mat reduced;
    DeepMatrix().convertTo(reduced, CV_8U, 1 / 16.0);
    benchmark::DoNotOptimize(reduced.data);
  }
}

void StretchOurs(benchmark::State& state) {
  std::vector<uint16_t> stretched(Samples().size());
  for (auto _ : state) {
    zyr::StretchTo16Bit(Samples().data(), stretched.data(), stretched.size());
    benchmark::ClobberMemory();
  }
}
void StretchOpenCv(benchmark::State& state) {
  cv::Mat stretched(kHeight, kWidth, CV_16U);
  for (auto _ : state) {
    DeepMatrix().convertTo(stretched, CV_16U, 65535.0 / 4095);
    benchmark::ClobberMemory();
  }
}

void FlipOurs(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(zyr::FlipVertical(&Picture(), nullptr));
}
void FlipOpenCv(benchmark::State& state) {
  for (auto _ : state) {
    cv::Mat flipped;
    cv::flip(Matrix(), flipped, 0);
    benchmark::DoNotOptimize(flipped.data);
  }
}

BENCHMARK(BmpOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(BmpOpenCv)->Unit(benchmark::kMillisecond);
BENCHMARK(TiffOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(TiffOpenCv)->Unit(benchmark::kMillisecond);
BENCHMARK(JpegOurs)->Arg(100)->Arg(50)->Unit(benchmark::kMillisecond);
BENCHMARK(JpegOpenCv)->Arg(100)->Arg(50)->Unit(benchmark::kMillisecond);
BENCHMARK(JpegLoadOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(JpegLoadOpenCv)->Unit(benchmark::kMillisecond);
BENCHMARK(ReduceOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(ReduceByTableOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(ReduceOpenCv)->Unit(benchmark::kMillisecond);
BENCHMARK(StretchOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(StretchOpenCv)->Unit(benchmark::kMillisecond);
BENCHMARK(FlipOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(FlipOpenCv)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  cv::setNumThreads(1);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
