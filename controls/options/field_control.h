// The controls of one field of a page.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "controls/mnemonics.h"
#include "settings/pages/page_controls.h"
#include "settings/pages/page_field.h"

namespace zyr {

// What the controls of a page are made with.
struct FieldPanel {
  HWND window;  // their parent
  HFONT font;
  HFONT boldFont;
  Mnemonics mnemonics;  // those that are taken in it
};

// Where a field goes, in pixels of its panel.
struct FieldPlace {
  int left;
  int top;
  int width;
  int labelWidth;  // of the column of labels in front of it; 0 for a label above it
  int spare;       // the height to take beyond what is needed, for a field that stretches
};

enum class FieldEvent { kNone, kChanged, kButton };

// Of a control's identifier within those of its field.
enum FieldPart {
  kPartControl = 0,  // and the choices of a radio from here on
  kPartExtra = 6,    // the button "..." of a picked text; the value of a slider
  kPartLabel = 7,
};

// The controls are gone with their panel, and these operations may no longer be used then. Those
// that a kind of field has no use for do nothing.
class FieldControl {
 public:
  virtual ~FieldControl() = default;
  FieldControl(const FieldControl&) = delete;
  FieldControl& operator=(const FieldControl&) = delete;

  // Of a label that can stand in a column at the left; 0 without.
  virtual int LabelWidth() const { return 0; }
  // Narrower, something is cut. Without its label.
  virtual int LeastWidth() const { return 0; }
  virtual bool Stretches() const { return false; }
  // Gives the height.
  virtual int Place(const FieldPlace& place) = 0;
  // What the user has done, by a notification of one of the controls.
  virtual FieldEvent EventOf(int /*part*/, int /*code*/) { return FieldEvent::kNone; }

  virtual bool SetValue(int32_t /*value*/) { return false; }
  virtual int32_t Value() const { return 0; }
  virtual void SetText(const std::string& /*text*/) {}
  virtual std::string Text() const { return {}; }
  virtual void SetMask(const MaskOperation& /*mask*/) {}
  virtual MaskOperation Mask() const { return {}; }
  virtual void SetLines(const std::vector<std::string>& /*lines*/) {}
  virtual SettingsListControl* Table() { return nullptr; }

  void Enable(bool enabled) const;

 protected:
  // `firstId` is the identifier of its control number 0.
  FieldControl(FieldPanel& panel, int firstId) : panel_(panel), firstId_(firstId) {}

  HWND Make(int part, const char* className, DWORD style, const std::string& text = {},
            DWORD extendedStyle = 0);
  // Keeps a window that has made itself.
  void Keep(HWND window) { windows_.push_back(window); }
  // In front of the control that it names; none for an empty text.
  HWND MakeLabel(const char* english);
  FieldPanel& panel() { return panel_; }
  int IdOf(int part) const { return firstId_ + part; }

 private:
  FieldPanel& panel_;
  int firstId_;
  std::vector<HWND> windows_;
};

// Null for a kind that there is not.
std::unique_ptr<FieldControl> MakeFieldControl(FieldPanel& panel, int firstId,
                                               const PageField& field);

// Pixels of a plain screen.
constexpr int kFieldGap = 8;
constexpr int kLabelGap = 4;  // below a label that stands above

}  // namespace zyr
