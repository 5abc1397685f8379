#include "tools/zyracquire/options.h"

#include "tools/command_line/command_line.h"
#include "twain/twain_constants.h"

namespace zyr {
namespace {

constexpr uint32_t kLargestBuffer = 1u << 30;
constexpr uint32_t kLongestTimeout = 24 * 60 * 60;

const Words<Mechanism> kMechanisms = {
    {"native", Mechanism::kNative}, {"memory", Mechanism::kMemory}, {"file", Mechanism::kFile}};
const Words<uint16_t> kDepths = {{"8", uint16_t{8}}, {"16", uint16_t{16}}};
const Words<uint16_t> kFileFormats = {{"bmp", TWFF_BMP}, {"tiff", TWFF_TIFF}, {"jpeg", TWFF_JFIF}};
const Words<uint16_t> kUnits = {
    {"inches", TWUN_INCHES}, {"centimeters", TWUN_CENTIMETERS}, {"pixels", TWUN_PIXELS}};
const Words<uint16_t> kFlavors = {{"chocolate", TWPF_CHOCOLATE}, {"vanilla", TWPF_VANILLA}};
const Words<PictureFormat> kSaves = {
    {"png", PictureFormat::kPng}, {"bmp", PictureFormat::kBmp}, {"tiff", PictureFormat::kTiff}};

std::vector<Option> KnownOptions(AcquireOptions* options) {
  return {Flag("--help", &options->help),
          Flag("-h", &options->help),
          Flag("--list", &options->list),
          Flag("--caps", &options->caps),
          Flag("--trace", &options->trace),
          Flag("--unattended", &options->unattended),
          TextOption("--dsm", &options->dsm),
          TextOption("--source", &options->source),
          TextOption("--out", &options->outFolder),
          OneOf("--mechanism", kMechanisms, &options->mechanism),
          OneOf("--depth", kDepths, &options->depth),
          OneOf("--format", kFileFormats, &options->fileFormat),
          OneOf("--units", kUnits, &options->units),
          OneOf("--flavor", kFlavors, &options->flavor),
          OneOf("--save", kSaves, &options->save),
          NumberOption("--count", 1u, 32767u, &options->count),
          NumberOption("--buffer", 1u, kLargestBuffer, &options->buffer),
          NumberOption("--timeout", 0u, kLongestTimeout, &options->timeoutSeconds)};
}

std::string Contradiction(const AcquireOptions& options) {
  const Mechanism mechanism = options.mechanism.value_or(Mechanism::kNative);
  if (options.fileFormat && mechanism != Mechanism::kFile) {
    return "--format is that of a file transfer: add --mechanism file. What this program writes "
           "itself is chosen with --save.";
  }
  if (options.buffer != 0 && mechanism != Mechanism::kMemory) {
    return "--buffer is that of a memory transfer: add --mechanism memory.";
  }
  return {};
}

}  // namespace

AcquireOptions ParseAcquireOptions(const std::vector<std::string>& arguments) {
  AcquireOptions options;
  options.error = ParseCommandLine(arguments, KnownOptions(&options));
  if (options.error.empty() && !options.help) options.error = Contradiction(options);
  return options;
}

std::string PictureFileName(const AcquireOptions& options, uint32_t number,
                            const std::string& extension) {
  const std::string& folder = options.outFolder;
  const bool separated = folder.back() == '\\' || folder.back() == '/';
  return folder + (separated ? "" : "\\") + "image-" + std::to_string(number) + "." + extension;
}

const char kAcquireHelp[] =
    R"(zyracquire: fetches images from a TWAIN data source and writes them to files.

Usage: zyracquire [OPTION]...

Opens the source, lets its window appear, waits until it has images, takes them all and saves them
as image-1.png, image-2.png, ... in the current folder. Options take their value behind a blank or
an equals sign.

What to talk to
  --list              list the sources that the manager knows, the default one with a star, and end
  --source NAME       the source whose product name holds NAME, upper or lower case (the default
                      source)
  --dsm PATH          the data source manager to load (TWAINDSM.dll beside this program or in the
                      system, else TWAIN_32.DLL)
  --caps              print every capability of the source with its current, default and offered
                      values, and end

What to ask for
  --mechanism WAY     native, memory or file (native)
  --depth 8|16        bits a pixel (as the source has it)
  --count N           take N images at most and leave the others where they are (all)
  --format FORMAT     bmp, tiff or jpeg: what the source writes in a file transfer (bmp)
  --buffer BYTES      size of the strips of a memory transfer (what the source prefers)
  --units UNITS       inches, centimeters or pixels (as the source has it)
  --flavor FLAVOR     chocolate: 0 is black, or vanilla: 0 is white (as the source has it). Pictures
                      are saved right either way

Where the images go
  --out DIR           an existing folder (the current one)
  --save FORMAT       png, bmp or tiff, for native and memory transfer (png). BMP holds 8 bits only,
                      images of 16 bits are written as PNG then

How to run
  --timeout S         give up after S seconds without an image, and when the source has not answered
                      for that long; 0 waits for ever (300)
  --unattended        nobody is there: confirm the source's message boxes, and print their words
  --trace             print each call to the source with its result and the time it took
  --help              this text

A line is printed for each image: size, depth, resolution, way, bytes, time taken and speed.
A capability that the source refuses is a warning, unless an option asked for it.

Exit status
  0  all images that were asked for are saved
  1  the source reported a failure; its condition code is printed in words
  2  the command line is wrong, or the folder for the images does not exist
  3  there is no data source manager or no such source, or it cannot be opened
  4  time is up: no image came, or the source no longer answers
  5  the source was closed by its user before it gave an image
  6  the source refused what an option asked for
  7  a picture cannot be written; the source keeps that image and those behind it

Examples
  zyracquire --list
  zyracquire --source zyr --depth 16 --out C:\images
  zyracquire --source zyr --mechanism memory --buffer 65536 --depth 8 --save bmp
  zyracquire --source zyr --caps
)";

}  // namespace zyr
