#include <algorithm>

#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "settings/pages/page_makers.h"
#include "settings/store.h"

namespace zyr {
namespace {

enum : uint32_t { kPath = 1 };

bool IsSamePath(std::string a, std::string b) {
  for (std::string* path : {&a, &b}) {
    std::replace(path->begin(), path->end(), '/', '\\');
    path->erase(path->find_last_not_of('\\') + 1);
  }
  return EqualIgnoringCase(a, b);
}

// Tries it: a drive without its medium and a folder that is read-only say so only then.
bool CanHoldImages(const std::string& directory) {
  if (!CreateDirectories(directory)) return false;
  const std::string probe = UniqueFileName(directory, "ZYRTest", "tmp");
  const int handle = platform::OpenFile(probe, platform::OpenMode::kCreateNew);
  if (handle < 0) return false;
  platform::CloseFile(handle);
  platform::RemoveFile(probe);
  return true;
}

class CPrefPage_TWAINScanToLoc : public CPrefPage {
 public:
  explicit CPrefPage_TWAINScanToLoc(OptionsServices& services) : services_(services) {}

  std::string Title() const override { return GetPhrase("TWAIN Scan To Location"); }

  std::vector<PageField> Fields() const override {
    return {{kPath, FieldKind::kPicked, PhraseKey("Acquired images are kept in this directory:")}};
  }

  void OnInitPage() override {
    stored_ = TrimmedText(GetScanToPath());
    controls().SetText(kPath, stored_);
  }

  void OnButton(uint32_t field) override {
    if (field != kPath) return;
    const auto chosen = services_.SelectDirectory(controls().Text(kPath), controls().window());
    if (chosen) controls().SetText(kPath, *chosen);
  }

 protected:
  bool Apply() override {
    const std::string path(TrimmedText(controls().Text(kPath)));
    if (services_.CachedImageCount() == 0) {
      if (!CanHoldImages(path)) return RefuseUnusable(path);
    } else if (!IsSamePath(path, stored_)) {
      return RefuseWithImages();
    }
    const bool saved = SetScanToPath(path);
    if (saved) stored_ = path;
    return TellUnlessSaved(saved, Scope::kTwain);
  }

 private:
  bool RefuseUnusable(const std::string& path) const {
    const std::string format = GetFormatPhrase(
        "No images can be saved in the directory '%s'.  Please select another directory.");
    return Refuse(FormatText(format.c_str(), path.c_str()),
                  GetPhrase("Invalid Drive/Path Specified"));
  }

  bool RefuseWithImages() const {
    return Refuse(
        GetPhrase("ERROR.  You cannot change the location of the image cache while there are still "
                  "images saved in the cache.  Please delete all cached images before changing "
                  "this option."),
        GetPhrase("Cannot Change Cache Directory"));
  }

  OptionsServices& services_;
  std::string stored_;
};

}  // namespace

std::unique_ptr<CPrefPage> MakeScanToPage(OptionsServices& services, const std::string&) {
  return std::make_unique<CPrefPage_TWAINScanToLoc>(services);
}

}  // namespace zyr
