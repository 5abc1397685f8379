// Frames as the two families' sensors deliver them, and what makes the image that leaves the device
// of them: ours, and the same steps written with OpenCV. OpenCV's are in single precision and
// repair by plain means, where ours are exact.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <random>
#include <string>
#include <vector>

#include "hardware/correction/correct_303.h"
#include "hardware/correction/offset_correction.h"
#include "hardware/correction/sensor_defects.h"
#include "hardware/correction/sensor_image.h"
#include "tests/hardware/bit_writer.h"

namespace zyr::bench {

inline constexpr uint32_t kCornerLegs = 90;
inline constexpr int kMargin = 8;
inline constexpr int kReach303 = 20;  // of the Gaussian
inline constexpr int kSeamFromBottom = 535;

// What one sensor delivers, and what is known of it.
struct Sensor {
  Sensor(uint32_t width, uint32_t height) {
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0, 25);
    for (SensorImage* frame : {&normal, &dark}) frame->Create(width, height, 770, 770);
    for (uint32_t y = 0; y < height; ++y) {
      for (uint32_t x = 0; x < width; ++x) {
        const uint32_t level = 150 + random() % 16 + x % 7 * 3;
        const double teeth = std::sin(x * 0.02) * std::sin(y * 0.006);
        const double light = 1700 + 1300 * teeth + 0.2 * x + noise(random);
        dark.SetPixel(x, y, static_cast<uint16_t>(level));
        normal.SetPixel(x, y, static_cast<uint16_t>(level + std::clamp(light, 0.0, 3850.0)));
      }
    }
    for (int i = 0; i < 200; ++i) {
      pixels.emplace_back(static_cast<int>(2 + random() % (width - 4)),
                          static_cast<int>(2 + random() % (height - 4)));
    }
    for (uint32_t i = 1; i <= 4; ++i) {
      columns.push_back(static_cast<int>(i * width / 5));
      rows.push_back(static_cast<int>(i * height / 5));
    }
  }

  cv::Mat NormalMat() const { return MatOver(normal); }
  cv::Mat DarkMat() const { return MatOver(dark); }
  // OpenCV has no frames that are only read.
  static cv::Mat MatOver(const SensorImage& frame) {
    return cv::Mat(static_cast<int>(frame.GetHeight()), static_cast<int>(frame.GetWidth()), CV_16U,
                   const_cast<uint16_t*>(frame.data()), frame.GetStride());
  }

  SensorImage normal;
  SensorImage dark;
  std::vector<cv::Point> pixels;
  std::vector<int> columns;
  std::vector<int> rows;
};

inline const Sensor& Sensor2000D() {
  static const Sensor sensor(1156, 1600);
  return sensor;
}
inline const Sensor& Sensor303D() {
  static const Sensor sensor(798, 1070);
  return sensor;
}

inline std::unique_ptr<SensorDefects> TextDefectsOf(const Sensor& sensor) {
  std::string text;
  const auto add = [&](int x, int y, int kind) {
    text += std::to_string(x) + ' ' + std::to_string(y) + ' ' + std::to_string(kind) + "\r\n";
  };
  for (const cv::Point& pixel : sensor.pixels) add(pixel.x - 1, pixel.y - 1, 0);
  for (const int x : sensor.columns) add(x - 1, 0, 2);
  for (const int y : sensor.rows) add(0, y - 1, 3);
  auto defects = MakeTextDefects();
  defects->LoadText(text, sensor.normal.GetWidth(), sensor.normal.GetHeight());
  return defects;
}

inline constexpr int kA = 1200;
inline constexpr int kB = 52000;
inline constexpr int kC = 3;

inline std::unique_ptr<SensorDefects> Loaded(const BitWriter& bits) {
  auto defects = MakeBinaryDefects();
  defects->LoadBinary(bits.bytes().data(), bits.bytes().size(), 0, 0);
  return defects;
}

inline std::unique_ptr<SensorDefects> BinaryDefectsOf(const Sensor& sensor) {
  BitWriter bits;
  for (const int x : sensor.columns) bits.Column(static_cast<uint32_t>(x));
  for (const int y : sensor.rows) bits.Row(static_cast<uint32_t>(y));
  for (const cv::Point& pixel : sensor.pixels) {
    bits.Pixel(static_cast<uint32_t>(pixel.x), static_cast<uint32_t>(pixel.y));
  }
  return Loaded(bits);
}

inline std::unique_ptr<SensorDefects> CalibrationOf(const Sensor& sensor) {
  BitWriter bits;
  for (int x = 0; x < static_cast<int>(sensor.normal.GetWidth()); ++x) {
    bits.Calibration(kA + x, kB + x, kC);
  }
  return Loaded(bits);
}

inline PdiRecord GainOf(bool on) {
  PdiRecord pdi;
  if (on) pdi = {.enabled = 1, .gain_0 = 1.02, .gain_1 = -0.00001, .gain_2 = 0.0000000012};
  return pdi;
}

// Lines become the mean of their neighbours, pixels that of the good ones around.
inline void RepairByOpenCv(const Sensor& sensor, cv::Mat image) {
  cv::Mat good(image.size(), CV_8U, cv::Scalar(255));
  for (const cv::Point& pixel : sensor.pixels) good.at<uint8_t>(pixel) = 0;
  for (const cv::Point& pixel : sensor.pixels) {
    const cv::Rect around(pixel.x - 1, pixel.y - 1, 3, 3);
    image.at<uint16_t>(pixel) =
        static_cast<uint16_t>(std::lround(cv::mean(image(around), good(around))[0]));
  }
  for (const int y : sensor.rows) {
    cv::addWeighted(image.row(y - 1), 0.5, image.row(y + 1), 0.5, 0, image.row(y));
  }
  for (const int x : sensor.columns) {
    cv::addWeighted(image.col(x - 1), 0.5, image.col(x + 1), 0.5, 0, image.col(x));
  }
}

inline cv::Mat CroppedByOpenCv(const cv::Mat& image) {
  return image({kMargin, kMargin, image.cols - 2 * kMargin, image.rows - 2 * kMargin}).clone();
}

// A row that holds of every row of the frame.
inline cv::Mat Repeated(const cv::Mat& row, int rows) {
  cv::Mat full;
  cv::repeat(row, rows, 1, full);
  return full;
}

struct CoefficientsForOpenCv {
  explicit CoefficientsForOpenCv(const Sensor& sensor) {
    const int width = static_cast<int>(sensor.normal.GetWidth());
    const int height = static_cast<int>(sensor.normal.GetHeight());
    cv::Mat rows[3];
    for (cv::Mat& row : rows) row.create(1, width, CV_32F);
    for (int x = 0; x < width; ++x) {
      rows[0].at<float>(x) = static_cast<float>((kA + x) * 1e-7);
      rows[1].at<float>(x) = static_cast<float>((kB + x) * 1e-7);
      rows[2].at<float>(x) = static_cast<float>(kC * 1e-7);
    }
    constant = Repeated(rows[0], height);
    linear = Repeated(rows[1], height);
    square = Repeated(rows[2], height);
  }

  cv::Mat constant;
  cv::Mat linear;
  cv::Mat square;
};

// (square * v + linear) * v + constant
inline cv::Mat Polynomial(const cv::Mat& v, const auto& square, const auto& linear,
                          const auto& constant) {
  cv::Mat result;
  cv::multiply(v, square, result);
  cv::add(result, linear, result);
  cv::multiply(result, v, result);
  cv::add(result, constant, result);
  return result;
}

inline cv::Mat DarkWithoutPattern(const cv::Mat& dark) {
  cv::Mat means;
  cv::reduce(dark.rowRange(10, dark.rows - 10), means, 0, cv::REDUCE_AVG, CV_32F);
  cv::Mat smooth;
  cv::GaussianBlur(means, smooth, {2 * kReach303 + 1, 1}, 30 / std::sqrt(8 * std::log(2)));
  cv::Mat level;
  dark.convertTo(level, CV_32F);
  return level - Repeated(means - smooth, dark.rows);
}

inline void CorrectSeamByOpenCv(cv::Mat image) {
  const int seam = image.rows - kSeamFromBottom;
  double factor = cv::sum(image.row(seam - 1))[0] / cv::sum(image.row(seam))[0];
  const double step = (1 - factor) / 120;
  for (int y = seam; y < seam + 119; ++y) {
    image.row(y) *= factor;
    factor += step;
    if (factor >= 1.0) return;
  }
}

inline Held<SensorImage> Correct2000D(const Sensor& sensor, SensorDefects* defects) {
  Held<SensorImage> image = sensor.normal.Clone();
  image->Subtract(sensor.dark, 0);
  CorrectOffset(image.get(), ReadOutLag(3, true));
  defects->Apply(image.get(), false);
  image->CropInPlace(kMargin, kMargin, kMargin, kMargin);
  return image;
}

inline cv::Mat Correct2000DByOpenCv(const Sensor& sensor) {
  const int lag = static_cast<int>(ReadOutLag(3, true));
  cv::Mat raster;
  cv::subtract(sensor.NormalMat(), sensor.DarkMat(), raster);
  cv::Mat image(raster.size(), CV_16U);
  raster.colRange(lag, raster.cols).copyTo(image.colRange(0, raster.cols - lag));
  raster(cv::Rect(0, 1, lag, raster.rows - 1))
      .copyTo(image(cv::Rect(raster.cols - lag, 0, lag, raster.rows - 1)));
  RepairByOpenCv(sensor, image);
  return CroppedByOpenCv(image);
}

inline Held<SensorImage> Correct303D(const Sensor& sensor, SensorDefects* defects,
                                     const SensorDefects* calibration, bool withGain) {
  Held<SensorImage> image =
      Correct303(sensor.normal, sensor.dark, calibration, GainOf(withGain), 3);
  defects->Apply(image.get(), false);
  image->CropInPlace(kMargin, kMargin, kMargin, kMargin);
  image->FillCorners(kCornerLegs, kCornerLegs, 0);
  return image;
}

inline cv::Mat Correct303DByOpenCv(const Sensor& sensor, const CoefficientsForOpenCv& coefficients,
                                   bool withGain) {
  const PdiRecord pdi = GainOf(withGain);
  const cv::Mat dark = DarkWithoutPattern(sensor.DarkMat());
  cv::Mat v;
  sensor.NormalMat().convertTo(v, CV_32F);
  cv::Mat level =
      v - Polynomial(v, coefficients.square, coefficients.linear, coefficients.constant);
  if (withGain) {
    level -= Polynomial(level, pdi.gain_2, pdi.gain_1, pdi.gain_0).mul(dark);
  } else {
    level -= dark;
  }
  v.copyTo(level, (level < 0) | (level > 4095));
  if (!withGain) CorrectSeamByOpenCv(level);
  cv::Mat image;
  level.convertTo(image, CV_16U, 16);
  RepairByOpenCv(sensor, image);
  return CroppedByOpenCv(image);
}

}  // namespace zyr::bench
