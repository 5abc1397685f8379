// Undo and redo in the image dialog, and what memory they take.
#include <new>
#include <random>
#include <set>

#include "acquire/image_dialog/image_dialog.h"
#include "acquire/image_dialog/operation_history.h"
#include "platform/host/escape_key.h"
#include "tests/acquire/image_dialog_fixture.h"
#include "tests/support/scarce_memory.h"

namespace zyr::test {
namespace {

using Bytes = std::vector<uint8_t>;
using Version = std::shared_ptr<ImageVersion>;

class ImageHistoryTest : public ImageDialogTest {};

struct Item {
  uint32_t command;
  const char* step;
  ImageOperation operation;
};
std::vector<Item> Items() {
  return {{kImageInvert, "Invert", ImageOperation::Invert()},
          {kImageRotate90, "Rotate 90", ImageOperation::Rotate(90)},
          {kImageFlipVertical, "Flip Vertically", ImageOperation::FlipVertical()},
          {kImageSharpen, "Sharpen", ImageOperation::Sharpen(3, 50)},
          {kImageNoiseReduction, "Noise Reduction", ImageOperation::RemoveNoise(3)},
          {kImageEdgeEnhance, "Edge Enhancement", ImageOperation::EnhanceEdges(3, 3)},
          {kImageEqualize, "Equalize", ImageOperation::Equalize()},
          {kImageSmooth, "Smooth", ImageOperation::Smooth(3, 100)}};
}

// The dialog as it would be with full copies.
struct Model {
  struct Picture {
    ImageDescription description;
    Bytes pixels;
    Bytes shown() const { return Shown(Copy(description, pixels)->PrepareImage()); }
  };
  struct Entry {
    Picture picture;
    std::string text;
  };

  void Step(const ImageOperations& operations, const char* text, int escapeAt) {
    undo.push_back({present, text});
    const auto image = Copy(present.description, present.pixels);
    host::PressEscapeAtQuestion(escapeAt);
    Apply(operations, *image);
    host::ResetEscapeKey();
    present = {*image, CopyOf(image->PixelData())};
    modified = true;
  }
  void Move(std::vector<Entry>& from, std::vector<Entry>& to) {
    if (from.empty()) return;
    to.push_back({present, from.back().text});
    present = from.back().picture;
    from.pop_back();
    modified = &from == &redo || !undo.empty();
  }
  void Revert() {
    present = original;
    undo.clear();
    redo.clear();
    modified = false;
  }

  Picture original;
  Picture present = original;
  std::vector<Entry> undo = {}, redo = {};
  bool modified = false;
};

std::string TextOf(const std::vector<Model::Entry>& entries, const char* otherwise) {
  return entries.empty() ? otherwise : entries.back().text;
}

TEST_F(ImageHistoryTest, WalksLikeFullCopies) {
  const std::vector<Item> items = Items();
  for (const uint32_t bits : {8u, 12u}) {
    CachedImage* const image = Put(11, 7, bits);
    Model model{{*image, PixelsOf(*image)}};
    std::mt19937 random(bits);
    const auto step = [&](ImageDialog& dialog) {
      const uint32_t choice = random() % 100;
      const int escapeAt = random() % 4 == 0 ? static_cast<int>(random() % 8) + 1 : 0;
      if (choice < 22) {
        dialog.OnCommand(kImageUndo);
        return model.Move(model.undo, model.redo);
      }
      if (choice < 38) {
        dialog.OnCommand(kImageRedo);
        return model.Move(model.redo, model.undo);
      }
      if (choice == 38) {
        dialog.OnCommand(kImageOriginal);
        return model.Revert();
      }
      if (choice < 45) {
        view_.gammaUser = [&](RecordedGammaView& view, GammaDialog& gamma) {
          view.Move(gamma, kSliderGamma, static_cast<int32_t>(choice * 3));
          view.Move(gamma, kSliderBrightness, 5);
          host::PressEscapeAtQuestion(escapeAt);
          view.FireTimer(gamma);
          gamma.OnOK();
        };
        dialog.OnCommand(kImageAdjust);
        host::ResetEscapeKey();
        return model.Step(AdjustGammaBrightnessContrast(choice * 3 * 0.01, 5, 0), "Adjust GBC",
                          escapeAt);
      }
      const Item& item = items[random() % items.size()];
      host::PressEscapeAtQuestion(escapeAt);
      dialog.OnCommand(item.command);
      host::ResetEscapeKey();
      model.Step({item.operation}, item.step, escapeAt);
    };
    Show(image, [&](ImageDialog& dialog) {
      for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        step(dialog);
        ASSERT_EQ(view_.shown(), model.present.shown());
        ASSERT_EQ(dialog.modified(), model.modified);
        ASSERT_EQ(view_.enabled[kImageUndo], !model.undo.empty());
        ASSERT_EQ(view_.enabled[kImageOriginal], !model.undo.empty());
        ASSERT_EQ(view_.enabled[kImageRedo], !model.redo.empty());
        ASSERT_EQ(view_.descriptions[kImageUndo],
                  TextOf(model.undo, "Undoes the previous operation"));
        ASSERT_EQ(view_.descriptions[kImageRedo],
                  TextOf(model.redo, "Redoes the previously undone operation"));
      }
      dialog.OnCommand(kImageInvert);
      model.Step({ImageOperation::Invert()}, "Invert", 0);
      dialog.OnOK();
    });
    EXPECT_EQ(CopyOf(image->PixelData()), model.present.pixels);
    EXPECT_EQ(static_cast<ImageDescription&>(*image), model.present.description);
  }
}

// A hundred steps of a sensor's largest image.
TEST_F(ImageHistoryTest, HundredStepsComeBackBitForBitInLittleMemory) {
  const std::vector<Item> items = Items();
  const auto image = NewImage(1156, 1600, 12);
  std::vector<Version> versions = {ImageVersion::Of(*image)};
  std::vector<std::string> crcs;
  for (size_t i = 0; i < 100; ++i) {
    crcs.push_back(CrcOf(image->PixelData()));
    const auto before = image->Clone();
    const ImageOperations done = Apply({items[i % items.size()].operation}, *image);
    versions.push_back(ImageVersion::Of(versions.back(), *before, done));
  }
  size_t bytes = 0;
  for (const Version& version : versions) bytes += version->KeptBytes();
  EXPECT_LE(bytes, 25 * image->PixelDataSize());
  for (size_t i = 100; i-- > 0;) {
    ASSERT_EQ(CrcOf(versions[i]->Restore()->PixelData()), crcs[i]) << i;
  }
}

TEST_F(ImageHistoryTest, ListsKeepToTheirLimit) {
  const auto image = NewImage(2, 2, 8);
  Version versions[4];
  for (Version& version : versions) version = ImageVersion::Of(*image);
  CKIPOperationHistory history;
  history.limit = 2;
  for (int i = 0; i < 3; ++i) history.Push(versions[i], std::to_string(i));
  EXPECT_EQ(history.Undo(versions[3]), versions[2]);
  EXPECT_EQ(history.GetRedoDescription(), "2");
  EXPECT_EQ(history.Undo(versions[2]), versions[1]);
  EXPECT_EQ(history.Undo(versions[1]), nullptr) << "the oldest has made room";
}

// Wherever memory runs out, the dialog lives, and what was there before comes back.
TEST_F(ImageHistoryTest, WithoutMemoryAStepIsRefused) {
  CachedImage* const image = Put(11, 7, 12);
  constexpr int kMostBlocks = 400;
  for (const uint32_t command : {kImageSharpen, kImageUndo, kImageRedo, kImageOriginal}) {
    bool done = false;
    for (int blocks = 0; blocks < kMostBlocks && !done; ++blocks) {
      Show(image, [&](ImageDialog& dialog) {
        Bytes pictures[6];
        for (int i = 0; i < 5; ++i) {
          pictures[i] = view_.shown();
          dialog.OnCommand(i % 2 == 0 ? kImageEqualize : kImageInvert);
        }
        pictures[5] = view_.shown();
        dialog.OnCommand(kImageUndo);
        g_blocksLeft = blocks;
        dialog.OnCommand(command);
        done = g_blocksLeft > 0;
        g_blocksLeft = kEnough;
        if (command == kImageOriginal && !view_.enabled[kImageRedo]) return;
        while (view_.enabled[kImageRedo]) dialog.OnCommand(kImageRedo);
        ASSERT_EQ(view_.shown(), pictures[5]) << command << " with " << blocks;
        while (view_.enabled[kImageUndo]) dialog.OnCommand(kImageUndo);
        ASSERT_EQ(view_.shown(), pictures[0]) << command << " with " << blocks;
        dialog.OnCancel();
      });
      if (HasFailure()) return;
    }
    EXPECT_TRUE(done) << command;
  }
}

}  // namespace
}  // namespace zyr::test
