// A part of a picture at any scale.
#pragma once

#include <cstdint>

#include "imaging/image/image.h"
#include "imaging/viewer/image_viewer_view.h"

namespace zyr {

// From here on an image pixel is a sharp square: whoever looks that close counts pixels.
inline constexpr double kSharpScale = 4;

// Draws the part of the picture that a rectangle of the screen shows: pixel (x, y) of the scaled
// picture is written for each of `part`, whose right and lower edges lie inside it. Below scale 1
// each screen pixel is the mean of the image pixels it covers, above it they blend into each other,
// up to kSharpScale. A picture with a grey palette is scaled by its levels, which then get their
// colours; others are scaled by colours. `rowPixels` is the distance of rows in `target`;
// 0x00RRGGBB, from the top. Valid images of 1, 8 and 24 bits. A part gets the pixels that the whole
// would have there. Out of memory it throws std::bad_alloc, as do the others here.
void DrawScaled(const CKIPImage& image, double scale, const ViewRect& part, uint32_t* target,
                uint32_t rowPixels);

// The same at any place: the left upper corner of pixel (0, 0) shows the image point (left, top).
// Beyond the image its outermost pixels go on. From scale 1 on the pixels blend, always.
void DrawSmooth(const CKIPImage& image, double scale, double left, double top, const ViewRect& part,
                uint32_t* target, uint32_t rowPixels);

}  // namespace zyr
