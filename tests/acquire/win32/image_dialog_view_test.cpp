#include "acquire/image_dialog/win32/image_dialog_view.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "acquire/image_dialog/gamma_dialog_view.h"
#include "acquire/image_dialog/image_dialog.h"
#include "acquire/image_dialog/operation_tree.h"
#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "imaging/image/deep_image.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/geometry/rotate.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/masks/mask_filters.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "resources/resource.h"
#include "settings/store.h"
#include "tests/support/win32/window_test.h"

namespace zyr {
namespace {

constexpr UINT kGetMenuHandle = 0x01E1;  // MN_GETHMENU
const char kPopupClass[] = "#32768";
const char kGammaTitle[] = "Adjust Gamma, Brightness, Contrast";

class ImageDialogViewTest : public test::ModalDialogTest {
 protected:
  void SetUp() override {
    SetScanToPath(folder_);
    Put(3, 2, 8, kPixels);
  }
  void TearDown() override {
    images_.DeleteAll();
    RemoveDirectoryA(folder_.c_str());
    SetScanToPath(userFolder_);
  }

  // The only image.
  void Put(uint32_t width, uint32_t height, uint32_t bits, const std::vector<uint8_t>& pixels) {
    images_.DeleteAll();
    CachedImage image;
    image.width = width;
    image.height = height;
    image.bitsPerPixel = bits;
    image.fileName = folder_ + "\\CACHEDRAW.RAW";
    image.SetPixelData(pixels);
    ASSERT_TRUE(image.Save());
    images_.LoadAll();
    ASSERT_EQ(images_.GetCount(), 1u);
  }

  bool Run(Acts acts, HWND owner = nullptr) {
    view_ = MakeWin32ImageDialogView();
    ImageDialog dialog(*view_, images_);
    EXPECT_TRUE(dialog.SetImage(images_.GetAt(0)));
    return RunWith(std::move(acts), [&] { return dialog.Run(owner); });
  }
  HWND Window() const override { return static_cast<HWND>(view_->window()); }
  void Close() override {
    if (Gamma() != nullptr) SendMessageA(Gamma(), WM_COMMAND, IDCANCEL, 0);
    view_->End(false);
  }
  static HWND Gamma() { return FindWindowA("#32770", kGammaTitle); }
  std::string Status() const { return WindowText(Control(IDC_IMAGE_STATUS)); }
  std::vector<uint8_t> Pixels() {
    const std::span<const uint8_t> pixels = images_.GetAt(0)->PixelData();
    return {pixels.begin(), pixels.end()};
  }

  std::function<void()> Give(WPARAM command) {
    return [=, this] { PostMessageA(Window(), WM_COMMAND, command, 0); };
  }
  // As the loop of the dialog does it.
  std::function<void()> Key(WPARAM key, bool control = false) {
    return [=, this] {
      BYTE keys[256] = {};
      keys[VK_CONTROL] = control ? 0x80 : 0;
      SetKeyboardState(keys);
      Press(key);
      keys[VK_CONTROL] = 0;
      SetKeyboardState(keys);
    };
  }
  // In a popup's loop.
  std::function<void()> MenuKey(WPARAM key) {
    return [=, this] { PostMessageA(Window(), WM_KEYDOWN, key, 0); };
  }
  static HMENU Popup() {
    const HWND window = FindWindowA(kPopupClass, nullptr);
    return window == nullptr ? nullptr
                             : reinterpret_cast<HMENU>(SendMessageA(window, kGetMenuHandle, 0, 0));
  }
  static bool IsOffered(UINT command) {
    const UINT state = GetMenuState(Popup(), command, MF_BYCOMMAND);
    EXPECT_NE(state, static_cast<UINT>(-1)) << command;
    return (state & (MF_GRAYED | MF_DISABLED)) == 0;
  }

  void ExpectNoOverlap() const {
    RECT client;
    GetClientRect(Window(), &client);
    std::vector<RECT> places;
    for (HWND c = GetWindow(Window(), GW_CHILD); c != nullptr; c = GetWindow(c, GW_HWNDNEXT)) {
      if (!IsWindowVisible(c)) continue;
      const RECT place = PlaceOf(GetDlgCtrlID(c));
      RECT common;
      EXPECT_TRUE(IntersectRect(&common, &place, &client) && EqualRect(&common, &place));
      for (const RECT& other : places) EXPECT_FALSE(IntersectRect(&common, &place, &other));
      places.push_back(place);
    }
  }

  // Around the viewer and the status line.
  void ExpectMargins() const {
    const int margin = Scaled(5);
    const RECT viewer = PlaceOf(IDC_IMAGE_VIEWER);
    const RECT status = PlaceOf(IDC_IMAGE_STATUS);
    RECT client;
    GetClientRect(Window(), &client);
    EXPECT_EQ(viewer.left - PlaceOf(IDC_IMAGE_LIST_HANDLE).right, margin);
    EXPECT_EQ(viewer.top - PlaceOf(IDOK).bottom, margin);
    EXPECT_EQ(client.right - viewer.right, margin);
    EXPECT_EQ(status.top - viewer.bottom, margin);
    EXPECT_EQ(status.left, margin);
    EXPECT_EQ(client.right - status.right, margin);
    EXPECT_EQ(client.bottom - status.bottom, margin);
  }

  const std::vector<uint8_t> kPixels = {1, 2, 3, 40, 50, 60};
  const std::vector<uint8_t> kMirrored = {3, 2, 1, 60, 50, 40};
  const std::string userFolder_ = GetScanToPath();
  const std::string folder_ = test::FolderOfTest("zyr-image");
  ImageCache images_;
  std::unique_ptr<ImageDialogView> view_;
};

TEST_F(ImageDialogViewTest, OffersTheGroupsAsPopups) {
  const auto firstPopup = [this] {
    EXPECT_FALSE(IsOffered(kImageUndo));
    EXPECT_FALSE(IsOffered(kImageRedo));
    view_->SetItemEnabled(kImageRedo, true);
    EXPECT_TRUE(IsOffered(kImageRedo)) << "also while it stands";
    view_->SetItemEnabled(kImageRedo, false);
  };
  const auto lookAtStep = [this] {
    EXPECT_TRUE(IsOffered(kImageUndo));
    EXPECT_EQ(Status(), "Flip Horizontally") << "what would be undone";
  };
  std::string size;
  EXPECT_TRUE(Run(
      {[&] { size = Status(); }, Give(IDC_IMAGE_GROUP_5), firstPopup, MenuKey(VK_ESCAPE),
       [&] { SetFocus(Control(IDC_IMAGE_GROUP_2)); }, Give(IDC_IMAGE_GROUP_2), MenuKey(VK_DOWN),
       MenuKey(VK_DOWN), [this] { EXPECT_EQ(Status(), "Flips the image horizontally"); },
       MenuKey(VK_RETURN),
       [&] {
         EXPECT_EQ(Status(), size);
         EXPECT_EQ(GetFocus(), Control(IDC_IMAGE_VIEWER)) << "Enter is OK again";
       },
       Give(IDC_IMAGE_GROUP_5), MenuKey(VK_DOWN), lookAtStep, MenuKey(VK_ESCAPE), Key(VK_RETURN)}));
  EXPECT_EQ(Pixels(), kMirrored);
  EXPECT_NE(size.find("3 pixels x 2 pixels"), std::string::npos) << size;
}

TEST_F(ImageDialogViewTest, HasKeysForUndoRedoAndCopy) {
  EXPECT_TRUE(
      Run({Give(kImageFlipVertical), Give(kImageFlipHorizontal), Key('Z', true), Key('Z', true),
           Key('Z', true), Key('Y', true), Key('Z'), [this] { SetFocus(Control(IDCANCEL)); },
           Key('Y', true), Key('Z', true), Key('C', true),
           [this] {
             EXPECT_TRUE(IsClipboardFormatAvailable(CF_DIB));
             SetFocus(Control(IDC_IMAGE_VIEWER));
           },
           Key(VK_RETURN)}));
  EXPECT_EQ(Pixels(), (std::vector<uint8_t>{40, 50, 60, 1, 2, 3})) << "the first step alone";

  EXPECT_FALSE(Run({Give(kImageInvert), Key(VK_ESCAPE)}));
  EXPECT_EQ(Pixels(), (std::vector<uint8_t>{40, 50, 60, 1, 2, 3}));
}

TEST_F(ImageDialogViewTest, ListsAllOperationsInATree) {
  const auto down = [this] {
    TreeView_SelectItem(Control(IDC_IMAGE_LIST),
                        TreeView_GetNextVisible(Control(IDC_IMAGE_LIST),
                                                TreeView_GetSelection(Control(IDC_IMAGE_LIST))));
  };
  const auto look = [&] {
    SetWindowPos(Window(), nullptr, 0, 0, 1000, 700, SWP_NOZORDER | SWP_NOMOVE);
    if (!IsWindowVisible(Control(IDC_IMAGE_LIST))) {
      SendMessageA(Window(), WM_COMMAND, IDC_IMAGE_LIST_HANDLE, 0);
    }
    size_t rows = 0;
    for (const OperationGroup& group : OperationTree()) rows += 1 + group.items.size();
    EXPECT_EQ(TreeView_GetCount(Control(IDC_IMAGE_LIST)), rows);
    SetFocus(Control(IDC_IMAGE_LIST));
    EXPECT_EQ(Status(), "Contains various viewing, saving, exporting and transfer options.");
    for (int i = 0; i < 4; ++i) down();
    EXPECT_EQ(Status(), "Flips the image horizontally");
  };
  EXPECT_TRUE(Run({look, Key(VK_RETURN),
                   [this] {
                     // Now an operation that is not there yet.
                     HTREEITEM last = TreeView_GetLastVisible(Control(IDC_IMAGE_LIST));
                     last = TreeView_GetPrevSibling(Control(IDC_IMAGE_LIST), last);
                     TreeView_SelectItem(Control(IDC_IMAGE_LIST), last);
                   },
                   Key(VK_RETURN),
                   [this] {
                     SendMessageA(Window(), WM_COMMAND, IDC_IMAGE_LIST_HANDLE, 0);
                     EXPECT_FALSE(IsWindowVisible(Control(IDC_IMAGE_LIST)));
                     EXPECT_EQ(GetFocus(), Control(IDC_IMAGE_VIEWER));
                   },
                   Key(VK_RETURN)}));
  EXPECT_EQ(Pixels(), kMirrored);
}

TEST_F(ImageDialogViewTest, KeepsItsControlsApartAtAnySize) {
  EXPECT_FALSE(Run({[this] {
                      for (const SIZE size : {SIZE{1, 1}, SIZE{900, 500}, SIZE{1200, 850}}) {
                        SetWindowPos(Window(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER);
                        for (int i = 0; i < 2; ++i) {
                          ExpectNoOverlap();
                          ExpectMargins();
                          SendMessageA(Window(), WM_COMMAND, IDC_IMAGE_LIST_HANDLE, 0);
                        }
                        RECT client;
                        GetClientRect(Window(), &client);
                        EXPECT_GE(client.right, 640);
                        EXPECT_GE(client.bottom, 480);
                      }
                    },
                    Key(VK_ESCAPE)}));
}

TEST_F(ImageDialogViewTest, AdjustsByHand) {
  const auto slider = [](int id) { return GetDlgItem(Gamma(), id); };
  const auto push = [=](int id, WPARAM key) {
    SendMessageA(slider(id), WM_KEYDOWN, key, 0);
    SendMessageA(slider(id), WM_KEYUP, key, 0);
  };
  const auto look = [=, this] {
    ASSERT_NE(Gamma(), nullptr);
    EXPECT_FALSE(IsWindowEnabled(Window()));
    EXPECT_EQ(SendMessageA(slider(kSliderGamma), TBM_GETRANGEMAX, 0, 0), 300);
    EXPECT_EQ(SendMessageA(slider(kSliderContrast), TBM_GETRANGEMIN, 0, 0), -100);
    push(kSliderBrightness, VK_NEXT);
    EXPECT_EQ(WindowText(GetDlgItem(Gamma(), IDC_BRIGHTNESS_VALUE)), "10");
    EXPECT_EQ(WindowText(GetDlgItem(Gamma(), IDC_GAMMA_VALUE)), "100");
  };
  const auto finish = [](WPARAM command) {
    return [=] { SendMessageA(Gamma(), WM_COMMAND, command, 0); };
  };
  const auto timeIsUp = [] { SendMessageA(Gamma(), WM_TIMER, 1, 0); };
  EXPECT_TRUE(Run({Give(kImageAdjust), look, timeIsUp, finish(IDCANCEL), Give(IDOK)}));
  EXPECT_EQ(Pixels(), kPixels);
  EXPECT_TRUE(Run({Give(kImageAdjust), look, timeIsUp, finish(IDOK), Give(IDOK)}));
  EXPECT_GT(Pixels()[0], kPixels[0]);
}

TEST_F(ImageDialogViewTest, EndsWhenItsOwnerIsDestroyedBehindIt) {
  for (const WPARAM above : {0, IDC_IMAGE_GROUP_4, static_cast<int>(kImageAdjust)}) {
    const HWND owner = CreateWindowA("STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 200, 100, nullptr,
                                     nullptr, nullptr, nullptr);
    EXPECT_FALSE(Run({Give(kImageInvert), Give(above),
                      [owner] {
                        EXPECT_FALSE(IsWindowEnabled(owner));
                        DestroyWindow(owner);
                      }},
                     owner));
    EXPECT_EQ(Pixels(), kPixels);
    EXPECT_EQ(Popup(), nullptr);
    EXPECT_EQ(Gamma(), nullptr);
  }
}

std::vector<uint8_t> BytesOf(const CKIPDeepImage& image) {
  std::vector<uint8_t> bytes;
  for (uint32_t y = 0; y < image.GetHeight(); ++y) {
    const auto* row = reinterpret_cast<const uint8_t*>(image.GetRow(y));
    bytes.insert(bytes.end(), row, row + image.GetWidth() * sizeof(uint16_t));
  }
  return bytes;
}

// Its size and its pixels.
std::vector<uint32_t> Seen(const CKIPImage* picture) {
  if (picture == nullptr) return {};
  std::vector<uint32_t> seen = {picture->width(), picture->height()};
  for (uint32_t y = 0; y < picture->height(); ++y) {
    const uint8_t* row = picture->PictureRow(y);
    seen.insert(seen.end(), row, row + picture->width());
  }
  return seen;
}

using Deep = std::shared_ptr<const CKIPDeepImage>;

std::vector<uint32_t> Seen(const Deep& image) {
  CachedImage cached;
  cached.width = image->GetWidth();
  cached.height = image->GetHeight();
  cached.bitsPerPixel = image->GetBits();
  cached.SetPixelData(BytesOf(*image));
  return Seen(cached.PrepareImage());
}

struct Step {
  uint32_t command;
  Deep (*apply)(const CKIPDeepImage* image);
};
const Step kSteps[] = {
    {kImageFlipVertical, [](auto* image) -> Deep { return DeepFlipVertical(image, nullptr); }},
    {kImageFlipHorizontal, [](auto* image) -> Deep { return DeepFlipHorizontal(image, nullptr); }},
    {kImageRotate90, [](auto* image) -> Deep { return DeepRotate90(image, nullptr); }},
    {kImageRotate180, [](auto* image) -> Deep { return DeepRotate180(image, nullptr); }},
    {kImageRotate270, [](auto* image) -> Deep { return DeepRotate270(image, nullptr); }},
    {kImageEqualize, [](auto* image) -> Deep { return DeepEqualize(image, nullptr); }},
    {kImageNormalize, [](auto* image) -> Deep { return DeepNormalize(image, nullptr); }},
    {kImageAutoBrightnessContrast,
     [](auto* image) -> Deep { return DeepNormalize(image, nullptr); }},
    {kImageSmooth, [](auto* image) -> Deep { return DeepSmooth(image, 3, 100, nullptr); }},
    {kImageSharpen, [](auto* image) -> Deep { return DeepSharpen(image, 3, 50, nullptr); }},
    {kImageEdgeEnhance, [](auto* image) -> Deep { return DeepEdgeEnhance(image, 3, 3, nullptr); }},
    {kImageFastNoiseReduction,
     [](auto* image) -> Deep { return DeepFastNoiseReduction(image, nullptr); }},
    {kImageNoiseReduction, [](auto* image) -> Deep { return DeepMedianFilter(image, 3, nullptr); }},
    {kImageInvert, [](auto* image) -> Deep { return DeepInvert(image, nullptr); }},
};

// The user walks at random through steps, undo, redo and original; beside it goes a plain model of
// full copies, made by the library alone.
class ImageDialogWalkTest : public ImageDialogViewTest {
 protected:
  void SetUp() override {
    ImageDialogViewTest::SetUp();
    auto image = std::make_shared<CKIPDeepImage>();
    image->Create(61, 47, 12);
    for (uint32_t i = 0; i < 61 * 47; ++i) image->GetPixels()[i] = random_() % 3000 + 500;
    Put(61, 47, 12, BytesOf(*image));
    original_ = present_ = image;
  }

  std::function<void()> Walk(int steps, bool byHand) {
    return [=, this] {
      for (int i = 0; i < steps && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        TakeStep(byHand);
        ASSERT_EQ(Seen(view_->viewer().displayImage()), Seen(present_));
        ExpectStates();
      }
    };
  }

  void TakeStep(bool byHand) {
    const uint32_t choice = random_() % 100;
    if (choice < 22) return Move(kImageUndo, undo_, redo_);
    if (choice < 40) return Move(kImageRedo, redo_, undo_);
    if (choice < 44) return Revert();
    if (choice < 48 && byHand) return AdjustByHand(random_() % 300 + 1, random_() % 201 - 100);
    const Step& step = kSteps[random_() % std::size(kSteps)];
    Command(step.command);
    Push(step.apply(present_.get()));
  }
  void Command(uint32_t command) { SendMessageA(Window(), WM_COMMAND, command, 0); }
  void Push(Deep result) {
    undo_.push_back(present_);
    present_ = std::move(result);
  }
  void Move(uint32_t command, std::vector<Deep>& from, std::vector<Deep>& to) {
    Command(command);
    if (from.empty()) return;
    to.push_back(std::exchange(present_, from.back()));
    from.pop_back();
  }
  void Revert() {
    Command(kImageOriginal);
    if (undo_.empty()) return;  // not offered: redo stays, too
    present_ = original_;
    undo_.clear();
    redo_.clear();
  }

  void AdjustByHand(int32_t gamma, int32_t contrast) {
    gamma_ = gamma;
    contrast_ = contrast;
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, UseSliders);
    Command(kImageAdjust);
    KillTimer(nullptr, timer);
    const Deep first =
        gamma == 100 ? present_ : DeepAdjustGamma(present_.get(), gamma * 0.01, nullptr);
    Push(contrast == 0 ? first : DeepAdjustBrightnessContrast(first.get(), 0, contrast, nullptr));
  }
  static void CALLBACK UseSliders(HWND, UINT, UINT_PTR, DWORD) {
    auto& test = static_cast<ImageDialogWalkTest&>(*test_);
    if (!IsWindowVisible(Gamma())) return;
    SendMessageA(GetDlgItem(Gamma(), kSliderGamma), TBM_SETPOS, TRUE, test.gamma_);
    SendMessageA(GetDlgItem(Gamma(), kSliderContrast), TBM_SETPOS, TRUE, test.contrast_);
    SendMessageA(Gamma(), WM_TIMER, 1, 0);
    SendMessageA(Gamma(), WM_COMMAND, IDOK, 0);
  }

  // In the list, and in the popup if it stands.
  void ExpectStates() {
    const bool hasPopup = Popup() != nullptr;
    LPARAM row = 0;
    for (const OperationGroup& group : OperationTree()) {
      ++row;
      for (const OperationItem& item : group.items) {
        const bool back = item.id == kImageUndo || item.id == kImageOriginal;
        const bool enabled = back ? !undo_.empty() : item.id != kImageRedo || !redo_.empty();
        EXPECT_EQ(IsListed(row++), enabled) << item.name;
        const bool hasIt = hasPopup && &group == &OperationTree().back();
        EXPECT_EQ(hasIt ? IsOffered(item.id) : enabled, enabled) << item.name;
      }
    }
  }
  // As the list asks when it draws the row: what is disabled is grey.
  bool IsListed(LPARAM row) const {
    NMTVCUSTOMDRAW draw = {};
    draw.nmcd.hdr = {Control(IDC_IMAGE_LIST), IDC_IMAGE_LIST, static_cast<UINT>(NM_CUSTOMDRAW)};
    draw.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
    draw.nmcd.lItemlParam = row;
    draw.clrText = GetSysColor(COLOR_WINDOWTEXT);
    SendMessageA(Window(), WM_NOTIFY, IDC_IMAGE_LIST, reinterpret_cast<LPARAM>(&draw));
    return draw.clrText != GetSysColor(COLOR_GRAYTEXT);
  }

  std::mt19937 random_{20};
  Deep original_, present_;
  std::vector<Deep> undo_, redo_;  // the most recent last
  int32_t gamma_ = 0, contrast_ = 0;
};

TEST_F(ImageDialogWalkTest, FiveHundredStepsByMenuShowWhatTheLibraryMakes) {
  EXPECT_TRUE(Run({Walk(250, true), Give(IDC_IMAGE_GROUP_5),
                   [this] { ASSERT_NE(Popup(), nullptr); }, Walk(250, false), MenuKey(VK_ESCAPE),
                   [this] {
                     Command(kImageInvert);
                     Push(DeepInvert(present_.get(), nullptr));
                     PostMessageA(Window(), WM_COMMAND, IDOK, 0);
                   }}));
  EXPECT_EQ(Pixels(), BytesOf(*present_));
}

}  // namespace
}  // namespace zyr
