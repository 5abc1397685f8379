// The process-wide list of captured images. Each lives in a file too, so that what was captured and
// not returned is found again at the next start.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "acquire/image_cache/cached_image.h"
#include "platform/global_memory.h"

namespace zyr {

// Owns its images, in order of capture. Application's thread only.
class ImageCache {
 public:
  // Takes over the packed bitmap `imageHandle` and frees it. Null for a null or unusable handle.
  // The new image is in memory only, until it is saved. May show a warning about drive space; null
  // as well if the user deletes the image while the warning stands.
  CachedImage* AddFromHandle(const std::string& sensorName, platform::GlobalHandle imageHandle,
                             uint32_t captureTime, uint32_t frameNumber,
                             const std::string& sensorId);
  // Adds what the folder holds and the list does not, and forgets images whose files are gone.
  // Files that are no cache files stay where they are.
  void LoadAll();

  // The first selected image, the first of all if none is selected, null if there is none.
  CachedImage* GetCurrent() const;
  // Of an image in the list, for whoever has to know it again: whoever holds more than a weak
  // pointer keeps it alive after its removal. Null for any other address.
  std::shared_ptr<CachedImage> Share(const CachedImage* image) const;
  size_t CountSelected() const;
  bool AnySelected() const;
  size_t GetCount() const { return images_.size(); }
  CachedImage* GetAt(size_t index) const;  // null past the end
  void SetSelected(size_t index, bool flag);

  // Takes the image out of the list and deletes it with its files.
  void Remove(const CachedImage* image);
  void DeleteSelected();
  // Empties the list and deletes every cache file in the folder, with its preview.
  void DeleteAll();

  bool ContainsFile(const std::string& path) const;
  void EnsurePreviews();

  // Saves what is not on disk: images whose saving failed, and those in memory whose folder has gone.
  void SaveRemaining();
  // Lets go of what can be had again from disk: all but the newest images' pixels, of which so many
  // stay as belong to a long session, and all previews but the newest one.
  void LimitMemory();

  // Lines for the status panel, from the newest image.
  std::string DescribeLast() const;
  std::string DescribeLastSensor() const;

 private:
  using List = std::vector<std::shared_ptr<CachedImage>>;
  using NameSet = std::unordered_set<std::string>;

  List::const_iterator Find(const CachedImage* image) const;
  NameSet KnownNames() const;  // of the files, in small letters
  std::string NewFileName() const;
  void CheckDriveSpace();
  void NoticeLostFolders();

  List images_;
  bool warnedOfDriveSpace_ = false;
};

// The one cache of the process, constructed at first use.
ImageCache& Images();

}  // namespace zyr
