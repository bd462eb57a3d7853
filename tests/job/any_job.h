// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cfenv>
#include <functional>
#include <initializer_list>
#include <string>

#include "base/files.h"
#include "base/number_text.h"
#include "base/temporary_folder.h"
#include "job/job_run.h"
#include "model/models.h"

namespace torvik::tests {

/// A user stress-strain file that stands until the program ends.
inline std::string writeCurve(const std::string& name, const std::string& text) {
  static const TemporaryFolder folder;
  base::replaceWholeFile(folder / name, text);
  return folder / name;
}

/// Ranges that are met exactly: 10 steps from "Small".
inline constexpr job::JobOptions kCoarse{.SmallTo = 4 * 0x1p-19,
                                         .SmallStep = 0x1p-19,
                                         .LargeTo = 17 * 0x1p-19,
                                         .LargeStep = 2 * 0x1p-19,
                                         .search = {.MaxIteration = 40}};

/// A small job of any kind, sound or unsound, with its user, out of bytes that somebody draws.
class AnyJob {
 public:
  model::ObjectTables tables;
  job::JobOptions options = kCoarse;
  User user;

  explicit AnyJob(std::function<unsigned()> byte) : m_byte(std::move(byte)) {
    m_hasExtremes = chance(0.2);
    m_top = oneOf({0.0, 0.0, 100.0, -150.0});
    m_height = 200 + 700 * unit();
    beam();
    addLayers(tables, 100 + 500 * unit(), m_height, integer(2, 9), m_top);
    const std::string law = chance(0.5) ? solidLaw() : "";
    const double modulus = chance(0.02) ? 0 : 28000;
    for (auto& row : tables.Solids) solid(row, law, modulus);
    for (int n = integer(0, 3); n > 0; --n) bar(tables.Bars.emplace_back(barOf(1, 0, depth())));
    for (int n = integer(0, 2); n > 0; --n) tendon(tables.Tendons.emplace_back(tendonOf(0, depth(), "")));
    for (int n = integer(0, 2); n > 0; --n)
      tables.AxialForces.push_back(axialOf(between(-5e4, 6e5), depth()));
    choices();
  }

 private:
  void beam() {
    if (chance(0.02)) return;
    auto& beam =
        tables.Beams.emplace_back(beamOf(1000 + 8000 * unit(), oneOf({0.0, 500.0, 900.0, 9500.0}), 1));
    beam.HalfSpanFiberNumber = integer(-1, 9);
    beam.HalfSpanFiberLength = beam.Span / 2 / oneOf({1, 5, 9});
    if (chance(0.02)) beam.ShearSpan = oneOf({0.0, -1.0, 1e-300, 1e300});
  }
  void solid(model::SolidObject& solid, const std::string& law, double modulus) {
    solid.ElasticModulus = modulus;
    solid.Type = law.empty() ? solidLaw() : law;
    solid.File = chance(0.5) ? writtenCurve(0) : writtenCurve(1);
    solid.UltimateStress = between(15, 60);
    solid.FlexuralStrain = chance(0.5) ? 0 : -between(0, 3e-4);
    solid.VolumetricRatio = between(0.002, 0.02);
    if (chance(0.02)) solid.InitialStrain = between(-2e-4, 2e-4);
    common(solid);
  }
  void bar(model::BarObject& bar) {
    bar.Type = oneOf<const char*>({"JSCE (Design)", "Steel Bar", "FRP Bar", "Elastic", "File"});
    bar.File = writtenCurve(2);
    bar.Area = chance(0.02) ? 1e308 : between(50, 900);
    bar.YieldStress = between(250, 600);
    bar.YieldStrain = bar.YieldStress / bar.ElasticModulus;
    if (chance(0.3)) bar.UltimateStrain = between(0.001, 0.03);
    common(bar);
  }
  void tendon(model::TendonObject& tendon) {
    tendon.Type = oneOf<const char*>({"JSCE (Design)", "Steel Bar", "FRP Bar", "Elastic"});
    tendon.Prestressing = chance(0.5) ? "Pre-tensioning" : chance(0.97) ? "Post-tensioning" : "none";
    tendon.Area = between(20, 300);
    tendon.IntroductionStrain = between(0.0005, 0.007);
    tendon.SheathArea = chance(0.5) ? 0 : between(100, 900);
    tendon.SheathDepth = tendon.Depth;
    common(tendon);
  }
  template <class Row>
  void common(Row& row) {
    row.Output = integer(0, 2);
    if (chance(0.2)) row.Number = integer(-1, 3);
    if (chance(0.2)) row.WatchStrain = chance(0.97) ? base::plainText(between(-3e-3, 3e-3)) : "?";
    if (chance(0.005)) row.Type = "?";
    if (chance(0.005)) row.File = "no such file";
  }
  void choices() {
    options.search.MaxIteration = oneOf<std::int16_t>({2, 4, 8, 30, 30, 30, 30, 30});
    options.search.Precision = oneOf({1e-3, 1e-3, 1e-5, 1e-2});
    options.search.DiffWidth = oneOf({1e-6, 1e-6, 1e-4});
    if (chance(0.3)) {
      options.LargeStep = oneOf({2e-5, 1e-4});
      options.LargeTo = between(2e-4, 2e-3);
    }
    options.tableSolver = chance(0.8);
    user.step = oneOf<const char*>({"Small", "Small", "Small", "Large", "Large", " 3.5E-6 ", " 3.5E-6 "});
    if (chance(0.03)) user.step = oneOf<const char*>({"-1E-6", "0", "1E308", "fast"});
    if (chance(0.03)) user.answers = {"c", oneOf<const char*>({"1E-300", "-200", "1E308", "ties"})};
    if (chance(0.03)) user.answers.clear();
    // A user who goes may come late; a window system may raise anything.
    user.atPlace = [most = chance(0.1) ? integer(1, 60) : 500, raises = chance(0.5)](User&, int place) {
      if (raises) std::feraiseexcept(FE_INVALID | FE_OVERFLOW);
      return place < most;
    };
  }

  static const std::string& writtenCurve(std::size_t number) {
    static const std::string kCurves[] = {
        writeCurve("random1.txt", "0 -0.01\n0 0\n20 0.001\n30,0.002\n3E1 0.004\n0 0.006\n"),
        writeCurve("random2.txt", "-2 -0.0001\n0 0\n25 0.0015\n25 0.0035\n0 0.005\n"),
        writeCurve("random3.txt", "-400 -0.1\n-400 -0.002\n0 0\n400 0.002\n400 0.05\n")};
    return kCurves[number];
  }
  std::string solidLaw() {
    return oneOf<const char*>({"JSCE (Design)", "JSCE (Design)", "e Function (Plane)", "Muguruma (Plane)",
                               "Restoration (Confined)", "Elastic", "File"});
  }
  double depth() { return m_top + (0.05 + 0.9 * unit()) * m_height; }
  double between(double a, double b) {
    if (m_hasExtremes && chance(0.05))
      return oneOf({0.0, 1.0, -1.0, 5e-324, 1e-300, 1e200, -1e200, 1e-155, 1e155, 1.7e308, -1.7e308});
    return a + (b - a) * unit();
  }
  double unit() { return (m_byte() + m_byte() / 256.0) / 256; }
  bool chance(double p) { return unit() < p; }
  std::int16_t integer(int a, int b) {
    return static_cast<std::int16_t>(a + static_cast<int>(m_byte() % static_cast<unsigned>(b - a + 1)));
  }
  template <class Value>
  Value oneOf(std::initializer_list<Value> values) {
    return values.begin()[m_byte() % values.size()];
  }

  std::function<unsigned()> m_byte;
  bool m_hasExtremes = false;
  double m_top = 0;
  double m_height = 0;
};

}  // namespace torvik::tests
