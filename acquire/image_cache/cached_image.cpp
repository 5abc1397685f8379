#include "acquire/image_cache/cached_image.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

#include "foundation/support/files.h"
#include "imaging/formats/jpeg.h"
#include "imaging/operations/geometry/flip.h"
#include "platform/files.h"

namespace zyr {
namespace {

constexpr uint32_t kPreviewQuality = 50;

// Names that others may take between our look and our move.
constexpr int kMostNames = 100;

// A picture whose writing was cut off would load all the same, with a grey rest.
bool IsWholeJpeg(const std::string& path) {
  constexpr uint8_t kEndOfImage[] = {0xFF, 0xD9};
  uint8_t last[sizeof kEndOfImage] = {};
  BufferedFile file;
  return file.OpenRead(path) && file.Seek(file.Length() - int64_t{sizeof last}) &&
         file.Read(last, sizeof last) == sizeof last &&
         std::equal(std::begin(last), std::end(last), kEndOfImage);
}

// A name in the image's folder under which nothing is found yet.
std::string UnfinishedName(const std::string& path) {
  const std::string name = FileNameOf(path);
  return UniqueFileName(DirectoryOf(path), name.substr(0, name.find_last_of('.')),
                        kUnfinishedExtension);
}

}  // namespace

bool CachedImage::Load(const std::string& path) {
  BufferedFile file(kCacheFileBuffer);
  std::optional<ImageDescription> description = OpenCacheFile(file, path);
  if (!description) return false;
  static_cast<ImageDescription&>(*this) = *std::move(description);
  fileName = path;
  image8.reset();
  preview.reset();
  pixels_ = {};
  ownsFile_ = stored_ = true;
  rowsTopDown_ = false;
  return true;
}

std::string CachedImage::PreviewFileName() const {
  return WithExtension(fileName, kPreviewExtension);
}

std::span<const uint8_t> CachedImage::PixelData() {
  if (pixels_.empty() && stored_ && !ReadPixels()) pixels_ = {};
  if (pixels_.empty() || pixels_.size() != PixelDataSize()) return {};
  return pixels_;
}

bool CachedImage::HasPixels() const { return HasPixelsInMemory() || IsStillThere(); }

bool CachedImage::IsStillThere() const { return stored_ ? OwnsItsFile() : !pixels_.empty(); }

// Another process may have returned this image and put a new one under its name: what belongs to
// one patient must not be shown, overwritten or deleted as another's.
bool CachedImage::OwnsItsFile() const { return ownsFile_ && FileIsOfThisCapture(); }

bool CachedImage::FileIsOfThisCapture() const {
  BufferedFile file(kCacheFileBuffer);
  const std::optional<ImageDescription> found = OpenCacheFile(file, fileName);
  return found && found->IsSameCapture(*this);
}

bool CachedImage::ReadPixels() try {
  BufferedFile file(kCacheFileBuffer);
  const std::optional<ImageDescription> description = OpenCacheFile(file, fileName);
  if (!description || *description != *this) return false;
  pixels_.resize(PixelDataSize());
  if (file.Read(pixels_.data(), pixels_.size()) != static_cast<int64_t>(pixels_.size())) {
    return false;
  }
  if (rowsTopDown_) FlipRows(pixels_.data(), RowBytes(), height);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

void CachedImage::SetPixelData(std::vector<uint8_t> pixels) {
  pixels_ = std::move(pixels);
  image8.reset();
  preview.reset();
  stored_ = false;
}

std::unique_ptr<CachedImage> CachedImage::Clone() {
  const std::span<const uint8_t> pixels = PixelData();
  if (pixels.empty()) return nullptr;
  auto clone = std::make_unique<CachedImage>();
  static_cast<ImageDescription&>(*clone) = *this;
  clone->pixels_.assign(pixels.begin(), pixels.end());
  if (rowsTopDown_) FlipRows(clone->pixels_.data(), RowBytes(), height);
  return clone;
}

bool CachedImage::TakeContents(CachedImage& edited) {
  if (edited.PixelData().empty()) return false;
  if (edited.rowsTopDown_ != rowsTopDown_) {
    FlipRows(edited.pixels_.data(), edited.RowBytes(), edited.height);
  }
  bitsPerPixel = edited.bitsPerPixel;
  width = edited.width;
  height = edited.height;
  xResolution = edited.xResolution;
  yResolution = edited.yResolution;
  SetPixelData(std::exchange(edited.pixels_, {}));
  return true;
}

void CachedImage::DropPixels() {
  if (!stored_) return;
  pixels_ = {};
  image8.reset();
}

void CachedImage::TurnTopDown() {
  image8.reset();
  preview.reset();
  if (rowsTopDown_) return;
  if (pixels_.size() == PixelDataSize()) FlipRows(pixels_.data(), RowBytes(), height);
  rowsTopDown_ = true;
}

bool CachedImage::Save() {
  if (PixelData().empty() || !IsStorable(*this)) return false;
  CheckOwnership();
  if (!StoreFile()) return false;
  ownsFile_ = true;
  const bool pixelsAreOld = std::exchange(stored_, true);
  if (pixelsAreOld && FileExists(PreviewFileName())) return true;
  if (preview != nullptr || MakePreview()) StorePreview();
  return true;
}

// A drive that was away may have come back, with the file on it: another one would be found as
// another image.
void CachedImage::CheckOwnership() {
  if (ownsFile_ && !FileIsOfThisCapture()) ForgetFile();
  if (fileWasLost_ && FileIsOfThisCapture()) {
    ownsFile_ = true;
    fileWasLost_ = false;
  }
}

void CachedImage::ForgetFile() {
  fileWasLost_ = fileWasLost_ || ownsFile_;
  ownsFile_ = stored_ = false;
}

// Under another name first, and then in one step under its own.
bool CachedImage::StoreFile() {
  CreateDirectories(DirectoryOf(fileName));
  ClaimName();
  const std::string unfinished = UnfinishedName(fileName);
  const RowOrder order = rowsTopDown_ ? RowOrder::kReversed : RowOrder::kAsStored;
  if (!WriteCacheFile(unfinished, *this, pixels_, order)) return false;
  for (int i = 0; i < kMostNames; ++i) {
    if (platform::MoveFileTo(unfinished, fileName, ownsFile_)) return true;
    if (ownsFile_ || !FileExists(fileName)) break;
    ClaimName();
  }
  platform::RemoveFile(unfinished);
  return false;
}

// Sees to it that neither another image's file nor a preview of other pixels stands under this
// image's name. A preview whose image is gone belongs to nobody.
void CachedImage::ClaimName() {
  if (ownsFile_) {
    if (!stored_) platform::RemoveFile(PreviewFileName());
    return;
  }
  const auto isTaken = [](const std::string& path, void*) {
    const std::string previewName = WithExtension(path, kPreviewExtension);
    return FileExists(path) || (FileExists(previewName) && !platform::RemoveFile(previewName));
  };
  if (!isTaken(fileName, nullptr)) return;
  fileName =
      UniqueFileName(DirectoryOf(fileName), kCacheFileBaseName, kCacheFileExtension, isTaken);
}

void CachedImage::RemoveFiles() {
  if (OwnsItsFile()) {
    platform::RemoveFile(fileName);
    platform::RemoveFile(PreviewFileName());
  }
  ForgetFile();
}

bool CachedImage::EnsurePreview() {
  if (preview != nullptr || (stored_ && OwnsItsFile() && LoadPreview())) return true;
  if (!MakePreview()) return false;
  if (stored_) StorePreview();
  return true;
}

// What stands in the file may be damaged, or the preview of something else.
bool CachedImage::LoadPreview() {
  if (!IsWholeJpeg(PreviewFileName())) return false;
  auto image = std::make_unique<CKIPImage>();
  if (!CKIPJpegLoader().Load(PreviewFileName(), image.get(), nullptr)) return false;
  if (image->width() != width || image->height() != height || !image->IsGrey()) return false;
  preview = std::move(image);
  return true;
}

bool CachedImage::MakePreview() {
  const CKIPImage* prepared = PrepareImage();
  if (prepared == nullptr) return false;
  preview = rowsTopDown_ ? FlipVertical(prepared, nullptr) : prepared->Clone(true);
  return preview != nullptr;
}

void CachedImage::StorePreview() {
  const std::string unfinished = UnfinishedName(fileName);
  if (!CKIPJpegSaver().Save(unfinished, preview.get(), kPreviewQuality, nullptr) ||
      !platform::MoveFileTo(unfinished, PreviewFileName(), true)) {
    platform::RemoveFile(unfinished);
  }
}

}  // namespace zyr
