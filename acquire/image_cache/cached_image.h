// One captured image: its description, its pixels in memory or on disk, and its delivery.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "acquire/image_cache/cache_file.h"
#include "imaging/image/image.h"
#include "platform/global_memory.h"

namespace zyr {

// What the application has negotiated, as far as the delivery of an image depends on it.
struct TransferTerms {
  // Traced, so asked when it is needed and no sooner.
  std::function<bool()> is16BitGrayscale = [] { return false; };
  uint16_t pixelFlavor = 0;      // 0 as it is, others inverted
  uint16_t imageFileFormat = 2;  // 0 TIFF, 2 BMP, others JPEG
};

// One strip of a memory transfer. The first three fields are the caller's, the others are filled
// in, also when the buffer turns out too small.
struct MemoryStrip {
  bool isPointer = false;  // otherwise `memory` is a handle of movable memory
  uint32_t length = 0;     // bytes
  void* memory = nullptr;
  uint16_t compression = 0;  // always none
  uint32_t bytesPerRow = 0;
  uint32_t columns = 0;  // pixels
  uint32_t rows = 0;
  uint32_t xOffset = 0;
  uint32_t yOffset = 0;
  uint32_t bytesWritten = 0;
};

// The pixels are a block of width x height pixels without row padding, 1 byte a pixel at 8 bits,
// otherwise 2, little-endian. A new image's rows run bottom-up, as they always do in its cache
// file; when it is prepared for return they are turned over, once. Pixels that stand on disk are
// read when they are asked for and can be dropped again. Application's thread only.
class CachedImage : public ImageDescription {
 public:
  CachedImage() = default;
  CachedImage(const CachedImage&) = delete;
  CachedImage& operator=(const CachedImage&) = delete;

  std::string fileName;  // full path of the cache file
  bool selected = false;
  std::unique_ptr<CKIPImage> image8;   // null until prepared
  std::unique_ptr<CKIPImage> preview;  // upright; null until made

  // Reads the description and makes sure that all the pixels are there, without reading them. False
  // if the file is no whole cache file; the image is then left as it was.
  bool Load(const std::string& path);
  // Writes the cache file, so that at every instant either the old one or the new one stands there
  // whole, and the preview file if there is none. True if all the pixels are on disk. An image
  // whose name somebody else has taken meanwhile gets another one. What stood on disk before a
  // failure is still there after it.
  bool Save();
  // Whether the present pixels were written, or read, when the disk was last used.
  bool IsSaved() const { return stored_; }
  // Deletes the cache file and the preview file, if they are this image's.
  void RemoveFiles();
  std::string PreviewFileName() const;

  // Empty if the pixels are neither in memory nor readable from disk, where another image may stand
  // by now. Valid until the pixels are replaced, turned over or dropped.
  std::span<const uint8_t> PixelData();
  // False once neither the memory nor the disk holds anything of the pixels.
  bool HasPixels() const;
  bool HasPixelsInMemory() const { return !pixels_.empty(); }
  // False once what was saved is no longer there, as after somebody else has returned the image; of
  // an image that was never saved, if it has no pixels.
  bool IsStillThere() const;
  // To be told when the whole folder has gone: what is in memory counts as unsaved.
  void ForgetFile();
  // The description must be right already; the new rows run in the same order as the old ones.
  void SetPixelData(std::vector<uint8_t> pixels);
  // The description and the pixels, rows bottom-up, in memory only and without a file. Null if the
  // pixels are not to be had. May throw std::bad_alloc.
  std::unique_ptr<CachedImage> Clone();
  // Size, depth, resolutions and pixels become those of `edited`, which has none afterwards; the
  // rows keep their order here. False, with nothing changed, if it has no pixels.
  bool TakeContents(CachedImage& edited);
  // Gives back the memory of everything that can be had again from disk.
  void DropPixels();

  // Drops the 8-bit image and the preview, and turns the rows over if they still run bottom-up.
  void TurnTopDown();
  bool rowsTopDown() const { return rowsTopDown_; }

  // Makes the preview: from its file, or else from the 8-bit form, and then writes the file.
  bool EnsurePreview();

  // The 8-bit form, memory rows in the order of the pixels; null if it cannot be made.
  CKIPImage* PrepareImage();
  // A packed bitmap in movable memory, the receiver's; null if it cannot be made.
  platform::GlobalHandle MakeNativeHandle(const TransferTerms& terms);
  // Writes the 8-bit form, upright.
  bool SaveToFile(const std::string& path, const TransferTerms& terms);
  // Copies as many rows from *yOffset on as fit, and advances *yOffset. Sets *done with the last
  // row if there is room to spare behind it; otherwise the next call sets it and copies nothing.
  // Fails without writing anything if the memory is not what it is said to be.
  bool CopyToMemoryBuffer(MemoryStrip* strip, const uint32_t* xOffset, uint32_t* yOffset,
                          bool* done, const TransferTerms& terms);

 private:
  bool OwnsItsFile() const;
  bool FileIsOfThisCapture() const;
  void CheckOwnership();
  bool ReadPixels();
  bool StoreFile();
  void ClaimName();
  bool LoadPreview();
  bool MakePreview();
  void StorePreview();
  std::unique_ptr<CKIPImage> MakeImage8() const;
  platform::GlobalHandle MakeDeepHandle();

  std::vector<uint8_t> pixels_;
  bool ownsFile_ = false;     // the cache file was this image's when it was last seen
  bool stored_ = false;       // and holds these pixels
  bool fileWasLost_ = false;  // it was this image's, and could not be found any more
  bool rowsTopDown_ = false;  // in memory
};

}  // namespace zyr
