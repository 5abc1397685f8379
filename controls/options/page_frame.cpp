#include "controls/options/page_frame.h"

#include <algorithm>
#include <utility>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/paint.h"
#include "controls/text_size.h"
#include "platform/resources.h"

namespace zyr {
namespace {

constexpr char kPanelClass[] = "ZyrOptionsPage";

// Pixels of a plain screen.
constexpr int kIndent = 20;       // of what belongs to a check box
constexpr int kBesideGroups = 8;  // more than between fields of a kind
constexpr int kPercentOfLabels = 45;

// In place of a table that is not there.
class NoTable : public SettingsListControl {
 public:
  void RemoveAllColumns() override {}
  void AddColumn(const std::string& /*title*/, int /*width*/) override {}
  void AddRow(const std::string& /*name*/, const std::string& /*value*/) override {}
};

int IndentOf(const PageField& field) { return field.belongsTo != 0 ? Scaled(kIndent) : 0; }

// Where nothing is selected, rather than the first of several.
bool IsSelection(FieldKind kind) {
  return kind == FieldKind::kRadio || kind == FieldKind::kChoice || kind == FieldKind::kLines;
}

// Such a field is set off from its neighbours.
bool StandsApart(FieldKind kind) {
  return kind == FieldKind::kNote || kind == FieldKind::kWarning || kind == FieldKind::kRadio ||
         kind == FieldKind::kButton || kind == FieldKind::kMask;
}

}  // namespace

PageFrame::PageFrame(HWND parent, size_t page, const std::string& title,
                     const std::vector<PageField>& fields, const Fonts& fonts,
                     const Mnemonics& mnemonics, Events events)
    : class_(SharedWindowClass(kPanelClass, GuardedProcedure<PageFrame, &PageFrame::Handle>)),
      page_(page),
      events_(std::move(events)) {
  const auto module = static_cast<HINSTANCE>(platform::OwnResources());
  const auto id = static_cast<INT_PTR>(FieldControlId(page, 0));
  const HWND window = CreateWindowExA(WS_EX_CONTROLPARENT, kPanelClass, "",
                                      WS_CHILD | WS_DISABLED | WS_CLIPCHILDREN, 0, 0, 0, 0, parent,
                                      reinterpret_cast<HMENU>(id), module, nullptr);
  panel_ = {window, fonts.plain, fonts.bold, mnemonics};
  if (window == nullptr) return;
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  title_ = CreateWindowExA(0, "STATIC", title.c_str(), WS_CHILD | WS_VISIBLE | SS_NOPREFIX, 0, 0, 0,
                           0, window, nullptr, module, nullptr);
  SendMessageA(title_, WM_SETFONT, reinterpret_cast<WPARAM>(fonts.bold), FALSE);
  try {
    MakeRows(fields);
  } catch (...) {  // the window must not outlive this object
    DestroyWindow(window);
    throw;
  }
}

PageFrame::~PageFrame() {
  if (panel_.window != nullptr) DestroyWindow(panel_.window);
}

void PageFrame::MakeRows(const std::vector<PageField>& fields) {
  for (const PageField& field : fields) {
    if (field.id == 0 || field.id > kMostFieldId) continue;
    auto control = MakeFieldControl(panel_, FieldControlId(page_, field.id), field);
    if (control != nullptr) rows_.push_back({field, std::move(control)});
  }
}

void PageFrame::Show(bool visible) const {
  if (panel_.window == nullptr) return;
  EnableWindow(panel_.window, visible);
  ShowWindow(panel_.window, visible ? SW_SHOWNA : SW_HIDE);
}

int PageFrame::LeastWidth() const {
  if (panel_.window == nullptr) return 0;
  int width = LongestWordWidth(title_, WindowText(title_));
  for (const Row& row : rows_) {
    width = std::max(width, row.control->LeastWidth() + IndentOf(row.field));
  }
  return width;
}

// Up to where the labels in front of controls reach.
int PageFrame::LabelColumn(int width) const {
  int column = 0;
  for (const Row& row : rows_) {
    const int label = row.control->LabelWidth();
    if (label > 0) column = std::max(column, label + IndentOf(row.field));
  }
  return std::min(column, width * kPercentOfLabels / 100);
}

int PageFrame::Arrange(int width, int height) {
  if (panel_.window == nullptr) return 0;
  const int natural = ArrangeRows(width, 0);
  const auto stretching = static_cast<int>(std::count_if(
      rows_.begin(), rows_.end(), [](const Row& row) { return row.control->Stretches(); }));
  if (stretching == 0 || natural >= height) return natural;
  return ArrangeRows(width, (height - natural) / stretching);
}

int PageFrame::ArrangeRows(int width, int spare) {
  const int column = LabelColumn(width);
  int top = WrappedTextHeight(title_, WindowText(title_), width);
  PlaceWindow(title_, 0, 0, width, top);
  for (size_t i = 0; i < rows_.size(); ++i) {
    const Row& row = rows_[i];
    const int indent = IndentOf(row.field);
    top += GapAbove(i);
    top += row.control->Place({indent, top, width - indent, std::max(column - indent, 0),
                               row.control->Stretches() ? spare : 0});
  }
  return top;
}

int PageFrame::GapAbove(size_t row) const {
  const FieldKind kind = rows_[row].field.kind;
  const bool apart = rows_[row].field.belongsTo == 0 &&
                     (row == 0 || StandsApart(kind) || StandsApart(rows_[row - 1].field.kind));
  return Scaled(kFieldGap) + (apart ? Scaled(kBesideGroups) : 0);
}

const PageFrame::Row* PageFrame::RowOf(uint32_t field) const {
  if (panel_.window == nullptr) return nullptr;
  const auto row = std::find_if(rows_.begin(), rows_.end(),
                                [field](const Row& known) { return known.field.id == field; });
  return row != rows_.end() ? &*row : nullptr;
}

FieldControl* PageFrame::ControlOf(uint32_t field) const {
  const Row* const row = RowOf(field);
  return row != nullptr ? row->control.get() : nullptr;
}

bool PageFrame::SetValue(uint32_t field, int32_t value) {
  FieldControl* const control = ControlOf(field);
  return control != nullptr && control->SetValue(value);
}

int32_t PageFrame::Value(uint32_t field) const {
  if (const FieldControl* const control = ControlOf(field)) return control->Value();
  const bool selection = std::any_of(rows_.begin(), rows_.end(), [field](const Row& row) {
    return row.field.id == field && IsSelection(row.field.kind);
  });
  return selection ? -1 : 0;
}

void PageFrame::SetText(uint32_t field, const std::string& text) {
  if (FieldControl* const control = ControlOf(field)) control->SetText(text);
}

std::string PageFrame::Text(uint32_t field) const {
  const FieldControl* const control = ControlOf(field);
  return control != nullptr ? control->Text() : std::string();
}

void PageFrame::SetMask(uint32_t field, const MaskOperation& mask) {
  if (FieldControl* const control = ControlOf(field)) control->SetMask(mask);
}

MaskOperation PageFrame::Mask(uint32_t field) const {
  const FieldControl* const control = ControlOf(field);
  return control != nullptr ? control->Mask() : MaskOperation();
}

void PageFrame::SetLines(uint32_t field, const std::vector<std::string>& lines) {
  if (FieldControl* const control = ControlOf(field)) control->SetLines(lines);
}

SettingsListControl& PageFrame::Table(uint32_t field) {
  static NoTable none;
  FieldControl* const control = ControlOf(field);
  SettingsListControl* const table = control != nullptr ? control->Table() : nullptr;
  return table != nullptr ? *table : none;
}

bool PageFrame::IsEnabled(const Row& row) const {
  const Row* const above = RowOf(row.field.belongsTo);
  return row.enabled && (above == nullptr || above->enabled);
}

void PageFrame::SetEnabled(uint32_t field, bool enabled) {
  if (panel_.window == nullptr) return;
  for (Row& row : rows_) {
    if (row.field.id == field) row.enabled = enabled;
  }
  for (const Row& row : rows_) {
    if (row.field.id == field || row.field.belongsTo == field) row.control->Enable(IsEnabled(row));
  }
}

platform::Window PageFrame::window() const {
  return panel_.window != nullptr ? GetAncestor(panel_.window, GA_ROOT) : nullptr;
}

LRESULT PageFrame::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = panel_.window;
  switch (message) {
    case WM_COMMAND:
      if (lParam != 0) OnNotification(LOWORD(wParam), HIWORD(wParam));
      return 0;
    case WM_HSCROLL:
      OnNotification(GetDlgCtrlID(reinterpret_cast<HWND>(lParam)), LOWORD(wParam));
      return 0;
    case WM_DRAWITEM:
      DrawWarning(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
      return TRUE;
    case WM_ERASEBKGND:
      return FillWindow(window, reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_BTNFACE));
    case WM_DESTROY:
      SetWindowLongPtrA(window, GWLP_USERDATA, 0);
      panel_.window = nullptr;
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

void PageFrame::OnNotification(int id, int code) {
  const int control = id - FieldControlId(page_, 0);
  if (control < 0 || control >= kPageControls) return;
  const auto field = static_cast<uint32_t>(control / kFieldControls);
  FieldControl* const notifier = ControlOf(field);
  if (notifier == nullptr) return;
  const FieldEvent event = notifier->EventOf(control % kFieldControls, code);
  if (event == FieldEvent::kChanged) events_.changed(field);
  if (event == FieldEvent::kButton) events_.button(field);
}

void PageFrame::DrawWarning(const DRAWITEMSTRUCT& item) const {
  FillArea(item.hDC, item.rcItem, GetSysColor(COLOR_BTNFACE));
  DrawIconEx(item.hDC, 0, 0, LoadIcon(nullptr, IDI_WARNING), static_cast<int>(item.rcItem.right),
             static_cast<int>(item.rcItem.bottom), 0, nullptr, DI_NORMAL);
}

}  // namespace zyr
