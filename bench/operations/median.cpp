// Median filters beside cv::medianBlur. It knows windows beyond 5 x 5 of bytes only, and no cross:
// the nearest is its 3 x 3.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/operations/comparison.h"
#include "bench/operations/frames.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"

namespace zyr::bench {
namespace {

std::function<void()> MedianBlur(const cv::Mat& source, uint32_t size) {
  return [source, size] {
    cv::Mat target;
    cv::medianBlur(source, target, static_cast<int>(size));
  };
}

}  // namespace

void AddMedians(FrameSize size, std::vector<Comparison>* list) {
  const auto grey = GreyFrame(size);
  const auto color = ColorFrame(size);
  const auto deep = DeepFrame(size);
  const auto blur8 = [=](uint32_t window) { return MedianBlur(MatOf(*grey), window); };
  const auto blur24 = [=](uint32_t window) { return MedianBlur(MatOf(*color), window); };
  const auto blur16 = [=](uint32_t window) { return MedianBlur(MatOf(*deep), window); };
  for (const uint32_t window : {3u, 5u, 7u}) {
    const auto mask = std::make_shared<CKIPMask>();
    mask->MakeIdentity(window);
    const std::string name = "median " + std::to_string(window) + " x " + std::to_string(window);
    list->push_back(
        {name + ", 8 bit", [=] { MedianFilter(grey.get(), *mask, nullptr); }, blur8(window)});
    list->push_back(
        {name + ", 24 bit", [=] { MedianFilter(color.get(), *mask, nullptr); }, blur24(window)});
    if (window > 5) continue;
    list->push_back({name + ", 16 bit", [=] { DeepMedianFilter(deep.get(), window, nullptr); },
                     blur16(window)});
  }
  list->push_back(
      {"fast noise reduction, 8 bit", [=] { FastNoiseReduction(grey.get(), nullptr); }, blur8(3)});
  list->push_back({"fast noise reduction, 24 bit",
                   [=] { FastNoiseReduction(color.get(), nullptr); }, blur24(3)});
  list->push_back({"fast noise reduction, 16 bit",
                   [=] { DeepFastNoiseReduction(deep.get(), nullptr); }, blur16(3)});
}

}  // namespace zyr::bench
