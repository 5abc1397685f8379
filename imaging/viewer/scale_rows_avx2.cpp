#include "imaging/viewer/scale_rows.h"

#include <immintrin.h>

namespace zyr {
namespace scale_rows_avx2 {
#include "imaging/viewer/scale_rows_kernels.h"

extern const ScaleRows kLoops;
const ScaleRows kLoops = {
    ColorsOfLevels, GreysOfLevels, ColorsOf24, SplitColors, JoinColors,
    SetWeighted,    AddWeighted,   RoundSums,  AddTap,      MeansToBytes,
    Halve,          HalveColors,   PairUp,     BlendPairs,  BlendRows,
};

}  // namespace scale_rows_avx2
}  // namespace zyr
