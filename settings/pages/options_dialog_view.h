// What the options dialog shows.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "settings/pages/page_controls.h"
#include "settings/pages/page_field.h"
#include "settings/password/password_dialog_view.h"

namespace zyr {

class OptionsDialog;

struct OptionsTreeGroup {
  std::string title;
  std::string description;         // tool tip; may be empty
  std::vector<std::string> pages;  // their titles
};

// Calls back into its dialog: OnInitDialog before the window is seen, OnSelect for the tree,
// OnChanged and OnButton for a page's controls, OnOK, OnCancel. Texts come translated, but for
// those of fields. User-interface thread only. Once the window is gone, operations do nothing.
class OptionsDialogView {
 public:
  virtual ~OptionsDialogView() = default;

  // Modal: true for End(true). False, too, if there can be no window.
  virtual bool Run(OptionsDialog* dialog, platform::Window owner) = 0;
  virtual platform::Window window() const = 0;
  virtual void End(bool accepted) = 0;

  virtual void SetTree(const std::vector<OptionsTreeGroup>& groups) = 0;
  // Marks the page in the tree; without OnSelect.
  virtual void MarkInTree(size_t group, size_t page) = 0;
  // At the head of the page area: bold, and plain below it.
  virtual void SetHead(const std::string& title, const std::string& text) = 0;

  // A page's controls, made and hidden; they live as long as the window. `page` is any number of
  // the caller's, for ShowPage and the events.
  virtual PageControls* MakePage(size_t page, const std::string& title,
                                 const std::vector<PageField>& fields) = 0;
  // In place of the one shown before.
  virtual void ShowPage(size_t page) = 0;

  virtual std::unique_ptr<PasswordDialogView> MakePasswordDialogView() = 0;
};

}  // namespace zyr
