#include "hardware/correction/sensor_image.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>

namespace zyr {
namespace {

constexpr size_t kBlock = 16;  // a fixed count, which is what compilers vectorise
constexpr uint16_t kSignificantBits = 0x0FFF;

uint64_t StrideOf(uint32_t width) {
  const uint64_t bytes = uint64_t{width} * 2;
  return bytes + (bytes & 3);
}

uint16_t Difference(uint16_t a, uint16_t b) { return static_cast<uint16_t>(std::max(a, b) - b); }

void SubtractRow(uint16_t* __restrict pixels, const uint16_t* __restrict other, size_t count) {
  size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    for (size_t k = 0; k < kBlock; ++k) pixels[i + k] = Difference(pixels[i + k], other[i + k]);
  }
  for (; i < count; ++i) pixels[i] = Difference(pixels[i], other[i]);
}

void SubtractRow(uint16_t* pixels, const uint16_t* other, int32_t bias, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const int64_t difference = int64_t{pixels[i]} - other[i] + bias;
    pixels[i] = static_cast<uint16_t>(std::clamp<int64_t>(difference, 0, 0xFFFF));
  }
}

}  // namespace

Held<SensorImage> NewSensorImage() {
  auto* const image = new (std::nothrow) SensorImage;
  if (image != nullptr) image->AddRef();
  return Held<SensorImage>(image);
}

Result SensorImage::QueryInterface(const InterfaceId& id, void** object) {
  if (object == nullptr) return kUnexpected;
  *object = nullptr;
  if (id != kUnknownInterface && id != kSensorImageInterface) return kNoInterface;
  AddRef();
  *object = this;
  return kOk;
}

uint32_t SensorImage::AddRef() { return ++references_; }

uint32_t SensorImage::Release() {
  if (references_ == 0) return 0;
  const uint32_t left = --references_;
  if (left == 0) delete this;
  return left;
}

bool SensorImage::Allocate(uint32_t width, uint32_t height, uint32_t dpiX, uint32_t dpiY) {
  Free();
  const uint64_t stride = StrideOf(width);
  constexpr uint64_t kMostBytes = std::min<uint64_t>(UINT32_MAX, PTRDIFF_MAX);
  if (stride > kMostBytes || (stride != 0 && height > kMostBytes / stride)) return false;
  data_.reset(new (std::nothrow) uint16_t[static_cast<size_t>(stride * height / 2)]);
  if (data_ == nullptr) return false;
  width_ = width;
  height_ = height;
  stride_ = static_cast<uint32_t>(stride);
  dpiX_ = dpiX;
  dpiY_ = dpiY;
  return true;
}

bool SensorImage::Create(uint32_t width, uint32_t height, uint32_t dpiX, uint32_t dpiY) {
  if (!Allocate(width, height, dpiX, dpiY)) return false;
  std::fill_n(data_.get(), SampleCount(), uint16_t{0});
  return true;
}

void SensorImage::Free() {
  data_.reset();
  width_ = height_ = stride_ = 0;
  dpiX_ = dpiY_ = 0;
}

uint32_t SensorImage::GetWidth() const { return width_; }
uint32_t SensorImage::GetHeight() const { return height_; }
uint32_t SensorImage::GetDpiX() const { return dpiX_; }
uint32_t SensorImage::GetDpiY() const { return dpiY_; }
uint32_t SensorImage::GetStride() const { return stride_; }
uint16_t* SensorImage::GetData() { return data_.get(); }

uint16_t SensorImage::GetPixel(uint32_t x, uint32_t y) const {
  return x < width_ && y < height_ ? Row(y)[x] : uint16_t{0};
}

void SensorImage::SetPixel(uint32_t x, uint32_t y, uint16_t value) {
  if (x < width_ && y < height_) Row(y)[x] = value;
}

Held<SensorImage> SensorImage::Clone() const {
  Held<SensorImage> clone = NewSensorImage();
  if (clone == nullptr || !clone->Allocate(width_, height_, dpiX_, dpiY_)) return nullptr;
  std::copy_n(data_.get(), SampleCount(), clone->data_.get());
  return clone;
}

Held<SensorImage> SensorImage::Crop(int32_t left, int32_t right, int32_t top,
                                    int32_t bottom) const {
  Held<SensorImage> part = Clone();
  if (part == nullptr || !part->CropInPlace(left, right, top, bottom)) return nullptr;
  return part;
}

bool SensorImage::CropInPlace(int32_t left, int32_t right, int32_t top, int32_t bottom) {
  const int64_t width = int64_t{width_} - left - right;
  const int64_t height = int64_t{height_} - top - bottom;
  if (std::min({left, right, top, bottom}) < 0 || width <= 0 || height <= 0) return false;
  const uint32_t rowPixels = GetRowPixels();
  const uint16_t* source = Row(static_cast<uint32_t>(top)) + left;
  width_ = static_cast<uint32_t>(width);
  height_ = static_cast<uint32_t>(height);
  stride_ = static_cast<uint32_t>(StrideOf(width_));
  for (uint32_t y = 0; y < height_; ++y, source += rowPixels) {
    uint16_t* const target = Row(y);
    std::memmove(target, source, size_t{width_} * sizeof(uint16_t));
    std::fill(target + width_, target + GetRowPixels(), uint16_t{0});
  }
  return true;
}

void SensorImage::MaskPixels() {
  const size_t count = SampleCount();
  uint16_t* const samples = data_.get();
  size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    for (size_t k = 0; k < kBlock; ++k) samples[i + k] &= kSignificantBits;
  }
  for (; i < count; ++i) samples[i] &= kSignificantBits;
}

void SensorImage::Subtract(const SensorImage& other, int32_t bias) {
  if (other.width_ != width_ || other.height_ != height_) return;
  for (uint32_t y = 0; y < height_; ++y) {
    if (bias == 0) {
      SubtractRow(Row(y), other.Row(y), width_);
    } else {
      SubtractRow(Row(y), other.Row(y), bias, width_);
    }
  }
}

void SensorImage::FillCorners(uint32_t cornerWidth, uint32_t cornerHeight, uint16_t value) {
  for (uint32_t y = 0; y < std::min(cornerHeight, height_); ++y) {
    for (uint32_t x = 0; x < std::min(cornerWidth, width_); ++x) {
      if (uint64_t{x} * cornerHeight / cornerWidth + y > cornerHeight) continue;
      SetPixel(x, y, value);
      SetPixel(width_ - 1 - x, y, value);
      SetPixel(x, height_ - 1 - y, value);
      SetPixel(width_ - 1 - x, height_ - 1 - y, value);
    }
  }
}

}  // namespace zyr
