#include <opencv2/imgproc.hpp>

#include "bench/operations/frames.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/geometry/rotate.h"
#include "imaging/operations/geometry/shrink.h"

namespace zyr::bench {
namespace {

// Ours count degrees of the picture, whose rows lie the other way up than OpenCV's; the memory is
// moved the same way.
template <typename Image>
void Add(const char* name, std::unique_ptr<Image> (*turn)(const Image*, ProgressCallback),
         std::shared_ptr<const Image> image, void (*theirs)(const cv::Mat&, cv::Mat&),
         std::vector<Comparison>* list) {
  list->push_back({name, [=] { turn(image.get(), nullptr); },
                   [=] {
                     cv::Mat result;
                     theirs(MatOf(*image), result);
                   }});
}

void Mirror(const cv::Mat& from, cv::Mat& to) { cv::flip(from, to, 1); }
void TopDown(const cv::Mat& from, cv::Mat& to) { cv::flip(from, to, 0); }
void Quarter(const cv::Mat& from, cv::Mat& to) {
  cv::rotate(from, to, cv::ROTATE_90_COUNTERCLOCKWISE);
}
void Half(const cv::Mat& from, cv::Mat& to) { cv::rotate(from, to, cv::ROTATE_180); }
void ThreeQuarters(const cv::Mat& from, cv::Mat& to) {
  cv::rotate(from, to, cv::ROTATE_90_CLOCKWISE);
}

constexpr uint32_t kLimit = 400;

void Shrink(const cv::Mat& from, cv::Mat& to) {
  cv::Mat small;
  const double factor = static_cast<double>(kLimit) / std::max(from.rows, from.cols);
  cv::resize(from, small, {static_cast<int>(from.cols * factor), static_cast<int>(kLimit)}, 0, 0,
             cv::INTER_AREA);
  if (small.channels() == 3) {
    to = small;
  } else {
    cv::cvtColor(small, to, cv::COLOR_GRAY2BGR);
  }
}

void AddShrink(const char* name, std::shared_ptr<const CKIPImage> image,
               std::vector<Comparison>* list) {
  list->push_back({name, [=] { ShrinkToLimit(image.get(), kLimit, nullptr); },
                   [=] {
                     cv::Mat result;
                     Shrink(MatOf(*image), result);
                   }});
}

}  // namespace

void AddGeometry(FrameSize size, std::vector<Comparison>* list) {
  const auto deep = DeepFrame(size);
  const auto grey = GreyFrame(size);
  const auto color = ColorFrame(size);
  Add("flip horizontal, 16 bit", DeepFlipHorizontal, deep, Mirror, list);
  Add("flip horizontal, 8 bit", FlipHorizontal, grey, Mirror, list);
  Add("flip horizontal, 24 bit", FlipHorizontal, color, Mirror, list);
  Add("flip vertical, 16 bit", DeepFlipVertical, deep, TopDown, list);
  Add("flip vertical, 8 bit", FlipVertical, grey, TopDown, list);
  Add("flip vertical, 24 bit", FlipVertical, color, TopDown, list);
  Add("rotate 90, 16 bit", DeepRotate90, deep, Quarter, list);
  Add("rotate 90, 8 bit", Rotate90, grey, Quarter, list);
  Add("rotate 90, 24 bit", Rotate90, color, Quarter, list);
  Add("rotate 180, 16 bit", DeepRotate180, deep, Half, list);
  Add("rotate 180, 8 bit", Rotate180, grey, Half, list);
  Add("rotate 270, 16 bit", DeepRotate270, deep, ThreeQuarters, list);
  Add("rotate 270, 8 bit", Rotate270, grey, ThreeQuarters, list);
  Add("rotate 270, 24 bit", Rotate270, color, ThreeQuarters, list);
  AddShrink("shrink to 400, 8 bit", grey, list);
  AddShrink("shrink to 400, 24 bit", color, list);
}

}  // namespace zyr::bench
