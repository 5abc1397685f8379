// zyracquire: see kAcquireHelp.
#include <windows.h>

#include <cstdio>

#include "tools/zyracquire/options.h"
#include "tools/zyracquire/session.h"
#include "tools/zyracquire/win32/app_window.h"
#include "tools/zyracquire/win32/manager.h"
#include "tools/zyracquire/win32/watchdog.h"

namespace zyr {
namespace {

bool StdoutIsConsole() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

// A source may have another idea of the current folder.
std::string FullPath(const std::string& path) {
  char full[MAX_PATH] = "";
  const DWORD length = GetFullPathNameA(path.c_str(), sizeof full, full, nullptr);
  return length == 0 || length >= sizeof full ? path : full;
}

bool IsFolder(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

ExitStatus RunSession(const AcquireOptions& options) {
  AppWindow window;
  if (window.handle() == nullptr) {
    std::fprintf(stderr, "zyracquire: no window can be made in this session (error %lu)\n",
                 GetLastError());
    return kExitNoSource;
  }
  Watchdog watchdog(options.timeoutSeconds, options.unattended);
  Manager manager(options.trace, &watchdog);
  std::string error;
  if (!manager.Load(options.dsm, &error)) {
    std::fprintf(stderr, "zyracquire: %s\n", error.c_str());
    return kExitNoSource;
  }
  Surroundings surroundings;
  surroundings.parentWindow = window.handle();
  surroundings.wait = [&](TW_IDENTITY* source) {
    return window.Wait(&manager, source, &watchdog, options.timeoutSeconds);
  };
  surroundings.showProgress = StdoutIsConsole() && !options.trace;
  return Session(manager, options, surroundings).Run();
}

ExitStatus Run(AcquireOptions options) {
  if (options.help) {
    std::fputs(kAcquireHelp, stdout);
    return kExitDone;
  }
  options.outFolder = FullPath(options.outFolder);
  // A file transfer is the source's own affair, and so are the words for a folder that is not
  // there.
  const bool savesHere = !options.list && !options.caps && options.mechanism != Mechanism::kFile;
  if (options.error.empty() && savesHere && !IsFolder(options.outFolder)) {
    options.error = "There is no folder " + options.outFolder + ".";
  }
  if (!options.error.empty()) {
    std::fprintf(stderr, "zyracquire: %s Try --help.\n", options.error.c_str());
    return kExitUsage;
  }
  return RunSession(options);
}

}  // namespace
}  // namespace zyr

int main(int argc, char** argv) {
  return zyr::Run(zyr::ParseAcquireOptions({argv + 1, argv + argc}));
}
