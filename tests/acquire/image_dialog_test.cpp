#include "acquire/image_dialog/image_dialog.h"

#include <algorithm>

#include "acquire/image_dialog/operation_tree.h"
#include "imaging/image/raw_pixels.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/geometry/rotate.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/masks/mask_filters.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "platform/host/escape_key.h"
#include "platform/host/files.h"
#include "platform/host/progress_window.h"
#include "platform/host/wait_cursor.h"
#include "tests/acquire/image_dialog_fixture.h"

namespace zyr::test {
namespace {

using Bytes = std::vector<uint8_t>;

struct Operation {
  std::function<std::unique_ptr<CKIPImage>(const CKIPImage*)> grey;
  std::function<std::unique_ptr<CKIPDeepImage>(const CKIPDeepImage*)> deep;
};

// What the operation makes of rows of pixels.
Bytes Changed(const ImageDescription& of, Bytes pixels, const Operation& operation) {
  if (of.bitsPerPixel == 8) {
    const auto image =
        ImageFromRaw8(pixels.data(), of.width, of.height, true, 0, 1, 1, FirstRow::kBottom);
    EXPECT_TRUE(CopyImageToRaw8(*operation.grey(image.get()), pixels.data(), 0));
  } else {
    CKIPDeepImage image;
    image.Attach(reinterpret_cast<uint16_t*>(pixels.data()), of.width, of.height, of.width,
                 of.bitsPerPixel, false);
    const auto result = operation.deep(&image);
    std::memcpy(pixels.data(), result->GetPixels(), pixels.size());
  }
  return pixels;
}

#define ZYR_BOTH(grey, deep)                                                                     \
  Operation {                                                                                    \
    [](const CKIPImage* image) { return grey; }, [](const CKIPDeepImage* image) { return deep; } \
  }

std::unique_ptr<CKIPImage> Weighed(const CKIPImage* image, void (*make)(CKIPMask&), bool add) {
  CKIPMask mask;
  make(mask);
  return add ? EdgeEnhance(image, mask, nullptr) : ApplyMask(image, mask, nullptr);
}

Operation Adjusted(double gamma, int32_t b, int32_t c) {
  return {[=](const CKIPImage* image) {
            auto first = AdjustGamma(image, gamma, gamma, gamma, kKeepNoColor, nullptr);
            return AdjustBrightnessContrast(first.get(), b, c, kKeepNoColor, nullptr);
          },
          [=](const CKIPDeepImage* image) {
            auto first = DeepAdjustGamma(image, gamma, nullptr);
            return DeepAdjustBrightnessContrast(first.get(), b, c, nullptr);
          }};
}

struct MenuItem {
  uint32_t id;
  const char* step;
  const char* progress;
  Operation operation;
  bool turns = false;
};
const Operation kSpread =
    ZYR_BOTH(Normalize(image, nullptr, nullptr), DeepNormalize(image, nullptr));
const MenuItem kMenu[] = {
    {0x801A, "Invert", "Invert ...", ZYR_BOTH(Invert(image, nullptr), DeepInvert(image, nullptr))},
    {0x800F, "Rotate 90 Counter-Clockwise", "Rotating ...",
     ZYR_BOTH(Rotate270(image, nullptr), DeepRotate270(image, nullptr)), true},
    {0x800E, "Rotate 180", "Rotating ...",
     ZYR_BOTH(Rotate180(image, nullptr), DeepRotate180(image, nullptr))},
    {0x800D, "Rotate 90", "Rotating ...",
     ZYR_BOTH(Rotate90(image, nullptr), DeepRotate90(image, nullptr)), true},
    {0x800B, "Flip Horizontally", "Flipping ...",
     ZYR_BOTH(FlipHorizontal(image, nullptr), DeepFlipHorizontal(image, nullptr))},
    {0x800A, "Flip Vertically", "Flipping ...",
     ZYR_BOTH(FlipVertical(image, nullptr), DeepFlipVertical(image, nullptr))},
    {0x8015, "Sharpen", "Sharpening ...",
     ZYR_BOTH(Weighed(
                  image, [](CKIPMask& mask) { mask.MakeSharpen(3, 50); }, false),
              DeepSharpen(image, 3, 50, nullptr))},
    {0x8018, "Noise Reduction", "Removing Noise ...",
     ZYR_BOTH(MedianFilter(image, CKIPMask(), nullptr), DeepMedianFilter(image, 3, nullptr))},
    {0x8017, "Fast Noise Reduction", "Removing Noise ...",
     ZYR_BOTH(FastNoiseReduction(image, nullptr), DeepFastNoiseReduction(image, nullptr))},
    {0x8013, "Automatic Brightness/Contrast", "Adjusting BC ...", kSpread},
    {0x8016, "Edge Enhancement", "Enhancing Edges ...",
     ZYR_BOTH(Weighed(
                  image, [](CKIPMask& mask) { mask.MakeEdge(3, 3, 3); }, true),
              DeepEdgeEnhance(image, 3, 3, nullptr))},
    {0x8011, "Equalize", "Equalizing ...",
     ZYR_BOTH(Equalize(image, nullptr, nullptr), DeepEqualize(image, nullptr))},
    {0x8012, "Normalize", "Normalizing ...", kSpread},
    {0x8014, "Smooth", "Sharpening ...",
     ZYR_BOTH(Weighed(
                  image, [](CKIPMask& mask) { mask.MakeSmooth(3, 100); }, false),
              DeepSmooth(image, 3, 100, nullptr))},
};

bool HasShownProgress(const std::string& text) {
  const auto& windows = host::ProgressWindows();
  return std::any_of(windows.begin(), windows.end(), [&](const auto& window) {
    return window.text == text && !window.fractions.empty();
  });
}

TEST_F(ImageDialogTest, ItemsDoWhatTheLibraryDoesAndOkStoresIt) {
  for (const uint32_t bits : {8u, 12u}) {
    for (const MenuItem& item : kMenu) {
      SCOPED_TRACE(item.step);
      CachedImage* const image = Put(13, 9, bits);
      ImageDescription wanted = *image;
      const Bytes pixels = Changed(wanted, PixelsOf(*image), item.operation);
      if (item.turns) {
        std::swap(wanted.width, wanted.height);
        std::swap(wanted.xResolution, wanted.yResolution);
      }
      EXPECT_TRUE(Show(image, [&](ImageDialog& dialog) {
        dialog.OnCommand(item.id);
        EXPECT_TRUE(HasShownProgress(item.progress));
        EXPECT_EQ(view_.descriptions[kImageUndo], item.step);
        EXPECT_EQ(view_.status,
                  item.turns
                      ? "Size: 9 pixels x 13 pixels  (300 DPI x 600 DPI)   Bits-Per-Pixel: " +
                            std::to_string(bits)
                      : "Size: 13 pixels x 9 pixels  (600 DPI x 300 DPI)   Bits-Per-Pixel: " +
                            std::to_string(bits));
        EXPECT_EQ(PixelsOf(*image), CopyOf(image->PixelData())) << "before OK";
        dialog.OnOK();
      }));
      EXPECT_TRUE(image->IsSaved());
      CachedImage stored;
      ASSERT_TRUE(stored.Load(image->fileName));
      EXPECT_EQ(static_cast<ImageDescription&>(stored), wanted);
      EXPECT_EQ(CopyOf(stored.PixelData()), pixels);
      ASSERT_TRUE(stored.EnsurePreview());
      EXPECT_EQ(stored.preview->width(), wanted.width);
    }
  }
}

TEST_F(ImageDialogTest, OperationsThatDoNotApplyChangeNothing) {
  const auto image = NewImage(7, 5, 12);
  for (const ImageOperation& operation :
       {ImageOperation::Sharpen(1, 50), ImageOperation::Smooth(3, 0),
        ImageOperation::EnhanceEdges(3, 0), ImageOperation::AdjustGamma(0),
        ImageOperation::AdjustGamma(1), ImageOperation::AdjustBrightnessContrast(0, 0),
        ImageOperation::Rotate(0), ImageOperation::Rotate(45)}) {
    const size_t windows = host::ProgressWindows().size();
    EXPECT_TRUE(Apply({operation}, *image).empty());
    EXPECT_EQ(host::ProgressWindows().size(), windows + 1);
  }
  EXPECT_EQ(CopyOf(image->PixelData()), PixelsOf(*image));
  EXPECT_EQ(Apply({ImageOperation::AdjustBrightnessContrast(0, 1)}, *image).size(), 1u);
}

TEST_F(ImageDialogTest, EscapeLeavesThePictureButTheStepCounts) {
  CachedImage* const image = Put(13, 9, 12);
  for (const MenuItem& item : kMenu) {
    Show(image, [&](ImageDialog& dialog) {
      const Bytes before = view_.shown();
      host::PressEscapeAtQuestion(2);
      dialog.OnCommand(item.id);
      EXPECT_EQ(view_.shown(), before) << item.step;
      EXPECT_TRUE(dialog.modified());
      EXPECT_EQ(view_.descriptions[kImageUndo], item.step);
      dialog.OnCancel();
    });
  }
}

// The picture is the same whichever part Escape has ended, and comes back as it was.
TEST_F(ImageDialogTest, EscapeDuringOneOfTwoAdjustmentsIsRemembered) {
  CachedImage* const image = Put(13, 9, 8);
  view_.gammaUser = [](RecordedGammaView& view, GammaDialog& dialog) {
    view.Move(dialog, kSliderGamma, 250);
    view.Move(dialog, kSliderContrast, 40);
    host::PressEscapeAtQuestion(9 + 2);  // one for each row of the first
    view.FireTimer(dialog);
    dialog.OnOK();
  };
  Show(image, [&](ImageDialog& dialog) {
    dialog.OnCommand(kImageAdjust);
    const Bytes gammaOnly = view_.shown();
    CachedImage model;
    static_cast<ImageDescription&>(model) = *image;
    model.SetPixelData(PixelsOf(*image));
    Apply({ImageOperation::AdjustGamma(2.5)}, model);
    EXPECT_EQ(gammaOnly, Shown(model.PrepareImage()));
    dialog.OnCommand(kImageInvert);
    host::PressEscape();
    dialog.OnCommand(kImageUndo);
    EXPECT_EQ(view_.shown(), gammaOnly);
  });
}

TEST_F(ImageDialogTest, GammaDialogPreviewsAfterAPauseAndDoesNotAddUp) {
  CachedImage* const image = Put(13, 9, 12);
  const Bytes pixels = Changed(*image, PixelsOf(*image), Adjusted(1.5, -20, 30));
  view_.gammaUser = [&](RecordedGammaView& view, GammaDialog& dialog) {
    using Range = std::pair<int32_t, int32_t>;
    EXPECT_EQ(view.ranges[1013], Range(-100, 100));
    EXPECT_EQ(view.ranges[1014], Range(-100, 100));
    EXPECT_EQ(view.ranges[1015], Range(1, 300));
    EXPECT_EQ(view.labels[1013] + view.labels[1014] + view.labels[1015], "00100");
    EXPECT_EQ(view.timer, 0u);
    const Bytes before = Shown(view.control.displayImage());
    EXPECT_FALSE(before.empty());
    view.Move(dialog, 1013, 99);
    view.FireTimer(dialog);
    EXPECT_NE(Shown(view.control.displayImage()), before);
    view.Move(dialog, 1013, -20);
    view.Move(dialog, 1014, 30);
    view.Move(dialog, 1015, 150);
    EXPECT_EQ(view.labels[1013] + view.labels[1014] + view.labels[1015], "-2030150");
    view.FireTimer(dialog);
    view.Move(dialog, 1013, 77);  // too late to count
    dialog.OnOK();
    EXPECT_EQ(view.timer, 0u);
  };
  Show(image, [&](ImageDialog& dialog) {
    dialog.OnCommand(kImageAdjust);
    EXPECT_EQ(view_.descriptions[kImageUndo], "Adjust GBC");
    const Bytes adjusted = view_.shown();
    view_.gammaUser = [](RecordedGammaView&, GammaDialog& gamma) { gamma.OnCancel(); };
    dialog.OnCommand(kImageAdjust);
    dialog.OnCommand(kImageUndo);
    EXPECT_FALSE(view_.enabled[kImageUndo]);
    dialog.OnCommand(kImageRedo);
    EXPECT_EQ(view_.shown(), adjusted);
    dialog.OnOK();
  });
  EXPECT_EQ(CopyOf(image->PixelData()), pixels);
}

TEST_F(ImageDialogTest, OnlyOkAndOnlyAChangeTouchTheOriginal) {
  CachedImage* const image = Put(13, 9, 12);
  const auto bytes = host::FileBytes(image->fileName);
  const int writes = host::CountsOfFiles().writes;
  EXPECT_FALSE(Show(image, [](ImageDialog& dialog) {
    dialog.OnCommand(kImageInvert);
    dialog.OnCancel();
    dialog.OnOK();  // too late
  }));
  EXPECT_TRUE(Show(image, [&](ImageDialog& dialog) {
    EXPECT_FALSE(view_.enabled[kImageUndo] || view_.enabled[kImageRedo]);
    dialog.OnCommand(kImageInvert);
    dialog.OnCommand(kImageUndo);
    EXPECT_FALSE(dialog.modified());
    dialog.OnOK();
  }));
  EXPECT_EQ(view_.ends, 2);
  EXPECT_EQ(host::CountsOfFiles().writes, writes);
  EXPECT_EQ(host::FileBytes(image->fileName), bytes);
}

// The dialog keeps its own, and what is gone stays gone.
TEST_F(ImageDialogTest, TheApplicationMayTakeTheImageAway) {
  CachedImage* const image = Put(13, 9, 12);
  EXPECT_TRUE(Show(image, [&](ImageDialog& dialog) {
    const Bytes before = view_.shown();
    dialog.OnCommand(kImageInvert);
    image->PixelData();  // in memory, as those are that could not be saved
    images_.Remove(image);
    dialog.OnCommand(kImageSmooth);
    dialog.OnCommand(kImageOriginal);
    EXPECT_EQ(view_.shown(), before);
    EXPECT_TRUE(HasShownProgress("Invert ...") && !view_.enabled[kImageOriginal]);
    dialog.OnCommand(kImageInvert);
    dialog.OnOK();
  }));
  images_.LoadAll();
  EXPECT_EQ(images_.GetCount(), 0u);
  ImageDialog dialog(view_, images_);
  EXPECT_FALSE(dialog.SetImage(image));
  view_.user = [](ImageDialog& empty) {
    for (const MenuItem& item : kMenu) empty.OnCommand(item.id);
    for (const uint32_t id : {0x8004, 0x8005, 0x8007, 0x8008, 0x8019, 0x9999}) empty.OnCommand(id);
    empty.OnOK();
  };
  EXPECT_TRUE(dialog.Run(nullptr));
}

// What goes out to the application runs from the top; the user sees and edits it upright.
TEST_F(ImageDialogTest, ImagesThatAreBeingReturnedKeepTheirRowOrder) {
  CachedImage* const image = Put(13, 9, 12);
  const Bytes pixels = Changed(*image, PixelsOf(*image), kMenu[3].operation);
  Bytes upright;
  Show(image, [&](ImageDialog&) { upright = view_.shown(); });
  image->TurnTopDown();
  Show(image, [&](ImageDialog& dialog) {
    EXPECT_EQ(view_.shown(), upright);
    dialog.OnCommand(kImageRotate90);
    dialog.OnOK();
  });
  EXPECT_TRUE(image->rowsTopDown());
  CachedImage stored;
  ASSERT_TRUE(stored.Load(image->fileName));
  EXPECT_EQ(CopyOf(stored.PixelData()), pixels);
  EXPECT_EQ(image->width, 9u);
  const Bytes topDown = CopyOf(image->PixelData());
  EXPECT_TRUE(std::equal(topDown.begin(), topDown.begin() + 18, pixels.end() - 18));
}

TEST_F(ImageDialogTest, AFullDiskLeavesTheEditedImageInMemory) {
  CachedImage* const image = Put(13, 9, 8);
  const auto bytes = host::FileBytes(image->fileName);
  host::FillDiskAfter(10);
  Show(image, [](ImageDialog& dialog) {
    dialog.OnCommand(kImageInvert);
    dialog.OnOK();
  });
  EXPECT_FALSE(image->IsSaved());
  EXPECT_EQ(CopyOf(image->PixelData()), Changed(*image, PixelsOf(*image), kMenu[0].operation));
  EXPECT_EQ(host::FileBytes(image->fileName), bytes);
}

TEST_F(ImageDialogTest, CopiesWhatIsShown) {
  CachedImage* const image = Put(13, 9, 12);
  Show(image, [&](ImageDialog& dialog) {
    dialog.OnCommand(kImageInvert);
    dialog.OnCommand(kImageCopy);
    EXPECT_EQ(view_.clipboard, TakeBytes(PackedDibFromImage(*view_.control.displayImage())));
    EXPECT_EQ(host::WaitCursorsShown(), 1u);
    EXPECT_EQ(view_.descriptions[kImageUndo], "Invert");
  });
}

// Smallest and longest ones, and samples that a file has no right to hold.
TEST_F(ImageDialogTest, OddImagesSurviveEverything) {
  struct Shape {
    uint32_t width, height, bits;
  };
  for (const Shape& shape : {Shape{1, 1, 8}, Shape{1, 1, 12}, Shape{1, 300, 8}, Shape{300, 1, 12},
                             Shape{6, 4, 5}, Shape{4, 6, 16}}) {
    CachedImage* const image = Put(shape.width, shape.height, shape.bits);
    image->SetPixelData(Bytes(image->PixelDataSize(), 0xFF));
    view_.gammaUser = [](RecordedGammaView& view, GammaDialog& gamma) {
      view.Move(gamma, kSliderGamma, 1);
      view.Move(gamma, kSliderBrightness, -100);
      view.FireTimer(gamma);
      gamma.OnOK();
    };
    Show(image, [&](ImageDialog& dialog) {
      const Bytes before = view_.shown();
      for (const MenuItem& item : kMenu) dialog.OnCommand(item.id);
      dialog.OnCommand(kImageAdjust);
      while (view_.enabled[kImageUndo]) dialog.OnCommand(kImageUndo);
      EXPECT_EQ(view_.shown(), before);
      while (view_.enabled[kImageRedo]) dialog.OnCommand(kImageRedo);
      dialog.OnOK();
    });
    EXPECT_TRUE(image->IsSaved());
  }
}

TEST(OperationTreeTest, EveryItemIsACommandOfItsOwn) {
  std::vector<uint32_t> ids;
  std::string texts;
  size_t separators = 0;
  for (const OperationGroup& group : OperationTree()) {
    texts += std::string(group.button) + "|";
    for (const OperationItem& item : group.items) {
      ids.push_back(item.id);
      separators += item.separatorAfter;
    }
  }
  EXPECT_EQ(texts, "Options|Flip|Rotate|Enhance|Undo/Redo|");
  EXPECT_EQ(ids, (std::vector<uint32_t>{0x8007, 0x800A, 0x800B, 0x800D, 0x800E, 0x800F, 0x801A,
                                        0x8008, 0x8013, 0x8011, 0x8012, 0x8014, 0x8015, 0x8016,
                                        0x8017, 0x8018, 0x8004, 0x8005, 0x8019}));
  EXPECT_EQ(separators, 5u);
  EXPECT_STREQ(OperationTree()[2].items[2].name, "90\260 Counter-clockwise");
}

}  // namespace
}  // namespace zyr::test
