#include "foundation/support/cpu.h"

#include <atomic>

namespace zyr {
namespace {

std::atomic<bool> g_denied = false;

}  // namespace

bool HasAvx2() {
  static const bool has = __builtin_cpu_supports("avx2") != 0;
  return has && !g_denied;
}

void DenyAvx2(bool deny) { g_denied = deny; }

}  // namespace zyr
