#include "settings/pages/options_dialog.h"

#include <optional>
#include <utility>

#include "foundation/support/phrase_lookup.h"
#include "foundation/support/raised_flag.h"
#include "settings/password/password_dialog.h"

namespace zyr {
namespace {

struct PageEntry {
  const char* className;
  const char* system = "";
};

struct GroupEntry {
  const char* title;
  const char* description;
  const char* head;
  std::vector<PageEntry> pages;
  bool needsPassword = false;
};

const std::vector<GroupEntry>& Groups() {
  static const std::vector<GroupEntry> groups = {
      {PhraseKey("ZYR TWAIN Options"),
       "",
       PhraseKey("These options permit you to change various aspects of the ZYR TWAIN source "
                 "interface in addition to modifying how images are acquired and returned from the "
                 "various digital x-ray systems."),
       {{"CPrefPage_TWAINOptions"},
        {"CPrefPage_TWAINScanToLoc"},
        {"CPrefPage_BitDepth"},
        {"CPrefPage_TWAINSettings"},
        {"CPrefPage_Language"}}},
      {PhraseKey("ZYR 2000 Digital Sensor"),
       PhraseKey("ZYR 2000 digital x-ray options and preferences."),
       PhraseKey("These options permit you to change how image are aquired from ZYR digital x-ray "
                 "systems"),
       {{"CPrefPage_SensorSelection"}, {"CPrefPage_ImageProcessing", "ZYR2000"}}},
      {PhraseKey("ZYR 303 Digital Sensor"),
       PhraseKey("ZYR 303 digital x-ray options and preferences."),
       PhraseKey("These options permit you to change how image are aquired from ZYR digital x-ray "
                 "systems"),
       {{"CPrefPage_SensorSelection"}, {"CPrefPage_ImageProcessing", "ZYR303"}}},
      {PhraseKey("ZYR Hardware Settings (Password Protected)"),
       PhraseKey("ZYR digital hardware options and preferences."),
       PhraseKey("These options permit you to change how the ZYR hardware functions and responds "
                 "to x-ray exposure"),
       {{"CPrefPage_HardwareControl", "ZYR2000"}, {"CPrefPage_HardwareControl", "ZYR303"}},
       true},
  };
  return groups;
}

}  // namespace

OptionsDialog::OptionsDialog(OptionsServices& services, OptionsDialogView& view)
    : services_(services), view_(view) {
  for (const GroupEntry& group : Groups()) {
    std::vector<size_t> numbers;
    for (const PageEntry& page : group.pages) {
      numbers.push_back(PageNumber(page.className, page.system));
    }
    places_.push_back(std::move(numbers));
  }
}

OptionsDialog::~OptionsDialog() = default;

size_t OptionsDialog::PageNumber(const char* className, const char* system) {
  const std::string key = std::string(className) + ' ' + system;
  for (size_t number = 0; number < pageKeys_.size(); ++number) {
    if (pageKeys_[number] == key) return number;
  }
  pages_.push_back(CreatePrefPage(className, services_, system));
  pageKeys_.push_back(key);
  return pages_.size() - 1;
}

bool OptionsDialog::Run(platform::Window owner) {
  isUnlocked_ = false;
  const bool accepted = view_.Run(this, owner);
  for (const auto& page : pages_) page->SetControls(nullptr);
  return accepted;
}

void OptionsDialog::OnInitDialog() {
  view_.SetTree(Tree());
  current_ = {};
  if (Show(current_)) view_.MarkInTree(current_.group, current_.page);
}

std::vector<OptionsTreeGroup> OptionsDialog::Tree() const {
  std::vector<OptionsTreeGroup> tree;
  for (size_t group = 0; group < places_.size(); ++group) {
    OptionsTreeGroup& entry = tree.emplace_back();
    entry.title = GetPhrase(Groups()[group].title);
    entry.description = GetPhrase(Groups()[group].description);
    for (size_t number : places_[group]) entry.pages.push_back(pages_[number]->Title());
  }
  return tree;
}

bool OptionsDialog::OnSelect(size_t group, size_t page) {
  if (!IsOpen() || group >= places_.size() || page >= places_[group].size()) return false;
  if (MayOpen(group) && Show({group, page})) return true;
  view_.MarkInTree(current_.group, current_.page);
  return false;
}

bool OptionsDialog::MayOpen(size_t group) {
  if (!Groups()[group].needsPassword || isUnlocked_) return true;
  if (isBusy_) return false;
  const RaisedFlag busy(isBusy_);
  const auto view = view_.MakePasswordDialogView();
  isUnlocked_ = PasswordDialog(*view).Run(view_.window());
  return isUnlocked_;
}

bool OptionsDialog::Show(const Place& place) {
  const size_t number = PageAt(place);
  CPrefPage& page = *pages_[number];
  if (!page.WasShown()) {
    page.SetControls(view_.MakePage(number, page.Title(), page.Fields()));
    if (!page.WasShown()) return false;
    try {
      page.OnInitPage();
    } catch (...) {  // what was not loaded must not be stored
      page.SetControls(nullptr);
      throw;
    }
  }
  const GroupEntry& group = Groups()[place.group];
  view_.SetHead(GetPhrase(group.title), GetPhrase(group.head));
  view_.ShowPage(number);
  current_ = place;
  return true;
}

CPrefPage* OptionsDialog::ShownPage(size_t page) const {
  if (!IsOpen() || page >= pages_.size() || !pages_[page]->WasShown()) return nullptr;
  return pages_[page].get();
}

void OptionsDialog::OnChanged(size_t page, uint32_t field) {
  if (CPrefPage* shown = ShownPage(page)) shown->OnChanged(field);
}

void OptionsDialog::OnButton(size_t page, uint32_t field) {
  CPrefPage* const shown = ShownPage(page);
  if (shown == nullptr || isBusy_) return;
  const RaisedFlag busy(isBusy_);
  shown->OnButton(field);
}

// What one page cannot keep need not keep the others from taking effect.
void OptionsDialog::OnOK() {
  if (isBusy_ || !IsOpen()) return;
  const RaisedFlag busy(isBusy_);
  std::optional<size_t> refused;  // the first one
  for (size_t page = 0; page < pages_.size(); ++page) {
    if (!pages_[page]->OnApply() && !refused) refused = page;
  }
  if (refused) return ShowRefused(*refused);
  view_.End(true);
}

void OptionsDialog::ShowRefused(size_t page) {
  if (!IsOpen()) return;
  const Place place = PlaceOf(page);
  if (Show(place)) view_.MarkInTree(place.group, place.page);
}

// Where it stands now, if it stands in more than one group.
OptionsDialog::Place OptionsDialog::PlaceOf(size_t page) const {
  if (PageAt(current_) == page) return current_;
  for (Place place{}; place.group < places_.size(); ++place.group) {
    const std::vector<size_t>& numbers = places_[place.group];
    for (place.page = 0; place.page < numbers.size(); ++place.page) {
      if (numbers[place.page] == page) return place;
    }
  }
  return current_;
}

void OptionsDialog::OnCancel() { view_.End(false); }

}  // namespace zyr
