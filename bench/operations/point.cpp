// Point operations, beside OpenCV's table, conversion, normalisation and equalisation.
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/operations/comparison.h"
#include "imaging/image/grey.h"
#include "imaging/image/raw_pixels.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"

namespace zyr::bench {
namespace {

constexpr int kDeepBits = 12;
constexpr int kDeepTop = (1 << kDeepBits) - 1;

// A smooth picture with noise, as a sensor's.
uint32_t LevelAt(uint32_t x, uint32_t y, uint32_t top) {
  const uint32_t noise = (x * 2654435761u ^ y * 2246822519u) >> 13;
  return (top / 8 + (x + y) * top / 4000 + noise % (top / 16)) % (top + 1);
}

struct Frames {
  std::shared_ptr<CKIPImage> grey;
  std::shared_ptr<CKIPImage> color;
  std::shared_ptr<CKIPDeepImage> deep;

  cv::Mat Grey() const { return MatOf(*grey, CV_8UC1); }
  cv::Mat Color() const { return MatOf(*color, CV_8UC3); }
  cv::Mat Deep() const {
    return {static_cast<int>(deep->GetHeight()), static_cast<int>(deep->GetWidth()), CV_16UC1,
            deep->GetPixels(), deep->GetStride() * sizeof(uint16_t)};
  }

 private:
  static cv::Mat MatOf(CKIPImage& image, int type) {
    return {static_cast<int>(image.height()), static_cast<int>(image.width()), type, image.bits(),
            image.stride()};
  }
};

Frames MakeFrames(FrameSize size) {
  Frames frames{std::make_shared<CKIPImage>(), std::make_shared<CKIPImage>(),
                std::make_shared<CKIPDeepImage>()};
  frames.grey->SetPalette(NewIdentityPalette());
  frames.grey->Create(size.width, size.height, 8);
  frames.color->Create(size.width, size.height, 24);
  frames.deep->Create(size.width, size.height, kDeepBits);
  for (uint32_t y = 0; y < size.height; ++y) {
    for (uint32_t x = 0; x < size.width; ++x) {
      frames.grey->MemoryRow(y)[x] = static_cast<uint8_t>(LevelAt(x, y, 255));
      *frames.deep->GetPixelPtr(x, y) = static_cast<uint16_t>(LevelAt(x, y, kDeepTop));
    }
    for (uint32_t i = 0; i < 3 * size.width; ++i) {
      frames.color->MemoryRow(y)[i] = static_cast<uint8_t>(LevelAt(i / 3, y + i % 3, 255));
    }
  }
  return frames;
}

cv::Mat TableOf(double exponent) {
  cv::Mat table(1, 256, CV_8UC1);
  const ByteTable levels = GammaTable(exponent);
  std::copy(levels.begin(), levels.end(), table.data);
  return table;
}

// OpenCV has no table for 16 bits and no equalisation: the nearest is a power in floating point.
void DeepGammaOfOpenCv(const cv::Mat& source) {
  cv::Mat exact, result;
  source.convertTo(exact, CV_32F, 1.0 / kDeepTop);
  cv::pow(exact, 1 / 1.8, exact);
  exact.convertTo(result, CV_16U, kDeepTop);
}

cv::Mat HistogramOfOpenCv(const cv::Mat& source, int levels) {
  cv::Mat histogram;
  const int channel = 0;
  const float range[] = {0, static_cast<float>(levels)};
  const float* ranges[] = {range};
  cv::calcHist(&source, 1, &channel, cv::Mat(), histogram, 1, &levels, ranges);
  return histogram;
}

// OpenCV equalises 8 bits only: its histogram, and the table applied as one would write it.
void DeepEqualizeWithOpenCv(const cv::Mat& source) {
  const cv::Mat histogram = HistogramOfOpenCv(source, kDeepTop + 1);
  std::vector<uint16_t> table(kDeepTop + 1);
  float sum = 0;
  for (int i = 0; i <= kDeepTop; ++i) {
    sum += histogram.at<float>(i);
    table[static_cast<size_t>(i)] =
        cv::saturate_cast<uint16_t>(sum / static_cast<float>(source.total()) * kDeepTop);
  }
  cv::Mat result(source.size(), source.type());
  for (int y = 0; y < source.rows; ++y) {
    const uint16_t* from = source.ptr<uint16_t>(y);
    uint16_t* to = result.ptr<uint16_t>(y);
    for (int x = 0; x < source.cols; ++x) to[x] = table[from[x]];
  }
}

// The histogram by OpenCV, then the stretch between two levels found in it.
void AutoContrastOfOpenCv(const cv::Mat& source, int levels) {
  const cv::Mat histogram = HistogramOfOpenCv(source, levels);
  cv::Mat result;
  const double slope = 1.25;
  source.convertTo(result, -1, slope, -0.1 * levels * slope);
}

void AddGrey(const Frames& frames, std::vector<Comparison>* list) {
  CKIPImage* const grey = frames.grey.get();
  const auto add = [&](const char* name, std::function<void()> ours, std::function<void()> theirs) {
    // `frames` keeps what the pointers name.
    list->push_back({name, [frames, ours] { ours(); }, theirs});
  };
  const cv::Mat mat = frames.Grey();
  add(
      "brightness and contrast, 8 bit",
      [=] { AdjustBrightnessContrast(grey, 10, 20, kKeepNoColor, nullptr); },
      [=] {
        cv::Mat result;
        mat.convertTo(result, -1, 1.2, -0.1);
      });
  add(
      "gamma, 8 bit", [=] { AdjustGamma(grey, 1.8, 1.8, 1.8, kKeepNoColor, nullptr); },
      [=, table = TableOf(1 / 1.8)] {
        cv::Mat result;
        cv::LUT(mat, table, result);
      });
  add(
      "invert, 8 bit", [=] { Invert(grey, nullptr); },
      [=] {
        cv::Mat result;
        cv::bitwise_not(mat, result);
      });
  add(
      "normalize, 8 bit", [=] { Normalize(grey, nullptr, nullptr); },
      [=] {
        cv::Mat result;
        cv::normalize(mat, result, 0, 255, cv::NORM_MINMAX);
      });
  add(
      "equalize, 8 bit", [=] { Equalize(grey, nullptr, nullptr); },
      [=] {
        cv::Mat result;
        cv::equalizeHist(mat, result);
      });
  add(
      "automatic contrast, 8 bit", [=] { AutoBrightnessContrast(grey, 2, 2, nullptr, nullptr); },
      [=] { AutoContrastOfOpenCv(mat, 256); });
  CKIPImage* const color = frames.color.get();
  add(
      "brightness and contrast, 24 bit",
      [=] { AdjustBrightnessContrast(color, 10, 20, kKeepNoColor, nullptr); },
      [colors = frames.Color()] {
        cv::Mat result;
        colors.convertTo(result, -1, 1.2, -0.1);
      });
}

void AddDeep(const Frames& frames, std::vector<Comparison>* list) {
  CKIPDeepImage* const deep = frames.deep.get();
  const auto add = [&](const char* name, std::function<void()> ours, std::function<void()> theirs) {
    list->push_back({name, [frames, ours] { ours(); }, theirs});
  };
  const cv::Mat mat = frames.Deep();
  add(
      "brightness and contrast, 16 bit",
      [=] { DeepAdjustBrightnessContrast(deep, 10, 20, nullptr); },
      [=] {
        cv::Mat result;
        mat.convertTo(result, -1, 1.2, -0.1);
      });
  add(
      "gamma, 16 bit", [=] { DeepAdjustGamma(deep, 1.8, nullptr); },
      [=] { DeepGammaOfOpenCv(mat); });
  add(
      "invert, 16 bit", [=] { DeepInvert(deep, nullptr); },
      [=] {
        cv::Mat result;
        cv::subtract(cv::Scalar(kDeepTop), mat, result);
      });
  add(
      "normalize, 16 bit", [=] { DeepNormalize(deep, nullptr); },
      [=] {
        cv::Mat result;
        cv::normalize(mat, result, 0, kDeepTop, cv::NORM_MINMAX);
      });
  add(
      "automatic contrast, 16 bit", [=] { DeepAutoBrightnessContrast(deep, 1, 1, nullptr); },
      [=] { AutoContrastOfOpenCv(mat, kDeepTop + 1); });
  add(
      "equalize, 16 bit", [=] { DeepEqualize(deep, nullptr); },
      [=] { DeepEqualizeWithOpenCv(mat); });
  DepthMapping mapping;
  mapping.bits = kDeepBits;
  add(
      "16 bit to 8 bit", [=] { ImageFromDeepImage(*deep, mapping, nullptr); },
      [=] {
        cv::Mat result;
        mat.convertTo(result, CV_8U, 1.0 / 16);
      });
}

}  // namespace

void AddPointOperations(FrameSize size, std::vector<Comparison>* list) {
  const Frames frames = MakeFrames(size);
  AddGrey(frames, list);
  AddDeep(frames, list);
}

}  // namespace zyr::bench
