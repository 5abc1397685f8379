// OptionsDialog: the window in which the user changes the settings, page by page.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "settings/pages/options_dialog_view.h"
#include "settings/pages/options_services.h"
#include "settings/pages/pref_page.h"

namespace zyr {

// User-interface thread only. Its window may go at any time, also while a page or the password
// dialog asks the user something; events that come after that do nothing.
class OptionsDialog {
 public:
  // Both must outlive this object.
  OptionsDialog(OptionsServices& services, OptionsDialogView& view);
  ~OptionsDialog();
  OptionsDialog(const OptionsDialog&) = delete;
  OptionsDialog& operator=(const OptionsDialog&) = delete;

  // Modal. True if the user has accepted and all pages that were shown are stored.
  bool Run(platform::Window owner);

  // Events of the view. Pages go by the number that MakePage was given.
  void OnInitDialog();
  // False if the group stays closed; what was shown before stays, and is marked in the tree again.
  bool OnSelect(size_t group, size_t page);
  void OnChanged(size_t page, uint32_t field);
  void OnButton(size_t page, uint32_t field);
  void OnOK();
  void OnCancel();

 private:
  // A page as it stands in the tree.
  struct Place {
    size_t group;
    size_t page;
    bool operator==(const Place& other) const = default;
  };

  bool IsOpen() const { return platform::IsWindowAlive(view_.window()); }
  // Number of the page, which is made if there is none of that class and system yet.
  size_t PageNumber(const char* className, const char* system);
  size_t PageAt(const Place& place) const { return places_[place.group][place.page]; }
  Place PlaceOf(size_t page) const;
  std::vector<OptionsTreeGroup> Tree() const;
  bool MayOpen(size_t group);
  bool Show(const Place& place);
  void ShowRefused(size_t page);
  // Null for a number that is no page's, and for a page that stands nowhere.
  CPrefPage* ShownPage(size_t page) const;

  OptionsServices& services_;
  OptionsDialogView& view_;
  std::vector<std::unique_ptr<CPrefPage>> pages_;  // by number, in the order of the tree
  std::vector<std::string> pageKeys_;              // class and system, by number
  std::vector<std::vector<size_t>> places_;        // page numbers, by group
  Place current_{};
  bool isUnlocked_ = false;  // the hardware settings
  bool isBusy_ = false;      // asking or storing, in which no further event may begin the same
};

}  // namespace zyr
