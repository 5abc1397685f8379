#include "acquire/image_dialog/gamma_dialog.h"

#include <new>
#include <utility>

#include "foundation/support/format.h"

namespace zyr {
namespace {

constexpr double kGammaStep = 0.01;

struct SliderRange {
  uint32_t slider;
  int32_t least;
  int32_t most;
  int32_t position;
};
constexpr SliderRange kSliders[] = {
    {kSliderBrightness, -100, 100, 0},
    {kSliderContrast, -100, 100, 0},
    {kSliderGamma, 1, 300, 100},
};

}  // namespace

GammaDialog::GammaDialog(GammaDialogView& view, CachedImage& workingImage)
    : view_(view), workingImage_(workingImage) {}

bool GammaDialog::Run(platform::Window owner) {
  const bool accepted = view_.Run(this, owner);
  view_.StopTimer();
  view_.viewer().Clear();
  return accepted;
}

std::unique_ptr<CachedImage> GammaDialog::TakePreview() { return std::move(preview_); }

void GammaDialog::OnInitDialog() {
  for (const SliderRange& range : kSliders) {
    view_.SetSliderRange(range.slider, range.least, range.most, range.position);
  }
  ShowLabels();
  MakePreview(true);
}

void GammaDialog::OnSlider() {
  view_.StartTimer(kPreviewDelay);
  ShowLabels();
}

void GammaDialog::OnTimer() { MakePreview(false); }

void GammaDialog::OnOK() { End(true); }

void GammaDialog::OnCancel() { End(false); }

void GammaDialog::End(bool accepted) {
  view_.StopTimer();
  view_.End(accepted);
}

void GammaDialog::ShowLabels() {
  for (const SliderRange& range : kSliders) {
    view_.SetSliderLabel(range.slider, FormatText("%ld", Ld(view_.SliderPosition(range.slider))));
  }
}

// Always from the working image, so that adjustments do not add up. The viewer looks into the old
// preview until it has the new one.
void GammaDialog::MakePreview(bool resetZoom) {
  std::unique_ptr<CachedImage> preview;
  CKIPImage* picture = nullptr;
  operations_.clear();
  try {
    preview = workingImage_.Clone();
    if (preview != nullptr) {
      operations_ =
          Apply(AdjustGammaBrightnessContrast(view_.SliderPosition(kSliderGamma) * kGammaStep,
                                              view_.SliderPosition(kSliderBrightness),
                                              view_.SliderPosition(kSliderContrast)),
                *preview);
      picture = preview->PrepareImage();
    }
  } catch (const std::bad_alloc&) {
    preview.reset();
    picture = nullptr;
    operations_.clear();
  }
  view_.viewer().SetImage(picture, resetZoom);
  if (resetZoom) view_.viewer().ZoomToOneOrFit();
  preview_ = std::move(preview);
}

}  // namespace zyr
