#include "simulator/tool/options.h"

#include <algorithm>
#include <optional>

#include "simulator/bus_protocol.h"
#include "tools/command_line/command_line.h"

namespace zyr::simulator {
namespace {

const Words<Family> kFamilies = {{"2000", kFamily2000}, {"303", kFamily303}};
const Words<Size> kSizes = {{"A", kSizeA}, {"B", kSizeB}, {"C", kSizeC}, {"D", kSizeD},
                            {"a", kSizeA}, {"b", kSizeB}, {"c", kSizeC}, {"d", kSizeD}};
const Words<FaultKind> kFaultKinds = {{"none", kNoFault},         {"error", kFaultError},
                                      {"short", kFaultShort},     {"wrong", kFaultWrongByte},
                                      {"silence", kFaultSilence}, {"unplug", kFaultUnplug}};

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool ParseInstance(const std::string& text, std::string* instance) {
  if (text.empty() || text.size() >= kInstanceSize) return false;
  instance->clear();
  for (const char c : text) {
    const char upper = Upper(c);
    if ((upper < '0' || upper > '9') && (upper < 'A' || upper > 'Z')) return false;
    instance->push_back(upper);
  }
  return true;
}

Option InstanceOption(SimOptions* options) {
  return {"--instance",
          [=](const std::string& text) { return ParseInstance(text, &options->instance); }};
}

// Given in units of so many microseconds. An hour is more than anybody waits for.
Option TimeOption(const char* name, uint64_t unit, uint64_t* microseconds) {
  return {name, [=](const std::string& text) {
            uint64_t number = 0;
            if (!ParseNumber(text, uint64_t{0}, 3'600'000'000 / unit, &number)) return false;
            *microseconds = number * unit;
            return true;
          }};
}

Option ExposureOption(SimOptions* options) {
  return {"--exposure", [=](const std::string& text) {
            return ParseNumber(text, uint64_t{0}, UINT64_MAX, &options->exposure.emplace());
          }};
}

Option SeedOption(SimOptions* options) {
  return NumberOption("--seed", uint64_t{0}, UINT64_MAX, &options->seed);
}

std::vector<Option> PlugTerms(SimOptions* options) {
  Timing* timing = &options->timing;
  return {InstanceOption(options),
          SeedOption(options),
          Flag("--no-memory", &options->noMemory),
          TextOption("--frame", &options->frame),
          Flag("--signal", &options->signal),
          ExposureOption(options),
          TimeOption("--expose-after", 1000, &timing->exposureAfter),
          TimeOption("--integration", 1000, &timing->integration),
          TimeOption("--dark-integration", 1000, &timing->darkIntegration),
          TimeOption("--transfer", 1, &timing->transfer),
          TimeOption("--timeout", 1000, &timing->driverTimeout),
          TimeOption("--patience", 1000, &options->patience)};
}

// A word that must follow a command.
using Word = Option;

Word FrameWord(SimOptions* options) {
  return {"FRAME", [=](const std::string& text) {
            options->frame = text == "phantom" ? "" : text;
            return !text.empty();
          }};
}

struct CommandTerms {
  const char* name;
  SimCommand command;
  std::vector<Word> words;
  std::vector<Option> options;
};

std::vector<CommandTerms> Commands(SimOptions* options) {
  const Word family = OneOf("FAMILY", kFamilies, &options->family);
  const Word size = OneOf("SIZE", kSizes, &options->size);
  const Option instance = InstanceOption(options);
  Fault* fault = &options->fault;
  return {
      {"install",
       SimCommand::kInstall,
       {},
       {NumberOption("--driver-version", 1u, 3u, &options->driverVersion)}},
      {"remove", SimCommand::kRemove, {}, {}},
      {"plug", SimCommand::kPlug, {family, size}, PlugTerms(options)},
      {"unplug", SimCommand::kUnplug, {}, {instance}},
      {"load",
       SimCommand::kLoad,
       {FrameWord(options)},
       {instance, Flag("--signal", &options->signal), ExposureOption(options)}},
      {"expose",
       SimCommand::kExpose,
       {},
       {instance, NumberOption("--wait", 0u, 3600u, &options->waitSeconds)}},
      {"fault",
       SimCommand::kFault,
       {OneOf("KIND", kFaultKinds, &fault->kind)},
       {instance, NumberOption("--at", 0u, UINT32_MAX, &fault->transfer),
        NumberOption("--value", 0u, UINT32_MAX, &fault->value)}},
      {"stat", SimCommand::kStat, {}, {instance}},
      {"scene",
       SimCommand::kScene,
       {family, size},
       {TextOption("--out", &options->out), TextOption("--frame", &options->frame),
        Flag("--signal", &options->signal), SeedOption(options)}},
  };
}

std::string TakeWords(const CommandTerms& terms, const std::vector<std::string>& words) {
  for (size_t i = 0; i < terms.words.size(); ++i) {
    const Word& expected = terms.words[i];
    if (i == words.size()) return std::string(terms.name) + " needs " + expected.name + ".";
    if (!expected.take(words[i])) return "'" + words[i] + "' is no " + expected.name + ".";
  }
  if (words.size() > terms.words.size())
    return "'" + words[terms.words.size()] + "' is a word too many.";
  return {};
}

std::string Contradiction(const SimOptions& options) {
  if (GeometryOf(options.family, options.size).width == 0) return "303 sensors have size C or D.";
  if (options.command == SimCommand::kScene && options.out.empty()) return "scene needs --out.";
  if (options.command == SimCommand::kFault && options.fault.kind == kFaultError &&
      (options.fault.value == 0 || options.fault.value > 65535))
    return "fault error needs --value with a system error number from 1 to 65535.";
  return {};
}

std::string Parse(const std::vector<std::string>& arguments, SimOptions* options) {
  const std::vector<CommandTerms> commands = Commands(options);
  const auto terms =
      std::find_if(commands.begin(), commands.end(),
                   [&](const CommandTerms& candidate) { return arguments[0] == candidate.name; });
  if (terms == commands.end()) return "There is no command '" + arguments[0] + "'.";
  options->command = terms->command;
  std::vector<std::string> words;
  std::string error =
      ParseCommandLine({arguments.begin() + 1, arguments.end()}, terms->options, &words);
  if (error.empty()) error = TakeWords(*terms, words);
  return error.empty() ? Contradiction(*options) : error;
}

bool AsksForHelp(const std::vector<std::string>& arguments) {
  return arguments.empty() || arguments[0] == "help" ||
         std::any_of(arguments.begin(), arguments.end(), [](const std::string& argument) {
           return argument == "--help" || argument == "-h";
         });
}

}  // namespace

SimOptions ParseSimOptions(const std::vector<std::string>& arguments) {
  SimOptions options;
  options.timing.integration = 300'000;
  options.timing.darkIntegration = 300'000;
  options.timing.driverTimeout = 5'000'000;
  if (!AsksForHelp(arguments)) options.error = Parse(arguments, &options);
  return options;
}

const char kSimHelp[] =
    R"(zyrsim: digital X-ray sensors that are not there. Its driver is a bus; what is plugged in
stands among the USB devices of this Windows, opens and answers like the real thing, and shows
whatever radiograph it is given.

  zyrsim install [--driver-version 1|2|3]
      Installs the bus, silently, as an administrator; a 64-bit Windows needs the 64-bit zyrsim.
      Version 1 of the sensors' driver is called by pipes, version 3 by endpoints (3); version 2 is
      called by pipes too, and programs pass it by. Once more: changes the version for the sensors
      that are plugged in from then on.

  zyrsim plug FAMILY SIZE [OPTION]...
      FAMILY is 2000 or 303, SIZE is A, B, C or D (303: C or D). Returns when programs can find it.
      --instance NNNN        the end of its USB identity, up to 15 letters and digits (the first
                             free one from 0001)
      --seed S               which physical sensor it is: identity, defects, patterns, phantom (1)
      --no-memory            a sensor without identity memory
      --frame FILE           what it shows, as for load (the phantom)
      --signal               as for load
      --exposure N           which exposure: its noise (0)
      --expose-after MS      X-rays that long after it is armed; 0: by command only (0)
      --integration MS       from the X-rays to the first frame (300)
      --dark-integration MS  from the first frame to the second (300)
      --transfer US          how long every transfer takes, in microseconds (0)
      --timeout MS           after which a read without data fails (5000)
      --patience MS          after which a frame that nobody reads is lost; 0: never (2000)

  zyrsim load FRAME [--signal] [--exposure N] [--instance NNNN]
      What the sensor shows from now on: a grey PNG, PGM or TIFF file, of which it sees the middle,
      scaled, or the word phantom. A picture is like a film, bone is bright; with --signal it is as
      the sensor sees it, bright where the rays come through. --exposure as for plug (the last one's
      number plus 1).

  zyrsim expose [--wait SECONDS] [--instance NNNN]
      X-rays. If the sensor is not armed within the time (0), there are none: a failure.

  zyrsim fault KIND [--at N] [--value V] [--instance NNNN]
      At the N-th control call from now on, 0 being the next (0), and only there:
      error    it fails with the system error number V
      short    only V bytes arrive, and the call succeeds
      wrong    the byte at V, modulo the length, arrives inverted
      silence  nothing comes until the driver's time is out
      unplug   the sensor is pulled out
      none     forgets a fault that has not struck

  zyrsim stat [--instance NNNN]
      A line for each sensor: what it is, its state, the traffic and the commands since it was
      plugged in.

  zyrsim unplug [--instance NNNN]
      Pulls the sensor out. Returns when programs have lost it.

  zyrsim scene FAMILY SIZE --out FILE.png|.tif|.pgm [--frame FILE] [--signal] [--seed S]
      Writes what such a sensor would show if it were perfect: its signal, 12 bits in 16. Needs no
      driver.

  zyrsim remove
      Takes the bus, the driver and its files out of this Windows again.

Without --instance a command means the one sensor that is plugged in.
The exit status is 0 if it is done, 1 if not, 2 if the command line is wrong.
)";

}  // namespace zyr::simulator
