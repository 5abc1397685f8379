// What the processor can do beyond what every build relies on.
//
// Loops that gain by it are compiled twice: `name_base.cpp` and `name_avx2.cpp` include the same
// `name_kernels.h`, each within a namespace of its own, and the caller chooses by HasAvx2(). The
// build gives the second one -mavx2. Such a file must not bring in any inline function of a header
// (std::min, a container): the linker keeps one copy for the whole program, and it might keep the
// one that old processors cannot run.
#pragma once

namespace zyr {

bool HasAvx2();

// For tests, which run both forms: true denies it.
void DenyAvx2(bool deny);

}  // namespace zyr
