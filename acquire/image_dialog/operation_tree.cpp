#include "acquire/image_dialog/operation_tree.h"

#include "acquire/image_dialog/image_dialog_view.h"
#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

constexpr bool kSeparatorAfter = true;

constexpr OperationItem kImageItems[] = {
    {kImageCopy, PhraseKey("Copy To Clipboard"), PhraseKey("Copies the image to the clipboard."),
     kSeparatorAfter},
};

constexpr OperationItem kFlipItems[] = {
    {kImageFlipVertical, PhraseKey("Flip Vertically"), PhraseKey("Flips the image vertically.")},
    {kImageFlipHorizontal, PhraseKey("Flip Horizontally"),
     PhraseKey("Flips the image horizontally")},
};

// \xB0 is the degree sign.
constexpr OperationItem kRotateItems[] = {
    {kImageRotate90, PhraseKey("90\xB0 Clockwise"),
     PhraseKey("Rotates the image clockwise by 90\xB0.")},
    {kImageRotate180, PhraseKey("180\xB0 Clockwise"), PhraseKey("Rotates the image by 180\xB0.")},
    {kImageRotate270, PhraseKey("90\xB0 Counter-clockwise"),
     PhraseKey("Rotates the image counter-clockwise by 90\xB0.")},
};

constexpr OperationItem kEnhancementItems[] = {
    {kImageInvert, PhraseKey("Invert"), PhraseKey("Inverts the image."), kSeparatorAfter},
    {kImageAdjust, PhraseKey("Manually Adjust Gamma, Brightness and Contrast"),
     PhraseKey("Manually adjusts the gamma, brightness and/or contrast of the image."),
     kSeparatorAfter},
    {kImageAutoBrightnessContrast, PhraseKey("Automatic Brightness/Contrast"),
     PhraseKey("Automatically adjusts the brightness/contrast of the image.")},
    {kImageEqualize, PhraseKey("Equalize"),
     PhraseKey("Equalizes the brightness/contrast of the image.")},
    {kImageNormalize, PhraseKey("Normalize"),
     PhraseKey("Normalizes the brightness/contrast of the image."), kSeparatorAfter},
    {kImageSmooth, PhraseKey("Smooth"), PhraseKey("Smooths the image.")},
    {kImageSharpen, PhraseKey("Sharpen"), PhraseKey("Sharpens the image.")},
    {kImageEdgeEnhance, PhraseKey("Edge Enhance"), PhraseKey("Enhances the edges in the image."),
     kSeparatorAfter},
    {kImageFastNoiseReduction, PhraseKey("Fast Noise Reduction"),
     PhraseKey("Quickly removes noise from the image.  This version is not as comprehensive as the "
               "standard "
               "noise removeal.")},
    {kImageNoiseReduction, PhraseKey("Noise Reduction"),
     PhraseKey("Removes noise from the image.")},
};

constexpr OperationItem kUndoItems[] = {
    {kImageUndo, PhraseKey("Undo")},
    {kImageRedo, PhraseKey("Redo")},
    {kImageOriginal, PhraseKey("Original"), PhraseKey("Reverts back to the original image.")},
};

constexpr uint32_t kUndoGroup = 0x8038;  // no item has it

constexpr OperationGroup kGroups[] = {
    {kImageCopy, PhraseKey("Image Operations"),
     PhraseKey("Contains various viewing, saving, exporting and transfer options."),
     PhraseKey("Options"), kImageItems},
    {kImageFlipHorizontal, PhraseKey("Flip"), PhraseKey("Flip the image."), PhraseKey("Flip"),
     kFlipItems},
    {kImageRotate90, PhraseKey("Rotate"), PhraseKey("Rotate the image."), PhraseKey("Rotate"),
     kRotateItems},
    {kImageInvert, PhraseKey("Enhancements"), PhraseKey("Various image enhancement functions."),
     PhraseKey("Enhance"), kEnhancementItems},
    {kUndoGroup, PhraseKey("Undo / Redo"),
     PhraseKey("Undo, redo and revert to original operations."), PhraseKey("Undo/Redo"),
     kUndoItems},
};

}  // namespace

std::span<const OperationGroup> OperationTree() { return kGroups; }

}  // namespace zyr
