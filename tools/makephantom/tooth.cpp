#include "tools/makephantom/tooth.h"

#include <algorithm>
#include <cmath>

#include "tools/makephantom/exact_math.h"
#include "tools/makephantom/noise.h"

namespace zyr {
namespace {

// Values at equal distances between 0 and 1, with a smooth curve through them.
template <int kCount>
double Curve(const double (&values)[kCount], double position) {
  const double scaled = Clamp01(position) * (kCount - 1);
  const int index = std::min(static_cast<int>(scaled), kCount - 2);
  const double t = scaled - index;
  const double p1 = values[index];
  const double p2 = values[index + 1];
  const double p0 = index > 0 ? values[index - 1] : 2 * p1 - p2;
  const double p3 = index + 2 < kCount ? values[index + 2] : 2 * p2 - p1;
  return p1 +
         0.5 * t * (p2 - p0 + t * (2 * p0 - 5 * p1 + 4 * p2 - p3 + t * (3 * (p1 - p2) + p3 - p0)));
}

// The path through an upright elliptic cylinder; `half` and `depth` are its half axes across and
// along the ray.
double Lens(double offset, double half, double depth) {
  if (half <= 0) return 0;
  const double t = offset / half;
  const double inside = 1 - t * t;
  return inside <= 0 ? 0 : 2 * depth * std::sqrt(inside);
}

// 0 at the rim and 1 from `reach` inside it on, as a quarter of a circle.
double Rounded(double inside, double reach) {
  const double t = Clamp01(inside / reach);
  return std::sqrt(t * (2 - t));
}

struct Shape {
  double crownHalf[6];   // share of half the crown's width, from neck to top
  double crownDepth[6];  // mm, half the thickness
  double enamel[6];      // mm at the sides
  double enamelTop;      // mm
  double cuspHeight;     // mm
  double rootDepth;      // mm, half the thickness at the neck
  double pulpTop;        // share of the crown's height
};

constexpr Shape kShapes[] = {
    // incisor
    {{0.62, 0.68, 0.78, 0.89, 0.97, 0.96},
     {3.0, 3.2, 3.0, 2.4, 1.7, 1.0},
     {0, 0.2, 0.38, 0.5, 0.6, 0.7},
     1.2,
     0.5,
     3.0,
     0.5},
    // canine
    {{0.70, 0.84, 0.96, 1.0, 0.86, 0.58},
     {3.7, 3.9, 3.7, 3.1, 2.3, 1.4},
     {0, 0.3, 0.55, 0.75, 0.9, 1.0},
     1.4,
     2.2,
     3.7,
     0.55},
    // premolar
    {{0.68, 0.83, 0.95, 1.0, 0.95, 0.80},
     {3.8, 4.0, 4.1, 4.0, 3.5, 2.6},
     {0, 0.4, 0.75, 1.0, 1.2, 1.35},
     1.7,
     1.7,
     3.8,
     0.50},
    // molar
    {{0.80, 0.89, 0.96, 1.0, 0.98, 0.89},
     {4.5, 4.8, 5.0, 4.9, 4.5, 3.8},
     {0, 0.45, 0.85, 1.1, 1.3, 1.4},
     1.8,
     1.1,
     4.5,
     0.42},
};

const Shape& ShapeOf(const Tooth& tooth) { return kShapes[static_cast<int>(tooth.kind)]; }

// The two rows of cusps overlap in the picture; `t` runs from -1 to 1 across the crown.
double TopOf(const Tooth& tooth, double t, bool nearRow) {
  const double cusp = ShapeOf(tooth).cuspHeight;
  const double lift = nearRow ? 0 : -0.35 * cusp;
  double shape = 0;
  switch (tooth.kind) {
    case ToothKind::kIncisor:
      shape = 1 - t * t * t * t;
      break;
    case ToothKind::kCanine:
      shape = Bump(t + 0.08, 1.3);
      break;
    case ToothKind::kPremolar:
      shape = nearRow ? Bump(t + 0.08, 1.25) : 0.55 * Bump(t - 0.1, 1.1);
      break;
    case ToothKind::kMolar:
      shape = nearRow ? std::max(Bump(t + 0.5, 0.68), 0.93 * Bump(t - 0.44, 0.7))
                      : std::max(Bump(t + 0.42, 0.6), 0.9 * Bump(t - 0.52, 0.62));
      break;
  }
  return tooth.crownHeight - cusp + lift + cusp * shape;
}

// A crown-shaped body, `shell` of 1 inside the enamel and of 0 with it. `u` across, `v` up from the
// neck.
double CrownBody(const Tooth& tooth, double u, double v, double shell) {
  const Shape& shape = ShapeOf(tooth);
  if (v < 0 || v > tooth.crownHeight) return 0;
  const double level = v / tooth.crownHeight;
  const double enamel = shell * Curve(shape.enamel, level);
  const double half = Curve(shape.crownHalf, level) * tooth.width / 2 - enamel;
  const double depth = Curve(shape.crownDepth, level) - enamel * 0.45;
  const double t = u / (tooth.width / 2);
  const double cap = shell * shape.enamelTop;
  const double nearPart = Rounded(TopOf(tooth, t, true) - cap - v, 0.9);
  const double farPart = Rounded(TopOf(tooth, t, false) - cap - v, 0.9);
  return Lens(u, half, depth) * (0.6 * nearPart + 0.4 * farPart);
}

// A root or a canal in it, `s` being the share of the root's length below the neck.
struct RootLine {
  double centre;
  double half;
  double depth;
};

constexpr double kTaper[] = {1.0, 0.93, 0.83, 0.70, 0.53, 0.34};
constexpr double kDepthTaper[] = {1.0, 0.98, 0.90, 0.78, 0.60, 0.36};
constexpr double kFlare[] = {0, 0.22, 0.62, 0.95, 1.05, 0.9};

double NeckHalf(const Tooth& tooth) { return ShapeOf(tooth).crownHalf[0] * tooth.width / 2; }

// `side` is 0 for the root of a tooth with one, -1 and 1 for a molar's.
RootLine RootAt(const Tooth& tooth, int side, double s) {
  const double neck = NeckHalf(tooth);
  const double tip = s > 0.9 ? std::sqrt(std::max(0.0, 1 - (s - 0.9) * (s - 0.9) * 100)) : 1;
  RootLine line{};
  line.centre = tooth.rootBend * s * s;
  line.half = neck * Curve(kTaper, s) * tip;
  line.depth = ShapeOf(tooth).rootDepth * Curve(kDepthTaper, s) * tip;
  if (side != 0) {
    line.centre += side * (0.5 * neck + 0.95 * Curve(kFlare, s));
    line.half *= side < 0 ? 0.5 : 0.46;
    line.depth *= 0.84;
  }
  return line;
}

double OneRoot(const Tooth& tooth, int side, double u, double s) {
  if (s < 0 || s > 1) return 0;
  const RootLine line = RootAt(tooth, side, s);
  return Lens(u - line.centre, line.half, line.depth);
}

constexpr double kForkDepth = 3.4;  // mm below the neck

double RootBody(const Tooth& tooth, double u, double v) {
  if (v > 0) return 0;
  const double s = -v / tooth.rootLength;
  if (tooth.kind != ToothKind::kMolar) return OneRoot(tooth, 0, u, s);
  const double trunk =
      Lens(u, NeckHalf(tooth) * 0.99, ShapeOf(tooth).rootDepth) * Rounded(kForkDepth + v, 0.9);
  const double roots = std::max(OneRoot(tooth, -1, u, s), OneRoot(tooth, 1, u, s));
  return std::max(trunk, roots * Rounded(-v, kForkDepth));
}

constexpr double kCanalTaper[] = {1.0, 0.85, 0.68, 0.52, 0.40, 0.30};

double OneCanal(const Tooth& tooth, int side, double u, double s, double half) {
  if (s < 0.02 || s > 0.975) return 0;
  const double taper = Curve(kCanalTaper, s);
  return Lens(u - RootAt(tooth, side, s).centre, half * taper, 1.25 * taper);
}

double Canals(const Tooth& tooth, double u, double v) {
  const double s = -v / tooth.rootLength;
  if (tooth.kind != ToothKind::kMolar) return OneCanal(tooth, 0, u, s, 0.1 * tooth.width);
  if (v > -1.6) return 0;
  return std::max(OneCanal(tooth, -1, u, s, 0.5), OneCanal(tooth, 1, u, s, 0.55));
}

double PulpChamber(const Tooth& tooth, double u, double v) {
  const double top = ShapeOf(tooth).pulpTop * tooth.crownHeight;
  if (tooth.kind == ToothKind::kMolar) {
    const double t = u / (0.27 * tooth.width);
    const double horns = 0.9 * std::max(Bump(t + 0.72, 0.5), Bump(t - 0.66, 0.5));
    return Lens(u, 0.27 * tooth.width, 2.0) * Rounded(top - 0.9 + horns - v, 0.7) *
           Rounded(v + 2.0 - 0.5 * (1 - t * t), 0.8);
  }
  const double floor = -0.02 * tooth.rootLength;
  if (v > top || v < floor) return 0;
  const double share = (top - v) / (top - floor);
  return Lens(u, (0.03 + 0.075 * share) * tooth.width * Rounded(share, 0.3), 1.5);
}

// What caries leaves of enamel and dentine, 0 to 1: a cone through the enamel that spreads where it
// meets dentine.
double SoundShare(const Tooth& tooth, double u, double v) {
  if (tooth.cariesSide == 0) return 1;
  const double inwards = tooth.width / 2 - tooth.cariesSide * u;
  const double level = v - 0.55 * tooth.crownHeight + 0.12 * inwards;
  const double ragged = 0.16 * SmoothNoise(u * 0.9, v * 0.9, tooth.seed);
  const double away = level < 0 ? -level : level;
  const double cone =
      SmoothStep(1.1, 0.2, away / (1.05 - 0.35 * inwards + ragged)) * SmoothStep(1.7, 1.2, inwards);
  const double du = (inwards - 1.9) / 1.15;
  const double dv = level / 1.35;
  const double spread = SmoothStep(1.1, 0.15, std::sqrt(du * du + dv * dv) + ragged);
  return 1 - 0.5 * std::max(cone * (inwards < 2 ? 1 : 0), 0.85 * spread);
}

double Amalgam(const Tooth& tooth, double u, double v) {
  const double ragged = 0.2 * SmoothNoise(u * 0.55, v * 0.55, tooth.seed + 1);
  const double t = u / (tooth.width / 2);
  const double top = TopOf(tooth, t, true) - 0.12;
  const double across = u - 0.05 * tooth.width + ragged;
  const double level = v - 0.66 * tooth.crownHeight + 1.6 * ragged;
  // Wider below than at the surface, or it would fall out.
  const double half = (0.33 - 0.025 * level) * tooth.width;
  const double box = std::min(SmoothStep(half + 0.1, half - 0.1, across < 0 ? -across : across),
                              SmoothStep(-0.1, 0.12, level));
  return 4.0 * box * Rounded(top - v, 0.8);
}

double MetalCrown(const Tooth& tooth, double u, double v) {
  if (v < 0.45) return 0;
  const double whole = CrownBody(tooth, u, v, 0);
  return 0.08 * whole + 0.9 * std::max(0.0, whole - CrownBody(tooth, u, v, 0.75));
}

struct Local {
  double u;
  double v;
};

Local ToLocal(const Tooth& tooth, double x, double y) {
  const double sine = SmallSin(tooth.tilt);
  const double cosine = SmallCos(tooth.tilt);
  const double dx = x - tooth.x;
  const double dy = tooth.neckY - y;
  return {dx * cosine - dy * sine, dx * sine + dy * cosine};
}

}  // namespace

ToothPath TraceTooth(const Tooth& tooth, double x, double y) {
  const auto [u, v] = ToLocal(tooth, x, y);
  if (v > tooth.crownHeight + 0.5 || v < -tooth.rootLength || std::abs(u) > tooth.width) return {};
  ToothPath path;
  path.root = RootBody(tooth, u, v);
  const double outer = CrownBody(tooth, u, v, 0);
  const double core = std::min(outer, CrownBody(tooth, u, v, 1));
  path.enamel = outer - core;
  path.dentine = std::max(core, path.root);
  if (path.enamel + path.dentine <= 0) return path;
  const double canals = std::min(path.dentine, Canals(tooth, u, v));
  const double pulp = std::max(canals, std::min(path.dentine, PulpChamber(tooth, u, v)));
  path.dentine -= pulp;
  if (tooth.rootFilling) path.rootFilling = canals * 0.8;
  const double sound = SoundShare(tooth, u, v);
  path.enamel *= sound;
  path.dentine *= sound;
  if (tooth.filling) path.metal = Amalgam(tooth, u, v);
  if (tooth.metalCrown) path.metal = std::max(path.metal, MetalCrown(tooth, u, v));
  return path;
}

void RootTip(const Tooth& tooth, double* x, double* y) {
  const int side = tooth.kind == ToothKind::kMolar ? -1 : 0;
  const double u = RootAt(tooth, side, 1).centre;
  const double sine = SmallSin(tooth.tilt);
  const double cosine = SmallCos(tooth.tilt);
  *x = tooth.x + u * cosine - tooth.rootLength * sine;
  *y = tooth.neckY + u * sine + tooth.rootLength * cosine;
}

}  // namespace zyr
