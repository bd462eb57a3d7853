// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/elementary.h"
#include "base/errors.h"
#include "base/number_text.h"
#include "job/job_run.h"
#include "materials/stress_strain.h"
#include "model/objects.h"

/// A second path through a job: plain rows, linear scans, nothing kept that can be worked out again. It
/// shares the stress-strain laws, `power` and the number texts with the engine, and nothing else. Slow on
/// purpose.
namespace torvik::tests::reference {

using run::End;
using run::Stage;

/// A double that faults at the first operation that divides by zero or leaves the finite numbers.
struct Real {
  double value = 0;

  Real(double v = 0) : value(v) {
    if (!std::isfinite(v)) throw base::NumericFault(base::NumericFault::Kind::Overflow, "reference");
  }
  auto operator<=>(const Real&) const = default;
  friend Real operator+(Real a, Real b) { return a.value + b.value; }
  friend Real operator-(Real a, Real b) { return a.value - b.value; }
  friend Real operator*(Real a, Real b) { return a.value * b.value; }
  friend Real operator/(Real a, Real b) { return a.value / b.value; }
  friend Real operator-(Real a) { return -a.value; }
  Real& operator+=(Real b) { return *this = *this + b; }
};

inline const auto power = [](Real a, int n) { return Real(base::power(a.value, n)); };

/// A row of solids, bars or tendons.
struct Row {
  int sign = 1;  ///< of its stress: tension 1, compression -1
  Real Depth, Area, Number;
  std::int16_t Output = 0;
  std::string WatchStrain;
  std::string Prestressing;
  std::function<double(double)> stressOf;
  Real base, strain, stress, force, previous;
};

class Job {
 public:
  User user;
  Findings found;
  End::Kind endKind{};
  std::string message;  ///< the words of a fault are the engine's own

  Job(const model::ObjectTables& tables, const job::JobOptions& options, User around)
      : user(std::move(around)), m_options(options), m_tables(tables) {
    m_laws.prompt = &user;
    m_laws.report = [&](const std::string& caption, const std::string&) { user.told.push_back(caption); };
    const auto add = [&](const auto& objects, auto law, int sign, auto base) {
      for (const auto& o : objects) {
        Row& row = m_rows.emplace_back();
        row.sign = sign;
        row.Depth = o.Depth;
        row.Area = o.Area;
        row.Number = o.Number;
        row.Output = o.Output;
        row.WatchStrain = o.WatchStrain;
        row.stressOf = [this, law, &o](double strain) { return law(strain, o, m_laws); };
        row.base = o.*base;
        if constexpr (requires { o.Prestressing; }) row.Prestressing = o.Prestressing;
      }
    };
    add(m_tables.Solids, materials::fncSSSolid, -1, &model::SolidObject::InitialStrain);
    add(m_tables.Bars, materials::fncSSBar, 1, &model::BarObject::InitialStrain);
    add(m_tables.Tendons, materials::fncSSTendon, 1, &model::TendonObject::IntroductionStrain);
    try {
      run();
    } catch (const Over& over) {
      std::tie(endKind, message) = over;
      found["leftover"] = {basesOfRows(), stateOfRows()};
    } catch (const base::NumericFault&) {
      endKind = End::Kind::NumericFault;
    } catch (const base::InternalError&) {
      endKind = End::Kind::InternalError;
    } catch (const base::InputError& error) {
      endKind = End::Kind::InputError;
      message = error.what();
    }
    found["end"] = {{static_cast<double>(endKind), m_stage ? static_cast<double>(*m_stage) : -1,
                     static_cast<double>(m_step), m_peak.value_or(-1)}};
    found["row at work"] = {m_cells};
  }
  Job(const Job&) = delete;

 private:
  struct Section {
    Real A, yTop, yBottom, I, ZTop, ZBottom, E, EI, EA;
  };
  struct Piece {
    Real area, depth, E;
  };
  using Pieces = std::vector<Piece>;
  struct Point {
    Real Moment, Curvature;
    int bracket = 0;
  };
  using Loads = std::vector<std::pair<Real, Real>>;  ///< force and depth
  using Over = std::pair<End::Kind, std::string>;
  enum Kind { N, MN, MM, Loading };

  void find(const std::string& what, const std::vector<Real>& values) {
    Numbers& numbers = found[what].emplace_back();
    for (const Real value : values) numbers.push_back(value.value);
  }
  [[nodiscard]] Numbers stateOfRows() const {
    Numbers numbers;
    for (const Row& row : m_rows)
      numbers.insert(numbers.end(), {row.strain.value, row.stress.value, row.force.value});
    return numbers;
  }
  [[nodiscard]] Numbers basesOfRows() const {
    Numbers numbers;
    for (const Row& row : m_rows) numbers.push_back(row.base.value);
    return numbers;
  }
  void giveWay() {
    if (!user.giveWay()) throw Over{End::Kind::EndedByUser, ""};
  }

  void run() {
    sectionParameters();
    Loads tendons, axials;
    m_stage = Stage::Tendon;
    for (const auto& o : m_tables.Tendons)
      tendons.push_back(
          {Real(o.Area) * materials::fncSSTendon(o.IntroductionStrain, o, m_laws) * o.Number, o.Depth});
    balance(m_d, tendons, m_tendonMoment, m_tendonCurvature);
    m_stage = Stage::AxialForce;
    for (const auto& o : m_tables.AxialForces) axials.push_back({o.Force, o.Depth});
    balance(m_x, axials, m_axialMoment, m_axialCurvature);
    m_stage = Stage::Loading;
    load();
  }

  // Section parameters

  [[nodiscard]] Section completed(Section s) const {
    s.yBottom = m_bottom - s.yTop;
    s.ZTop = s.I / s.yTop;
    s.ZBottom = s.I / s.yBottom;
    s.EI = s.E * s.I;
    s.EA = s.E * s.A;
    return s;
  }

  /// Without (sign -1) or with (1) other pieces; those that are added count by their modulus, over that of
  /// `g`.
  [[nodiscard]] Section changed(const Section& from, int sign, Real Eg, const Pieces& a,
                                const Pieces& b) const {
    const auto sum = [&](Real whole, auto value) {
      for (const Pieces* pieces : {&a, &b}) {
        Real total;
        for (const Piece& p : *pieces) total += value(p, sign < 0 ? 1 : p.E / Eg);
        whole += sign * total;
      }
      return whole;
    };
    Section s;
    s.A = sum(from.A, [](const Piece& p, Real n) { return n * p.area; });
    s.yTop = sum(from.A * from.yTop, [](const Piece& p, Real n) { return n * p.area * p.depth; }) / s.A;
    s.E = sum(from.E * from.A, [&](const Piece& p, Real) { return (sign < 0 ? Eg : p.E) * p.area; }) / s.A;
    s.I = sum(power(from.yTop - s.yTop, 2) * from.A + from.I,
              [&](const Piece& p, Real n) { return power(s.yTop - p.depth, 2) * n * p.area; });
    return completed(s);
  }

  void sectionParameters() {
    if (m_tables.Beams.empty() || m_tables.Solids.empty())
      throw base::NumericFault(base::NumericFault::Kind::IndexOutOfRange, "reference");
    m_top = m_bottom = m_tables.Solids[0].Depth;
    for (const auto& o : m_tables.Solids) {
      m_top = std::min(m_top, Real(o.Depth) - Real(o.Height) / 2);
      m_bottom = std::max(m_bottom, Real(o.Height) / 2 + o.Depth);
    }
    find("section parameters", {m_top, m_bottom});

    const auto each = [](const auto& objects, auto add) {
      for (const auto& o : objects)
        for (int n = 1; n <= o.Number; ++n) add(o);
    };
    Section g;
    Real S, Q;
    each(m_tables.Solids, [&](const auto& o) {
      g.A += o.Area;
      S += Real(o.Area) * o.Depth;
      Q += Real(o.ElasticModulus) * o.Area;
    });
    g.yTop = S / g.A;
    g.E = Q / g.A;
    each(m_tables.Solids, [&](const auto& o) {
      g.I += power(o.Height, 3) * o.Width / 12;
      g.I += power(Real(o.Depth) - g.yTop, 2) * o.Area;
    });
    g = completed(g);
    Pieces bars, tendons, ducts;
    each(m_tables.Bars, [&](const auto& o) { bars.push_back({o.Area, o.Depth, o.ElasticModulus}); });
    each(m_tables.Tendons, [&](const auto& o) {
      tendons.push_back({o.Area, o.Depth, o.ElasticModulus});
      ducts.push_back({o.SheathArea, o.SheathDepth, 0});
    });
    Section c = changed(g, -1, g.E, bars, ducts);
    Section t = changed(g, -1, g.E, bars, tendons);
    if (g.E == 0) {
      user.notice(job::Notice::WithoutModulus);
    } else {
      m_d = changed(c, 1, g.E, bars, {});
      m_x = changed(t, 1, g.E, bars, tendons);
    }
    for (Section* s : {&g, &c, &t, &m_d, &m_x}) {
      s->yTop = s->yTop - m_top;
      find("section parameters", {s->A, s->yTop, s->yBottom, s->I, s->ZTop, s->ZBottom, s->E, s->EI, s->EA});
    }
  }

  // State of the section

  void evaluate(bool isLinear) {
    m_compression = m_tension = 0;
    if (isLinear) m_moment = 0;
    const auto addTension = [&](Real force, Real depth) {
      (force < 0 ? m_compression : m_tension) += force < 0 ? -force : force;
      if (isLinear) m_moment += (depth - m_neutralAxis) * force;
    };
    for (Row& row : m_rows) {
      if (m_stage == Stage::Tendon && row.Prestressing == "none") throw base::InternalError(51, "reference");
      const bool isFixed = m_stage == Stage::Tendon && row.Prestressing == "Post-tensioning";
      Real elongation = -m_uniformStrain;
      if (isLinear) elongation = ((row.Depth - m_neutralAxis) * m_topStrain) / m_neutralAxis;
      row.strain = isFixed ? row.base : row.base + row.sign * elongation;
      row.stress = row.stressOf(row.strain.value);
      row.force = row.stress * row.Area * row.Number;
      addTension(row.sign * row.force, row.Depth);
    }
    if (m_stage == Stage::Tendon) return;
    for (const auto& axial : m_tables.AxialForces) addTension(axial.Force, axial.Depth);
  }

  // The searches

  Real residualOf(Kind kind) {
    if (kind == MM) {
      search(MN);
      return m_moment;
    }
    if (kind == MN) {
      m_curvature = m_topStrain / m_neutralAxis;
      m_topStrain = m_neutralAxis * m_curvature;
    }
    if (kind == Loading) m_topStrain = m_imposed * m_neutralAxis;
    evaluate(kind != N);
    return m_compression - m_tension;
  }

  void search(Kind kind) {
    static const std::array<std::string, 3> kStages = {"Tendon", "Axial force", "Loading"};
    static const std::array<std::string, 4> kKinds = {" (N)", " (MN)", " (MM)", ""};
    Real& x = kind == N ? m_uniformStrain : kind == MM ? m_topStrain : m_neutralAxis;
    for (int iteration = 1;; ++iteration) {
      Real probe[3], residual[3];
      probe[1] = x;
      for (int i = -1; i <= 1; ++i) {
        x = ((Real(m_options.search.Precision) * i * m_options.search.DiffWidth) + 1.0) * probe[1];
        residual[i + 1] = residualOf(kind);
        probe[i + 1] = x;
      }
      x = probe[1];
      if (kind == MM) m_moment = residual[1];
      if (kind == N || kind == MM) found["present"].push_back(stateOfRows());
      m_search = {Real(iteration), residual[1], m_topStrain, probe[2]};
      const Real largest = std::max({m_axialMoment, -m_axialMoment, m_tendonMoment, -m_tendonMoment});
      const Real limited = kind == MM ? largest : std::min(m_compression, m_tension);
      const Real tolerance = limited * m_options.search.Precision / (kind == Loading ? 1 : 1000);
      if (std::max(residual[1], -residual[1]) <= tolerance) return;
      if (iteration >= m_options.search.MaxIteration)
        throw Over{End::Kind::SearchFailed,
                   kStages[static_cast<std::size_t>(*m_stage)] + " convergence" + kKinds[kind] + " failed."};
      x = x - residual[1] / ((residual[2] - residual[0]) / (probe[2] - probe[0]));
      giveWay();
    }
  }

  // The stages

  void balance(const Section& s, const Loads& loads, Real& moment, Real& curvature) {
    m_neutralAxis = m_top + s.yTop;
    Real sum;
    for (const auto& [force, depth] : loads) {
      sum += force;
      moment += force * (depth - m_neutralAxis);
    }
    m_uniformStrain = (sum / s.A) / s.E;
    m_topStrain = (-(moment / s.ZTop)) / s.E;
    for (const Kind kind : {N, MM}) {
      search(kind);
      for (Row& row : m_rows) row.base = row.strain;
      found["commit"].push_back(basesOfRows());
      giveWay();
    }
    curvature = m_curvature;
  }

  void load() {
    m_pieces.resize(static_cast<std::size_t>(std::max<int>(m_tables.Beams[0].HalfSpanFiberNumber, 0)));
    for (Row& row : m_rows) row.previous = row.strain;
    m_peak = 0;
    for (;; ++m_step) {
      search(Loading);
      if (m_compression < 0.000001 && m_step > 0)
        throw Over{End::Kind::Collapsed, "Loading causes compression force = tension force = 0."};
      const Real curvature = (m_axialCurvature + m_tendonCurvature) + m_imposed;
      m_relation.push_back({m_moment, curvature});
      bendBeam();
      if (base::numberOf(base::scientificText(*m_peak), "reference") < m_moment) m_peak = m_moment.value;
      tellRow({m_load, m_displacement, m_moment, curvature, m_neutralAxis, m_compression});
      found["row"].push_back(std::exchange(m_cells, {}));
      find("search", m_search);
      for (const char* const shows : {"present", "shown"}) found[shows].push_back(stateOfRows());
      for (const std::vector<Real>& piece : m_pieceValues) find("piece", piece);

      if (user.step == "Small" && m_imposed > m_options.SmallTo) user.setStepText("Large");
      m_imposed += user.step == "Small"   ? m_options.SmallStep
                   : user.step == "Large" ? m_options.LargeStep
                                          : base::numberOf(user.step, "reference");
      if (m_imposed >= m_options.LargeTo) throw Over{End::Kind::LoadingEnd, "Loading end."};
      giveWay();
    }
  }

  void tellRow(const std::vector<Real>& values) {
    for (const Real value : values) m_cells.push_back(value.value);
    for (Row& row : m_rows) {
      if (row.Output != 1) continue;
      m_cells.push_back(row.strain.value);
      if (m_options.tableSolver && !row.WatchStrain.empty()) watch(row);
    }
  }

  void watch(Row& row) {
    const Real W = base::numberOf(row.WatchStrain, "reference");
    const Real P = std::exchange(row.previous, row.strain);
    if (!((P < W && W <= row.strain) || (row.strain < W && W <= P))) return;
    find("crossing", {Real(m_step), static_cast<double>(m_cells.size()) - 1, W, row.strain});
    giveWay();
  }

  // The beam

  /// Takes the curvature on the line through points j and j + 1, if the moment lies between theirs.
  bool takeCurvature(Point& piece, int j) const {
    const Point& a = m_relation[j];
    const Point& b = m_relation[j + 1];
    const Real m = piece.Moment;
    if (!((a.Moment <= m && m <= b.Moment) || (b.Moment <= m && m <= a.Moment))) return false;
    piece.Curvature = ((b.Curvature - a.Curvature) / (b.Moment - a.Moment)) * (m - a.Moment) + a.Curvature;
    return true;
  }

  void findCurvature(Point& piece) const {
    const int from = piece.bracket;
    for (int& j = piece.bracket; j < m_step; ++j)
      if (takeCurvature(piece, j)) return;
    piece.bracket = from;
    for (int& j = piece.bracket; j >= 1; --j)
      if (takeCurvature(piece, j - 1)) return;
    piece.bracket = from;
  }

  void bendBeam() {
    const model::BeamObject& beam = m_tables.Beams[0];
    const Real length = beam.HalfSpanFiberLength;
    m_load = m_moment / (Real(beam.ShearSpan) / 2);
    // Steps are counted in 16 bits, and in the lookup the last but one.
    if (m_step - 1 > 32767) throw base::NumericFault(base::NumericFault::Kind::Overflow, "reference");
    Real rotation, sum;
    for (int i = 0; i < beam.HalfSpanFiberNumber; ++i) {
      Point& piece = m_pieces[i];
      const Real overhang = (Real(0.5) + i) * length - Real(beam.FlexuralSpan) / 2;
      piece.Moment = overhang < 0 ? m_moment : m_moment - overhang * (m_moment / beam.ShearSpan);
      piece.Curvature = m_axialCurvature + m_tendonCurvature;
      findCurvature(piece);
      rotation += piece.Curvature * length;
      sum += (length * piece.Curvature) * length * (Real(0.5) + i);
    }
    m_displacement = (Real(beam.Span) / 2) * rotation - sum;
    m_pieceValues.clear();
    for (int i = 0; i < beam.HalfSpanFiberNumber; ++i) {
      sum = 0;
      for (int j = i + 1; j < beam.HalfSpanFiberNumber; ++j)
        sum += (length * m_pieces[j].Curvature) * length * (j - i);
      const Real deflection = (Real(beam.Span) / 2 - (Real(0.5) + i) * length) * rotation - sum;
      m_pieceValues.push_back(
          {(Real(0.5) + i) * length, m_pieces[i].Moment, m_pieces[i].Curvature, deflection});
    }
  }

  const job::JobOptions& m_options;
  model::ObjectTables m_tables;
  materials::StressStrainContext m_laws;
  std::vector<Row> m_rows;  ///< of all three tables
  std::optional<Stage> m_stage;
  int m_step = 0;

  Real m_top, m_bottom;
  Section m_d, m_x;
  Real m_uniformStrain, m_topStrain, m_neutralAxis;
  Real m_compression, m_tension, m_moment;  ///< of the last trial
  Real m_curvature;                         ///< of the present stage
  Real m_tendonMoment, m_axialMoment, m_tendonCurvature, m_axialCurvature;
  Real m_imposed, m_load, m_displacement;
  std::vector<Real> m_search;  ///< iterations, residual, the plane of the last trial

  std::vector<Point> m_relation;
  std::vector<Point> m_pieces;
  std::vector<std::vector<Real>> m_pieceValues;
  std::optional<double> m_peak;
  Numbers m_cells;  ///< of the row that is told
};

/// Where the engine and the slow path came to different things; empty where they agree.
inline std::string disagreement(const JobRun& engine, const Job& slow) {
  Findings found = engine.findings();
  std::vector<std::string> told = engine.user.told;
  // A fault stops the slow path within an evaluation, which the engine may go through to its end.
  if (!slow.found.contains("leftover")) {
    found.erase("leftover");
    told.resize(std::min(told.size(), slow.user.told.size()));
  }
  // A law that fails further on is told before a number that overflowed.
  if (slow.endKind == End::Kind::NumericFault && engine.end().kind > slow.endKind)
    found["end"][0][0] = slow.found.at("end")[0][0];
  if (!slow.message.empty() && slow.message != engine.end().message) return engine.end().message;
  return told == slow.user.told ? difference(found, slow.found) : "told";
}

}  // namespace torvik::tests::reference
