#include "acquire/image_dialog/operation_tree.h"

#include "acquire/image_dialog/image_dialog_view.h"

namespace zyr {
namespace {

constexpr bool kSeparatorAfter = true;

constexpr OperationItem kImageItems[] = {
    {kImageCopy, "Copy To Clipboard", "Copies the image to the clipboard.", kSeparatorAfter},
};

constexpr OperationItem kFlipItems[] = {
    {kImageFlipVertical, "Flip Vertically", "Flips the image vertically."},
    {kImageFlipHorizontal, "Flip Horizontally", "Flips the image horizontally"},
};

// \xB0 is the degree sign.
constexpr OperationItem kRotateItems[] = {
    {kImageRotate90, "90\xB0 Clockwise", "Rotates the image clockwise by 90\xB0."},
    {kImageRotate180, "180\xB0 Clockwise", "Rotates the image by 180\xB0."},
    {kImageRotate270, "90\xB0 Counter-clockwise", "Rotates the image counter-clockwise by 90\xB0."},
};

constexpr OperationItem kEnhancementItems[] = {
    {kImageInvert, "Invert", "Inverts the image.", kSeparatorAfter},
    {kImageAdjust, "Manually Adjust Gamma, Brightness and Contrast",
     "Manually adjusts the gamma, brightness and/or contrast of the image.", kSeparatorAfter},
    {kImageAutoBrightnessContrast, "Automatic Brightness/Contrast",
     "Automatically adjusts the brightness/contrast of the image."},
    {kImageEqualize, "Equalize", "Equalizes the brightness/contrast of the image."},
    {kImageNormalize, "Normalize", "Normalizes the brightness/contrast of the image.",
     kSeparatorAfter},
    {kImageSmooth, "Smooth", "Smooths the image."},
    {kImageSharpen, "Sharpen", "Sharpens the image."},
    {kImageEdgeEnhance, "Edge Enhance", "Enhances the edges in the image.", kSeparatorAfter},
    {kImageFastNoiseReduction, "Fast Noise Reduction",
     "Quickly removes noise from the image.  This version is not as comprehensive as the standard "
     "noise removeal."},
    {kImageNoiseReduction, "Noise Reduction", "Removes noise from the image."},
};

constexpr OperationItem kUndoItems[] = {
    {kImageUndo, "Undo"},
    {kImageRedo, "Redo"},
    {kImageOriginal, "Original", "Reverts back to the original image."},
};

constexpr uint32_t kUndoGroup = 0x8038;  // no item has it

constexpr OperationGroup kGroups[] = {
    {kImageCopy, "Image Operations",
     "Contains various viewing, saving, exporting and transfer options.", "Options", kImageItems},
    {kImageFlipHorizontal, "Flip", "Flip the image.", "Flip", kFlipItems},
    {kImageRotate90, "Rotate", "Rotate the image.", "Rotate", kRotateItems},
    {kImageInvert, "Enhancements", "Various image enhancement functions.", "Enhance",
     kEnhancementItems},
    {kUndoGroup, "Undo / Redo", "Undo, redo and revert to original operations.", "Undo/Redo",
     kUndoItems},
};

}  // namespace

std::span<const OperationGroup> OperationTree() { return kGroups; }

}  // namespace zyr
