// A frame as the sensor delivers it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "hardware/counted.h"
#include "hardware/result.h"

namespace zyr {

inline constexpr InterfaceId kSensorImageInterface{
    0x636ACF90, 0x5603, 0x40D2, {0xAE, 0x8D, 0x18, 0x01, 0x02, 0xF5, 0xEE, 0x93}};

// Pixels of 16 bits in the machine's order, the top row first; a device fills 12 of them. Reference
// counted, born with no reference: Release at 0 does nothing, so that an object in automatic
// storage that nobody adds a reference to never destroys itself. One thread.
class SensorImage {
 public:
  SensorImage() = default;
  SensorImage(const SensorImage&) = delete;
  SensorImage& operator=(const SensorImage&) = delete;

  virtual Result QueryInterface(const InterfaceId& id, void** object);
  virtual uint32_t AddRef();
  virtual uint32_t Release();
  // Frees what was there and makes an all-zero frame. False, and an empty frame, without memory or
  // for a size beyond 32 bits of bytes.
  virtual bool Create(uint32_t width, uint32_t height, uint32_t dpiX, uint32_t dpiY);
  virtual void Free();
  virtual uint32_t GetWidth() const;   // pixels
  virtual uint32_t GetHeight() const;  // pixels
  virtual uint32_t GetDpiX() const;
  virtual uint32_t GetDpiY() const;
  virtual uint32_t GetStride() const;  // bytes
  virtual uint16_t* GetData();
  virtual uint16_t GetPixel(uint32_t x, uint32_t y) const;        // 0 outside
  virtual void SetPixel(uint32_t x, uint32_t y, uint16_t value);  // nothing outside
  virtual ~SensorImage() = default;

  const uint16_t* data() const { return data_.get(); }
  const uint16_t* Row(uint32_t y) const { return data_.get() + size_t{y} * GetRowPixels(); }
  uint16_t* Row(uint32_t y) { return data_.get() + size_t{y} * GetRowPixels(); }
  // From one row to the next, padding included.
  uint32_t GetRowPixels() const { return stride_ / 2; }

  // New frames carry one reference, the caller's. Null without memory.
  Held<SensorImage> Clone() const;
  // What lies inside the margins, which may be negative or too large by a wrong configuration: null
  // then, as without memory.
  Held<SensorImage> Crop(int32_t left, int32_t right, int32_t top, int32_t bottom) const;
  // The same of this very frame. False, and the frame stays as it was, for such margins. Fresh
  // memory costs more time than all the arithmetic on a frame.
  bool CropInPlace(int32_t left, int32_t right, int32_t top, int32_t bottom);

  // Keeps the 12 bits that count.
  void MaskPixels();
  // pixel - other + bias, held within 16 bits. Nothing happens if the sizes differ.
  void Subtract(const SensorImage& other, int32_t bias);
  // Writes `value` into a right triangle with these legs (pixels) at each corner. What reaches
  // beyond the frame is left out.
  void FillCorners(uint32_t cornerWidth, uint32_t cornerHeight, uint16_t value);

 private:
  // Of a new frame, whose pixels are left uninitialised.
  bool Allocate(uint32_t width, uint32_t height, uint32_t dpiX, uint32_t dpiY);
  size_t SampleCount() const { return size_t{height_} * GetRowPixels(); }

  uint32_t references_ = 0;
  uint32_t width_ = 0;
  uint32_t height_ = 0;
  uint32_t stride_ = 0;
  std::unique_ptr<uint16_t[]> data_;
  uint32_t dpiX_ = 0;
  uint32_t dpiY_ = 0;
};

// An empty one with one reference, the caller's. Null without memory.
Held<SensorImage> NewSensorImage();

}  // namespace zyr
