// The contrast of a small part of a picture, stretched by what each neighbourhood in it holds.
#pragma once

#include <cstdint>
#include <vector>

#include "imaging/viewer/image_viewer_view.h"

namespace zyr {

// Of a colour 0x00RRGGBB.
uint8_t LevelOfColor(uint32_t color);

// Around each node of a grid the levels are counted. What lies between the darkest and the
// brightest few of them is stretched over nearly the whole range, but never so far that noise takes
// over, and the neighbourhood's own brightness is partly kept, so that enamel stays brighter than
// bone. Between the nodes the stretch changes evenly: there are no seams.
class LocalContrast {
 public:
  // `pixels` are those of the client rectangle `shown` without gaps, not empty, and inside `spot`,
  // towards whose edge the effect fades. An image pixel takes `zoom` of them.
  LocalContrast(const uint32_t* pixels, const ViewRect& shown, const ViewRect& spot, double zoom);

  // Stretches the pixels from `left` to `right` of the client row `y`, inside `shown`.
  void Apply(int32_t y, int32_t left, int32_t right, uint32_t* pixels) const;

 private:
  // A level becomes gain x level + offset.
  struct Stretch {
    float gain = 1;
    float offset = 0;
  };
  static constexpr int kNodes = 5;  // in each direction

  Stretch FindStretch(const std::vector<uint8_t>& levels, int nodeX, int nodeY, float noise) const;
  Stretch Between(int32_t x, int32_t y) const;

  ViewRect shown_;
  ViewRect spot_;
  Stretch nodes_[kNodes][kNodes];
  std::vector<float> fadeX_;  // over `spot`
  std::vector<float> fadeY_;
};

}  // namespace zyr
