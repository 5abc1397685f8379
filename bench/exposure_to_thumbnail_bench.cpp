// bench_exposure_to_thumbnail: what lies between the frames of a capture and its thumbnail on the
// screen, with the settings of a new installation: each step's processor time beside that of the
// nearest same work by OpenCV on one thread, in the same run; then how long the dialog's thread is
// held up at a stretch. The stamp and the transfers are left out.
#include <unistd.h>
#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "acquire/iface/iface.h"
#include "acquire/image_cache/image_cache.h"
#include "acquire/image_cache/image_enhancement.h"
#include "bench/sensor_correction.h"
#include "imaging/formats/jpeg.h"
#include "imaging/operations/geometry/shrink.h"
#include "imaging/operations/masks/mask.h"
#include "platform/host/host.h"
#include "settings/store.h"

namespace zyr::bench {
namespace {

namespace host = platform::host;

constexpr int kRuns = 15;
constexpr int kPercentClipped = 1;
constexpr uint32_t kThumbnailHeight = 190;  // in a field of 260 x 190
constexpr int kPreviewQuality = 50;
constexpr int kSmoothing = 50;
constexpr double kMask = 4095;  // of the levels that are kept

enum class Family { k2000, k303 };

double Milliseconds(clockid_t clock) {
  timespec time;
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

// Times of a step, one for each run.
class Times {
 public:
  void Add(double time) { times_.push_back(time); }
  void DropFirst() { times_.erase(times_.begin()); }
  double Least() const { return *std::min_element(times_.begin(), times_.end()); }
  double Greatest() const { return *std::max_element(times_.begin(), times_.end()); }
  double Median() const {
    std::vector<double> sorted = times_;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
  }
  void AddRuns(const Times& other) {
    times_.resize(other.times_.size());
    for (size_t i = 0; i < times_.size(); ++i) times_[i] += other.times_[i];
  }

 private:
  std::vector<double> times_;
};

enum Row {
  kCorrection,
  kProcess,
  kTake,
  kAutomatic,
  kAdjustment,
  kNoise,
  kMasks,
  kStore,
  kCacheFile,
  kEightBits,
  kPreview,
  kThumbnail,
  kRowCount
};
constexpr const char* kRowNames[] = {"correction",
                                     "ProcessBitmapToImage",
                                     "into the cache, into 12 bits",
                                     "automatic B/C",
                                     "gamma, then B/C",
                                     "noise removal",
                                     "sharpen, edge, smooth",
                                     "pixels back",
                                     "cache file (stdio, the same)",
                                     "8-bit form",
                                     "preview JPEG",
                                     "thumbnail"};

using Chain = std::array<Times, kRowCount>;

// Runs a step and counts its processor time in its row.
template <typename Work>
auto Timed(Chain& chain, Row row, Work work) {
  const double start = Milliseconds(CLOCK_PROCESS_CPUTIME_ID);
  struct Stop {
    Chain& chain;
    Row row;
    double start;
    ~Stop() { chain[row].Add(Milliseconds(CLOCK_PROCESS_CPUTIME_ID) - start); }
  } stop{chain, row, start};
  return work();
}

std::string TemporaryFile(const char* name) {
  return (std::filesystem::temp_directory_path() / ("zyr-bench-" + std::to_string(getpid()) + name))
      .string();
}

void WriteFile(const std::string& path, const void* bytes, size_t count, bool sync) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr || std::fwrite(bytes, 1, count, file) != count) std::abort();
  std::fflush(file);
  if (sync) fsync(fileno(file));
  std::fclose(file);
}

// A sensor, and what is known of it before the exposure.
struct Known {
  explicit Known(Family theFamily)
      : family(theFamily),
        sensor(family == Family::k2000 ? Sensor2000D() : Sensor303D()),
        defects(family == Family::k2000 ? TextDefectsOf(sensor) : BinaryDefectsOf(sensor)),
        calibration(CalibrationOf(sensor)),
        coefficients(sensor) {}

  const Family family;
  const Sensor& sensor;
  const std::unique_ptr<SensorDefects> defects;
  const std::unique_ptr<SensorDefects> calibration;
  const CoefficientsForOpenCv coefficients;
};

Held<SensorImage> Correct(const Known& known) {
  return known.family == Family::k2000
             ? Correct2000D(known.sensor, known.defects.get())
             : Correct303D(known.sensor, known.defects.get(), known.calibration.get(), false);
}

CachedImage* AddToCache(const Known& known, ImageCache& cache, platform::GlobalHandle handle) {
  return cache.AddFromHandle(known.family == Family::k2000 ? "2000" : "LUMORAY", handle, 1, 1, "D");
}

// Returns the preview, as RunTheirs does.
std::unique_ptr<CKIPImage> RunOurs(const Known& known, Chain& chain) {
  static IFace sensors(nullptr);
  ImageCache cache;
  const auto frame = Timed(chain, kCorrection, [&] { return Correct(known); });
  const auto handle =
      Timed(chain, kProcess, [&] { return sensors.ProcessBitmapToImage(*frame, 0); });
  CachedImage* image = nullptr;
  const auto enhancement = Timed(chain, kTake, [&] {
    image = AddToCache(known, cache, handle);
    return std::make_unique<ImageEnhancement>(*image);
  });
  Timed(chain, kAutomatic, [&] { enhancement->ApplyAutomaticBrightnessContrast(); });
  Timed(chain, kAdjustment, [&] { enhancement->ApplyImageAdjustment(); });
  Timed(chain, kNoise, [&] { enhancement->ApplyNoiseRemoval(); });
  Timed(chain, kMasks, [&] {
    enhancement->ApplySharpening();
    enhancement->ApplyLaplace();
    enhancement->ApplySmoothing();
  });
  Timed(chain, kStore, [&] { enhancement->Store(); });
  const std::string path = TemporaryFile(".RAW");
  Timed(chain, kCacheFile,
        [&] { WriteFile(path, image->PixelData().data(), image->PixelData().size(), false); });
  Timed(chain, kEightBits, [&] { image->PrepareImage(); });
  std::unique_ptr<CKIPImage> preview;
  Timed(chain, kPreview, [&] {
    preview = image->PrepareImage()->Clone(true);
    CKIPJpegSaver().Save(TemporaryFile(".JPG"), preview.get(), kPreviewQuality, nullptr);
  });
  Timed(chain, kThumbnail, [&] { ShrinkToLimit(preview.get(), kThumbnailHeight, nullptr); });
  return preview;
}

// Levels as they come out of a scan from both ends that leaves out a percentage.
struct Range {
  int low;
  int high;
};

Range ClippedRange(const cv::Mat& image, int levels) {
  cv::Mat bins;
  const float limits[] = {0, static_cast<float>(levels)};
  const float* ranges[] = {limits};
  const int channel = 0;
  cv::calcHist(&image, 1, &channel, cv::Mat(), bins, 1, &levels, ranges);
  const float* counts = bins.ptr<float>();
  const double clipped = 0.01 * kPercentClipped * static_cast<double>(image.total());
  Range range = {1, levels - 2};
  for (double sum = counts[1]; sum < clipped && range.low < levels - 1;) sum += counts[++range.low];
  for (double sum = counts[range.high]; sum < clipped && range.high > 0;) {
    sum += counts[--range.high];
  }
  return range;
}

cv::Mat Spread(const cv::Mat& image, double mask) {
  const Range range = ClippedRange(image, static_cast<int>(mask) + 1);
  const double scale = mask / (range.high - range.low);
  cv::Mat result;
  image.convertTo(result, CV_16U, scale, -range.low * scale);
  if (mask < 65535) cv::min(result, mask, result);
  return result;
}

// OpenCV's own tables are for 8 bits only.
cv::Mat LookUp(const cv::Mat& image, double gamma) {
  std::vector<uint16_t> table(static_cast<size_t>(kMask) + 1);
  for (size_t i = 0; i < table.size(); ++i) {
    table[i] =
        cv::saturate_cast<uint16_t>(std::pow(static_cast<double>(i) / kMask, 1 / gamma) * kMask);
  }
  cv::Mat result(image.size(), CV_16U);
  for (int y = 0; y < image.rows; ++y) {
    const auto* from = image.ptr<uint16_t>(y);
    auto* to = result.ptr<uint16_t>(y);
    for (int x = 0; x < image.cols; ++x) to[x] = table[from[x]];
  }
  return result;
}

cv::Mat Adjust(const cv::Mat& image, const ImageAdjustment& adjustment) {
  cv::Mat result = LookUp(image, adjustment.gamma);
  if (adjustment.contrast == 0 && adjustment.brightness == 0) return result;
  const double contrast = 0.01 * adjustment.contrast;
  result.convertTo(result, CV_16U, 1 + contrast,
                   0.01 * adjustment.brightness * kMask - 0.5 * kMask * contrast);
  cv::min(result, kMask, result);
  return result;
}

cv::Mat Smooth(const cv::Mat& image) {
  CKIPMask mask;
  mask.MakeSmooth(3, kSmoothing);
  const cv::Mat kernel = cv::Mat(3, 3, CV_64F, mask.weights.get()) * mask.factor;
  cv::Mat result;
  cv::filter2D(image, result, -1, kernel, {-1, -1}, 0, cv::BORDER_REPLICATE);
  return result;
}

cv::Mat RunTheirs(const Known& known, Chain& chain) {
  const bool is2000 = known.family == Family::k2000;
  const ImageAdjustment adjustment = GetImageAdjustment(is2000 ? "ZYR2000" : "ZYR303");
  cv::Mat image = Timed(chain, kCorrection, [&] {
    return is2000 ? Correct2000DByOpenCv(known.sensor)
                  : Correct303DByOpenCv(known.sensor, known.coefficients, false);
  });
  Timed(chain, kProcess, [&] {
    cv::bitwise_not(image, image);
    image = Spread(image, 65535);
  });
  Timed(chain, kTake, [&] { image.convertTo(image, CV_16U, 1.0 / 16, -0.5); });
  Timed(chain, kAutomatic, [&] { image = Spread(image, kMask); });
  Timed(chain, kAdjustment, [&] { image = Adjust(image, adjustment); });
  // There is no median of a cross.
  Timed(chain, kNoise, [&] {
    cv::Mat result;
    cv::medianBlur(image, result, 3);
    image = result;
  });
  Timed(chain, kMasks, [&] {
    if (!is2000) image = Smooth(image);
  });
  Timed(chain, kStore, [] {});
  Timed(chain, kCacheFile, [&] {
    WriteFile(TemporaryFile(".RAW"), image.data, image.total() * image.elemSize(), false);
  });
  cv::Mat grey;
  Timed(chain, kEightBits, [&] { image.convertTo(grey, CV_8U, 1.0 / 16, -0.5); });
  Timed(chain, kPreview, [&] {
    std::vector<uint8_t> bytes;
    cv::imencode(".jpg", grey, bytes, {cv::IMWRITE_JPEG_QUALITY, kPreviewQuality});
    WriteFile(TemporaryFile(".JPG"), bytes.data(), bytes.size(), false);
  });
  Timed(chain, kThumbnail, [&] {
    const int width = grey.cols * static_cast<int>(kThumbnailHeight) / grey.rows;
    cv::Mat small;
    cv::resize(grey, small, {width, static_cast<int>(kThumbnailHeight)}, 0, 0, cv::INTER_AREA);
    cv::cvtColor(small, small, cv::COLOR_GRAY2BGR);
  });
  return grey;
}

void PrintRow(const char* name, const Times& ours, const Times& theirs) {
  std::printf("%-30s %9.3f %9.3f %9.3f %9.3f", name, ours.Least(), ours.Median(), theirs.Least(),
              theirs.Median());
  if (theirs.Least() > 0.001) std::printf(" %8.3f", ours.Least() / theirs.Least());
  std::printf("\n");
}

// Tells whether both chains did the same work, in levels of 255. A 303's corners, which OpenCV's
// does not fill, shift all its levels a little.
double MeanDifference(const CKIPImage& ours, const cv::Mat& theirs) {
  const cv::Mat rows(theirs.size(), CV_8U, const_cast<uint8_t*>(ours.bits()), ours.stride());
  return cv::norm(rows, theirs, cv::NORM_L1) / static_cast<double>(theirs.total());
}

void CompareChains(const Known& known, const char* name) {
  Chain ours, theirs;
  double difference = 0;
  for (int run = 0; run <= kRuns; ++run) {
    const auto preview = RunOurs(known, ours);
    difference = MeanDifference(*preview, RunTheirs(known, theirs));
  }
  Times ourSum, theirSum;
  std::printf("%-30s %19s %19s %8s\n%-30s %9s %9s %9s %9s %8s\n", name, "ours, CPU ms", "OpenCV",
              "", "", "least", "median", "least", "median", "ratio");
  for (int row = 0; row < kRowCount; ++row) {
    ours[row].DropFirst();  // it touches all memory
    theirs[row].DropFirst();
    ourSum.AddRuns(ours[row]);
    theirSum.AddRuns(theirs[row]);
    PrintRow(kRowNames[row], ours[row], theirs[row]);
  }
  PrintRow("all", ourSum, theirSum);
  std::printf("mean difference of the previews: %.2f levels\n", difference);
}

void PrintStretch(const char* name, const Times& times) {
  std::printf("%-50s %9.3f %9.3f %9.3f\n", name, times.Least(), times.Median(), times.Greatest());
}

// Everything between two looks at the message queue.
void MeasureStretches(const Known& known) {
  static IFace sensors(nullptr);
  Times finish, sync, refresh;
  const auto timed = [](Times& times, auto work) {
    const double start = Milliseconds(CLOCK_MONOTONIC);
    work();
    times.Add(Milliseconds(CLOCK_MONOTONIC) - start);
  };
  for (int run = 0; run < kRuns; ++run) {
    ImageCache cache;
    const auto handle = sensors.ProcessBitmapToImage(*Correct(known), 0);
    CachedImage* image = nullptr;
    timed(finish, [&] {
      image = AddToCache(known, cache, handle);
      ImageEnhancement enhancement(*image);
      enhancement.ApplyAutomaticBrightnessContrast();
      enhancement.ApplyImageAdjustment();
      enhancement.ApplyNoiseRemoval();
      enhancement.ApplySharpening();
      enhancement.ApplyLaplace();
      enhancement.ApplySmoothing();
      enhancement.Store();
      image->Save();
    });
    timed(sync, [&] {
      WriteFile(TemporaryFile(".RAW"), image->PixelData().data(), image->PixelData().size(), true);
    });
    timed(refresh, [&] {
      cache.EnsurePreviews();
      ShrinkToLimit(image->preview.get(), kThumbnailHeight, nullptr);
    });
    cache.Remove(image);
  }
  std::printf("%-50s %9s %9s %9s\n", "the dialog's thread is held up for, wall ms", "least",
              "median", "greatest");
  PrintStretch("a finished capture: enhance, save, preview", finish);
  PrintStretch("the cache file alone, onto the disk (fsync)", sync);
  PrintStretch("the refresh of the thumbnails", refresh);
  std::printf("\n");
}

void Run() {
  cv::setNumThreads(1);
  host::ResetAll();
  host::UsePlainBlocks(true);
  for (const Family family : {Family::k2000, Family::k303}) {
    const Known known(family);
    CompareChains(known, family == Family::k2000 ? "2000-D" : "303-D");
    MeasureStretches(known);
  }
  for (const char* name : {".RAW", ".JPG"}) std::remove(TemporaryFile(name).c_str());
  host::ResetAll();
}

}  // namespace
}  // namespace zyr::bench

int main() { zyr::bench::Run(); }
