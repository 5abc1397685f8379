#include "controls/directory_selection_window.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include "controls/dialog_window.h"
#include "controls/pixel_icon.h"
#include "foundation/support/directory_selection.h"
#include "foundation/support/files.h"
#include "resources/resource.h"
#include "tests/support/win32/window_test.h"

namespace zyr {
namespace {

class DirectorySelectionWindowTest : public test::ModalDialogTest {
 protected:
  DirectorySelectionWindowTest() {
    CreateDirectories(folder_ + "\\one\\deep");
    dialog_.directory = folder_;
  }
  ~DirectorySelectionWindowTest() override {
    for (const char* name : {"\\one\\deep", "\\one", "\\new", ""}) {
      RemoveDirectoryA((folder_ + name).c_str());
    }
  }

  bool Run(Acts acts) {
    return RunWith(std::move(acts), [&] { return dialog_.Run(nullptr); });
  }
  HWND Window() const override { return static_cast<HWND>(view_->window()); }
  void Close() override { view_->End(false); }
  HWND Tree() const { return Control(IDC_DIRECTORY_TREE); }
  HWND NamePopup() const { return GetLastActivePopup(Window()); }
  void Press(HWND window, int id) const { PostMessageA(window, WM_COMMAND, id, 0); }
  void Key(WPARAM key) const { SendMessageA(Tree(), WM_KEYDOWN, key, 0); }
  HTREEITEM Selected() const { return TreeView_GetSelection(Tree()); }
  std::string TextOf(HTREEITEM item) const {
    char text[MAX_PATH] = {};
    TVITEMA query = {};
    query.mask = TVIF_TEXT;
    query.hItem = item;
    query.pszText = text;
    query.cchTextMax = sizeof text;
    SendMessageA(Tree(), TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&query));
    return text;
  }

  const std::string folder_ = test::FolderOfTest("zyr-directories");
  std::unique_ptr<DirectorySelectionView> view_ = MakeWin32DirectorySelectionView();
  DirectorySelection dialog_{*view_};
};

TEST_F(DirectorySelectionWindowTest, KeysOpenOneLevelAndANewDirectoryIsChosen) {
  EXPECT_TRUE(Run({
      [this] {
        EXPECT_EQ(WindowText(Window()), "Select Path");
        EXPECT_EQ(WindowText(Control(IDC_DIRECTORY_HEAD)), "Select the appropriate directory.");
        EXPECT_EQ(GetFocus(), Tree());
        EXPECT_EQ(TextOf(Selected()), FileNameOf(folder_));
        EXPECT_EQ(TreeView_GetChild(Tree(), Selected()), nullptr) << "not read so far";
        Key(VK_MULTIPLY);
      },
      [this] {
        const HTREEITEM one = TreeView_GetChild(Tree(), Selected());
        EXPECT_EQ(TextOf(one), "one");
        EXPECT_EQ(TreeView_GetChild(Tree(), one), nullptr) << "the key opens one level at a time";
        Press(Window(), IDC_DIRECTORY_NEW);
      },
      [this] {
        ASSERT_NE(NamePopup(), Window());
        EXPECT_EQ(WindowText(NamePopup()), "New Directory");
        SetDlgItemTextA(NamePopup(), IDC_NEW_DIRECTORY_NAME, " new ");
        Press(NamePopup(), IDOK);
      },
      [this] {
        EXPECT_EQ(TextOf(Selected()), "new");
        EXPECT_EQ(TextOf(TreeView_GetPrevSibling(Tree(), Selected())), "");
        EXPECT_EQ(TextOf(TreeView_GetNextSibling(Tree(), Selected())), "one");
        Press(Window(), IDOK);
      },
  }));
  EXPECT_EQ(dialog_.directory, folder_ + "\\new");
  EXPECT_TRUE(DirectoryExists(dialog_.directory));
}

TEST_F(DirectorySelectionWindowTest, TenThousandDirectoriesAreShownAtOnce) {
  EXPECT_FALSE(Run({[this] {
    constexpr int kCount = 10'000;
    const ULONGLONG start = GetTickCount64();
    const auto parent = view_->AddNode(0, 0, "many", DirectoryKind::kFolder);
    auto after = DirectorySelectionView::kNoNode;
    for (int i = 0; i < kCount; ++i) {
      after = view_->AddNode(parent, after, std::to_string(i), DirectoryKind::kFolder);
    }
    view_->Expand(parent);
    view_->RemoveNode(parent);
    EXPECT_LT(GetTickCount64() - start, 5000u);
    view_->Select(after);  // it has gone with its parent
    view_->SetCanBeOpened(after, true);
    Press(Window(), IDCANCEL);
  }}));
}

TEST_F(DirectorySelectionWindowTest, MayBeDestroyedUnderItsNameDialog) {
  EXPECT_FALSE(Run({
      [this] { Press(Window(), IDC_DIRECTORY_NEW); },
      [this] {
        EXPECT_NE(NamePopup(), Window());
        DestroyWindow(Window());
      },
  }));
  EXPECT_EQ(dialog_.directory, folder_);
  view_->SetHead("nobody sees it");
  EXPECT_EQ(view_->AddNode(0, 0, "nor this", DirectoryKind::kFolder), 0u);
  view_->SetNewDirectoryEnabled(false);
}

TEST_F(DirectorySelectionWindowTest, KeepsItsControlsApartAtEverySize) {
  EXPECT_FALSE(Run({[this] {
    view_->SetHead(std::string(60, 'w') + " " + std::string(60, 'w') + " and so on and on and on");
    for (const int side : {1, 500, 900}) {
      SetWindowPos(Window(), nullptr, 0, 0, side, side, SWP_NOZORDER);
      RECT client;
      GetClientRect(Window(), &client);
      RECT former = {};
      for (const int id :
           {IDC_DIRECTORY_HEAD, IDC_DIRECTORY_TREE, IDC_DIRECTORY_NEW, IDOK, IDCANCEL}) {
        const RECT place = PlaceOf(id);
        EXPECT_TRUE(place.top >= former.bottom || place.left >= former.right) << id << ' ' << side;
        EXPECT_TRUE(place.right < client.right && place.bottom < client.bottom) << id;
        EXPECT_FALSE(IsRectEmpty(&place)) << id;
        former = place;
      }
    }
    Press(Window(), IDCANCEL);
  }}));
}

TEST(PixelIconTest, TheNewFolderKeepsItsLooksAtEverySize) {
  for (const int size : {16, 18, 27, 36, 72, 100}) {
    const std::vector<uint32_t> pixels = PixelsOfBitmap(IDB_KSP_NEWFOLDER, size);
    ASSERT_EQ(pixels.size(), static_cast<size_t>(size) * size);
    double covered = 0;
    for (const uint32_t pixel : pixels) covered += (pixel >> 24) / 255.0 / (size * size);
    EXPECT_NEAR(covered, 0.22, 0.02) << size;
    EXPECT_EQ(pixels[0] >> 24, 0u);
    const auto blue = [](uint32_t pixel) { return (pixel & 0xFFFFFF) == 0x2F6FB3; };
    EXPECT_NE(std::find_if(pixels.begin(), pixels.end(), blue), pixels.end());
    EXPECT_NE(IconFromPixels(pixels, size).get(), nullptr);
  }
  EXPECT_TRUE(PixelsOfBitmap(IDB_KSP_NEWFOLDER + 1, 18).empty());
}

}  // namespace
}  // namespace zyr
