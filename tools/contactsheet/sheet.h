// A page of tiles in rows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "imaging/image/image.h"
#include "tools/images/grey_picture.h"

namespace zyr {

inline constexpr uint32_t kTileWidth = 150;  // pixels
inline constexpr uint32_t kTileHeight = 190;

struct Tile {
  std::string caption;                 // below the picture
  std::unique_ptr<CKIPImage> picture;  // grey or of 24 bits; what a tile cannot hold is cut off
};

struct Entry {
  std::string title;
  std::vector<Tile> tiles;
};

// Entries from left to right and from the top down, each as wide as the one of the most tiles.
GreyPicture LayOut(const std::string& heading, const std::vector<Entry>& entries, uint32_t columns);

}  // namespace zyr
