#include <memory>
#include <random>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/operations/comparison.h"
#include "imaging/image/grey.h"
#include "imaging/operations/masks/emboss.h"
#include "imaging/operations/masks/mask_filters.h"

namespace zyr::bench {
namespace {

// Soft shapes with noise, in samples of `limit` + 1 levels.
uint32_t Level(uint32_t x, uint32_t y, uint32_t limit, std::mt19937& random) {
  return ((x * 3 + y * 2) * 7 + random() % 64) % (limit + 1);
}

std::shared_ptr<CKIPImage> NewImage(FrameSize size, uint32_t bits) {
  auto image = std::make_shared<CKIPImage>();
  image->Create(size.width, size.height, bits);
  if (bits == 8) image->SetPalette(NewIdentityPalette());
  std::mt19937 random(1);
  for (uint32_t y = 0; y < size.height; ++y) {
    for (uint32_t i = 0; i < image->stride(); ++i) {
      image->MemoryRow(y)[i] = static_cast<uint8_t>(Level(i / (bits / 8), y, 255, random));
    }
  }
  return image;
}

std::shared_ptr<CKIPDeepImage> NewDeepImage(FrameSize size) {
  auto image = std::make_shared<CKIPDeepImage>();
  image->Create(size.width, size.height, 12);
  std::mt19937 random(1);
  for (uint32_t y = 0; y < size.height; ++y) {
    for (uint32_t x = 0; x < size.width; ++x) {
      image->GetRow(y)[x] = static_cast<uint16_t>(Level(x, y, 4095, random));
    }
  }
  return image;
}

cv::Mat MatOver(const CKIPImage& image) {
  return cv::Mat(static_cast<int>(image.height()), static_cast<int>(image.width()),
                 image.bitsPerPixel() == 8 ? CV_8UC1 : CV_8UC3, const_cast<uint8_t*>(image.bits()),
                 image.stride());
}

cv::Mat MatOver(const CKIPDeepImage& image) {
  return cv::Mat(static_cast<int>(image.GetHeight()), static_cast<int>(image.GetWidth()), CV_16UC1,
                 image.GetPixels(), image.GetStride() * sizeof(uint16_t));
}

cv::Mat KernelOf(const CKIPMask& mask) {
  const cv::Mat weights(static_cast<int>(mask.rows), static_cast<int>(mask.columns), CV_64F,
                        mask.weights.get());
  return weights * mask.factor;
}

std::function<void()> OpenCvFilter(const cv::Mat& source, const cv::Mat& kernel) {
  return [=] {
    cv::Mat result;
    cv::filter2D(source, result, -1, kernel, cv::Point(-1, -1), 0, cv::BORDER_REPLICATE);
  };
}

// The response is added in the kernel, which spares OpenCV a pass.
cv::Mat PlusCentre(cv::Mat kernel) {
  kernel.at<double>(kernel.rows / 2, kernel.cols / 2) += 1;
  return kernel;
}

std::string Name(const std::string& filter, uint32_t size, const char* samples) {
  const std::string number = std::to_string(size);
  return filter + " " + number + " x " + number + ", " + samples;
}

void AddByteFilters(FrameSize size, uint32_t bits, std::vector<Comparison>* list) {
  const std::shared_ptr<CKIPImage> image = NewImage(size, bits);
  const char* const samples = bits == 8 ? "8 bit" : "24 bit";
  for (const uint32_t side : {3u, 5u}) {
    const auto sharpen = std::make_shared<CKIPMask>();
    sharpen->MakeSharpen(side, 50);
    const auto smooth = std::make_shared<CKIPMask>();
    smooth->MakeSmooth(side, 50);
    const auto edge = std::make_shared<CKIPMask>();
    edge->MakeEdge(side, side, 3);
    list->push_back({Name("sharpen", side, samples),
                     [=] { ApplyMask(image.get(), *sharpen, nullptr); },
                     OpenCvFilter(MatOver(*image), KernelOf(*sharpen))});
    list->push_back({Name("smooth", side, samples),
                     [=] { ApplyMask(image.get(), *smooth, nullptr); },
                     OpenCvFilter(MatOver(*image), KernelOf(*smooth))});
    list->push_back({Name("edges", side, samples),
                     [=] { EdgeEnhance(image.get(), *edge, nullptr); },
                     OpenCvFilter(MatOver(*image), PlusCentre(KernelOf(*edge)))});
  }
}

void AddDeepFilters(FrameSize size, std::vector<Comparison>* list) {
  const std::shared_ptr<CKIPDeepImage> image = NewDeepImage(size);
  for (const uint32_t side : {3u, 5u}) {
    CKIPMask mask;
    mask.MakeSharpen(side, 50);
    list->push_back({Name("sharpen", side, "16 bit"),
                     [=] { DeepSharpen(image.get(), side, 50, nullptr); },
                     OpenCvFilter(MatOver(*image), KernelOf(mask))});
    mask.MakeSmooth(side, 50);
    list->push_back({Name("smooth", side, "16 bit"),
                     [=] { DeepSmooth(image.get(), side, 50, nullptr); },
                     OpenCvFilter(MatOver(*image), KernelOf(mask))});
    mask.MakeEdge(side, side, 3);
    list->push_back({Name("edges", side, "16 bit"),
                     [=] { DeepEdgeEnhance(image.get(), side, 3, nullptr); },
                     OpenCvFilter(MatOver(*image), PlusCentre(KernelOf(mask)))});
  }
}

// In single precision, without the special case of level ground, and in the same memory each time.
class OpenCvEmboss {
 public:
  explicit OpenCvEmboss(const cv::Mat& source) : source_(source) {}

  void Run() {
    constexpr double kLight = 128;
    constexpr double kHeight = 229.5;
    cv::Sobel(source_, x_, CV_32F, 1, 0, 3, -1, 0, cv::BORDER_REPLICATE);
    cv::Sobel(source_, y_, CV_32F, 0, 1, 3, -1, 0, cv::BORDER_REPLICATE);
    cv::addWeighted(x_, -kLight, y_, kLight, kHeight * 181, lit_);
    cv::multiply(x_, x_, x_);
    cv::multiply(y_, y_, y_);
    cv::addWeighted(x_, 1, y_, 1, kHeight * kHeight, x_);
    cv::sqrt(x_, x_);
    cv::divide(lit_, x_, lit_);
    lit_.convertTo(result_, CV_8U);
  }

 private:
  const cv::Mat source_;
  cv::Mat x_, y_, lit_, result_;
};

void AddEmboss(FrameSize size, std::vector<Comparison>* list) {
  const std::shared_ptr<CKIPImage> image = NewImage(size, 8);
  const auto peer = std::make_shared<OpenCvEmboss>(MatOver(*image));
  list->push_back({"emboss, 8 bit", [=] { Emboss(image.get(), 135, 45, 0.85, nullptr); },
                   [=] { peer->Run(); }});
}

}  // namespace

void AddMaskFilters(FrameSize size, std::vector<Comparison>* list) {
  AddByteFilters(size, 8, list);
  AddByteFilters(size, 24, list);
  AddDeepFilters(size, list);
  AddEmboss(size, list);
}

}  // namespace zyr::bench
