// The image that a viewer was given, and what it shows instead.
#pragma once

#include <cstdint>
#include <memory>

#include "imaging/image/image.h"

namespace zyr {

// Shows the source or an image derived from it, of the same size. One thread.
class ViewerPicture {
 public:
  // Takes the place of the former image; one that is stored upside down is replaced by an upright
  // copy. Null, invalid and, where a copy is needed, no memory: there is no image then.
  void SetSource(const CKIPImage* image);  // stays the caller's and alive
  void SetSource(std::unique_ptr<CKIPImage> image);
  void Clear();

  const CKIPImage* source() const { return source_; }
  // Null without an image, and when a derived image could not be made.
  const CKIPImage* display() const { return showsSource_ ? source_ : derived_.get(); }

  void ShowSource();
  void ShowCopy();  // of the source
  // Null changes nothing.
  void Show(std::unique_ptr<CKIPImage> result);
  // A copy for the tools that need grey levels; a grey source does not change what is shown.
  void ShowGrey();

  // Always of the source: steps of a drag do not add up. Of a grey one only the palette of a copy
  // is changed, which starts as the plain grey one whatever the source's own is.
  void AdjustBrightnessContrast(int32_t brightness, int32_t contrast);
  // 0 shows the source as it is.
  void AdjustGamma(double gamma);

 private:
  // The copy of a grey source with the plain grey palette, made if none is shown; null without
  // memory.
  CKIPImage* GreyCopy();

  std::unique_ptr<CKIPImage> owned_;
  const CKIPImage* source_ = nullptr;
  std::unique_ptr<CKIPImage> derived_;
  bool sourceIsGrey_ = false;
  bool showsSource_ = true;
  bool derivedHasSourcePixels_ = false;
};

}  // namespace zyr
