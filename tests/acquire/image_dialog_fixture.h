// Runs the image dialog without windows.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/acquire/acquire_test.h"
#include "tests/acquire/recorded_image_view.h"

namespace zyr::test {

inline std::unique_ptr<CachedImage> Copy(const ImageDescription& description,
                                         const std::vector<uint8_t>& pixels) {
  auto image = std::make_unique<CachedImage>();
  static_cast<ImageDescription&>(*image) = description;
  image->SetPixelData(pixels);
  return image;
}

// A cache with one image, which stands on disk.
class ImageDialogTest : public AcquireTest {
 protected:
  CachedImage* Put(uint32_t width, uint32_t height, uint32_t bits) {
    const auto image = NewImage(width, height, bits);
    image->fileName = std::string(kFolder) + "\\CACHEDRAW" + std::to_string(++count_) + ".RAW";
    image->captureTime += static_cast<uint32_t>(count_);
    image->SetPixelData(PixelsOf(*image));
    EXPECT_TRUE(image->Save());
    images_.LoadAll();
    return images_.GetAt(images_.GetCount() - 1);
  }

  // Shows the image, lets the user act and end it. What Run returned.
  bool Show(CachedImage* image, std::function<void(ImageDialog& dialog)> user) {
    ImageDialog dialog(view_, images_);
    view_.user = std::move(user);
    EXPECT_TRUE(dialog.SetImage(image));
    const bool result = dialog.Run(nullptr);
    EXPECT_EQ(view_.control.displayImage(), nullptr);
    return result;
  }

  ImageCache images_;
  RecordedImageView view_;

 private:
  int count_ = 0;
};

}  // namespace zyr::test
