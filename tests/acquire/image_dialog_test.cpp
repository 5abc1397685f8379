#include "acquire/image_dialog/image_dialog.h"

#include <algorithm>

#include "platform/host/escape_key.h"
#include "platform/host/files.h"
#include "platform/host/progress_window.h"
#include "platform/host/wait_cursor.h"
#include "tests/acquire/image_dialog_fixture.h"
#include "tests/hardware/golden_text.h"

namespace zyr::test {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kMenu[] = {0x801A, 0x800F, 0x800E, 0x800D, 0x800B, 0x800A, 0x8015,
                              0x8018, 0x8017, 0x8013, 0x8016, 0x8011, 0x8012, 0x8014};

// Of each item: its step, the progress that it shows, the status, and the CRC-32 of the pixels.
constexpr char kGolden[] =
#include "tests/acquire/golden/edited.inc"
    ;

// What the operations make of the image's first pixels.
Bytes Changed(const CachedImage& of, const ImageOperations& operations) {
  const auto image = Copy(of, PixelsOf(of));
  Apply(operations, *image);
  return CopyOf(image->PixelData());
}

TEST_F(ImageDialogTest, ItemsChangeThePictureAndOkStoresIt) {
  std::string edited = "step: progress; status; crc\n";
  for (const uint32_t bits : {8u, 12u}) {
    for (const uint32_t item : kMenu) {
      CachedImage* const image = Put(13, 9, bits);
      const ImageDescription before = *image;
      EXPECT_TRUE(Show(image, [&](ImageDialog& dialog) {
        const size_t windows = host::ProgressWindows().size();
        dialog.OnCommand(item);
        const auto& shown = host::ProgressWindows().at(windows);
        EXPECT_FALSE(shown.fractions.empty());
        edited += view_.descriptions[kImageUndo] + ": " + shown.text + "; " + view_.status;
        EXPECT_EQ(PixelsOf(before), CopyOf(image->PixelData())) << "before OK";
        dialog.OnOK();
      }));
      EXPECT_TRUE(image->IsSaved());
      CachedImage stored;
      ASSERT_TRUE(stored.Load(image->fileName));
      EXPECT_TRUE(stored.IsSameCapture(before));
      EXPECT_EQ(static_cast<ImageDescription&>(stored), *image);
      edited += "; " + CrcOf(stored.PixelData()) + "\n";
      ASSERT_TRUE(stored.EnsurePreview());
      EXPECT_EQ(stored.preview->width(), stored.width);
    }
  }
  ExpectGolden("edited.inc", kGolden, edited);
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
  for (const uint32_t item : kMenu) {
    Show(image, [&](ImageDialog& dialog) {
      const Bytes before = view_.shown();
      host::PressEscapeAtQuestion(2);
      dialog.OnCommand(item);
      EXPECT_EQ(view_.shown(), before) << item;
      EXPECT_TRUE(dialog.modified() && view_.enabled[kImageUndo]);
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
    const Bytes model = Changed(*image, {ImageOperation::AdjustGamma(2.5)});
    EXPECT_EQ(gammaOnly, Shown(Copy(*image, model)->PrepareImage()));
    dialog.OnCommand(kImageInvert);
    host::PressEscape();
    dialog.OnCommand(kImageUndo);
    EXPECT_EQ(view_.shown(), gammaOnly);
  });
}

TEST_F(ImageDialogTest, GammaDialogPreviewsAfterAPauseAndDoesNotAddUp) {
  CachedImage* const image = Put(13, 9, 12);
  view_.gammaUser = [&](RecordedGammaView& view, GammaDialog& dialog) {
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
  EXPECT_EQ(CrcOf(image->PixelData()), "40ec3080");
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
    EXPECT_FALSE(view_.enabled[kImageOriginal]);
    dialog.OnCommand(kImageInvert);
    dialog.OnOK();
  }));
  images_.LoadAll();
  EXPECT_EQ(images_.GetCount(), 0u);
  ImageDialog dialog(view_, images_);
  EXPECT_FALSE(dialog.SetImage(image));
  view_.user = [](ImageDialog& empty) {
    for (const uint32_t item : kMenu) empty.OnCommand(item);
    for (const uint32_t id : {0x8004, 0x8005, 0x8007, 0x8008, 0x8019, 0x9999}) empty.OnCommand(id);
    empty.OnOK();
  };
  EXPECT_TRUE(dialog.Run(nullptr));
}

// What goes out to the application runs from the top; the user sees and edits it upright.
TEST_F(ImageDialogTest, ImagesThatAreBeingReturnedKeepTheirRowOrder) {
  CachedImage* const image = Put(13, 9, 12);
  const Bytes pixels = Changed(*image, {ImageOperation::Rotate(90)});
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
      for (const uint32_t item : kMenu) dialog.OnCommand(item);
      dialog.OnCommand(kImageAdjust);
      while (view_.enabled[kImageUndo]) dialog.OnCommand(kImageUndo);
      EXPECT_EQ(view_.shown(), before);
      while (view_.enabled[kImageRedo]) dialog.OnCommand(kImageRedo);
      dialog.OnOK();
    });
    EXPECT_TRUE(image->IsSaved());
  }
}

}  // namespace
}  // namespace zyr::test
