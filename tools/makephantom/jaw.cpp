#include "tools/makephantom/jaw.h"

#include <algorithm>
#include <cmath>

#include "tools/makephantom/exact_math.h"
#include "tools/makephantom/noise.h"

namespace zyr {
namespace {

struct Kind {
  ToothKind kind;
  double width;
  double crownHeight;
  double rootLength;
};

constexpr Kind kSecondMolar{ToothKind::kMolar, 10.3, 7.0, 12.5};
constexpr Kind kFirstMolar{ToothKind::kMolar, 11.0, 7.4, 13.2};
constexpr Kind kSecondPremolar{ToothKind::kPremolar, 7.2, 8.0, 14.2};
constexpr Kind kFirstPremolar{ToothKind::kPremolar, 7.0, 8.4, 13.8};
constexpr Kind kCanine{ToothKind::kCanine, 6.8, 10.6, 15.6};
constexpr Kind kLateralIncisor{ToothKind::kIncisor, 5.7, 9.4, 13.6};
constexpr Kind kCentralIncisor{ToothKind::kIncisor, 5.3, 9.0, 12.6};

// Each view starts left of the picture, so that teeth are cut off at its rim as they are in life.
struct View {
  std::vector<Kind> teeth;
  double left;
  double neckY;
};

View ChooseView(RandomStream* random) {
  switch (random->Bits() % 3) {
    case 0:
      return {{kCanine, kFirstPremolar, kSecondPremolar, kFirstMolar, kSecondMolar},
              random->Between(-6.6, -4.6),
              13.0};
    case 1:
      return {{kSecondPremolar, kFirstMolar, kSecondMolar, kSecondMolar},
              random->Between(-4.6, -2.6),
              12.6};
    default:
      return {
          {kCanine, kLateralIncisor, kCentralIncisor, kCentralIncisor, kLateralIncisor, kCanine},
          random->Between(-4.0, -2.2),
          14.2};
  }
}

Tooth PlanTooth(const Kind& kind, RandomStream* random) {
  Tooth tooth;
  tooth.kind = kind.kind;
  tooth.width = kind.width * random->Between(0.97, 1.03);
  tooth.crownHeight = kind.crownHeight * random->Between(0.96, 1.03);
  tooth.rootLength = kind.rootLength * random->Between(0.94, 1.06);
  tooth.rootBend = random->Between(0.1, 1.1);
  tooth.tilt = random->Between(-0.03, 0.03);
  tooth.seed = random->Bits();
  return tooth;
}

// One tooth in the middle has a history, so that the picture has something to find.
void AddFindings(Jaw* jaw, RandomStream* random) {
  std::vector<Tooth>& teeth = jaw->teeth;
  const size_t middle = teeth.size() / 2;
  Tooth& restored = teeth[middle];
  Tooth& neighbour = teeth[middle - 1];
  const bool posterior = restored.kind != ToothKind::kIncisor;
  if (posterior && random->Chance(0.6)) {
    restored.filling = true;
  } else if (random->Chance(0.5)) {
    restored.metalCrown = true;
    restored.rootFilling = true;
  } else {
    restored.rootFilling = true;
  }
  neighbour.cariesSide = random->Chance(0.5) ? -1 : 1;
  if (posterior && middle + 1 < teeth.size() && random->Chance(0.5))
    teeth[middle + 1].filling = true;
}

// Height of the line of necks at x, with a hanging line between the teeth.
double NeckLine(const Jaw& jaw, double x) {
  const std::vector<Tooth>& teeth = jaw.teeth;
  if (x <= teeth.front().x) return teeth.front().neckY;
  for (size_t i = 1; i < teeth.size(); ++i) {
    if (x > teeth[i].x) continue;
    const double share = (x - teeth[i - 1].x) / (teeth[i].x - teeth[i - 1].x);
    return Mix(teeth[i - 1].neckY, teeth[i].neckY, share) - 1.6 * share * (1 - share);
  }
  return teeth.back().neckY;
}

// Strands of bone between marrow, lying rather than standing, and larger shades; about -1 to 1.
double Trabeculae(const Jaw& jaw, double x, double y) {
  const double u = x + 0.8 * SmoothNoise(x / 2.6, y / 2.6, jaw.seed + 10);
  const double v = y + 0.8 * SmoothNoise(x / 2.4, y / 2.4, jaw.seed + 11);
  const double webs = 0.48 * WebNoise(u / 2.0, v / 1.15, jaw.seed + 12) +
                      0.36 * WebNoise(u / 1.25, v / 0.85, jaw.seed + 13) +
                      0.20 * WebNoise(u / 0.7, v / 0.55, jaw.seed + 14);
  return webs + 0.45 * SmoothNoise(x / 3.4, y / 2.8, jaw.seed + 15);
}

double NerveCanal(const Jaw& jaw, double x, double y, double* rim) {
  const double off = x - kViewWidth / 2;
  const double middle =
      jaw.canalY + 0.05 * off + 0.006 * off * off + 0.25 * SmoothNoise(x / 5, 0.5, jaw.seed + 20);
  const double away = (y < middle ? middle - y : y - middle) - 1.25;
  *rim = Bump(away - 0.15, 0.45);
  return SmoothStep(0.3, -0.7, away);
}

double Bone(const Jaw& jaw, double root, double x, double y, double toRoot) {
  const double crest = NeckLine(jaw, x) + 1.4 + 0.3 * SmoothNoise(x / 1.9, 0.3, jaw.seed + 30);
  const double depth = y - crest;
  if (depth < -0.3) return 0;
  const double below = std::max(0.0, depth);
  // The jaw widens downwards; roots and what holds them take their share of it.
  const double jawWidth = 8.0 * below / (below + 1.9) + 0.09 * below;
  const double room = std::max(0.25 * jawWidth, jawWidth - 0.9 * root);
  const double texture = Trabeculae(jaw, x, y);
  double bone = room * (1 + 0.24 * texture);
  if (jaw.canal) {
    double rim = 0;
    bone *= 1 - 0.2 * NerveCanal(jaw, x, y, &rim);
    bone += 0.6 * rim * (0.7 + 0.5 * texture);
  }
  const double inBone = SmoothStep(0, 0.9, depth);
  const double strength = 1 + 0.5 * SmoothNoise(x / 1.3, y / 1.3, jaw.seed + 31);
  bone += 1.3 * strength * Bump(depth - 0.25, 0.55) * (root > 0 ? 0.15 : 1);
  if (root > 0) return bone;
  // The ligament leaves a dark line around a root, and a hard layer lines its socket.
  bone -= inBone * std::min(bone, 2.3) * Bump(toRoot - 0.1, 0.34);
  bone += inBone * 1.25 * strength * Bump(toRoot - 0.5, 0.38);
  return std::max(0.0, bone);
}

// A root with a dead pulp loses the bone around its tip.
double TipLesion(const Jaw& jaw, double x, double y) {
  for (const Tooth& tooth : jaw.teeth) {
    if (!tooth.rootFilling) continue;
    double tipX = 0;
    double tipY = 0;
    RootTip(tooth, &tipX, &tipY);
    const double dx = x - tipX;
    const double dy = y - tipY - 0.5;
    const double away =
        std::sqrt(dx * dx + dy * dy) + 0.25 * SmoothNoise(x / 1.6, y / 1.6, jaw.seed + 40);
    if (away < 2.3) return SmoothStep(2.2, 0.7, away);
  }
  return 0;
}

double Gum(const Jaw& jaw, double x, double y) {
  const double edge = NeckLine(jaw, x) - 0.9;
  return 4.5 * SmoothStep(-0.5, 2.2, y - edge);
}

}  // namespace

Jaw PlanJaw(uint64_t seed) {
  RandomStream random(HashBits(seed));
  Jaw jaw;
  jaw.seed = random.Bits();
  jaw.mirrored = random.Chance(0.5);
  const View view = ChooseView(&random);
  const double lean = random.Between(-0.045, 0.045);
  double x = view.left;
  for (const Kind& kind : view.teeth) {
    Tooth tooth = PlanTooth(kind, &random);
    tooth.x = x + tooth.width / 2;
    tooth.neckY = view.neckY + (tooth.x - kViewWidth / 2) * lean + random.Between(-0.25, 0.25);
    tooth.tilt += lean;
    x += tooth.width + 0.06;
    jaw.teeth.push_back(tooth);
  }
  jaw.canal =
      view.teeth.front().kind != ToothKind::kCanine || view.teeth[1].kind == ToothKind::kPremolar;
  jaw.canalY = random.Between(30.2, 31.8);
  AddFindings(&jaw, &random);
  return jaw;
}

ToothPath TraceTeeth(const Jaw& jaw, double x, double y) {
  ToothPath sum;
  for (const Tooth& tooth : jaw.teeth) {
    const ToothPath path = TraceTooth(tooth, x, y);
    sum.enamel += path.enamel;
    sum.dentine += path.dentine;
    sum.metal += path.metal;
    sum.rootFilling += path.rootFilling;
    sum.root = std::max(sum.root, path.root);
  }
  return sum;
}

JawPath TraceJaw(const Jaw& jaw, const ToothPath& tooth, double x, double y, double toRoot) {
  JawPath path;
  path.tooth = tooth;
  path.bone = Bone(jaw, tooth.root, x, y, toRoot) * (1 - 0.45 * TipLesion(jaw, x, y));
  const double cheek =
      11 + 2.2 * SmoothNoise(x / 14 + 0.37, y / 17 + 0.11, jaw.seed + 50) + 0.1 * (y - 10);
  path.soft = cheek + Gum(jaw, x, y);
  return path;
}

}  // namespace zyr
