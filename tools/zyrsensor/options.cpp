#include "tools/zyrsensor/options.h"

#include "tools/command_line/command_line.h"

namespace zyr {
namespace {

constexpr uint32_t kLongestWatch = 24 * 60 * 60;

const Words<SensorCommand> kCommands = {{"list", SensorCommand::kList},
                                        {"info", SensorCommand::kInfo},
                                        {"capture", SensorCommand::kCapture},
                                        {"watch", SensorCommand::kWatch},
                                        {"trigger", SensorCommand::kTrigger}};

bool TakeProperty(const std::string& text, SensorOptions* options) {
  const size_t sign = text.find('=');
  if (sign == std::string::npos || sign == 0) return false;
  options->properties.emplace_back(text.substr(0, sign), text.substr(sign + 1));
  return true;
}

std::vector<Option> KnownOptions(SensorOptions* options) {
  return {
      Flag("--help", &options->help),
      Flag("-h", &options->help),
      TextOption("--sensor", &options->sensor),
      NumberOption("--type", 1, 5, &options->type),
      TextOption("--out", &options->out),
      TextOption("--all-out", &options->allOut),
      Flag("--film", &options->film),
      TextOption("--reference", &options->reference),
      {"--set", [=](const std::string& text) { return TakeProperty(text, options); }},
      NumberOption("--seconds", 1u, kLongestWatch, &options->seconds),
      TextOption("--log", &options->log),
  };
}

std::string TakeCommand(const std::vector<std::string>& words, SensorOptions* options) {
  if (words.empty()) return "What shall be done: list, info, capture, watch or trigger?";
  if (!OneOf("", kCommands, &options->command).take(words[0])) {
    return "There is no command '" + words[0] + "'.";
  }
  return words.size() > 1 ? "'" + words[1] + "' is too much." : "";
}

std::string Contradiction(const SensorOptions& options) {
  const bool captures = options.command == SensorCommand::kCapture;
  if (captures && options.out.empty() && options.allOut.empty()) {
    return "capture needs --out FILE or --all-out DIR.";
  }
  const bool hasPictureOptions = !options.out.empty() || !options.allOut.empty() || options.film ||
                                 !options.reference.empty() || !options.properties.empty();
  if (!captures && hasPictureOptions) {
    return "--out, --all-out, --film, --reference and --set belong to capture.";
  }
  if (options.command != SensorCommand::kWatch && options.seconds != 0) {
    return "--seconds belongs to watch.";
  }
  return {};
}

}  // namespace

SensorOptions ParseSensorOptions(const std::vector<std::string>& arguments) {
  SensorOptions options;
  std::vector<std::string> words;
  options.error = ParseCommandLine(arguments, KnownOptions(&options), &words);
  if (options.help || !options.error.empty()) return options;
  options.error = TakeCommand(words, &options);
  if (options.error.empty()) options.error = Contradiction(options);
  return options;
}

const char kSensorHelp[] =
    R"(zyrsensor: shows and tries the X-ray sensors on this computer, without an imaging program.

Usage: zyrsensor COMMAND [OPTION]...

  list                print the sensors that were found: family, identity, device
  info                print the properties of a sensor, what its memory holds and its known defects
  capture             arm a sensor, wait for the exposure and save the picture
  watch               print the sensors as they are plugged in and pulled out
  trigger             make a sensor that another program has armed fire without X-rays

Options take their value behind a blank or an equals sign.

  --sensor TEXT       the sensor whose device holds TEXT, upper or lower case (the first one)
  --type 1..5         capture: 1 the exposed frame as it came, 2 the dark frame, 3 dark subtracted
                      and raster moved back, 4 and 5 defects repaired besides (5)
  --out FILE          capture: the picture, 16 bits a pixel, as FILE.png or FILE.tif
  --all-out DIR       capture: the pictures of all types from one exposure, as DIR\type-1.png, ...
  --film              capture: bright is what stopped the rays, as on a film; as without the option,
                      bright is where they came through
  --reference FILE    capture: a PNG, PGM or TIFF of what the picture should show, bright where
                      the rays come through; the difference is printed
  --set NAME=VALUE    capture: a property of the sensor, such as sensitivity, threshold,
                      integration_time, capture_timeout (milliseconds), binned (true or false)
  --seconds S         watch: end after so long (when the program is ended)
  --log DIR           write DIR\ZYRSensor.Log
  --help              this text

settings.xml beside this program tells which families of sensors there are. Finding the sensors
resets them: do not list or capture while another program waits for an exposure.

Exit status
  0  done
  1  a sensor, or the search for them, failed; the reason is printed
  2  the command line is wrong
  3  there is no such sensor
  4  a picture cannot be written or read

Examples
  zyrsensor list
  zyrsensor capture --out C:\images\tooth.png --set binned=true
  zyrsensor trigger
)";

}  // namespace zyr
