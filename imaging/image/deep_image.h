// CKIPDeepImage: a grey image of 16-bit samples with a declared depth of 1 to 16 bits. It keeps the
// sensor's full precision.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "imaging/image/attached_block.h"

namespace zyr {

// Row-major, row 0 first; row 0 of an image made from sensor data is the bottom of the picture,
// like memory row 0 of a CKIPImage made from the same data. `stride` counts samples. Resolutions
// are dots per inch and may be 0. Pixels are malloc'd. Failures leave their text in LastMessage().
// No locks.
class CKIPDeepImage {
 public:
  CKIPDeepImage() = default;
  CKIPDeepImage(const CKIPDeepImage&) = delete;
  CKIPDeepImage& operator=(const CKIPDeepImage&) = delete;

  virtual ~CKIPDeepImage();
  virtual bool IsValid() const;
  virtual void Clear();
  virtual bool CopyFrom(const CKIPDeepImage* source, bool copyPixels);
  // Lays the image over a buffer without copying; with `owned` the image frees it. Resolution 0.
  virtual void Attach(uint16_t* buffer, uint32_t width, uint32_t height, uint32_t stride,
                      uint32_t bits, bool owned);
  // The pixels are left uninitialised.
  virtual bool Create(uint32_t width, uint32_t height, uint32_t stride, uint32_t bits,
                      uint32_t xResolution, uint32_t yResolution);
  virtual bool Create(uint32_t width, uint32_t height, uint32_t bits);
  // Moves everything out of `source`.
  virtual void TakeOver(CKIPDeepImage& source);
  virtual void TakeExtra(CKIPDeepImage& source);
  // Both must be valid and of the same stride times height.
  virtual bool CopyPixelsFrom(const CKIPDeepImage& source);
  virtual std::unique_ptr<CKIPDeepImage> Clone() const;
  // Hands the pixels to the caller, who frees them if the image owned them.
  virtual uint16_t* Detach();
  virtual void GetSize(uint32_t* width, uint32_t* height) const;
  virtual void GetResolution(uint32_t* x, uint32_t* y) const;
  virtual uint32_t GetWidth() const { return width_; }
  virtual uint32_t GetHeight() const { return height_; }
  virtual uint32_t GetXResolution() const { return xResolution_; }
  virtual uint32_t GetYResolution() const { return yResolution_; }
  virtual uint32_t GetXResolutionPerMetre() const;
  virtual uint32_t GetYResolutionPerMetre() const;
  virtual uint32_t GetStride() const { return stride_; }
  virtual uint32_t GetPadding() const { return stride_ - width_; }
  virtual uint32_t GetBits() const { return bits_; }
  // Meaningful for 1 to 16 bits.
  virtual uint32_t GetLevels() const { return 1u << (bits_ & 31); }
  // The brightest value.
  virtual uint32_t GetMask() const { return GetLevels() - 1; }
  virtual uint16_t* GetPixels() const { return pixels_; }
  virtual uint16_t* GetRow(uint32_t y) const { return pixels_ + size_t{y} * stride_; }
  virtual uint16_t* GetPixelPtr(uint32_t x, uint32_t y) const { return GetRow(y) + x; }
  virtual void SetResolution(uint32_t x, uint32_t y);
  virtual void SetResolutionPerMetre(uint32_t x, uint32_t y);
  virtual void SetBits(uint32_t bits) { bits_ = bits; }

  const std::string& LastMessage() const { return message_; }

  AttachedBlock extra;

 private:
  void ReleasePixels();

  uint16_t* pixels_ = nullptr;
  uint32_t width_ = 0;
  uint32_t stride_ = 0;
  uint32_t height_ = 0;
  uint32_t xResolution_ = 0;
  uint32_t yResolution_ = 0;
  uint32_t bits_ = 0;
  bool owned_ = true;
  std::string message_;
};

}  // namespace zyr
