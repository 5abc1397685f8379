#include "controls/thumbnail_grid.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "controls/paint.h"
#include "controls/scroll_bar.h"
#include "controls/thumbnail_cache.h"
#include "controls/thumbnail_layout.h"
#include "controls/thumbnail_painter.h"
#include "controls/thumbnail_selection.h"
#include "controls/window_class.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr uint32_t kMostRowsOrColumns = 100;
constexpr size_t kScreensOfPictures = 3;

// Timers come last: pictures are made when nothing else is to be done.
constexpr UINT_PTR kPictureTimer = 1;
constexpr UINT kSettleMilliseconds = 150;  // while the window is being resized

constexpr LPARAM kIsRepeated = 1 << 30;  // a key that was down before

bool IsDown(int key) { return GetKeyState(key) < 0; }

SIZE SizeOf(const RECT& area) { return {area.right - area.left, area.bottom - area.top}; }

std::optional<GridMove> MoveOf(WPARAM key) {
  switch (key) {
    case VK_LEFT:
      return GridMove::kLeft;
    case VK_RIGHT:
      return GridMove::kRight;
    case VK_UP:
      return GridMove::kUp;
    case VK_DOWN:
      return GridMove::kDown;
    case VK_PRIOR:
      return GridMove::kPageUp;
    case VK_NEXT:
      return GridMove::kPageDown;
    case VK_HOME:
      return GridMove::kFirst;
    case VK_END:
      return GridMove::kLast;
    default:
      return std::nullopt;
  }
}

// The window's side. It outlives the ThumbnailGrid while one of its messages is being handled: the
// parent may let go of both from within an event. So every step that tells the parent something
// comes last, or looks afterwards at what is left.
class GridWindow : public std::enable_shared_from_this<GridWindow> {
 public:
  GridWindow() : class_(SharedWindowClass(THUMBNAIL_GRID_CLASS, Procedure, CS_DBLCLKS)) {}

  void Attach(HWND window, ThumbnailSource* source);
  void Detach();
  void SetGrid(uint32_t rows, uint32_t columns);
  void Refresh();

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  bool Alive() const { return window_ != nullptr; }
  RECT Client() const;
  RECT Cells() const { return painter_.CellsIn(Client()); }
  SIZE PictureSize() const;
  void InvalidateItem(size_t item) const;

  void ReadSource();
  bool FollowSource();
  void ShowView();
  void ScrollTo(size_t topRow);
  void ScrollBy(ptrdiff_t rows);
  void OnScroll(int request);
  void OnWheel(int delta);

  LRESULT DialogCode(LPARAM message) const;
  void OnKey(WPARAM key, bool repeated);
  void OnMove(GridMove move);
  void OnClick(POINT point);
  void OnDoubleClick(POINT point);

  bool Tell(WPARAM word, size_t item);
  void Change(const SelectionChanges& changes);
  void FocusMoved(size_t from);

  void Paint();
  std::optional<size_t> NextWanted(SIZE size) const;
  void AskForPictures();
  void OnPictureTimer();

  std::shared_ptr<const WindowClass> class_;
  ThumbnailPainter painter_;
  HWND window_ = nullptr;
  ThumbnailSource* source_ = nullptr;
  ThumbnailLayout layout_;
  ThumbnailSelection selection_;
  ThumbnailCache pictures_;
  size_t topRow_ = 0;  // above it, rows are out of view
  int wheelRest_ = 0;
  unsigned refreshes_ = 0;
  bool asking_ = false;
  bool resizing_ = false;  // and pictures of the former size are there
};

void GridWindow::Attach(HWND window, ThumbnailSource* source) {
  window_ = window;
  source_ = source;
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  UseThinBorder(window);
  Refresh();
}

void GridWindow::Detach() {
  if (Alive()) {
    KillTimer(window_, kPictureTimer);
    SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
  }
  window_ = nullptr;
  source_ = nullptr;
}

void GridWindow::SetGrid(uint32_t rows, uint32_t columns) {
  rows = std::clamp<uint32_t>(rows, 1, kMostRowsOrColumns);
  columns = std::clamp<uint32_t>(columns, 1, kMostRowsOrColumns);
  const size_t first = layout_.FirstInView(topRow_);
  layout_.rows = rows;
  layout_.columns = columns;
  topRow_ = first / columns;
  ShowView();
}

// Items that were there before are taken for the same ones as long as none is gone; their pictures
// are shown until the new ones have come. Those that have been added come into view.
void GridWindow::Refresh() {
  if (!Alive()) return;
  ++refreshes_;
  const size_t before = layout_.count;
  ReadSource();
  if (layout_.count < before) {
    pictures_.Clear();
  } else {
    pictures_.Outdate();
  }
  if (before != 0 && layout_.count > before) {
    topRow_ = layout_.TopRowToShow(layout_.count - 1, topRow_);
  }
  ShowView();
}

void GridWindow::ReadSource() {
  layout_.count = source_->Count();
  std::vector<bool> selected(layout_.count);
  for (size_t item = 0; item < selected.size(); ++item) selected[item] = source_->IsSelected(item);
  selection_.Reset(std::move(selected));
}

// The source may have changed without a Refresh. True if it has.
bool GridWindow::FollowSource() {
  if (source_->Count() == layout_.count) return false;
  Refresh();
  return true;
}

RECT GridWindow::Client() const {
  RECT client = {};
  GetClientRect(window_, &client);
  return client;
}

// All pictures are asked for in the size of the smallest cell, lest each kind of cell has its own.
SIZE GridWindow::PictureSize() const {
  const RECT cells = Cells();
  const SIZE all = SizeOf(cells);
  const RECT cell = {0, 0, all.cx / static_cast<LONG>(layout_.columns),
                     all.cy / static_cast<LONG>(layout_.rows)};
  return SizeOf(painter_.PictureBoxIn(cell));
}

void GridWindow::InvalidateItem(size_t item) const {
  if (!layout_.InView(item, topRow_)) return;
  const RECT cell = layout_.CellOf(item, topRow_, Cells());
  InvalidateRect(window_, &cell, FALSE);
}

// The scroll bar takes its room only if it is needed. The caption is the window's text too, for
// programs that read it out.
void GridWindow::ShowView() {
  if (!Alive()) return;
  topRow_ = std::min(topRow_, layout_.LastTopRow());
  SetScrollBar(window_, SB_VERT, static_cast<int>(layout_.AllRows()),
               static_cast<int>(layout_.rows), static_cast<int>(topRow_));
  SetWindowTextA(window_, layout_.Caption(topRow_).c_str());
  InvalidateRect(window_, nullptr, FALSE);
}

void GridWindow::ScrollTo(size_t topRow) {
  if (std::min(topRow, layout_.LastTopRow()) == topRow_) return;
  topRow_ = topRow;
  ShowView();
}

void GridWindow::ScrollBy(ptrdiff_t rows) {
  const auto topRow = static_cast<ptrdiff_t>(topRow_) + rows;
  ScrollTo(static_cast<size_t>(std::max<ptrdiff_t>(topRow, 0)));
}

void GridWindow::OnScroll(int request) {
  const ScrollSteps steps = {1, static_cast<int>(layout_.rows),
                             static_cast<int>(layout_.LastTopRow())};
  const auto asked = PositionAsked(window_, SB_VERT, request, static_cast<int>(topRow_), steps);
  if (asked) ScrollTo(static_cast<size_t>(std::max(*asked, 0)));
}

// A row for each notch; fine wheels send parts of a notch.
void GridWindow::OnWheel(int delta) {
  if ((delta > 0) != (wheelRest_ > 0)) wheelRest_ = 0;
  wheelRest_ += delta;
  const int notches = wheelRest_ / WHEEL_DELTA;
  wheelRest_ -= notches * WHEEL_DELTA;
  UINT lines = 3;
  SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
  const auto rows = static_cast<ptrdiff_t>(lines == WHEEL_PAGESCROLL ? layout_.rows : 1);
  ScrollBy(-notches * rows);
}

// Letters are not to press the dialog's buttons, nor is Enter while there is an image to open.
LRESULT GridWindow::DialogCode(LPARAM message) const {
  const auto* asked = reinterpret_cast<const MSG*>(message);
  const bool opens = asked != nullptr && asked->message == WM_KEYDOWN &&
                     asked->wParam == VK_RETURN && layout_.count != 0;
  return DLGC_WANTARROWS | DLGC_WANTCHARS | (opens ? DLGC_WANTMESSAGE : 0);
}

void GridWindow::OnKey(WPARAM key, bool repeated) {
  FollowSource();
  if (layout_.count == 0) return;
  const size_t focus = selection_.focus();
  if (const std::optional<GridMove> move = MoveOf(key)) return OnMove(*move);
  switch (key) {
    case VK_RETURN:
      if (!repeated) Tell(kThumbnailOpenedByKey, focus);
      return;
    case VK_SPACE:
      if (!repeated) Change(selection_.Toggle(focus));
      return;
    case 'A':
      if (IsDown(VK_CONTROL)) Change(selection_.SelectAll());
      return;
    default:
      return;
  }
}

void GridWindow::OnMove(GridMove move) {
  const size_t from = selection_.focus();
  const size_t to = layout_.ItemAfter(from, move);
  SelectionChanges changes;
  if (IsDown(VK_SHIFT)) {
    changes = selection_.SelectTo(to, IsDown(VK_CONTROL));
  } else {
    selection_.MoveFocus(to);
  }
  FocusMoved(from);
  Change(changes);
}

void GridWindow::FocusMoved(size_t from) {
  InvalidateItem(from);
  InvalidateItem(selection_.focus());
  ScrollTo(layout_.TopRowToShow(selection_.focus(), topRow_));
}

void GridWindow::OnClick(POINT point) {
  if (GetFocus() != window_) SetFocus(window_);
  if (!Alive() || FollowSource()) return;  // what was aimed at may have moved
  const bool extend = IsDown(VK_SHIFT);
  const bool more = IsDown(VK_CONTROL);
  const std::optional<size_t> item = layout_.ItemAt(point, topRow_, Cells());
  if (!item) return extend || more ? void() : Change(selection_.SelectNone());
  const size_t from = selection_.focus();
  const SelectionChanges changes = extend ? selection_.SelectTo(*item, more)
                                   : more ? selection_.Toggle(*item)
                                          : selection_.SelectOnly(*item);
  FocusMoved(from);
  Change(changes);
}

void GridWindow::OnDoubleClick(POINT point) {
  if (IsDown(VK_SHIFT) || IsDown(VK_CONTROL)) return OnClick(point);
  if (FollowSource()) return;
  const std::optional<size_t> item = layout_.ItemAt(point, topRow_, Cells());
  if (item) Tell(kThumbnailOpenedByMouse, *item);
}

// False if the window is gone by now.
bool GridWindow::Tell(WPARAM word, size_t item) {
  const ThumbnailEvent event = {static_cast<uint32_t>(item), selection_.IsSelected(item)};
  SendMessageA(GetParent(window_), kMessageThumbnail, word, reinterpret_cast<LPARAM>(&event));
  return Alive();
}

// Ends when the parent's handling of one has changed the items.
void GridWindow::Change(const SelectionChanges& changes) {
  const size_t count = layout_.count;
  for (const SelectionChange& change : changes) {
    if (!selection_.Apply(change)) continue;
    InvalidateItem(change.item);
    if (!Tell(kThumbnailSelectionChanged, change.item) || layout_.count != count) return;
  }
}

void GridWindow::Paint() {
  {
    const BufferedPaint paint(window_);
    if (paint.dc() == nullptr) return;
    const RECT client = Client();
    const RECT cells = painter_.CellsIn(client);
    const bool active = GetFocus() == window_;
    painter_.PaintBackground(paint.dc(), paint.area());
    painter_.PaintCaption(paint.dc(), client, layout_.Caption(topRow_));
    for (size_t item = layout_.FirstInView(topRow_); item < layout_.EndInView(topRow_); ++item) {
      const RECT cell = layout_.CellOf(item, topRow_, cells);
      RECT common;
      if (!IntersectRect(&common, &cell, &paint.area())) continue;
      const ThumbnailCache::Entry* entry = pictures_.Find(item);
      painter_.PaintItem(
          paint.dc(), cell,
          {item + 1, selection_.IsSelected(item), active && item == selection_.focus(),
           entry != nullptr, entry != nullptr ? entry->picture.get() : nullptr});
    }
  }
  AskForPictures();
}

std::optional<size_t> GridWindow::NextWanted(SIZE size) const {
  if (size.cx <= 0 || size.cy <= 0) return std::nullopt;
  return pictures_.NextWanted(layout_.FirstInView(topRow_), layout_.EndInView(topRow_),
                              selection_.focus(), size);
}

// After each painting, and so after every change of the view once that is seen.
void GridWindow::AskForPictures() {
  if (asking_ || !IsWindowVisible(window_) || !NextWanted(PictureSize())) return;
  SetTimer(window_, kPictureTimer, resizing_ ? kSettleMilliseconds : USER_TIMER_MINIMUM, nullptr);
}

// The source may handle messages while it works on a picture, and so come back here.
void GridWindow::OnPictureTimer() {
  KillTimer(window_, kPictureTimer);
  if (asking_) return;
  resizing_ = false;
  FollowSource();
  const SIZE size = PictureSize();
  const std::optional<size_t> item = NextWanted(size);
  if (!item) return;
  std::unique_ptr<CKIPImage> picture;
  const unsigned refreshes = refreshes_;
  asking_ = true;
  try {
    picture =
        source_->Picture(*item, static_cast<uint32_t>(size.cx), static_cast<uint32_t>(size.cy));
  } catch (...) {  // shown as broken, and the others get their turn
  }
  asking_ = false;
  if (!Alive()) return;
  if (refreshes_ == refreshes) {
    pictures_.Store(*item, std::move(picture), size);
    pictures_.Trim(layout_.FirstInView(topRow_), layout_.EndInView(topRow_),
                   kScreensOfPictures * layout_.rows * layout_.columns);
    InvalidateItem(*item);
  }
  AskForPictures();
}

LRESULT CALLBACK GridWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* grid = reinterpret_cast<GridWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (grid == nullptr) return DefWindowProcA(window, message, wParam, lParam);
  const std::shared_ptr<GridWindow> held = grid->shared_from_this();
  try {
    return held->Handle(window, message, wParam, lParam);
  } catch (...) {  // out of memory: the picture stays as it is
    return DefWindowProcA(window, message, wParam, lParam);
  }
}

LRESULT GridWindow::Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_NCPAINT:
      DefWindowProcA(window, message, wParam, lParam);
      PaintThinBorder(window);
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      PaintThinBorder(window);
      InvalidateItem(selection_.focus());
      return 0;
    case WM_SIZE:
      resizing_ = !pictures_.empty();
      InvalidateRect(window, nullptr, FALSE);
      return 0;
    case WM_TIMER:
      OnPictureTimer();
      return 0;
    case WM_VSCROLL:
      OnScroll(LOWORD(wParam));
      return 0;
    case WM_MOUSEWHEEL:
      OnWheel(GET_WHEEL_DELTA_WPARAM(wParam));
      return 0;
    case WM_LBUTTONDOWN:
      OnClick(point);
      return 0;
    case WM_LBUTTONDBLCLK:
      OnDoubleClick(point);
      return 0;
    case WM_GETDLGCODE:
      return DialogCode(lParam);
    case WM_KEYDOWN:
      OnKey(wParam, (lParam & kIsRepeated) != 0);
      return 0;
    case WM_NCDESTROY:
      Detach();
      break;
    default:
      break;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

struct ThumbnailGrid::Impl {
  std::shared_ptr<GridWindow> window = std::make_shared<GridWindow>();

  ~Impl() { window->Detach(); }
};

ThumbnailGrid::ThumbnailGrid() : impl_(std::make_unique<Impl>()) {}
ThumbnailGrid::~ThumbnailGrid() = default;

void ThumbnailGrid::Attach(HWND window, ThumbnailSource* source) {
  impl_->window->Attach(window, source);
}

void ThumbnailGrid::SetGrid(uint32_t rows, uint32_t columns) {
  impl_->window->SetGrid(rows, columns);
}

void ThumbnailGrid::Refresh() { impl_->window->Refresh(); }

}  // namespace zyr
