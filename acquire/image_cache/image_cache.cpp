#include "acquire/image_cache/image_cache.h"

#include <algorithm>
#include <cstring>
#include <tuple>
#include <utility>

#include "acquire/image_cache/captured_pixels.h"
#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/ascii.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/progress_window.h"
#include "platform/prompt.h"
#include "settings/store.h"

namespace zyr {
namespace {

constexpr uint64_t kAmpleDriveSpace = 52'428'800;
constexpr uint64_t kScarceDriveSpace = 26'214'400;

// Bytes of pixels: some thirty of the largest images, in an address space that may be of 2 GB.
constexpr size_t kMostInMemory = 128 << 20;

// Of a file that is still being written nobody has seen the last change for so long, in seconds.
constexpr int64_t kAbandonedAfter = 3600;

std::string Pattern(const char* extension) {
  return FormatText("%s*.%s", kCacheFileBaseName, extension);
}

// Full paths.
std::vector<std::string> FilesOf(const std::string& folder, const char* extension) {
  std::vector<std::string> paths = platform::ListFiles(folder, Pattern(extension));
  for (std::string& path : paths) path = folder + "\\" + path;
  return paths;
}

// What a crash left behind half written.
void RemoveAbandonedFiles(const std::string& folder) {
  for (const std::string& path : FilesOf(folder, kUnfinishedExtension)) {
    const auto status = platform::StatusOf(path);
    if (status && platform::Now() - status->modifiedTime > kAbandonedAfter) {
      platform::RemoveFile(path);
    }
  }
}

bool IsOlder(const std::shared_ptr<CachedImage>& a, const std::shared_ptr<CachedImage>& b) {
  return std::tie(a->captureTime, a->frameNumber) < std::tie(b->captureTime, b->frameNumber);
}

void WarnOfDriveSpace(const char* format, uint32_t megs) {
  platform::ShowPrompt(nullptr, FormatText(GetFormatPhrase(format).c_str(), Lu(megs)),
                       GetPhrase("Drive Space Warning!"), platform::PromptKind::kWarning);
}

}  // namespace

CachedImage* ImageCache::AddFromHandle(const std::string& sensorName,
                                       platform::GlobalHandle imageHandle, uint32_t captureTime,
                                       uint32_t frameNumber, const std::string& sensorId) {
  NoticeLostFolders();  // before the folder is made anew
  if (imageHandle == nullptr) return nullptr;
  std::unique_ptr<void, void (*)(platform::GlobalHandle)> owned(imageHandle, platform::FreeBlock);
  auto image = std::make_shared<CachedImage>();
  image->isZyr303 = std::strstr(sensorName.c_str(), "2000") == nullptr;
  image->captureTime = captureTime;
  image->frameNumber = frameNumber;
  image->sensorId = sensorId;
  if (!TakeCapturedPixels(imageHandle, image.get())) return nullptr;
  owned.reset();
  image->fileName = NewFileName();

  const CachedImage* added = images_.emplace_back(std::move(image)).get();
  CheckDriveSpace();  // while the warning stands, the user may delete images
  const auto found = Find(added);
  return found == images_.end() ? nullptr : found->get();
}

void ImageCache::LoadAll() {
  NoticeLostFolders();
  platform::ProgressWindow progress(GetPhrase("Loading cached images"));
  const std::string folder = GetScanToPath();
  RemoveAbandonedFiles(folder);
  std::erase_if(images_, [](const auto& image) { return !image->IsStillThere(); });
  const std::vector<std::string> paths = FilesOf(folder, kCacheFileExtension);
  const NameSet known = KnownNames();
  for (size_t i = 0; i < paths.size(); ++i) {
    progress.Advance(static_cast<double>(i) / static_cast<double>(paths.size()));
    if (known.contains(LowerAscii(paths[i]))) continue;
    auto image = std::make_shared<CachedImage>();
    if (image->Load(paths[i])) images_.push_back(std::move(image));
  }
  std::stable_sort(images_.begin(), images_.end(), IsOlder);
}

CachedImage* ImageCache::GetCurrent() const {
  const auto selected = std::find_if(images_.begin(), images_.end(),
                                     [](const auto& image) { return image->selected; });
  return selected != images_.end() ? selected->get() : GetAt(0);
}

size_t ImageCache::CountSelected() const {
  return static_cast<size_t>(std::count_if(images_.begin(), images_.end(),
                                           [](const auto& image) { return image->selected; }));
}

bool ImageCache::AnySelected() const { return CountSelected() != 0; }

CachedImage* ImageCache::GetAt(size_t index) const {
  return index < images_.size() ? images_[index].get() : nullptr;
}

void ImageCache::SetSelected(size_t index, bool flag) {
  if (CachedImage* image = GetAt(index)) image->selected = flag;
}

ImageCache::List::const_iterator ImageCache::Find(const CachedImage* image) const {
  return std::find_if(images_.begin(), images_.end(),
                      [=](const auto& candidate) { return candidate.get() == image; });
}

std::shared_ptr<CachedImage> ImageCache::Share(const CachedImage* image) const {
  const auto found = Find(image);
  return found == images_.end() ? nullptr : *found;
}

void ImageCache::Remove(const CachedImage* image) {
  const auto found = Find(image);
  if (found == images_.end()) return;
  const std::shared_ptr<CachedImage> removed = *found;
  images_.erase(found);
  removed->RemoveFiles();
}

void ImageCache::DeleteSelected() {
  for (size_t i = images_.size(); i-- > 0;) {
    if (images_[i]->selected) Remove(images_[i].get());
  }
}

void ImageCache::DeleteAll() {
  List images;
  images.swap(images_);
  for (const auto& image : images) image->RemoveFiles();
  const std::string folder = GetScanToPath();
  for (const std::string& path : FilesOf(folder, kCacheFileExtension)) {
    platform::RemoveFile(path);
    platform::RemoveFile(WithExtension(path, kPreviewExtension));
  }
  RemoveAbandonedFiles(folder);
}

bool ImageCache::ContainsFile(const std::string& path) const {
  return std::any_of(images_.begin(), images_.end(),
                     [&](const auto& image) { return EqualIgnoringCase(image->fileName, path); });
}

void ImageCache::NoticeLostFolders() {
  for (const auto& image : images_) {
    if (image->IsSaved() && !DirectoryExists(DirectoryOf(image->fileName))) image->ForgetFile();
  }
}

void ImageCache::SaveRemaining() {
  NoticeLostFolders();
  for (size_t i = 0; i < images_.size(); ++i) {
    if (!images_[i]->IsSaved()) images_[i]->Save();
  }
}

void ImageCache::LimitMemory() {
  size_t inMemory = 0;
  for (auto image = images_.rbegin(); image != images_.rend(); ++image) {
    if ((*image)->HasPixelsInMemory()) inMemory += (*image)->PixelDataSize();
    if (inMemory > kMostInMemory) (*image)->DropPixels();
    if (image == images_.rbegin()) continue;
    (*image)->image8.reset();
    (*image)->preview.reset();
  }
}

void ImageCache::EnsurePreviews() {
  for (const auto& image : images_) {
    if (image->preview != nullptr) continue;
    image->EnsurePreview();
    image->DropPixels();
  }
}

std::string ImageCache::DescribeLast() const {
  if (images_.empty()) return {};
  const CachedImage& last = *images_.back();
  const std::string time = platform::LongDateTimeText(last.captureTime);
  return FormatText(GetFormatPhrase("Image #%lu   %s").c_str(), Lu(last.frameNumber),
                    time.c_str()) +
         "\n" +
         FormatText(GetFormatPhrase("Size: %lu pixels x %lu pixels  (%lu DPI x %lu DPI)").c_str(),
                    Lu(last.width), Lu(last.height), Lu(last.xResolution), Lu(last.yResolution)) +
         "\n" + FormatText(GetFormatPhrase("Bits-Per-Pixel: %lu").c_str(), Lu(last.bitsPerPixel)) +
         "\n";
}

std::string ImageCache::DescribeLastSensor() const {
  return images_.empty() ? std::string() : images_.back()->sensorId;
}

ImageCache::NameSet ImageCache::KnownNames() const {
  NameSet names;
  for (const auto& image : images_) names.insert(LowerAscii(image->fileName));
  return names;
}

// Images that are not saved yet have a name too.
std::string ImageCache::NewFileName() const {
  NameSet known = KnownNames();
  const auto isTaken = [](const std::string& path, void* names) {
    return static_cast<NameSet*>(names)->contains(LowerAscii(path)) || FileExists(path);
  };
  return UniqueFileName(GetScanToPath(), kCacheFileBaseName, kCacheFileExtension, isTaken, &known);
}

void ImageCache::CheckDriveSpace() {
  const std::optional<uint64_t> free = platform::FreeDriveSpace(GetScanToPath());
  if (!free || *free > kAmpleDriveSpace) return;
  if (*free <= kScarceDriveSpace) {
    WarnOfDriveSpace(PhraseKey("WARNING!  You are running low on drive space.  You have less than "
                               "%lu megs of space left "
                               "on your drive.  Please free up some drive space or select a "
                               "different caching drive and "
                               "directory."),
                     25);
  } else if (!std::exchange(warnedOfDriveSpace_, true)) {
    WarnOfDriveSpace(PhraseKey("WARNING!  You are starting to running low on drive space.  You "
                               "still have less than %lu "
                               "megs of space left on your drive. "),
                     50);
  }
}

ImageCache& Images() {
  static ImageCache images;
  return images;
}

}  // namespace zyr
