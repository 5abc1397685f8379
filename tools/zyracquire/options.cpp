#include "tools/zyracquire/options.h"

#include <charconv>
#include <functional>
#include <utility>

#include "twain/twain_constants.h"

namespace zyr {
namespace {

constexpr uint32_t kLargestBuffer = 1u << 30;
constexpr uint32_t kLongestTimeout = 24 * 60 * 60;

template <typename Value>
using Words = std::vector<std::pair<const char*, Value>>;

const Words<Mechanism> kMechanisms = {
    {"native", Mechanism::kNative}, {"memory", Mechanism::kMemory}, {"file", Mechanism::kFile}};
const Words<uint16_t> kDepths = {{"8", uint16_t{8}}, {"16", uint16_t{16}}};
const Words<uint16_t> kFileFormats = {{"bmp", TWFF_BMP}, {"tiff", TWFF_TIFF}, {"jpeg", TWFF_JFIF}};
const Words<uint16_t> kUnits = {
    {"inches", TWUN_INCHES}, {"centimeters", TWUN_CENTIMETERS}, {"pixels", TWUN_PIXELS}};
const Words<uint16_t> kFlavors = {{"chocolate", TWPF_CHOCOLATE}, {"vanilla", TWPF_VANILLA}};
const Words<PictureFormat> kSaves = {
    {"png", PictureFormat::kPng}, {"bmp", PictureFormat::kBmp}, {"tiff", PictureFormat::kTiff}};

struct Option {
  const char* name;
  // Takes the value; false if it is none of this option's. Null for an option without a value.
  std::function<bool(const std::string&)> take;
  bool* flag = nullptr;
};

template <typename Value, typename Target>
Option OneOf(const char* name, const Words<Value>& words, Target* target) {
  return {name, [&words, target](const std::string& text) {
            for (const auto& [word, value] : words) {
              if (text != word) continue;
              *target = value;
              return true;
            }
            return false;
          }};
}

Option Number(const char* name, uint32_t least, uint32_t most, uint32_t* target) {
  return {name, [=](const std::string& text) {
            uint32_t value = 0;
            const char* end = text.data() + text.size();
            const auto [stop, error] = std::from_chars(text.data(), end, value);
            if (error != std::errc() || stop != end || value < least || value > most) return false;
            *target = value;
            return true;
          }};
}

Option Text(const char* name, std::string* target) {
  return {name, [target](const std::string& text) {
            *target = text;
            return !text.empty();
          }};
}

Option Flag(const char* name, bool* target) { return {name, nullptr, target}; }

std::vector<Option> KnownOptions(AcquireOptions* options) {
  return {Flag("--help", &options->help),
          Flag("-h", &options->help),
          Flag("--list", &options->list),
          Flag("--caps", &options->caps),
          Flag("--trace", &options->trace),
          Flag("--unattended", &options->unattended),
          Text("--dsm", &options->dsm),
          Text("--source", &options->source),
          Text("--out", &options->outFolder),
          OneOf("--mechanism", kMechanisms, &options->mechanism),
          OneOf("--depth", kDepths, &options->depth),
          OneOf("--format", kFileFormats, &options->fileFormat),
          OneOf("--units", kUnits, &options->units),
          OneOf("--flavor", kFlavors, &options->flavor),
          OneOf("--save", kSaves, &options->save),
          Number("--count", 1, 32767, &options->count),
          Number("--buffer", 1, kLargestBuffer, &options->buffer),
          Number("--timeout", 0, kLongestTimeout, &options->timeoutSeconds)};
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
  const std::vector<Option> known = KnownOptions(&options);
  for (size_t i = 0; i < arguments.size(); ++i) {
    // Both `--name value` and `--name=value`.
    const size_t sign =
        arguments[i].rfind("--", 0) == 0 ? arguments[i].find('=') : std::string::npos;
    const std::string name = arguments[i].substr(0, sign);
    const Option* option = nullptr;
    for (const Option& candidate : known) {
      if (name == candidate.name) option = &candidate;
    }
    if (option == nullptr) {
      options.error = "There is no option '" + name + "'.";
      return options;
    }
    if (option->flag != nullptr && sign == std::string::npos) {
      *option->flag = true;
      continue;
    }
    if (option->flag != nullptr) {
      options.error = name + " takes no value.";
      return options;
    }
    if (sign == std::string::npos && i + 1 == arguments.size()) {
      options.error = name + " needs a value.";
      return options;
    }
    const std::string value =
        sign == std::string::npos ? arguments[++i] : arguments[i].substr(sign + 1);
    if (!option->take(value)) {
      options.error = name + " does not take '" + value + "'.";
      return options;
    }
  }
  if (!options.help) options.error = Contradiction(options);
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
