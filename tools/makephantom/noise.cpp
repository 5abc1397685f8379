#include "tools/makephantom/noise.h"

#include <cmath>

#include "tools/makephantom/exact_math.h"

namespace zyr {
namespace {

int64_t Floor(double value) {
  const auto whole = static_cast<int64_t>(value);
  return value < static_cast<double>(whole) ? whole - 1 : whole;
}

// The slope that the lattice point (x, y) has, times the way from there.
double Slope(int64_t x, int64_t y, uint64_t seed, double dx, double dy) {
  const uint64_t bits =
      HashBits(HashBits(static_cast<uint64_t>(x) ^ seed) + static_cast<uint64_t>(y));
  constexpr double kUnit = 1.0 / 2147483648.0;
  const double slopeX = static_cast<double>(bits & 0xFFFFFFFFu) * kUnit - 1;
  const double slopeY = static_cast<double>(bits >> 32) * kUnit - 1;
  return slopeX * dx + slopeY * dy;
}

double Fade(double t) { return t * t * t * (t * (t * 6 - 15) + 10); }

}  // namespace

uint64_t HashBits(uint64_t value) {
  value += 0x9E3779B97F4A7C15u;
  value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
  value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
  return value ^ (value >> 31);
}

double RandomStream::Normal() {
  // Six 21-bit numbers out of two draws; their sum has a deviation of sqrt(1/2).
  double sum = -3;
  for (int i = 0; i < 2; ++i) {
    const uint64_t bits = Bits();
    constexpr double kUnit = 1.0 / 2097152.0;
    sum += static_cast<double>(bits & 0x1FFFFF) * kUnit;
    sum += static_cast<double>((bits >> 21) & 0x1FFFFF) * kUnit;
    sum += static_cast<double>((bits >> 42) & 0x1FFFFF) * kUnit;
  }
  return sum * 1.4142135623730951;
}

double SmoothNoise(double x, double y, uint64_t seed) {
  const int64_t left = Floor(x);
  const int64_t top = Floor(y);
  const double dx = x - static_cast<double>(left);
  const double dy = y - static_cast<double>(top);
  const double across = Fade(dx);
  const double upper =
      Mix(Slope(left, top, seed, dx, dy), Slope(left + 1, top, seed, dx - 1, dy), across);
  const double lower = Mix(Slope(left, top + 1, seed, dx, dy - 1),
                           Slope(left + 1, top + 1, seed, dx - 1, dy - 1), across);
  return Mix(upper, lower, Fade(dy)) * 1.6;
}

double WebNoise(double x, double y, uint64_t seed) {
  // Gaps are bounded where a smooth noise crosses zero.
  const double level = SmoothNoise(x, y, seed);
  const double ridge = 1 - Clamp01((level < 0 ? -level : level) * 1.8);
  return ridge * ridge * 1.7 - 0.7;
}

}  // namespace zyr
