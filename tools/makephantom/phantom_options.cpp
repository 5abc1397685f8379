#include "tools/makephantom/phantom_options.h"

#include "tools/command_line/command_line.h"

namespace zyr {
namespace {

bool ParseSize(const std::string& text, PhantomOptions* options) {
  if (text == "2000d" || text == "303d") {
    options->isZyr303 = text == "303d";
    options->width = options->isZyr303 ? 798 : 1156;
    options->height = options->isZyr303 ? 1070 : 1600;
    options->micrometresPerPixel = options->isZyr303 ? 33 : 22.5;
    return true;
  }
  const size_t cross = text.find('x');
  if (cross == std::string::npos) return false;
  if (!ParseNumber(text.substr(0, cross), 1u, 10'000u, &options->width)) return false;
  if (!ParseNumber(text.substr(cross + 1), 1u, 10'000u, &options->height)) return false;
  // The whole view, however few pixels it gets.
  options->micrometresPerPixel = 26'000.0 / options->width;
  return true;
}

const Words<uint32_t> kDepths = {{"8", 8}, {"12", 12}};
const Words<uint32_t> kExpectedDepths = {{"8", 8}, {"16", 16}};

std::vector<Option> KnownOptions(PhantomOptions* options) {
  return {Flag("--help", &options->help),
          Flag("-h", &options->help),
          TextOption("--out", &options->outFolder),
          NumberOption("--count", 1u, 100'000u, &options->count),
          {"--size", [=](const std::string& text) { return ParseSize(text, options); }},
          OneOf("--depth", kDepths, &options->depth),
          NumberOption("--seed", uint64_t{0}, UINT64_MAX, &options->seed),
          NumberOption("--time", 0u, UINT32_MAX, &options->captureTime),
          TextOption("--png", &options->png),
          TextOption("--expect", &options->expect),
          OneOf("--as", kExpectedDepths, &options->expectBits),
          TextOption("--pgm", &options->pgm)};
}

std::string Contradiction(const PhantomOptions& options) {
  if (options.help) return {};
  if (!options.expect.empty()) {
    if (options.pgm.empty()) return "--expect needs --pgm FILE.";
    return {};
  }
  if (!options.pgm.empty()) return "--pgm belongs to --expect.";
  if (options.outFolder.empty() && options.png.empty())
    return "Nothing to do: give --out DIR or --png FILE.";
  return {};
}

}  // namespace

PhantomOptions ParsePhantomOptions(const std::vector<std::string>& arguments) {
  PhantomOptions options;
  options.error = ParseCommandLine(arguments, KnownOptions(&options));
  if (options.error.empty()) options.error = Contradiction(options);
  return options;
}

const char kPhantomHelp[] =
    R"(makephantom: X-ray images of teeth that nobody has, as files of the data source's image cache.

  makephantom --out DIR [--count N] [--size SIZE] [--depth 8|12] [--seed S] [--time T] [--png FILE]
  makephantom --expect CACHEFILE --as 8|16 --pgm FILE

  --out DIR      write the images into this folder, as CACHEDRAW.RAW, CACHEDRAW_1.RAW, ...
  --count N      how many (1). Each shows other teeth and is a minute younger than the one before
  --size SIZE    2000d (as without the option): 1156 x 1600 pixels of 22.5 micrometres; 303d: 798 x
                 1070 of 33; or WIDTHxHEIGHT, which scales the view to the width
  --depth 8|12   bits a pixel (12)
  --seed S       number of the first image (1); the same number gives the same image
  --time T       capture time of the first, in seconds since 1970 (1700000000)
  --png FILE     the pictures as 8-bit PNG too; of several, FILE gets a number: teeth-1.png, ...

  --expect FILE  write the picture that an imaging program must get of this cache file ...
  --as 8|16      ... at that depth (16) ...
  --pgm FILE     ... as a PGM file

The exit status is 0 if all is written, 1 if not, 2 if the command line is wrong.
)";

}  // namespace zyr
