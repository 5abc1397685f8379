#include "foundation/support/shell.h"

#include "foundation/support/error.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/shell.h"

namespace zyr {
namespace {

constexpr int kHighestFailure = 32;

struct ShellFailure {
  int result;
  uint32_t code;
  const char* format;  // may take the path
};

constexpr ShellFailure kFailures[] = {
    {0, kErrorOutOfResources, PhraseKey("Operating system is out of memory or resources")},
    {8, kErrorOutOfResources, PhraseKey("Operating system is out of memory or resources")},
    {2, kErrorFileNotFound, PhraseKey("Unable to find the file '%s'")},
    {3, kErrorPathNotFound, PhraseKey("Unable to find the path '%s'")},
    {11, kErrorBadExecutable, PhraseKey("Invalid EXE file specified")},
    {5, kErrorAccessDenied, PhraseKey("Access to the file is denied")},
    {26, kErrorSharingViolation, PhraseKey("Sharing violation")},
    {27, kErrorNoAssociation, PhraseKey("No file association was found")},
    {31, kErrorNoAssociation, PhraseKey("No file association was found")},
};
constexpr ShellFailure kOtherFailure = {28, kErrorCannotStart,
                                        PhraseKey("Unable to start application")};

const ShellFailure& FailureOf(int result) {
  for (const ShellFailure& failure : kFailures) {
    if (failure.result == result) return failure;
  }
  return kOtherFailure;
}

}  // namespace

bool ShellOpen(const std::string& path) {
  const int result = platform::OpenWithShell(path);
  if (result > kHighestFailure) return true;
  const ShellFailure& failure = FailureOf(result);
  SetError(failure.code, failure.format, path.c_str());
  return false;
}

}  // namespace zyr
