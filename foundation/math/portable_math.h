// Mathematical functions that give the same bits on every build. Those of <cmath> come from the
// system's C library and differ in the last bit between systems; only its sqrt, fabs, floor and the
// like are exact everywhere. Results, also for infinities and zeros, are those of the C standard;
// the floating-point flags and errno tell nothing.
#pragma once

namespace zyr::math {

double Pow(double base, double exponent);
double Exp(double x);
double Log(double x);
double Sin(double radians);
double Cos(double radians);
double Hypot(double x, double y);

}  // namespace zyr::math
