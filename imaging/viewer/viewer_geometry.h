// Where the scaled picture lies in the client area, and conversions between the two. A picture
// smaller than the client area stands in its middle, in either direction.
#pragma once

#include <cstdint>

#include "imaging/viewer/image_viewer_view.h"

namespace zyr {

// In pixels of the image and parts of them; the image's first pixel reaches from 0 to 1.
struct ImagePoint {
  double x = 0;
  double y = 0;
};

ViewRect Intersection(const ViewRect& a, const ViewRect& b);  // {} if they do not touch
ViewRect RectBetween(ViewPoint a, ViewPoint b);               // with both points' pixels
bool IsEmpty(const ViewRect& rect);

// A plain record. What 32 bits cannot hold is held at their limits. An image without pixels is no
// image: points are 0, 0 then and rectangles empty.
struct ViewerGeometry {
  uint32_t imageWidth = 0;
  uint32_t imageHeight = 0;
  double zoom = 1;  // above 0
  ViewSize client;
  ViewPoint scroll;  // where the client area begins in the scaled picture

  bool HasImage() const { return imageWidth > 0 && imageHeight > 0; }
  ViewSize Content() const;  // of the scaled picture; at least one pixel of an image
  bool Fits() const;
  ViewPoint Origin() const;  // of the picture, in the client area

  // The nearest scroll position that there is.
  ViewPoint HeldScroll(double x, double y) const;
  // The one that brings the image's point to a place of the client area, as near as can be.
  ViewPoint ScrollFor(ImagePoint point, double clientX, double clientY) const;

  ImagePoint ImageAt(double clientX, double clientY) const;
  ViewPoint ClientToImage(ViewPoint point, bool limit, double offset) const;
  ViewPoint ImageToClient(ViewPoint point) const;

  ViewRect VisiblePicture() const;  // in the client area, without what lies outside
  // The part of the scaled picture that a client rectangle shows.
  ViewRect ScaledPart(const ViewRect& clientRect) const;
  // The image pixels that have to do with a client rectangle: one more on each side, and above
  // scale 1 up to multiples of 10, so that magnified pixels are redrawn as a whole. Not held inside
  // the image.
  ViewRect DirtyImageRect(const ViewRect& clientRect) const;
};

}  // namespace zyr
