#include "foundation/math/portable_math.h"

// musl's functions, as scripts/build-third-party.sh renames them.
extern "C" {
double zyr_musl_pow(double base, double exponent);
double zyr_musl_exp(double x);
double zyr_musl_log(double x);
double zyr_musl_sin(double radians);
double zyr_musl_cos(double radians);
double zyr_musl_hypot(double x, double y);
}

namespace zyr::math {

double Pow(double base, double exponent) { return zyr_musl_pow(base, exponent); }
double Exp(double x) { return zyr_musl_exp(x); }
double Log(double x) { return zyr_musl_log(x); }
double Sin(double radians) { return zyr_musl_sin(radians); }
double Cos(double radians) { return zyr_musl_cos(radians); }
double Hypot(double x, double y) { return zyr_musl_hypot(x, y); }

}  // namespace zyr::math
