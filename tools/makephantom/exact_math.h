// The few functions that the picture needs beyond + - * / and sqrt, made of these alone: the C
// libraries differ in the last bits of theirs, and the same seed must give the same picture
// everywhere.
#pragma once

#include <cmath>
#include <cstdint>

namespace zyr {

inline double Clamp01(double value) { return value < 0 ? 0 : value > 1 ? 1 : value; }
inline double Mix(double from, double to, double share) { return from + (to - from) * share; }

// 0 up to `from`, 1 from `to` on, smooth between.
inline double SmoothStep(double from, double to, double value) {
  const double t = Clamp01((value - from) / (to - from));
  return t * t * (3 - 2 * t);
}

// A smooth bump: 1 in the middle, 0 from a distance of `reach` on.
inline double Bump(double distance, double reach) {
  const double t = distance / reach;
  if (t <= -1 || t >= 1) return 0;
  const double s = 1 - t * t;
  return s * s;
}

// e to the power of `x`, within 1e-9, for -700 < x < 700.
inline double ExactExp(double x) {
  constexpr double kLn2 = 0.6931471805599453;
  const double scaled = x / kLn2;
  auto exponent = static_cast<int>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
  const double rest = x - exponent * kLn2;
  double term = 1;
  double sum = 1;
  for (int i = 1; i < 12; ++i) {
    term = term * rest / i;
    sum += term;
  }
  for (; exponent > 0; --exponent) sum = sum * 2;
  for (; exponent < 0; ++exponent) sum = sum * 0.5;
  return sum;
}

// Sine and cosine for angles of up to about half a right angle.
inline double SmallSin(double angle) {
  const double a2 = angle * angle;
  return angle * (1 - a2 / 6 * (1 - a2 / 20 * (1 - a2 / 42)));
}
inline double SmallCos(double angle) {
  const double a2 = angle * angle;
  return 1 - a2 / 2 * (1 - a2 / 12 * (1 - a2 / 30));
}

}  // namespace zyr
