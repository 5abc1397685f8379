#include "imaging/viewer/image_viewer_control.h"

#include <cmath>
#include <functional>

#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/masks/emboss.h"
#include "imaging/viewer/viewer_drag.h"
#include "imaging/viewer/viewer_zoom.h"
#include "platform/host/messages.h"
#include "tests/imaging/imaging_test.h"
#include "tests/imaging/recorded_viewer_view.h"

namespace zyr {
namespace {

constexpr uint32_t kMessage = 0x8123;
constexpr MouseKeys kNone;
constexpr MouseKeys kCtrl{.control = true};

class ViewerControlTest : public ImagingTest {
 protected:
  void SetUp() override {
    ImagingTest::SetUp();
    view_.control = &control_;
    view_.Resize(60, 40);
    control_.SetOwnerNotify(owner_.window(), kMessage);
  }
  void ExpectZoom(double zoom) { EXPECT_NEAR(control_.GetZoom(), zoom, 0.00005); }
  void ExpectShown(const CKIPImage& expected) {
    EXPECT_EQ(PixelBytes(*control_.displayImage()), PixelBytes(expected));
  }
  // Shows an image that the control owns.
  const CKIPImage& Show(std::unique_ptr<CKIPImage> image, bool resetZoom = true) {
    const CKIPImage& shown = *image;
    control_.SetImage(std::move(image), resetZoom);
    return shown;
  }
  // What was posted since the last time: "1" or "2:8", a colour as "4:bbggrr@x,y".
  std::string Notices() {
    std::string text;
    uintptr_t wParam;
    intptr_t lParam;
    while (platform::TakePosted(owner_.window(), kMessage, &wParam, &lParam)) {
      const ViewerNotice n = ReadViewerNotice(wParam, lParam);
      char one[64];
      std::snprintf(one, sizeof one, "%s%u", text.empty() ? "" : " ", n.code);
      text += one;
      if (n.code == kNoticeTool) text += ":" + std::to_string(n.tool);
      if (n.code != kNoticeColor && n.code != kNoticeProbe) continue;
      std::snprintf(one, sizeof one, ":%06x@%d,%d", n.color, n.pixel.x, n.pixel.y);
      text += one;
    }
    return text;
  }
  void Drag(ViewPoint from, ViewPoint to, MouseKeys keys = kNone) {
    control_.OnLeftDown(from, keys);
    control_.OnMouseMove(to, keys);
    control_.OnLeftUp(to, keys);
  }

  RecordedViewerView view_;
  CKIPImageViewerControl control_{view_};
  platform::host::FakeWindow owner_;
};

TEST_F(ViewerControlTest, ZoomStepsMissOneAndEndAtSixteen) {
  const struct {
    double value, step;
  } cases[] = {{1, 1},        {1.5, 1.6018},    {20, 16},        {0.01, 0.0625},
               {0.7, 0.7119}, {0.72, 1.0679},   {1.01, 1.0679},  {12.2, 16},
               {-1, 0.0625},  {0.0625, 0.0625}, {0.063, 0.0938}, {2, 2.4027}};
  Show(RandomGrey(30, 20));
  for (const auto& c : cases) {
    control_.SetZoom(c.value, true);
    EXPECT_NEAR(control_.GetZoom(), c.step, 0.00005) << c.value;
  }
  control_.SetZoom(16, true);
  control_.ZoomIn();
  EXPECT_EQ(control_.GetZoom(), 16);
  // Each step is reached from above and from below, and 1 never.
  std::vector<double> down, up;
  for (int i = 0; i < 14; ++i, control_.ZoomOut()) down.push_back(control_.GetZoom());
  for (int i = 0; i < 14; ++i, control_.ZoomIn()) up.insert(up.begin(), control_.GetZoom());
  EXPECT_EQ(down.back(), 0.09375);
  EXPECT_EQ(up.back(), 0.0625);
  EXPECT_TRUE(std::equal(down.begin() + 1, down.end(), up.begin()));
  EXPECT_EQ(std::count(down.begin(), down.end(), 1.0), 0);

  control_.SetZoom(1.5, false);
  EXPECT_EQ(control_.GetZoom(), 1.5);
  for (const double bad : {0.0, -1.0, std::nan(""), HUGE_VAL}) control_.SetZoom(bad, false);
  EXPECT_EQ(control_.GetZoom(), 1.5);
  control_.SetFullScreen(true);
  control_.SetZoom(20, true);
  EXPECT_EQ(control_.GetZoom(), 20);
}

TEST_F(ViewerControlTest, FitsTheWindowWithoutTheScrollBarsThatStoodThere) {
  Show(RandomGrey(58, 20));
  control_.SetZoom(16, true);
  EXPECT_EQ(view_.ClientSize(), (ViewSize{55, 35}));
  EXPECT_FALSE(control_.fitsWindow());
  Notices();
  control_.ZoomToOneOrFit();
  EXPECT_EQ(control_.GetZoom(), 1.0);
  EXPECT_EQ(Notices(), "1");
  EXPECT_TRUE(control_.fitsWindow());
  EXPECT_EQ(control_.GetImageRect(), (ViewRect{1, 10, 59, 30}));
  EXPECT_EQ(control_.GetScreenImageRect(), (ViewRect{101, 210, 159, 230}));
  control_.SetZoom(16, true);
  control_.ZoomToFit();
  EXPECT_EQ(control_.GetZoom(), 60.0 / 58);
  Show(RandomGrey(61, 80));
  EXPECT_EQ(view_.content, (ViewSize{61, 80}));
  control_.ZoomToOneOrFit();
  EXPECT_EQ(control_.GetZoom(), 0.5);
  view_.Resize(0, 0);
  control_.ZoomToFit();
  EXPECT_EQ(control_.GetZoom(), 0.5);
}

TEST_F(ViewerControlTest, ConvertsCoordinates) {
  const ViewerGeometry quarter{400, 100, 0.25, {60, 40}, {40, 0}};  // 7 pixels below the top
  EXPECT_EQ(quarter.ClientToImage({0, 7}, false, 0), (ViewPoint{160, 0}));
  EXPECT_EQ(quarter.ClientToImage({0, 7}, false, 0.5), (ViewPoint{162, 2}));
  EXPECT_EQ(quarter.ClientToImage({90, 99}, true, 0.5), (ViewPoint{399, 99}));
  EXPECT_EQ(quarter.ClientToImage({-90, -99}, true, 0.5), (ViewPoint{0, 0}));
  EXPECT_EQ(quarter.ImageToClient({162, 4}), (ViewPoint{0, 8}));
  EXPECT_EQ(quarter.DirtyImageRect({0, 6, 10, 17}), (ViewRect{159, -5, 201, 41}));
  const ViewerGeometry four{400, 100, 4, {60, 40}, {400, 80}};
  EXPECT_EQ(four.DirtyImageRect({0, 0, 40, 36}), (ViewRect{90, 10, 120, 30}));
  EXPECT_EQ(four.DirtyImageRect({-480, 0, 4, 4}), (ViewRect{-30, 10, 110, 30}));
  EXPECT_EQ(four.ClientToImage(four.ImageToClient({103, 23}), false, 0.5), (ViewPoint{103, 23}));
  EXPECT_EQ(four.ClientToImage({-401, -81}, false, 0), (ViewPoint{-1, -1}));
  EXPECT_TRUE((ViewerGeometry{61, 41, 0.98, {59, 40}, {}}.Fits()));  // 59.78 x 40.18
  EXPECT_FALSE((ViewerGeometry{61, 42, 0.98, {59, 40}, {}}.Fits()));
  // What 32 bits cannot hold.
  const ViewerGeometry huge{0xFFFFFFFF, 1, 1e300, {60, 40}, {INT32_MAX - 60, 0}};
  EXPECT_EQ(huge.Content(), (ViewSize{INT32_MAX, INT32_MAX}));
  EXPECT_EQ(huge.ImageToClient({INT32_MAX, 0}), (ViewPoint{INT32_MAX, 0}));
  EXPECT_EQ(huge.HeldScroll(1e300, -1), (ViewPoint{INT32_MAX - 60, 0}));
  EXPECT_EQ(ViewerGeometry{}.ClientToImage({5, 5}, true, 0.5), (ViewPoint{0, 0}));
}

TEST_F(ViewerControlTest, DragsBecomeValues) {
  const ViewRect area{10, 20, 1034, 532};  // 1024 x 512
  const ViewPoint start{500, 300};
  const auto bc = [&](int32_t x, int32_t y) {
    return DraggedBrightnessContrast(area, start, {500 + x, 300 + y});
  };
  EXPECT_EQ(bc(9, 3), (BrightnessContrast{-1, 2}));
  EXPECT_EQ(bc(-2000, 2000), (BrightnessContrast{-128, -128}));
  EXPECT_EQ(DraggedBrightnessContrast({0, 0, 255, 3}, {INT32_MAX, 0}, {INT32_MIN, 7}),
            (BrightnessContrast{-7, -128}));
  // The height counts across: 2.56 pixels a hundredth, and the width down: 5.12.
  const struct {
    int32_t x, y;
    double gx, gy;
  } cases[] = {{0, 0, 0, 0},
               {128, -256, 3.5, 0.51},
               {-128, 256, 0.51, 3.5},
               {9999, -9999, 6, 0.01},
               {1, 1, 1.01953125, 1.009765625}};
  for (const auto& c : cases) {
    const GammaPair g = DraggedGamma(area, start, {500 + c.x, 300 + c.y});
    EXPECT_NEAR(g.x, c.gx, 1e-12) << c.x << "," << c.y;
    EXPECT_NEAR(g.y, c.gy, 1e-12) << c.x << "," << c.y;
  }
  EXPECT_EQ(DraggedGamma({}, {0, 0}, {10, -10}), (GammaPair{1.5, 0.91}));
}

// Only the palette of a grey image changes, of others the pixels; steps do not add up.
TEST_F(ViewerControlTest, DragsAdjustACopyOfTheImage) {
  Palette reversed = NewIdentityPalette();
  std::reverse(reversed.begin(), reversed.end());
  for (const Palette& palette : {NewIdentityPalette(), reversed}) {
    const CKIPImage& source = Show(RandomImage(50, 30, 8, palette));
    control_.OnCommand(kViewerBrightnessContrast);
    ASSERT_NE(control_.displayImage(), &source);
    EXPECT_EQ(control_.displayImage()->palette(), palette);
    control_.OnLeftDown({30, 20}, kNone);
    control_.OnMouseMove({35, 30}, kNone);
    const CKIPImage* copy = control_.displayImage();
    control_.OnMouseMove({40, 13}, kNone);
    EXPECT_EQ(control_.displayImage(), copy);
    EXPECT_EQ(control_.brightness(), 7);
    EXPECT_EQ(control_.contrast(), 10);
    const auto expected = RandomImage(1, 1, 8, NewIdentityPalette());
    AdjustPaletteBrightnessContrast(expected.get(), 7, 10);
    EXPECT_EQ(copy->palette(), expected->palette());
    EXPECT_EQ(PixelBytes(*copy), PixelBytes(source));

    control_.OnCommand(kViewerGamma);
    EXPECT_FALSE(view_.captured);
    Drag({30, 20}, {30, 20});
    control_.SetGamma(0, 2);
    EXPECT_EQ(control_.displayImage()->palette(), palette);
    control_.SetGamma(2, 0);
    expected->SetPalette(NewIdentityPalette());
    AdjustPaletteGamma(expected.get(), 2, 2, 2, kKeepNoColor);
    EXPECT_EQ(control_.displayImage()->palette(), expected->palette());
    EXPECT_EQ(source.palette(), palette);
  }
  const CKIPImage& colors = Show(RandomImage(50, 30, 24));
  control_.SetBrightnessContrast(500, -20);
  ExpectShown(*AdjustBrightnessContrast(&colors, 128, -20, kKeepNoColor, nullptr));
  control_.SetGamma(0.5, 0);
  ExpectShown(*AdjustGamma(&colors, 0.5, 0.5, 0.5, kKeepNoColor, nullptr));
  // One that cannot be derived is not shown until there is another tool.
  const CKIPImage& bits = Show(RandomImage(50, 30, 1, {{0, 0, 0, 0}, {255, 255, 255, 0}}));
  control_.SetBrightnessContrast(1, 1);
  EXPECT_EQ(control_.displayImage(), nullptr);
  control_.OnOperation(kOperationInvert);
  control_.OnOperation(kOperationCopy);
  EXPECT_EQ(control_.displayImage(), nullptr);
  EXPECT_TRUE(view_.BringUpToDate());
  control_.SetTool(kToolMagnify, false);
  EXPECT_EQ(control_.displayImage(), &bits);
}

TEST_F(ViewerControlTest, ZoomsAndPansAroundThePointer) {
  Show(RandomGrey(200, 100));
  control_.SetTool(kToolMagnify, true);
  control_.OnLeftDown({50, 30}, kNone);  // becomes the middle of what is seen
  ExpectZoom(1.6018);
  EXPECT_EQ(control_.ClientToImage({27, 17}, false, 0.5), (ViewPoint{50, 30}));
  control_.OnLeftUp({50, 30}, kNone);
  control_.OnRightDown({0, 0}, kNone);
  ExpectZoom(1.0679);
  EXPECT_EQ(Notices(), "2:1 1 1");
  for (const double zoom : {1.6018, 1.0679}) {  // what is in the middle stays there
    control_.OnScroll({40, 30});
    const ViewPoint middle = control_.ClientToImage({27, 17}, false, 0.5);
    zoom > 1.5 ? control_.ZoomIn() : control_.ZoomOut();
    EXPECT_NEAR(control_.GetZoom(), zoom, 0.00005);
    EXPECT_EQ(control_.ClientToImage({27, 17}, false, 0.5), middle);
  }
  control_.SetTool(kToolFreeMagnify, false);
  control_.SetZoom(4, false);
  const ViewPoint clicked = control_.ClientToImage({40, 20}, false, 0.5);
  control_.OnRightDown({40, 20}, kNone);
  ExpectZoom(3.6041);
  EXPECT_EQ(control_.ClientToImage({27, 17}, false, 0.5), clicked);
  control_.SetTool(kToolPan, false);
  control_.OnRightDown({40, 20}, kNone);
  ExpectZoom(3.6041);
  control_.SetZoom(1.0679, true);

  for (const uint32_t tool : {1u, 3u, 10u, 11u, 0u}) {
    control_.SetTool(tool, false);
    control_.OnScroll({20, 10});
    control_.OnLeftDown({40, 30}, kCtrl);
    const uint32_t temporary[] = {0, 1000, 0, 1001, 0, 0, 0, 0, 0, 0, 1002, 1003};
    EXPECT_EQ(control_.tool(), temporary[tool]);
    EXPECT_EQ(view_.cursor, ViewerCursor::kMove);
    EXPECT_TRUE(view_.captured);
    control_.OnMouseMove({33, 35}, kNone);
    EXPECT_EQ(view_.scroll, (ViewPoint{27, 5}));
    control_.OnMouseMove({45, 90}, kNone);
    EXPECT_EQ(view_.scroll, (ViewPoint{15, 0}));
    control_.OnLeftUp({44, 90}, kCtrl);
    EXPECT_EQ(view_.scroll, (ViewPoint{16, 0}));
    EXPECT_EQ(control_.tool(), tool);
    EXPECT_FALSE(view_.captured);
  }
  control_.SetZoom(2, true);
  control_.SetTool(kToolRectangle, false);
  Drag({10, 10}, {30, 19});
  EXPECT_NEAR(control_.GetZoom(), 2.4027 * 55 / 21, 0.0005);
  Drag({10, 10}, {12, 30});  // too narrow, a click
  EXPECT_NEAR(control_.GetZoom(), 2.4027 * 55 / 21, 0.0005);
  // Four small turns of the wheel are one.
  control_.SetZoom(1, true);
  for (int i = 0; i < 4; ++i) control_.OnWheel({20, 20}, -30, kNone);
  ExpectZoom(0.7119);
  control_.OnScroll({50, 9});
  control_.OnWheel({20, 20}, -240, {.shift = true});
  EXPECT_EQ(view_.scroll, (ViewPoint{62, 9}));
  control_.SetTool(kToolFreeMagnify, false);
  control_.SetZoom(1, true);
  control_.OnLeftDown({10, 30}, kNone);
  EXPECT_EQ(view_.cursor, ViewerCursor::kMagnify);
  control_.OnMouseMove({10, 5}, kNone);
  EXPECT_EQ(control_.GetZoom(), 1.25);
  control_.OnLeftUp({10, 5}, kNone);
  EXPECT_EQ(view_.cursor, ViewerCursor::kArrow);
}

TEST_F(ViewerControlTest, ReportsColours) {
  auto image = RandomImage(60, 40, 24);
  image->SetRgb(7, 9, 0x332211);
  image->SetRgb(8, 9, 0x665544);
  Show(std::move(image));
  control_.SetTool(kToolPixelProbe, false);
  control_.OnMouseMove({7, 9}, kNone);
  control_.OnMouseMove({60, 9}, kNone);
  control_.SetTool(kToolColorPicker, false);
  control_.OnMouseMove({7, 9}, kNone);
  control_.OnLeftDown({7, 9}, kNone);
  control_.OnMouseMove({8, 9}, kNone);
  EXPECT_EQ(Notices(), "4:332211@7,9 3:332211@7,9 3:665544@8,9");
  auto tooFewColors = RandomImage(60, 40, 8, ColoredPalette(1));
  tooFewColors->SetByte(3, 3, 9);
  Show(std::move(tooFewColors));
  control_.OnLeftDown({3, 3}, kNone);
  EXPECT_EQ(Notices(), "");
  Show(RandomGrey(80000, 1));
  control_.OnScroll({79000, 0});
  control_.OnLeftDown({3, 17}, kNone);
  EXPECT_EQ(Notices().substr(8), "@65535,0");
}

TEST_F(ViewerControlTest, CommandsChooseToolsAndDerivedImages) {
  const CKIPImage& grey = Show(RandomGrey(50, 30));
  const struct {
    uint32_t command, tool;
    ViewerCursor cursor;
  } tools[] = {{4, 0, ViewerCursor::kMove},        {5, 5, ViewerCursor::kMagnifySpot},
               {6, 6, ViewerCursor::kEnhanceSpot}, {8, 8, ViewerCursor::kBrightnessContrast},
               {9, 9, ViewerCursor::kGamma},       {11, 1, ViewerCursor::kMagnify}};
  for (const auto& t : tools) {
    control_.OnCommand(t.command);
    EXPECT_EQ(control_.tool(), t.tool);
    EXPECT_EQ(view_.cursor, t.cursor);
    EXPECT_EQ(Notices(), "2:" + std::to_string(t.tool));
  }
  view_.popupChoice = kOperationInvert;
  control_.OnCommand(kViewerImageOperations);
  control_.OnOperation(kOperationInvert);  // of what is shown: as it was
  EXPECT_NE(control_.displayImage(), &grey);
  ExpectShown(grey);
  control_.OnOperation(kOperationInvert);
  control_.SetBrightnessContrast(0, 0);  // of the source, not of what is shown
  ExpectShown(grey);
  control_.OnOperation(kOperationAutoBrightnessContrast);
  ExpectShown(*AutoBrightnessContrastDefault(&grey, nullptr));
  control_.OnOperation(kOperationCopy);
  EXPECT_EQ(view_.copies, 1);
  control_.OnCommand(kViewerPan);
  EXPECT_NE(control_.displayImage(), &grey);
  control_.SetResetOnTool(true);
  control_.OnCommand(kViewerPan);
  EXPECT_EQ(control_.displayImage(), &grey);

  const CKIPImage& colors = Show(RandomImage(50, 30, 24));
  control_.OnOperation(kOperationColorizeIce);
  EXPECT_EQ(control_.spectrum(), 8u);
  EXPECT_EQ(control_.tool(), 7u);
  ExpectShown(*ConvertToGrey8(colors, nullptr));
  control_.OnOperation(kOperationEmboss);
  ExpectShown(*Emboss(&colors, 135, 45, 0.85, nullptr));
  const CKIPImage* before = control_.displayImage();
  control_.OnOperation(kOperationAutoBrightnessContrast);  // of grey images only
  EXPECT_EQ(control_.displayImage(), before);
  control_.OnOperation(kOperationOriginal);
  EXPECT_EQ(control_.displayImage(), &colors);
  EXPECT_EQ(control_.tool(), 0u);
  Notices();

  control_.OnCommand(kViewerFullScreen);
  EXPECT_EQ(view_.fullScreens, 1);
  control_.SetFullScreenAllowed(false);
  control_.OnCommand(kViewerFullScreen);
  EXPECT_EQ(view_.fullScreens, 1);
  EXPECT_EQ(Notices(), "5");
  control_.SetFullScreen(true);
  control_.OnCommand(kViewerFullScreen);
  EXPECT_EQ(view_.fullScreens, 0);
}

TEST_F(ViewerControlTest, SpotFollowsThePointer) {
  Show(RandomGrey(90, 80));
  control_.SetSpot(25, 3);
  control_.SetSpot(26, 2);
  control_.SetSpot(50, 6);
  EXPECT_EQ(control_.spotSize(), 25u);
  EXPECT_EQ(control_.spotMagnification(), 3u);
  const std::vector<uint32_t> before = view_.PaintAll();
  control_.OnOperation(kOperationColorizeFire);
  view_.BringUpToDate();
  control_.OnLeftDown({20, 20}, kNone);
  EXPECT_EQ(view_.cursor, ViewerCursor::kHidden);
  EXPECT_EQ(view_.InvalidCount(), 27u * 27u);
  EXPECT_TRUE(view_.BringUpToDate());
  control_.OnMouseMove({22, 20}, kNone);
  EXPECT_EQ(view_.InvalidCount(), 29u * 27u);
  EXPECT_TRUE(view_.BringUpToDate());
  EXPECT_NE(view_.PaintAll(), before);
  control_.OnScroll({9, 5});  // does not take the spot along
  EXPECT_TRUE(view_.BringUpToDate());
  control_.OnScroll({0, 0});
  control_.OnLeftUp({22, 20}, kNone);
  EXPECT_TRUE(view_.BringUpToDate());
  EXPECT_EQ(view_.PaintAll(), before);
  EXPECT_EQ(view_.cursor, ViewerCursor::kColorizeSpot);
  control_.SetZoom(2, false);
  view_.BringUpToDate();
  control_.OnLeftDown({20, 20}, kNone);  // up to image pixel 17 either way
  EXPECT_EQ(view_.InvalidCount(), 40u * 35u) << "up to 20, where the client area ends at 35";
  control_.OnLeftUp({20, 20}, kNone);
  control_.OnLeftDoubleClick({22, 20}, kNone);
  EXPECT_EQ(view_.spotPopups, 1);
}

TEST_F(ViewerControlTest, TakesImagesAndLetsThemGo) {
  const auto given = RandomGrey(50, 30);
  given->flipped = true;
  control_.SetImage(given.get(), true);
  const CKIPImage& shown = *control_.displayImage();
  ASSERT_NE(&shown, given.get());
  EXPECT_FALSE(shown.flipped);
  EXPECT_EQ(0, std::memcmp(shown.MemoryRow(0), given->MemoryRow(29), 50));
  auto owned = given->Clone(true);
  owned->flipped = true;
  control_.SetImage(std::move(owned), true);
  EXPECT_FALSE(control_.displayImage()->flipped);
  // One that is the caller's may be gone when the next comes, whatever the mouse is at.
  for (const uint32_t tool : {7u, 10u}) {
    auto lent = RandomGrey(50, 30);
    control_.SetImage(lent.get(), true);
    control_.SetTool(tool, false);
    control_.OnLeftDown({20, 20}, kNone);
    lent.reset();
    Show(RandomGrey(40, 40));
  }
  control_.OnCommand(kViewerGamma);
  control_.OnLeftDown({20, 20}, kNone);
  control_.OnMouseMove({25, 25}, kNone);
  control_.SetZoom(3, false);
  Show(RandomGrey(40, 40), false);
  EXPECT_EQ(control_.gammaX() + control_.gammaY(), 0);
  EXPECT_FALSE(view_.captured);
  EXPECT_EQ(control_.tool(), 9u);
  EXPECT_EQ(control_.GetZoom(), 3);
  Notices();
  control_.Clear();
  EXPECT_EQ(control_.tool(), 0u);
  EXPECT_EQ(control_.GetZoom(), 1);
  control_.SetZoom(2, true);
  control_.OnCommand(kViewerSpotEnhance);
  control_.OnLeftDown({20, 20}, kNone);
  EXPECT_EQ(control_.GetZoom(), 1);
  EXPECT_EQ(control_.tool(), 0u);
  EXPECT_EQ(control_.ImageToClient({3, 3}), (ViewPoint{0, 0}));
  EXPECT_EQ(view_.content, (ViewSize{0, 0}));
  EXPECT_EQ(view_.PaintAll(), std::vector<uint32_t>(60 * 40, RecordedViewerView::kBackground));
  EXPECT_EQ(Notices(), "");
}

class ViewerWalkTest : public ViewerControlTest {
 protected:
  static ViewPoint RandomPoint() {
    return {static_cast<int32_t>(Random(90)) - 15, static_cast<int32_t>(Random(70)) - 15};
  }
  void RandomEvent() {
    const ViewPoint p = RandomPoint();
    const MouseKeys keys{Random(4) == 0, Random(4) == 0};
    const bool coin = Random(2) != 0;
    view_.popupChoice = Random(12);
    const std::function<void()> events[] = {
        [&] { control_.OnLeftDown(p, keys); },
        [&] { control_.OnMouseMove(p, keys); },
        [&] { control_.OnLeftUp(p, keys); },
        [&] { control_.OnLeftDoubleClick(p, keys); },
        [&] { control_.OnRightDown(p, keys); },
        [&] { control_.OnWheel(p, static_cast<int32_t>(Random(1000)) - 500, keys); },
        [&] { control_.OnCommand(Random(13)); },
        [&] {
          control_.OnScroll(ViewPoint{p.x * 9, p.y * 9});
        },
        [&] { control_.SetTool(Random(13), coin); },
        [&] { control_.OnCaptureLost(); },
        [&] { ZoomAtKeepsThePoint(p); },
        [&] { control_.SetSpot(coin ? 25 : 50, 2 + Random(4)); },
        [&] { coin ? control_.ZoomToOneOrFit() : control_.ZoomIn(); },
        [&] { view_.Resize(Random(80), Random(60)); },
        [&] { control_.SetZoom(Random(1000) / 100.0, coin); },
        [&] { control_.SetZoom(std::ldexp(1.0, static_cast<int>(Random(70)) - 10), false); },
        [&] { control_.SetFullScreen(coin); },
        [&] { control_.SetResetOnTool(coin); }};
    // The mouse more often than all else.
    events[Random(2) != 0 ? Random(3) : Random(std::size(events))]();
  }
  void ZoomAtKeepsThePoint(ViewPoint p) {
    const ViewPoint before = control_.ClientToImage(p, false, 0.5);
    control_.ZoomAt(Random(2) != 0 ? 1.5 : 0.5, p);
    const ViewSize client = view_.ClientSize();
    const int slack = control_.GetZoom() < 1 ? 1 + static_cast<int>(0.5 / control_.GetZoom()) : 1;
    const ViewPoint after = control_.ClientToImage(p, false, 0.5);
    // An axis that scrolls no further cannot keep it.
    const auto check = [&](int32_t at, int32_t end, int32_t was, int32_t is) {
      if (at > 0 && at < end) {
        EXPECT_NEAR(was, is, slack);
      }
    };
    check(view_.scroll.x, view_.content.width - client.width, before.x, after.x);
    check(view_.scroll.y, view_.content.height - client.height, before.y, after.y);
  }
  void CheckAll() {
    const ViewSize client = view_.ClientSize();
    ASSERT_TRUE(view_.BringUpToDate());
    const auto inRange = [](int32_t at, int32_t content, int32_t room) {
      return at >= 0 && at <= std::max(content - room, 0);
    };
    ASSERT_TRUE(inRange(view_.scroll.x, view_.content.width, client.width));
    ASSERT_TRUE(inRange(view_.scroll.y, view_.content.height, client.height));
    ASSERT_TRUE(view_.captured || control_.tool() < 1000);
    if (client.width < 4 || client.height < 4) return;
    const std::vector<uint32_t> all = view_.PaintAll();
    const auto some = view_.PaintPart({1, 2, client.width - 2, client.height - 1});
    auto part = some.begin();
    for (int32_t y = 2; y < client.height - 1; ++y, part += client.width - 3) {
      ASSERT_TRUE(std::equal(part, part + client.width - 3, &all[y * client.width + 1]));
    }
  }
};

TEST_F(ViewerWalkTest, WhatIsSeenIsWhatPaintingAllGives) {
  const Palette blackAndWhite{{0, 0, 0, 0}, {255, 255, 255, 0}};
  const std::function<std::unique_ptr<CKIPImage>()> images[] = {
      [] { return nullptr; },
      [] { return RandomGrey(1, 1); },
      [] { return RandomGrey(20000, 1); },
      [] { return RandomImage(37, 123, 24); },
      [] { return RandomImage(50, 40, 8, ColoredPalette(256)); },
      [] { return RandomImage(50, 40, 8, ColoredPalette(3)); },
      [&] { return RandomImage(70, 33, 1, blackAndWhite); },
      [] { return RandomGrey(64, 300); }};
  for (int walk = 0; walk < 16; ++walk) {
    control_.SetImage(images[walk % std::size(images)](), Random(2) != 0);
    for (int i = 0; i < 250; ++i) {
      RandomEvent();
      CheckAll();
      if (HasFailure()) FAIL() << "walk " << walk << ", event " << i;
    }
    platform::host::ResetMessages();
  }
}

}  // namespace
}  // namespace zyr
