// bench_viewer: redraws of a full-size image in a window of 1600 x 1000, beside OpenCV's resize to
// the same rectangle and its conversion to the screen's pixels on one thread; and the spot tools,
// which have no counterpart there. The best of many runs, in milliseconds.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "imaging/image/grey.h"
#include "imaging/viewer/scaled_picture.h"
#include "imaging/viewer/spot_tools.h"

namespace zyr {
namespace {

constexpr int32_t kWidth = 1156;
constexpr int32_t kHeight = 1600;
constexpr ViewSize kWindow = {1600, 1000};
constexpr double kFit = 0.625;

double Best(const std::function<void()>& work) {
  double best = INFINITY;
  double spent = 0;
  for (int run = 0; run < 300 && (run < 5 || spent < 150); ++run) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    best = std::min(best, time.count());
    spent += time.count();
  }
  return best;
}

// A picture and the same for OpenCV, top row first.
struct Picture {
  Picture(uint32_t bits, bool isIdentity) {
    image.Create(kWidth, kHeight, bits);
    if (bits == 8) image.SetPalette(NewIdentityPalette());
    if (!isIdentity) {
      for (PaletteEntry& entry : image.palette()) {
        entry.blue = entry.green = entry.red = static_cast<uint8_t>(255 - entry.red);
      }
    }
    const auto channels = static_cast<int32_t>(bits / 8);
    matrix.create(kHeight, kWidth, CV_8UC(channels));
    for (int32_t y = 0; y < kHeight; ++y) {
      uint8_t* row = image.PictureRow(static_cast<uint32_t>(y));
      for (int32_t x = 0; x < kWidth * channels; ++x) {
        row[x] = static_cast<uint8_t>(128 + 90 * std::sin(x * 0.011) * std::cos(y * 0.007) +
                                      (x * 31 + y * 17) % 9);
      }
      std::copy_n(row, kWidth * channels, matrix.ptr(y));
    }
    for (uint32_t i = 0; i < 256 && bits == 8; ++i) {
      colors.at<cv::Vec4b>(0, static_cast<int>(i)) = {
          image.palette()[i].blue, image.palette()[i].green, image.palette()[i].red, 0};
    }
    hasColors = !isIdentity;
  }

  CKIPImage image;
  cv::Mat matrix;
  cv::Mat colors = cv::Mat(1, 256, CV_8UC4);
  bool hasColors;
};

// What is drawn: the middle of the picture, as much as the window holds.
ViewRect PartOf(double scale) {
  const auto width = static_cast<int32_t>(kWidth * scale);
  const auto height = static_cast<int32_t>(kHeight * scale);
  const int32_t left = std::max(0, (width - kWindow.width) / 2);
  const int32_t top = std::max(0, (height - kWindow.height) / 2);
  return {left, top, std::min(width, left + kWindow.width), std::min(height, top + kWindow.height)};
}

void DrawTheirs(const Picture& picture, double scale, const ViewRect& part, cv::Mat* target) {
  const cv::Range rows(static_cast<int>(part.top / scale),
                       std::min(kHeight, static_cast<int>(std::ceil(part.bottom / scale))));
  const cv::Range columns(static_cast<int>(part.left / scale),
                          std::min(kWidth, static_cast<int>(std::ceil(part.right / scale))));
  const int filter = scale < 1             ? cv::INTER_AREA
                     : scale < kSharpScale ? cv::INTER_LINEAR
                                           : cv::INTER_NEAREST;
  static cv::Mat scaled;
  cv::resize(picture.matrix(rows, columns), scaled,
             {part.right - part.left, part.bottom - part.top}, 0, 0, filter);
  if (picture.hasColors) {
    static cv::Mat grey;
    cv::cvtColor(scaled, grey, cv::COLOR_GRAY2BGRA);
    cv::LUT(grey, picture.colors, *target);
  } else {
    const bool isGrey = scaled.channels() == 1;
    cv::cvtColor(scaled, *target, isGrey ? cv::COLOR_GRAY2BGRA : cv::COLOR_BGR2BGRA);
  }
}

void CompareRedraws(const char* name, const Picture& picture, double* logarithms, int* count) {
  std::vector<uint32_t> pixels(size_t{1600} * 1000);
  cv::Mat target;
  for (const double scale : {0.25, 0.5, kFit, 1.0, 1.5, 3.0, 8.0, 16.0}) {
    const ViewRect part = PartOf(scale);
    const auto width = static_cast<uint32_t>(part.right - part.left);
    const double ours = Best([&] { DrawScaled(picture.image, scale, part, pixels.data(), width); });
    const double theirs = Best([&] { DrawTheirs(picture, scale, part, &target); });
    std::printf("%-28s x %-8g %10.3f %10.3f %8.3f\n", name, scale, ours, theirs, ours / theirs);
    *logarithms += std::log(ours / theirs);
    ++*count;
  }
}

void MeasureSpots(const Picture& picture) {
  const ViewRect window{0, 0, kWindow.width, kWindow.height};
  std::vector<uint32_t> pixels(size_t{1600} * 1000, 0x808080);
  for (const double zoom : {kFit, 1.0, 3.0}) {
    const Spot spot{500, 700, {600, 300, 800, 500}, zoom};
    const double magnify =
        Best([&] { DrawMagnifiedSpot(picture.image, spot, 3, window, pixels.data()); });
    const double enhance =
        Best([&] { DrawEnhancedSpot(picture.image, spot, window, pixels.data()); });
    const double colorize = Best(
        [&] { DrawColorizedSpot(picture.image, spot, Spectrum::kFire, window, pixels.data()); });
    std::printf("spot of 200 at zoom %-8g magnify %.3f, enhance %.3f, colorize %.3f\n", zoom,
                magnify, enhance, colorize);
  }
}

void Run() {
  cv::setNumThreads(1);
  const Picture grey(8, true);
  double logarithms = 0;
  int count = 0;
  std::printf("%-28s   %-8s %10s %10s %8s\n", "1156 x 1600 into 1600 x 1000", "zoom", "ours ms",
              "OpenCV ms", "ratio");
  CompareRedraws("grey", grey, &logarithms, &count);
  CompareRedraws("grey, palette dragged", Picture(8, false), &logarithms, &count);
  CompareRedraws("24 bit", Picture(24, true), &logarithms, &count);
  std::printf("geometric mean of %d ratios: %.3f\n", count, std::exp(logarithms / count));
  MeasureSpots(grey);
}

}  // namespace
}  // namespace zyr

int main() { zyr::Run(); }
