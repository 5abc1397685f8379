// An imaging program without manners. For the scenarios it needs a sensor that exposes itself a
// while after it is armed, and beside it the manager of fake_dsm, which unloads a source when
// that is closed (Wine's does not) and tells of notifications from inside the source's calls.
//
//   rude_application scenario NAME|all  0: the source bore it, 1: it did not, 99: it hung
//   rude_application soak N             see Soak
//   rude_application settings deny|allow  whether anybody may write the settings of the source
#include <cstdlib>
#include <string>

#include "tests/e2e/rude_application/win32/scenarios.h"
#include "tests/e2e/rude_application/win32/settings_access.h"
#include "tests/e2e/rude_application/win32/soak.h"

int main(int argc, char** argv) {
  const std::string command = argc == 3 ? argv[1] : "";
  if (command == "soak") {
    return zyr::Soak(static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)));
  }
  if (command == "settings") {
    return zyr::AllowWritingSettings(std::string(argv[2]) == "allow") ? 0 : 1;
  }
  if (command != "scenario") return 2;
  zyr::RunScenarios(argv[2]);
  return 0;
}
