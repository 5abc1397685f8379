// What the spot tools make of the part of a picture around the pointer.
#pragma once

#include <array>
#include <cstdint>

#include "imaging/image/image.h"
#include "imaging/viewer/image_viewer_view.h"

namespace zyr {

enum class Spectrum : uint32_t { kStandard = 6, kFire, kIce, kRedGreenBlue, kGreenRedBlue };

// 256 colours, 0x00RRGGBB, from dark to bright.
const std::array<uint32_t, 256>& SpectrumColors(Spectrum spectrum);

// Where a spot lies: its middle in the image, in pixels and parts of them, and the square around it
// on the screen. The middle is the left upper corner of the screen pixel half the square's size, in
// whole pixels, from its left and upper edge.
struct Spot {
  double imageX = 0;
  double imageY = 0;
  ViewRect client;
  double zoom = 1;  // screen pixels an image pixel has around the spot
};

// Each draws the spot over a painted area: `pixels` are those of the client rectangle `clip`,
// 0x00RRGGBB, rows from the top without gaps. Only the part of the spot inside `clip` is touched.
// Out of memory they throw std::bad_alloc.

// The picture `magnification` times larger, smoothly, with a thin rim.
void DrawMagnifiedSpot(const CKIPImage& image, const Spot& spot, uint32_t magnification,
                       const ViewRect& clip, uint32_t* pixels);
// The contrast of the spot's own levels stretched, fading into the picture at a soft edge.
void DrawEnhancedSpot(const CKIPImage& image, const Spot& spot, const ViewRect& clip,
                      uint32_t* pixels);
// The spot's levels as colours of the spectrum.
void DrawColorizedSpot(const CKIPImage& image, const Spot& spot, Spectrum spectrum,
                       const ViewRect& clip, uint32_t* pixels);

}  // namespace zyr
