#include "controls/options/options_window.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "controls/dialog_window.h"
#include "controls/mask_operation.h"
#include "controls/options/page_frame.h"
#include "foundation/support/phrase_lookup.h"
#include "resources/resource.h"
#include "settings/pages/options_dialog.h"
#include "tests/support/phrase_witness.h"
#include "tests/support/win32/window_test.h"

namespace zyr {
namespace {

enum : uint32_t {
  kNote = 1,
  kWarning,
  kCheck,
  kBelongs,
  kRadio,
  kChoice,
  kNumber,
  kMask,
  kPicked,
  kLines,
  kTable,
  kButton,
};

const std::vector<PageField> kFields = {
    {kNote, FieldKind::kNote, "A note of many words that takes more than a single line of a page"},
    {kWarning, FieldKind::kWarning, "WARNING! Mind the gap."},
    {kCheck, FieldKind::kCheckBox, "Check"},
    {kBelongs, FieldKind::kSlider, "Slider:", {}, -5, 50, kCheck},
    {kRadio, FieldKind::kRadio, "Radio:", {"First", "Second"}},
    {kChoice, FieldKind::kChoice, "Choice:", {"One", "Two", "Three"}},
    {kNumber, FieldKind::kNumber, "Number:", {}, 0, 255},
    {kMask, FieldKind::kMask, "Mask:", {}, 1, 90},
    {kPicked, FieldKind::kPicked, "Picked:"},
    {kLines, FieldKind::kLines, "Lines:"},
    {kTable, FieldKind::kTable, "Table:"},
    {kButton, FieldKind::kButton, "Press"},
};

class NoServices : public OptionsServices {
 public:
  size_t CachedImageCount() const override { return 0; }
  void SetGrayscaleDepth(uint32_t) override {}
  void FillSettingsList(SettingsListControl*) const override {}
  std::string DisplayName(const std::string& name) const override { return name; }
  std::optional<SelectedSensor> SelectSensor(const SelectedSensor&, platform::Window) override {
    return std::nullopt;
  }
  std::optional<std::string> SelectDirectory(const std::string&, platform::Window) override {
    ++asked;
    return std::nullopt;
  }

  int asked = 0;
};

// A page's frame in a window of its own.
class PageFrameTest : public testing::Test {
 protected:
  PageFrameTest() {
    parent_ = CreateWindowExA(WS_EX_CONTROLPARENT, "#32770", "", WS_POPUP | WS_VISIBLE, 0, 0, 500,
                              900, nullptr, nullptr, nullptr, nullptr);
    const auto font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    frame_ = std::make_unique<PageFrame>(
        parent_, kPage, "Title", kFields, PageFrame::Fonts{font, font}, Mnemonics(),
        PageFrame::Events{[this](uint32_t field) { events_.push_back(static_cast<int>(field)); },
                          [this](uint32_t field) { events_.push_back(-static_cast<int>(field)); }});
    Arrange(500);
    frame_->Show(true);
  }
  ~PageFrameTest() override {
    if (IsWindow(parent_)) DestroyWindow(parent_);
  }

  void Arrange(int width) {
    SetWindowPos(frame_->panel(), nullptr, 0, 0, width, frame_->Arrange(width, 0), SWP_NOZORDER);
  }
  HWND Control(uint32_t field, int part = kPartControl) const {
    return GetDlgItem(frame_->panel(), FieldControlId(kPage, field, part));
  }
  void Command(HWND control, int code) const {
    SendMessageA(GetParent(control), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), code),
                 reinterpret_cast<LPARAM>(control));
  }
  static void Slide(HWND slider, int position) {
    SendMessageA(slider, TBM_SETPOS, TRUE, position);
    for (const int code : {TB_THUMBTRACK, TB_ENDTRACK}) {
      SendMessageA(GetParent(slider), WM_HSCROLL, static_cast<WPARAM>(code),
                   reinterpret_cast<LPARAM>(slider));
    }
  }

  static constexpr size_t kPage = 3;
  const test::MadeUpPhrases madeUp_;
  HWND parent_;
  std::unique_ptr<PageFrame> frame_;
  std::vector<int> events_;  // changed fields, and pressed ones with a minus
};

TEST_F(PageFrameTest, HoldsTheValuesThatItsControlsCanHave) {
  const struct {
    uint32_t field;
    std::vector<int32_t> held;
    std::vector<int32_t> refused;
  } rows[] = {{kCheck, {1, 0}, {-1, 2}},     {kBelongs, {-5, 50, 0}, {-6, 51}},
              {kRadio, {1, 0, -1}, {-2, 2}}, {kChoice, {2, 0, -1}, {-2, 3}},
              {kLines, {1, 0, -1}, {-2, 2}}, {99, {}, {0, 1}}};
  frame_->SetLines(kLines, {"a", "b", "c"});
  frame_->SetLines(kLines, {"x", "y"});
  for (const auto& row : rows) {
    for (const int32_t value : row.held) {
      EXPECT_TRUE(frame_->SetValue(row.field, value)) << row.field;
      EXPECT_EQ(frame_->Value(row.field), value) << row.field;
      for (const int32_t other : row.refused) {
        EXPECT_FALSE(frame_->SetValue(row.field, other)) << row.field << ": " << other;
        EXPECT_EQ(frame_->Value(row.field), value) << row.field;
      }
    }
  }
  frame_->SetText(kNumber, "256");
  frame_->SetText(kPicked, "C:\\a");
  EXPECT_EQ(frame_->Text(kNumber) + frame_->Text(kPicked), "256C:\\a");
  EXPECT_EQ(frame_->Mask(kMask).size, 3u);
  EXPECT_EQ(frame_->Mask(kMask).factor, 50);
  frame_->SetMask(kMask, {11, 91});
  EXPECT_EQ(frame_->Mask(kMask).size, 11u) << "added";
  EXPECT_EQ(frame_->Mask(kMask).factor, 90);
  SettingsListControl& table = frame_->Table(kTable);
  for (int time = 0; time < 2; ++time) {
    table.RemoveAllColumns();
    table.AddColumn("Name", 100);
    table.AddColumn("Value", 100);
    table.AddRow("a", "1");
    table.AddRow("b", "2");
  }
  char text[8] = "";
  ListView_GetItemText(Control(kTable), 1, 1, text, sizeof text);
  EXPECT_STREQ(text, "2");
  EXPECT_EQ(ListView_GetItemCount(Control(kTable)), 2);
  EXPECT_TRUE(events_.empty()) << "the user has done nothing";
}

TEST_F(PageFrameTest, TellsWhatTheUserDoes) {
  frame_->SetLines(kLines, {"a"});
  SendMessageA(Control(kCheck), BM_CLICK, 0, 0);
  SendMessageA(Control(kRadio, 1), BM_CLICK, 0, 0);
  Slide(Control(kBelongs), 7);
  EXPECT_EQ(WindowText(Control(kBelongs, kPartExtra)), "7");
  Command(Control(kChoice), CBN_SELCHANGE);
  SendMessageA(Control(kNumber), WM_CHAR, '7', 0);
  Slide(GetDlgItem(Control(kMask), CKCTRLPMaskOperation::kFactor), 33);
  EXPECT_EQ(frame_->Mask(kMask).factor, 33);
  SendMessageA(Control(kPicked, kPartExtra), BM_CLICK, 0, 0);
  Command(Control(kLines), LBN_SELCHANGE);
  SendMessageA(Control(kButton), BM_CLICK, 0, 0);
  const auto field = [](uint32_t id) { return static_cast<int>(id); };
  EXPECT_EQ(events_, (std::vector<int>{field(kCheck), field(kRadio), field(kBelongs),
                                       field(kChoice), field(kNumber), field(kMask),
                                       -field(kPicked), field(kLines), -field(kButton)}));
  EXPECT_EQ(frame_->Value(kRadio), 1);
}

TEST_F(PageFrameTest, EnablesWhatBelongsTogether) {
  const auto slider = [this] { return IsWindowEnabled(Control(kBelongs)) != FALSE; };
  frame_->SetEnabled(kCheck, false);
  EXPECT_FALSE(slider() || IsWindowEnabled(Control(kBelongs, kPartLabel)));
  frame_->SetEnabled(kBelongs, true);
  EXPECT_FALSE(slider()) << "its check box is not";
  frame_->SetEnabled(kCheck, true);
  EXPECT_TRUE(slider());
  frame_->SetEnabled(kBelongs, false);
  frame_->SetEnabled(kCheck, true);
  EXPECT_FALSE(slider()) << "by itself";
  frame_->SetEnabled(kMask, false);
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(Control(kMask), CKCTRLPMaskOperation::kSize)));
}

// At any width that it says to be enough.
TEST_F(PageFrameTest, NothingOverlaps) {
  for (const int width : {frame_->LeastWidth(), 400, 900}) {
    Arrange(width);
    RECT panel;
    GetWindowRect(frame_->panel(), &panel);
    std::vector<RECT> places;
    for (HWND c = GetWindow(frame_->panel(), GW_CHILD); c != nullptr;
         c = GetWindow(c, GW_HWNDNEXT)) {
      RECT place;
      RECT common;
      GetWindowRect(c, &place);
      EXPECT_TRUE(IntersectRect(&common, &place, &panel) && EqualRect(&common, &place))
          << GetDlgCtrlID(c) << " at " << width;
      for (const RECT& other : places) EXPECT_FALSE(IntersectRect(&common, &place, &other));
      places.push_back(place);
    }
  }
}

TEST_F(PageFrameTest, OutlivesItsWindow) {
  SettingsListControl& table = frame_->Table(kTable);
  DestroyWindow(parent_);
  table.AddRow("a", "b");
  for (const PageField& field : kFields) {
    EXPECT_FALSE(frame_->SetValue(field.id, 0));
    frame_->SetText(field.id, "a");
    frame_->SetLines(field.id, {"a"});
    frame_->SetMask(field.id, {5, 5});
    frame_->SetEnabled(field.id, false);
    frame_->Table(field.id).AddRow("a", "b");
    EXPECT_EQ(frame_->Text(field.id), "");
    EXPECT_LE(frame_->Value(field.id), 0);
  }
  EXPECT_EQ(frame_->Value(kRadio), -1);
  EXPECT_EQ(frame_->window(), nullptr);
}

TEST_F(PageFrameTest, LeavesNoWindowBehindIfItCannotBeMade) {
  frame_.reset();
  SetPhraseLookup([](const char*) -> std::string { throw std::bad_alloc(); });
  EXPECT_THROW(PageFrame(parent_, kPage, "Title", kFields, {}, {}, {}), std::bad_alloc);
  SetPhraseLookup(nullptr);
  EXPECT_EQ(GetWindow(parent_, GW_CHILD), nullptr);
}

// The dialog with its real pages.
class OptionsWindowTest : public test::ModalDialogTest {
 protected:
  bool Run(Acts acts, HWND owner = nullptr) {
    return RunWith(std::move(acts), [&] { return dialog_.Run(owner); });
  }
  HWND Window() const override { return static_cast<HWND>(view_->window()); }
  void Close() override { view_->End(false); }
  HWND Tree() const { return Control(IDC_OPTIONS_TREE); }
  HWND Area() const { return Control(IDC_OPTIONS_AREA); }
  std::string Head() const { return WindowText(GetDlgItem(Area(), IDC_OPTIONS_TITLE)); }
  HTREEITEM Item(int row) const {
    HTREEITEM item = TreeView_GetRoot(Tree());
    for (; row > 0; --row) item = TreeView_GetNextVisible(Tree(), item);
    return item;
  }
  std::function<void()> Key(WPARAM key) const {
    return [=, this] { Press(key); };
  }
  HWND PasswordDialogWindow() const {
    HWND window = nullptr;
    do {
      window = FindWindowExA(nullptr, window, "#32770", nullptr);
    } while (window != nullptr && (window == Window() || !IsWindowVisible(window)));
    return window;
  }
  // The page's window that shows; there must be one only.
  HWND Page() const {
    HWND shown = nullptr;
    for (HWND c = GetWindow(Area(), GW_CHILD); c != nullptr; c = GetWindow(c, GW_HWNDNEXT)) {
      if (GetDlgCtrlID(c) < kFirstFieldControl || !IsWindowVisible(c)) continue;
      EXPECT_EQ(shown, nullptr);
      EXPECT_TRUE(IsWindowEnabled(c));
      shown = c;
    }
    return shown;
  }

  NoServices services_;
  std::unique_ptr<OptionsDialogView> view_ = MakeWin32OptionsDialogView();
  OptionsDialog dialog_{services_, *view_};
};

TEST_F(OptionsWindowTest, TheKeyboardWalksTheTree) {
  std::vector<HWND> pages;
  const auto look = [&] { pages.push_back(Page()); };
  const auto atSecondGroup = [&] {
    look();
    EXPECT_EQ(TreeView_GetSelection(Tree()), Item(6)) << "a group can be passed upwards";
    EXPECT_EQ(Head(), "ZYR 2000 Digital Sensor");
  };
  Acts acts = {[&] {
    EXPECT_EQ(GetFocus(), Tree());
    EXPECT_EQ(TreeView_GetSelection(Tree()), Item(1));
    look();
  }};
  for (int i = 0; i < 5; ++i) acts.push_back(Key(VK_DOWN));
  const auto atItsFirstPage = [&] {
    look();
    EXPECT_EQ(TreeView_GetSelection(Tree()), Item(7));
  };
  acts.insert(acts.end(), {atSecondGroup, Key(VK_DOWN), atItsFirstPage, Key(VK_ESCAPE)});
  EXPECT_FALSE(Run(acts));
  ASSERT_EQ(pages.size(), 3u);
  EXPECT_NE(pages[0], pages[1]);
  EXPECT_EQ(pages[1], pages[2]) << "a group stands for its first page";
}

TEST_F(OptionsWindowTest, TabBringsIntoViewWhatItReaches) {
  const auto shrink = [this] {
    SetWindowPos(Window(), nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER);
    TreeView_SelectItem(Tree(), Item(8));  // with many controls
  };
  Acts acts = {shrink, [] {}};
  int inPage = 0;
  const auto inView = [&] {
    RECT focus;
    RECT area;
    RECT common;
    GetWindowRect(GetFocus(), &focus);
    GetWindowRect(Area(), &area);
    if (!IsChild(Area(), GetFocus())) return;
    ++inPage;
    EXPECT_TRUE(IntersectRect(&common, &focus, &area) && EqualRect(&common, &focus));
  };
  for (int i = 0; i < 10; ++i) acts.insert(acts.end(), {Key(VK_TAB), inView});
  acts.push_back([this] {
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_POS;
    GetScrollInfo(Area(), SB_VERT, &info);
    EXPECT_GT(info.nPos, 0);
  });
  acts.push_back(Key(VK_ESCAPE));
  EXPECT_FALSE(Run(acts));
  EXPECT_GE(inPage, 7);
}

TEST_F(OptionsWindowTest, EnterPressesTheButtonItIsAt) {
  EXPECT_FALSE(Run({[this] { TreeView_SelectItem(Tree(), Item(2)); }, [] {}, Key(VK_TAB),
                    Key(VK_TAB), Key(VK_RETURN), [] {}, Key(VK_ESCAPE)}));
  EXPECT_EQ(services_.asked, 1);
}

TEST_F(OptionsWindowTest, AGroupThatStaysClosedIsMarkedBack) {
  Acts acts = {[this] { TreeView_SelectItem(Tree(), Item(3)); },
               [] {},
               [this] { TreeView_SelectItem(Tree(), Item(13)); },
               [this] {
                 const HWND box = PasswordDialogWindow();
                 if (box == nullptr) return ActAgain();  // not yet
                 PostMessageA(box, WM_COMMAND, IDCANCEL, 0);
               },
               [] {},
               [this] {
                 EXPECT_EQ(TreeView_GetSelection(Tree()), Item(3));
                 EXPECT_EQ(Head(), "ZYR TWAIN Options");
               },
               Key(VK_ESCAPE)};
  EXPECT_FALSE(Run(acts));
}

TEST_F(OptionsWindowTest, GoesWithItsOwner) {
  const HWND owner = CreateWindowA("STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 99, 99, nullptr,
                                   nullptr, nullptr, nullptr);
  EXPECT_FALSE(Run({[owner] { DestroyWindow(owner); }}, owner));
  view_->SetTree({});
  view_->MarkInTree(0, 0);
  view_->SetHead("a", "b");
  view_->ShowPage(0);
  EXPECT_EQ(view_->MakePage(0, "a", kFields), nullptr);
}

}  // namespace
}  // namespace zyr
