// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/job.h"
#include "analysis/recording_host.h"
#include "base/elementary.h"
#include "base/errors.h"
#include "base/number_text.h"
#include "materials/stress_strain.h"
#include "model/objects.h"

/// A second path through a job: plain rows, linear scans, nothing kept that can be worked out again. It
/// shares the stress-strain laws, `power` and the number texts with the engine, and nothing else. Slow on
/// purpose.
namespace torvik::analysis::reference {

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
  std::string heading;
  int sign;  ///< of its stress: tension 1, compression -1
  Real Depth, Area, Number;
  std::int16_t Output;
  std::string WatchStrain;
  std::function<double(double)> stressOf;
  Real base, strain = 0, stress = 0, force = 0, previous = 0;
  std::string Prestressing = {};
};

class Job : public JobRun {
 public:
  Job(const model::ObjectTables& tables, const JobOptions& options, const RecordingHost& user)
      : JobRun(user), m_options(options), m_tables(tables) {
    const auto add = [&](const std::string& table, const auto& objects, auto law, int sign, auto base) {
      for (std::size_t i = 0; i < objects.size(); ++i) {
        const auto& o = objects[i];
        const auto stressOf = [this, law, &o](double strain) { return law(strain, o, context); };
        m_rows.push_back({fmt::format("{} Strain {}", table, i + 1), sign, o.Depth, o.Area, o.Number,
                          o.Output, o.WatchStrain, stressOf, o.*base});
        if constexpr (requires { o.Prestressing; }) m_rows.back().Prestressing = o.Prestressing;
      }
    };
    add("Solid", m_tables.Solids, materials::fncSSSolid, -1, &model::SolidObject::InitialStrain);
    add("Bar", m_tables.Bars, materials::fncSSBar, 1, &model::BarObject::InitialStrain);
    add("Tendon", m_tables.Tendons, materials::fncSSTendon, 1, &model::TendonObject::IntroductionStrain);
    // The words of a fault are the engine's own: it ends the list without a message.
    try {
      sectionParameters();
      Loads tendons, axials;
      for (const auto& o : m_tables.Tendons)
        tendons.push_back(
            {Real(o.Area) * materials::fncSSTendon(o.IntroductionStrain, o, context) * o.Number, o.Depth});
      balance(Stage::Tendon, m_d, tendons, m_tendonMoment, m_tendonCurvature);
      for (const auto& o : m_tables.AxialForces) axials.push_back({o.Force, o.Depth});
      balance(Stage::AxialForce, m_x, axials, m_axialMoment, m_axialCurvature);
      load();
    } catch (const JobOutcome& over) {
      outcome = {over.end, over.message, outcome.rows};
      if (!over.message.empty()) host.reportMessage(over.message);
      noteState("over");
    } catch (const base::NumericFault&) {
      outcome.end = End::NumericFault;
    } catch (const base::InternalError&) {
      outcome.end = End::InternalError;
    } catch (const base::InputError&) {
      outcome.end = End::InputError;
    }
  }

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
  using End = JobOutcome::End;
  enum Kind { N, MN, MM, Loading };

  void note(const std::string& event, const std::vector<Real>& values) {
    std::vector<double> plain;
    for (const Real value : values) plain.push_back(value.value);
    host.note(event, plain);
  }
  void noteState(const std::string& event) {
    std::vector<Real> values;
    for (const Row& row : m_rows) values.insert(values.end(), {row.base, row.strain, row.stress, row.force});
    note(event, values);
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
    m_top = m_bottom = m_tables.Solids[0].Depth;
    for (const auto& o : m_tables.Solids) {
      m_top = std::min(m_top, Real(o.Depth) - Real(o.Height) / 2);
      m_bottom = std::max(m_bottom, Real(o.Height) / 2 + o.Depth);
    }
    host.setPanel(Panel::BeamTop, base::scientificText(m_top.value));
    host.setPanel(Panel::BeamBottom, base::scientificText(m_bottom.value));

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
      host.showMessage(
          "Warning: Avarage elastic modulus of solid is 0.\rEquivalent sections calculations are skipped.");
    } else {
      m_d = changed(c, 1, g.E, bars, {});
      m_x = changed(t, 1, g.E, bars, tendons);
    }
    for (Section* s : {&g, &c, &t, &m_d, &m_x}) {
      s->yTop = s->yTop - m_top;
      note("section", {s->A, s->yTop, s->yBottom, s->I, s->ZTop, s->ZBottom, s->E, s->EI, s->EA});
    }
  }

  // State of the section

  void evaluate(Stage stage, bool isLinear) {
    m_compression = m_tension = 0;
    if (isLinear) m_moment = 0;
    const auto addTension = [&](Real force, Real depth) {
      (force < 0 ? m_compression : m_tension) += force < 0 ? -force : force;
      if (isLinear) m_moment += (depth - m_neutralAxis) * force;
    };
    for (Row& row : m_rows) {
      const bool isFixed = stage == Stage::Tendon && row.Prestressing == "Post-tensioning";
      Real elongation = -m_uniformStrain;
      if (isLinear) elongation = ((row.Depth - m_neutralAxis) * m_topStrain) / m_neutralAxis;
      row.strain = isFixed ? row.base : row.base + row.sign * elongation;
      row.stress = row.stressOf(row.strain.value);
      row.force = row.stress * row.Area * row.Number;
      addTension(row.sign * row.force, row.Depth);
    }
    if (stage == Stage::Tendon) return;
    for (const auto& axial : m_tables.AxialForces) addTension(axial.Force, axial.Depth);
  }

  // The searches

  void waitWhilePaused() {
    while (host.control.state == RunState::Paused) host.doEvents();
    if (host.control.state == RunState::Over) throw JobOutcome{End::EndedByUser, ""};
  }

  void yield(const std::string& status) {
    waitWhilePaused();
    host.setPanel(Panel::Status, status);
    host.doEvents();
  }

  Real residualOf(Stage stage, Kind kind, int iteration, int outerIteration) {
    if (kind == MM) {
      search(stage, MN, iteration);
      return m_moment;
    }
    host.setCount(iteration, outerIteration);
    if (kind == MN) {
      m_curvature = m_topStrain / m_neutralAxis;
      m_topStrain = m_neutralAxis * m_curvature;
    }
    if (kind == Loading) m_topStrain = m_imposed * m_neutralAxis;
    evaluate(stage, kind != N);
    return m_compression - m_tension;
  }

  void search(Stage stage, Kind kind, int outerIteration = 0) {
    static const std::array<std::string, 3> kStages = {"Tendon", "Axial force", "Loading"};
    static const std::array<std::string, 4> kKinds = {" (N)", " (MN)", " (MM)", ""};
    const std::string& stageName = kStages[static_cast<std::size_t>(stage)];
    Real& x = kind == N ? m_uniformStrain : kind == MM ? m_topStrain : m_neutralAxis;
    for (int iteration = 1;; ++iteration) {
      Real probe[3], residual[3];
      probe[1] = x;
      for (int i = -1; i <= 1; ++i) {
        x = ((Real(m_options.Precision) * i * m_options.DiffWidth) + 1.0) * probe[1];
        residual[i + 1] = residualOf(stage, kind, iteration, outerIteration);
        probe[i + 1] = x;
      }
      x = probe[1];
      if (kind == MM) m_moment = residual[1];
      if (kind == N || kind == MM) noteState("current values");
      const Real largest = std::max({m_axialMoment, -m_axialMoment, m_tendonMoment, -m_tendonMoment});
      const Real limited = kind == MM ? largest : std::min(m_compression, m_tension);
      const Real tolerance = limited * m_options.Precision / (kind == Loading ? 1 : 1000);
      if (std::max(residual[1], -residual[1]) <= tolerance) return;
      if (iteration >= m_options.MaxIteration)
        throw JobOutcome{End::SearchFailed, stageName + " convergence" + kKinds[kind] + " failed."};
      x = x - residual[1] / ((residual[2] - residual[0]) / (probe[2] - probe[0]));
      yield(stageName + kKinds[kind]);
    }
  }

  // The stages

  void balance(Stage stage, const Section& s, const Loads& loads, Real& moment, Real& curvature) {
    m_neutralAxis = m_top + s.yTop;
    Real sum;
    for (const auto& [force, depth] : loads) {
      sum += force;
      moment += force * (depth - m_neutralAxis);
    }
    m_uniformStrain = (sum / s.A) / s.E;
    m_topStrain = (-(moment / s.ZTop)) / s.E;
    for (const Kind kind : {N, MM}) {
      search(stage, kind);
      for (Row& row : m_rows) row.base = row.strain;
      noteState("strain without load");
      host.playSound(m_options.pausePreLoadingSound);
      if (m_options.pausePreLoading) {
        host.pause(PauseCause::PreLoading);
        waitWhilePaused();
      }
    }
    curvature = m_curvature;
  }

  void setMu(Real moment) {
    m_mu = base::scientificText(moment.value);
    host.setPanel(Panel::Mu, m_mu);
  }

  void load() {
    m_pieces.resize(m_tables.Beams[0].HalfSpanFiberNumber);
    for (Row& row : m_rows) row.previous = row.strain;
    setMu(0);
    for (int step = 0;; ++step) {
      search(Stage::Loading, Loading);
      if (m_compression < 0.000001 && step > 0)
        throw JobOutcome{End::Collapsed, "Loading causes compression force = tension force = 0."};
      if (m_options.beepConvergence) host.playSound(m_options.convergenceSound);
      const Real curvature = (m_axialCurvature + m_tendonCurvature) + m_imposed;
      m_relation.push_back({m_moment, curvature});
      bendBeam(step);
      if (base::numberOf(m_mu, "reference") < m_moment) setMu(m_moment);
      writeRow(step, {m_load, m_displacement, m_moment, curvature, m_neutralAxis, m_compression});
      ++outcome.rows;
      noteState("current values");
      note(fmt::format("charts {}", step), {m_moment, curvature, m_load, m_displacement});
      note("pieces", m_pieceValues);

      if (host.step == "Small" && m_imposed > m_options.SmallTo) host.setStepText("Large");
      m_imposed += host.step == "Small"   ? m_options.SmallStep
                   : host.step == "Large" ? m_options.LargeStep
                                          : base::numberOf(host.step, "reference");
      if (m_imposed >= m_options.LargeTo) throw JobOutcome{End::LoadingEnd, "Loading end."};
      yield("Loading");
    }
  }

  void writeRow(int step, std::vector<Real> values) {
    for (const Row& row : m_rows)
      if (row.Output == 1) values.push_back(row.strain);
    if (m_options.tableSolver) {
      host.note(fmt::format("row {}", step));
      std::size_t column = 0;
      for (; column < 6; ++column) note(fmt::format("cell {}", column), {values[column]});
      for (Row& row : m_rows) {
        if (row.Output != 1) continue;
        note(fmt::format("cell {}", column), {row.strain});
        if (!row.WatchStrain.empty()) watch(row, column);
        ++column;
      }
      host.note("row ends");
    }
    note("line", values);
  }

  void watch(Row& row, std::size_t column) {
    const Real W = base::numberOf(row.WatchStrain, "reference");
    const Real P = std::exchange(row.previous, row.strain);
    if (!((P < W && W <= row.strain) || (row.strain < W && W <= P))) return;
    note(fmt::format("crossed: {} column {}", row.heading, column), {W, row.strain});
    host.playSound(m_options.pauseWatchSound);
    if (!m_options.pauseWatch) return;
    host.pause(PauseCause::Watch);
    waitWhilePaused();
    host.setPanel(Panel::Status, "Loading");
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

  void findCurvature(Point& piece, int step) const {
    const int from = piece.bracket;
    for (int& j = piece.bracket; j < step; ++j)
      if (takeCurvature(piece, j)) return;
    piece.bracket = from;
    for (int& j = piece.bracket; j >= 1; --j)
      if (takeCurvature(piece, j - 1)) return;
    piece.bracket = from;
  }

  void bendBeam(int step) {
    const model::BeamObject& beam = m_tables.Beams[0];
    const Real length = beam.HalfSpanFiberLength;
    m_load = m_moment / (Real(beam.ShearSpan) / 2);
    // Steps are counted in 16 bits, and in the lookup the last but one.
    if (step - 1 > 32767) throw base::NumericFault(base::NumericFault::Kind::Overflow, "reference");
    Real rotation, sum;
    for (int i = 0; i < beam.HalfSpanFiberNumber; ++i) {
      Point& piece = m_pieces[i];
      const Real overhang = (Real(0.5) + i) * length - Real(beam.FlexuralSpan) / 2;
      piece.Moment = overhang < 0 ? m_moment : m_moment - overhang * (m_moment / beam.ShearSpan);
      piece.Curvature = m_axialCurvature + m_tendonCurvature;
      findCurvature(piece, step);
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
      m_pieceValues.insert(m_pieceValues.end(), {m_pieces[i].Moment, m_pieces[i].Curvature, deflection});
    }
  }

  const JobOptions& m_options;
  model::ObjectTables m_tables;
  std::vector<Row> m_rows;  ///< of all three tables

  Real m_top, m_bottom;
  Section m_d, m_x;
  Real m_uniformStrain, m_topStrain, m_neutralAxis;
  Real m_compression, m_tension, m_moment;  ///< of the last trial
  Real m_curvature;                         ///< of the present stage
  Real m_tendonMoment, m_axialMoment, m_tendonCurvature, m_axialCurvature;
  Real m_imposed, m_load, m_displacement;

  std::vector<Point> m_relation;
  std::vector<Point> m_pieces;
  std::vector<Real> m_pieceValues;
  std::string m_mu;
};

}  // namespace torvik::analysis::reference
