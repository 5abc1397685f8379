#include "imaging/image/deep_image.h"

#include <cstring>
#include <new>
#include <utility>

#include "foundation/support/phrase_lookup.h"
#include "imaging/image/resolution.h"

namespace zyr {
namespace {

constexpr const char* kInvalidParameter = PhraseKey("Invalid image parameter specified.");
constexpr const char* kOutOfMemory = PhraseKey("Out of memory.");

}  // namespace

CKIPDeepImage::~CKIPDeepImage() { ReleasePixels(); }

void CKIPDeepImage::ReleasePixels() {
  if (owned_) std::free(pixels_);
  pixels_ = nullptr;
}

bool CKIPDeepImage::IsValid() const {
  return pixels_ != nullptr && width_ != 0 && height_ != 0 && width_ <= stride_ && bits_ >= 1 &&
         bits_ <= 16;
}

void CKIPDeepImage::Clear() {
  ReleasePixels();
  width_ = stride_ = height_ = 0;
  xResolution_ = yResolution_ = 0;
  bits_ = 0;
  owned_ = true;
  extra.Release();
}

bool CKIPDeepImage::CopyFrom(const CKIPDeepImage* source, bool copyPixels) {
  if (source == nullptr) {
    message_ = GetPhrase(kInvalidParameter);
    return false;
  }
  if (source == this) return true;
  if (!Create(source->width_, source->height_, source->stride_, source->bits_, source->xResolution_,
              source->yResolution_)) {
    return false;
  }
  if (copyPixels) CopyPixelsFrom(*source);
  return true;
}

void CKIPDeepImage::Attach(uint16_t* buffer, uint32_t width, uint32_t height, uint32_t stride,
                           uint32_t bits, bool owned) {
  if (buffer != pixels_) ReleasePixels();
  pixels_ = buffer;
  width_ = width;
  stride_ = stride;
  height_ = height;
  xResolution_ = yResolution_ = 0;
  bits_ = bits;
  owned_ = owned;
}

bool CKIPDeepImage::Create(uint32_t width, uint32_t height, uint32_t stride, uint32_t bits,
                           uint32_t xResolution, uint32_t yResolution) {
  if (width == 0 || height == 0 || width > stride || bits < 1 || bits > 16) {
    message_ = GetPhrase(kInvalidParameter);
    return false;
  }
  // Sizes are counted in 32 bits everywhere.
  const uint64_t samples = uint64_t{height} * stride;
  const bool countable = samples <= UINT32_MAX / sizeof(uint16_t);
  ReleasePixels();
  if (countable) pixels_ = static_cast<uint16_t*>(std::malloc(samples * sizeof(uint16_t)));
  owned_ = true;
  width_ = width;
  stride_ = stride;
  height_ = height;
  xResolution_ = xResolution;
  yResolution_ = yResolution;
  bits_ = bits;
  if (pixels_ == nullptr) message_ = GetPhrase(kOutOfMemory);
  return pixels_ != nullptr;
}

bool CKIPDeepImage::Create(uint32_t width, uint32_t height, uint32_t bits) {
  return Create(width, height, width, bits, 0, 0);
}

void CKIPDeepImage::TakeOver(CKIPDeepImage& source) {
  if (&source == this) return;
  ReleasePixels();
  pixels_ = std::exchange(source.pixels_, nullptr);
  width_ = std::exchange(source.width_, 0);
  stride_ = std::exchange(source.stride_, 0);
  height_ = std::exchange(source.height_, 0);
  xResolution_ = std::exchange(source.xResolution_, 0);
  yResolution_ = std::exchange(source.yResolution_, 0);
  bits_ = std::exchange(source.bits_, 0);
  owned_ = std::exchange(source.owned_, false);
  extra = std::move(source.extra);
}

void CKIPDeepImage::TakeExtra(CKIPDeepImage& source) { extra = std::move(source.extra); }

bool CKIPDeepImage::CopyPixelsFrom(const CKIPDeepImage& source) {
  const uint64_t samples = uint64_t{stride_} * height_;
  if (!IsValid() || !source.IsValid() || samples != uint64_t{source.stride_} * source.height_) {
    return false;
  }
  if (pixels_ != source.pixels_) std::memcpy(pixels_, source.pixels_, samples * sizeof(uint16_t));
  return true;
}

std::unique_ptr<CKIPDeepImage> CKIPDeepImage::Clone() const {
  std::unique_ptr<CKIPDeepImage> clone(new (std::nothrow) CKIPDeepImage);
  if (clone == nullptr || !IsValid() || !clone->CopyFrom(this, true)) return nullptr;
  return clone;
}

uint16_t* CKIPDeepImage::Detach() { return std::exchange(pixels_, nullptr); }

void CKIPDeepImage::GetSize(uint32_t* width, uint32_t* height) const {
  if (width != nullptr) *width = width_;
  if (height != nullptr) *height = height_;
}

void CKIPDeepImage::GetResolution(uint32_t* x, uint32_t* y) const {
  if (x != nullptr) *x = xResolution_;
  if (y != nullptr) *y = yResolution_;
}

uint32_t CKIPDeepImage::GetXResolutionPerMetre() const {
  return DotsPerInchToPerMetre(xResolution_);
}

uint32_t CKIPDeepImage::GetYResolutionPerMetre() const {
  return DotsPerInchToPerMetre(yResolution_);
}

void CKIPDeepImage::SetResolution(uint32_t x, uint32_t y) {
  xResolution_ = x;
  yResolution_ = y;
}

void CKIPDeepImage::SetResolutionPerMetre(uint32_t x, uint32_t y) {
  SetResolution(PerMetreToDotsPerInch(x), PerMetreToDotsPerInch(y));
}

}  // namespace zyr
