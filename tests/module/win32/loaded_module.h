// The module beside the test program.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "twain/twain_types.h"

namespace zyr {

inline std::string ModulePath() {
  char program[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, program, sizeof program);
  const std::string path = program;
  return path.substr(0, path.find_last_of('\\') + 1) + "ZYRTWAIN.ds";
}

inline DsEntryProc EntryOf(HMODULE module) {
  const FARPROC address = GetProcAddress(module, "DS_Entry");
  EXPECT_EQ(GetProcAddress(module, MAKEINTRESOURCEA(1)), address);
  return reinterpret_cast<DsEntryProc>(reinterpret_cast<void*>(address));
}

}  // namespace zyr
