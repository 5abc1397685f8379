// A page of the options on the screen, made from the description of its fields.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/options/field_control.h"
#include "controls/window_class.h"

namespace zyr {

// Identifiers of a page's controls, which are children of the page's window:
//   kFirstFieldControl + page * kPageControls + field * kFieldControls + part
// with the page's number for MakePage, the field's number of 1 to 31, and the part of FieldPart.
// The page's window itself has the number of field 0. Scripts that work the dialog go by these.
constexpr int kFirstFieldControl = 3000;
constexpr int kPageControls = 256;
constexpr int kFieldControls = 8;
constexpr uint32_t kMostFieldId = kPageControls / kFieldControls - 1;

constexpr int FieldControlId(size_t page, uint32_t field, int part = kPartControl) {
  return kFirstFieldControl + static_cast<int>(page) * kPageControls +
         static_cast<int>(field) * kFieldControls + part;
}

class PageFrame : public PageControls {
 public:
  // What the user does; the frame lives on until they have returned.
  struct Events {
    std::function<void(uint32_t field)> changed;
    std::function<void(uint32_t field)> button;
  };
  struct Fonts {
    HFONT plain;
    HFONT bold;
  };

  // Hidden at first. `mnemonics` are those taken around it. The window is a child of `parent` and
  // goes with it.
  PageFrame(HWND parent, size_t page, const std::string& title,
            const std::vector<PageField>& fields, const Fonts& fonts, const Mnemonics& mnemonics,
            Events events);
  ~PageFrame() override;
  PageFrame(const PageFrame&) = delete;
  PageFrame& operator=(const PageFrame&) = delete;

  HWND panel() const { return panel_.window; }
  // Hidden, the keyboard does not get into it, either.
  void Show(bool visible) const;
  // In pixels. Narrower, something is cut.
  int LeastWidth() const;
  // Arranges its controls for a width, and gives the height, which is `height` if that is more and
  // there is a list that can use it. The caller sizes the panel.
  int Arrange(int width, int height);

  bool SetValue(uint32_t field, int32_t value) override;
  int32_t Value(uint32_t field) const override;
  void SetText(uint32_t field, const std::string& text) override;
  std::string Text(uint32_t field) const override;
  void SetMask(uint32_t field, const MaskOperation& mask) override;
  MaskOperation Mask(uint32_t field) const override;
  void SetLines(uint32_t field, const std::vector<std::string>& lines) override;
  SettingsListControl& Table(uint32_t field) override;
  void SetEnabled(uint32_t field, bool enabled) override;
  platform::Window window() const override;

 private:
  struct Row {
    PageField field;
    std::unique_ptr<FieldControl> control;
    bool enabled = true;  // as it was set, whatever it belongs to
  };

  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void OnNotification(int id, int code);
  void DrawWarning(const DRAWITEMSTRUCT& item) const;
  void MakeRows(const std::vector<PageField>& fields);
  FieldControl* ControlOf(uint32_t field) const;  // null without a window, too
  bool IsEnabled(const Row& row) const;
  const Row* RowOf(uint32_t field) const;
  int LabelColumn(int width) const;
  int ArrangeRows(int width, int spare);
  int GapAbove(size_t row) const;

  std::shared_ptr<const WindowClass> class_;
  size_t page_;
  Events events_;
  FieldPanel panel_;
  HWND title_ = nullptr;
  std::vector<Row> rows_;
};

}  // namespace zyr
