// What a capture runs over its picture, with the settings of a new installation and with everything
// switched on.
#include <opencv2/imgproc.hpp>

#include "bench/operations/frames.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/masks/mask.h"
#include "imaging/operations/masks/mask_filters.h"
#include "imaging/operations/medians/median.h"

namespace zyr::bench {
namespace {

constexpr int kPercentClipped = 1;
constexpr double kGamma = 0.7;
constexpr int kContrast = 10;
constexpr int kMaskSize = 3;
constexpr int kSharpening = 50;
constexpr double kLaplace = 3;
constexpr int kSmoothing = 50;

enum class Filters { kMedianOf3, kAll };

void EnhanceOurs(const CKIPDeepImage* frame, Filters filters) {
  auto image = DeepAutoBrightnessContrast(frame, kPercentClipped, kPercentClipped, nullptr);
  image = DeepAdjustGamma(image.get(), kGamma, nullptr);
  image = DeepAdjustBrightnessContrast(image.get(), 0, kContrast, nullptr);
  image = DeepMedianFilter(image.get(), filters == Filters::kAll ? 5 : 3, nullptr);
  if (filters != Filters::kAll) return;
  image = DeepSharpen(image.get(), kMaskSize, kSharpening, nullptr);
  image = DeepEdgeEnhance(image.get(), kMaskSize, kLaplace, nullptr);
  image = DeepSmooth(image.get(), kMaskSize, kSmoothing, nullptr);
}

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
  Range range = {0, levels - 1};
  for (double sum = counts[0]; sum < clipped && range.low < levels - 1;) sum += counts[++range.low];
  for (double sum = counts[levels - 1]; sum < clipped && range.high > 0;) {
    sum += counts[--range.high];
  }
  return range;
}

// OpenCV's tables are for 8 bits only, so levels are changed in float, as it works fastest: with no
// way back to 16 bits between the steps.
cv::Mat ChangeLevels(const cv::Mat& frame, double mask) {
  const Range range = ClippedRange(frame, static_cast<int>(mask) + 1);
  const double scale = 1.0 / (range.high - range.low);
  cv::Mat levels;
  frame.convertTo(levels, CV_32F, scale, -range.low * scale);
  cv::max(levels, 0, levels);
  cv::min(levels, 1, levels);
  cv::pow(levels, 1 / kGamma, levels);
  const double contrast = 0.01 * kContrast;
  cv::Mat result;
  levels.convertTo(result, CV_16U, mask * (1 + contrast), -0.5 * mask * contrast);
  cv::min(result, mask, result);
  return result;
}

cv::Mat KernelOf(const CKIPMask& mask) {
  cv::Mat weights(static_cast<int>(mask.rows), static_cast<int>(mask.columns), CV_64F,
                  mask.weights.get());
  cv::Mat kernel;
  weights.convertTo(kernel, CV_32F, mask.factor);
  return kernel;
}

cv::Mat Filter(const cv::Mat& image, const cv::Mat& kernel, double mask) {
  cv::Mat result;
  cv::filter2D(image, result, -1, kernel, {-1, -1}, 0, cv::BORDER_REPLICATE);
  cv::min(result, mask, result);
  return result;
}

void EnhanceTheirs(const CKIPDeepImage& frame, Filters filters) {
  const double mask = frame.GetMask();
  cv::Mat image;
  cv::medianBlur(ChangeLevels(MatOf(frame), mask), image, filters == Filters::kAll ? 5 : 3);
  if (filters != Filters::kAll) return;
  CKIPMask weights;
  weights.MakeSharpen(kMaskSize, kSharpening);
  image = Filter(image, KernelOf(weights), mask);
  weights.MakeEdge(kMaskSize, kMaskSize, kLaplace);
  cv::Mat edge = KernelOf(weights);
  edge.at<float>(kMaskSize / 2, kMaskSize / 2) += 1;
  image = Filter(image, edge, mask);
  weights.MakeSmooth(kMaskSize, kSmoothing);
  image = Filter(image, KernelOf(weights), mask);
}

}  // namespace

void AddChains(FrameSize size, std::vector<Comparison>* list) {
  const auto frame = DeepFrame(size);
  const auto add = [&](const char* name, Filters filters) {
    list->push_back({name, [=] { EnhanceOurs(frame.get(), filters); },
                     [=] { EnhanceTheirs(*frame, filters); }});
  };
  add("a capture's chain, default settings", Filters::kMedianOf3);
  add("a capture's chain, everything on", Filters::kAll);
}

}  // namespace zyr::bench
