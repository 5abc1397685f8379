#include "controls/options/list_fields.h"

// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <string>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/options/labelled_field.h"
#include "controls/text_size.h"

namespace zyr {
namespace {

constexpr int kLeastLines = 6;

// Pixels of a plain screen.
constexpr int kLeastWidth = 200;
constexpr int kAroundLines = 8;
constexpr int kBetweenLines = 2;
constexpr int kBesideLine = 12;

// With a list that takes all the height there is.
class StretchingField : public LabelledField {
 public:
  int LeastWidth() const override { return Scaled(kLeastWidth); }
  bool Stretches() const override { return true; }
  int Place(const FieldPlace& place) override {
    const int line = LineHeight(list()) + Scaled(kBetweenLines);
    const int height = kLeastLines * line + Scaled(kAroundLines) + place.spare;
    const Slot slot = PlaceLabelAbove(place, height);
    PlaceWindow(list(), slot.left, slot.top, slot.width, height);
    return slot.bottom - place.top;
  }

 protected:
  using LabelledField::LabelledField;
  virtual HWND list() const = 0;
};

class LinesField : public StretchingField {
 public:
  LinesField(FieldPanel& panel, int firstId, const PageField& field)
      : StretchingField(panel, firstId, field) {
    list_ = Make(kPartControl, "LISTBOX",
                 LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_HSCROLL | WS_TABSTOP, {},
                 WS_EX_CLIENTEDGE);
  }

  FieldEvent EventOf(int part, int code) override {
    return part == kPartControl && code == LBN_SELCHANGE ? FieldEvent::kChanged : FieldEvent::kNone;
  }
  void SetLines(const std::vector<std::string>& lines) override {
    SendMessageA(list_, LB_RESETCONTENT, 0, 0);
    LONG widest = 0;
    for (const std::string& line : lines) {
      SendMessageA(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
      widest = std::max(widest, TextSize(list_, line).cx);
    }
    SendMessageA(list_, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest + Scaled(kBesideLine)),
                 0);
  }
  bool SetValue(int32_t value) override {
    if (value < -1 || value >= SendMessageA(list_, LB_GETCOUNT, 0, 0)) return false;
    SendMessageA(list_, LB_SETCURSEL, static_cast<WPARAM>(value), 0);
    return true;
  }
  int32_t Value() const override {
    return static_cast<int32_t>(SendMessageA(list_, LB_GETCURSEL, 0, 0));
  }

 private:
  HWND list() const override { return list_; }

  HWND list_;
};

class TableField : public StretchingField, private SettingsListControl {
 public:
  TableField(FieldPanel& panel, int firstId, const PageField& field)
      : StretchingField(panel, firstId, field) {
    list_ = Make(kPartControl, WC_LISTVIEWA,
                 LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER | WS_TABSTOP, {},
                 WS_EX_CLIENTEDGE);
    SendMessageA(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
  }

  int Place(const FieldPlace& place) override {
    const int height = StretchingField::Place(place);
    FitColumns();
    return height;
  }
  SettingsListControl* Table() override { return this; }

 private:
  void RemoveAllColumns() override;
  void AddColumn(const std::string& title, int width) override;
  void AddRow(const std::string& name, const std::string& value) override;

  HWND list() const override { return list_; }
  void FitColumns() const;
  LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendMessageA(list_, message, wParam, lParam);
  }

  HWND list_;
  std::vector<int> widths_;  // that were asked for
};

void TableField::RemoveAllColumns() {
  Send(LVM_DELETEALLITEMS, 0, 0);
  for (; !widths_.empty(); widths_.pop_back()) Send(LVM_DELETECOLUMN, widths_.size() - 1, 0);
}

void TableField::AddColumn(const std::string& title, int width) {
  std::string text = title;
  LVCOLUMNA column = {};
  column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
  column.fmt = LVCFMT_LEFT;
  column.cx = Scaled(width);
  column.pszText = text.data();
  Send(LVM_INSERTCOLUMNA, widths_.size(), reinterpret_cast<LPARAM>(&column));
  widths_.push_back(width);
}

void TableField::AddRow(const std::string& name, const std::string& value) {
  std::string text = name;
  LVITEMA item = {};
  item.mask = LVIF_TEXT;
  item.iItem = static_cast<int>(Send(LVM_GETITEMCOUNT, 0, 0));
  item.pszText = text.data();
  const LRESULT row = Send(LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
  text = value;
  item.pszText = text.data();
  item.iSubItem = 1;
  if (row >= 0) Send(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

// As wide as asked for and as the texts need; the last one takes the rest.
void TableField::FitColumns() const {
  RECT outer;
  GetWindowRect(list_, &outer);
  int rest = static_cast<int>(outer.right - outer.left) - 2 * GetSystemMetrics(SM_CXEDGE);
  if (Send(LVM_GETITEMCOUNT, 0, 0) > Send(LVM_GETCOUNTPERPAGE, 0, 0)) {
    rest -= GetSystemMetrics(SM_CXVSCROLL);
  }
  for (size_t i = 0; i < widths_.size(); ++i) {
    // The system's own way of asking for the header's width gives the last column all the rest.
    Send(LVM_SETCOLUMNWIDTH, i, LVSCW_AUTOSIZE);
    const int byTexts = static_cast<int>(Send(LVM_GETCOLUMNWIDTH, i, 0));
    Send(LVM_SETCOLUMNWIDTH, i, LVSCW_AUTOSIZE_USEHEADER);
    const int byTitle =
        i + 1 < widths_.size() ? static_cast<int>(Send(LVM_GETCOLUMNWIDTH, i, 0)) : rest;
    const int width = std::max({Scaled(widths_[i]), byTexts, byTitle});
    Send(LVM_SETCOLUMNWIDTH, i, i + 1 < widths_.size() ? width : std::max(byTexts, rest));
    rest -= width;
  }
}

}  // namespace

std::unique_ptr<FieldControl> MakeLinesField(FieldPanel& panel, int firstId,
                                             const PageField& field) {
  return std::make_unique<LinesField>(panel, firstId, field);
}

std::unique_ptr<FieldControl> MakeTableField(FieldPanel& panel, int firstId,
                                             const PageField& field) {
  return std::make_unique<TableField>(panel, firstId, field);
}

}  // namespace zyr
