#include "tools/images/read_picture.h"

#include <fstream>
#include <iterator>
#include <vector>

#include "tools/images/picture_decoders.h"

namespace zyr {
namespace {

std::optional<GreyPicture> Decode(const std::vector<uint8_t>& file, std::string* error) {
  if (IsPng(file)) return DecodePng(file, error);
  if (IsPgm(file)) return DecodePgm(file, error);
  if (IsTiff(file)) return DecodeTiff(file, error);
  *error = "is no PNG, PGM or TIFF file";
  return {};
}

}  // namespace

std::optional<GreyPicture> ReadPicture(const std::string& path, std::string* error) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    *error = path + " cannot be opened.";
    return {};
  }
  const std::vector<uint8_t> file{std::istreambuf_iterator<char>(stream), {}};
  std::string why;
  std::optional<GreyPicture> picture = Decode(file, &why);
  if (!picture) *error = path + " " + why + ".";
  return picture;
}

}  // namespace zyr
