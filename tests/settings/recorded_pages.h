// The options dialog's view and its pages' controls, which show nothing and keep what they are
// told.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/host/messages.h"
#include "settings/pages/options_dialog.h"
#include "settings/pages/options_dialog_view.h"
#include "settings/pages/options_services.h"
#include "settings/pages/page_controls.h"
#include "settings/password/password_dialog.h"

namespace zyr::test {

struct RecordedTable : SettingsListControl {
  void RemoveAllColumns() override { rows = 0; }
  void AddColumn(const std::string&, int) override {}
  void AddRow(const std::string&, const std::string&) override { ++rows; }
  size_t rows = 0;
};

// Takes and refuses values as real controls do.
class RecordedControls : public PageControls {
 public:
  RecordedControls(std::vector<PageField> fields, platform::Window window)
      : fields_(std::move(fields)), window_(window) {
    for (const PageField& field : fields_) {
      const bool picks = field.kind == FieldKind::kChoice || field.kind == FieldKind::kRadio ||
                         field.kind == FieldKind::kLines;
      values[field.id] = picks ? -1 : std::max(field.least, 0);
    }
  }

  const PageField& Field(uint32_t id) const {
    const auto isIt = [=](const PageField& field) { return field.id == id; };
    return *std::find_if(fields_.begin(), fields_.end(), isIt);
  }
  uint32_t Id(const std::string& label) const {
    const auto isIt = [&](const PageField& field) { return field.label == label; };
    return std::find_if(fields_.begin(), fields_.end(), isIt)->id;
  }
  uint32_t IdOfKind(FieldKind kind, size_t nth) const {
    const auto isIt = [&](const PageField& field) { return field.kind == kind && nth-- == 0; };
    return std::find_if(fields_.begin(), fields_.end(), isIt)->id;
  }

  bool SetValue(uint32_t id, int32_t value) override {
    const PageField& field = Field(id);
    const bool isPercent = field.kind == FieldKind::kSlider;
    const bool isCheckBox = field.kind == FieldKind::kCheckBox;
    const auto choices =
        static_cast<int32_t>(field.kind == FieldKind::kLines ? lines.size() : field.choices.size());
    const int32_t least = isPercent ? field.least : isCheckBox ? 0 : -1;
    const int32_t most = isPercent ? field.most : isCheckBox ? 1 : choices - 1;
    if (!IsThere() || value < least || value > most) return false;
    values[id] = value;
    return true;
  }
  int32_t Value(uint32_t id) const override {
    if (onRead) onRead();
    return IsThere() ? values.at(id) : 0;
  }
  void SetText(uint32_t id, const std::string& text) override {
    if (IsThere()) texts[id] = text;
  }
  std::string Text(uint32_t id) const override {
    const auto found = texts.find(id);
    return IsThere() && found != texts.end() ? found->second : "";
  }
  void SetMask(uint32_t id, const MaskOperation& mask) override {
    const PageField& field = Field(id);
    masks[id] = {std::clamp<uint32_t>(mask.size, 3, 9) | 1,
                 std::clamp(mask.factor, field.least, field.most)};
  }
  MaskOperation Mask(uint32_t id) const override {
    return IsThere() && masks.contains(id) ? masks.at(id) : MaskOperation{0, 0};
  }
  void SetLines(uint32_t id, const std::vector<std::string>& newLines) override {
    lines = newLines;
    values[id] = -1;
  }
  SettingsListControl& Table(uint32_t) override { return table; }
  void SetEnabled(uint32_t id, bool isEnabled) override { enabled[id] = isEnabled; }
  platform::Window window() const override { return window_; }

  std::function<void()> onRead;  // before a value is given
  std::map<uint32_t, int32_t> values;
  std::map<uint32_t, std::string> texts;
  std::map<uint32_t, MaskOperation> masks;
  std::map<uint32_t, bool> enabled;
  std::vector<std::string> lines;
  RecordedTable table;

 private:
  bool IsThere() const { return platform::IsWindowAlive(window_); }

  std::vector<PageField> fields_;
  platform::Window window_;
};

class RecordedServices : public OptionsServices {
 public:
  size_t CachedImageCount() const override { return cachedImages; }
  void SetGrayscaleDepth(uint32_t bits) override { depths.push_back(bits); }
  void FillSettingsList(SettingsListControl* list) const override { list->AddRow("a", "b"); }
  std::string DisplayName(const std::string& name) const override {
    if (isOutOfMemory) throw std::bad_alloc();
    return "<" + name + ">";
  }
  std::optional<SelectedSensor> SelectSensor(const SelectedSensor& present,
                                             platform::Window) override {
    offered = present;
    return sensor;
  }
  std::optional<std::string> SelectDirectory(const std::string& present,
                                             platform::Window) override {
    offered.name = present;
    if (whileSelecting) whileSelecting();
    return directory;
  }

  size_t cachedImages = 0;
  std::vector<uint32_t> depths;
  SelectedSensor offered;  // its name is the directory
  std::optional<SelectedSensor> sensor;
  std::optional<std::string> directory;
  std::function<void()> whileSelecting;  // a directory
  bool isOutOfMemory = false;
};

// Runs a script in place of the user.
struct RecordedPasswordView : PasswordDialogView {
  bool Run(PasswordDialog* dialog, platform::Window, bool isNew) override {
    asked = isNew ? "new" : "known";
    dialog->OnInitDialog();
    acts(*dialog);
    return std::exchange(ended, false);
  }
  platform::Window window() const override { return nullptr; }
  void End(bool accepted) override { ended = accepted; }
  void SetMessage(const std::string& text) override { message = text; }
  std::string Password() const override { return password; }
  std::string Repetition() const override { return repetition; }
  void ClearPassword() override { password = repetition = ""; }
  void SetOKEnabled(bool enabled) override { okEnabled = enabled; }

  std::function<void(PasswordDialog&)> acts;
  std::string asked, message, password, repetition;
  bool okEnabled = true, ended = false;
};

class RecordedOptionsView : public OptionsDialogView {
 public:
  using Mark = std::pair<size_t, size_t>;  // group and page

  bool Run(OptionsDialog* dialog, platform::Window) override {
    window_.emplace();
    ended.reset();
    pages.clear();
    dialog->OnInitDialog();
    if (user) user(*dialog);
    window_.reset();
    return ended.value_or(false);
  }
  platform::Window window() const override { return window_ ? window_->window() : nullptr; }
  void End(bool accepted) override {
    if (!ended && platform::IsWindowAlive(window())) ended = accepted;
  }
  void SetTree(const std::vector<OptionsTreeGroup>& groups) override { tree = groups; }
  void MarkInTree(size_t group, size_t page) override { mark = {group, page}; }
  void SetHead(const std::string& title, const std::string& text) override {
    head = title + "|" + text;
  }
  PageControls* MakePage(size_t page, const std::string&,
                         const std::vector<PageField>& fields) override {
    if (!platform::IsWindowAlive(window())) return nullptr;
    pages[page] = std::make_unique<RecordedControls>(fields, window());
    return pages[page].get();
  }
  void ShowPage(size_t page) override { shown = page; }
  std::unique_ptr<PasswordDialogView> MakePasswordDialogView() override {
    ++passwordDialogs;
    auto view = std::make_unique<RecordedPasswordView>();
    view->acts = [this, &view = *view](PasswordDialog&) { view.ended = password(); };
    return view;
  }

  std::function<void(OptionsDialog&)> user;               // acts while the window stands
  std::function<bool()> password = [] { return false; };  // whether the user knows it
  int passwordDialogs = 0;
  std::optional<bool> ended;
  std::vector<OptionsTreeGroup> tree;
  Mark mark;
  std::string head;
  std::map<size_t, std::unique_ptr<RecordedControls>> pages;  // those made
  size_t shown = 0;

 private:
  std::optional<platform::host::FakeWindow> window_;
};

}  // namespace zyr::test
