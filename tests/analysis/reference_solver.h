// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/host.h"
#include "analysis/job.h"
#include "analysis/job_options.h"
#include "analysis/run_state.h"
#include "base/elementary.h"
#include "base/errors.h"
#include "base/fault.h"
#include "base/number_text.h"
#include "materials/stress_strain.h"
#include "model/objects.h"

/// A second path through a job: plain rows, linear scans, nothing kept that can be worked out again. It
/// shares the stress-strain laws, `exponential`, `power` and the number texts with the engine, and nothing
/// else. Slow on purpose.
namespace torvik::analysis::reference {

/// What a job does to its surroundings, one line each, in order. Doubles stand in their shortest exact form,
/// so equal lines mean equal bits.
class Transcript {
 public:
  std::vector<std::string> lines;

  void add(std::string line) { lines.push_back(std::move(line)); }
  void add(std::string line, std::initializer_list<double> values) {
    append(line, values);
    lines.push_back(std::move(line));
  }
  template <class Values>
  static void append(std::string& line, const Values& values) {
    for (const double value : values) {
      char text[32];
      const auto end = std::to_chars(text, text + sizeof text, value).ptr;
      line += ' ';
      line.append(text, end);
    }
  }
};

/// The user and the program around a job, the same for both paths.
class Desk : public materials::ConfinementPrompt {
 public:
  Transcript transcript;
  RunControl control{RunState::Running};
  std::string step = "Small";                       ///< text of the step box
  bool pausing = false;                             ///< a pause takes effect, and is ended at the next events
  std::function<void(Desk&, int)> atEvents;         ///< (desk, number of the call from 1): what the user does
  std::vector<std::string> answers = {"r", "300"};  ///< to the input boxes, in turn; then nobody answers
  int events = 0;

  void doEvents() {
    transcript.add("events");
    ++events;
    if (control.state == RunState::Paused) control.state = RunState::Running;
    if (atEvents) atEvents(*this, events);
  }
  void pause(PauseCause cause) {
    transcript.add(cause == PauseCause::Watch ? "pause at watch" : "pause before loading");
    if (pausing && control.state == RunState::Running) control.state = RunState::Paused;
  }
  void showMessage(const std::string& text) override { transcript.add("message: " + text); }
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& text) override {
    transcript.add("ask: " + prompt + " / " + title + " / " + text);
    if (m_asked == answers.size()) throw base::InputError("nobody answers");
    return answers[m_asked++];
  }

 private:
  std::size_t m_asked = 0;
};

/// A double that faults at the first operation that divides by zero or leaves the finite numbers.
class Real {
 public:
  Real(double value = 0) : m_value(value) {
    if (std::isnan(value)) throw base::NumericFault(base::NumericFault::Kind::InvalidOperation, "reference");
    if (std::isinf(value)) throw base::NumericFault(base::NumericFault::Kind::Overflow, "reference");
  }
  [[nodiscard]] double value() const { return m_value; }

  friend Real operator+(Real a, Real b) { return {a.m_value + b.m_value}; }
  friend Real operator-(Real a, Real b) { return {a.m_value - b.m_value}; }
  friend Real operator*(Real a, Real b) { return {a.m_value * b.m_value}; }
  friend Real operator/(Real a, Real b) {
    if (b.m_value == 0) throw base::NumericFault(base::NumericFault::Kind::DivisionByZero, "reference");
    return {a.m_value / b.m_value};
  }
  friend Real operator-(Real a) { return {-a.m_value}; }
  friend bool operator<(Real a, Real b) { return a.m_value < b.m_value; }
  friend bool operator<=(Real a, Real b) { return a.m_value <= b.m_value; }
  friend bool operator>(Real a, Real b) { return a.m_value > b.m_value; }
  friend bool operator>=(Real a, Real b) { return a.m_value >= b.m_value; }

 private:
  double m_value;
};

inline Real power(Real a, int n) {
  return {base::power(a.value(), n)};
}
inline Real absolute(Real a) {
  return {std::fabs(a.value())};
}
inline Real minimum(Real a, Real b) {
  return b < a ? b : a;
}
inline Real maximum(Real a, Real b) {
  return b > a ? b : a;
}

/// An array of three, indexed by -1, 0, 1.
class Triple {
 public:
  Real& operator()(int i) { return m_values[static_cast<std::size_t>(i + 1)]; }

 private:
  std::array<Real, 3> m_values;
};

template <class Object>
struct Row {
  Object object;
  Real BaseStrain;
  Real CurrentStrain;
  Real CurrentStress;
  Real CurrentForce;
  Real PreviousStrain;
};

/// One line of a state: base strain, strain, stress and force of all rows.
template <class Visit>
std::string stateLine(std::string line, Visit&& visit) {
  visit([&](const char* table, double base, double strain, double stress, double force) {
    line += table;
    Transcript::append(line, std::initializer_list<double>{base, strain, stress, force});
  });
  return line;
}

class Job {
 public:
  Job(const model::ObjectTables& tables, const JobOptions& options, Desk& desk,
      materials::StressStrainContext& context)
      : m_options(options),
        m_desk(desk),
        m_transcript(desk.transcript),
        m_context(context),
        m_beams(tables.Beams) {
    for (const auto& solid : tables.Solids) m_solids.push_back({solid, solid.InitialStrain, 0, 0, 0, 0});
    for (const auto& bar : tables.Bars) m_bars.push_back({bar, bar.InitialStrain, 0, 0, 0, 0});
    for (const auto& tendon : tables.Tendons)
      m_tendons.push_back({tendon, tendon.IntroductionStrain, 0, 0, 0, 0});
    m_axialForces = tables.AxialForces;
  }

  JobOutcome run() {
    JobOutcome outcome;
    try {
      m_context.startJob();
      sectionParameters();
      prestressStage();
      axialForceStage();
      loadingStage();
    } catch (const Over& over) {
      outcome.end = over.end;
      outcome.message = over.message;
      if (!over.message.empty()) m_transcript.add("report: " + over.message);
    } catch (const base::NumericFault&) {
      outcome.end = JobOutcome::End::NumericFault;
    } catch (const base::InternalError&) {
      outcome.end = JobOutcome::End::InternalError;
    } catch (const base::InputError&) {
      outcome.end = JobOutcome::End::InputError;
    }
    outcome.rows = m_rows;
    return outcome;
  }

  [[nodiscard]] std::string state(const std::string& name) const {
    return stateLine(name, [&](auto&& row) {
      const auto each = [&](const char* table, const auto& rows) {
        for (const auto& r : rows)
          row(table, r.BaseStrain.value(), r.CurrentStrain.value(), r.CurrentStress.value(),
              r.CurrentForce.value());
      };
      each(" S", m_solids);
      each(" B", m_bars);
      each(" T", m_tendons);
    });
  }

  [[nodiscard]] double BeamTop() const { return m_beamTop.value(); }
  [[nodiscard]] double BeamBottom() const { return m_beamBottom.value(); }

 private:
  struct Over {
    JobOutcome::End end;
    std::string message;
  };
  struct Section {
    Real A, yTop, yBottom, I, ZTop, ZBottom, E, EI, EA;
  };
  struct Point {
    Real Moment;
    Real Curvature;
  };
  enum class Kind { N, MN, Loading };

  // Section parameters

  template <class Rows, class Add>
  static void over(const Rows& rows, Add&& add) {
    for (const auto& row : rows)
      for (int n = 1; n <= row.object.Number; ++n) add(row.object);
  }

  void setBeamExtent() {
    if (m_beams.empty() || m_solids.empty())
      throw base::NumericFault(base::NumericFault::Kind::IndexOutOfRange, "reference");
    m_beamTop = m_solids[0].object.Depth;
    m_beamBottom = m_solids[0].object.Depth;
    for (const auto& row : m_solids) {
      const Real depth = row.object.Depth;
      const Real height = row.object.Height;
      if (depth - height / 2 < m_beamTop) m_beamTop = depth - height / 2;
      if (height / 2 + depth > m_beamBottom) m_beamBottom = height / 2 + depth;
    }
    m_transcript.add("Beam Top: " + base::scientificText(m_beamTop.value()));
    m_transcript.add("Beam Bottom: " + base::scientificText(m_beamBottom.value()));
  }

  static void completeSection(Section& s) {
    s.ZTop = s.I / s.yTop;
    s.ZBottom = s.I / s.yBottom;
    s.EI = s.E * s.I;
    s.EA = s.E * s.A;
  }

  void sectionParameters() {
    setBeamExtent();
    Section g, c, t;

    Real S, Q;
    over(m_solids, [&](const auto& o) { g.A = g.A + o.Area; });
    over(m_solids, [&](const auto& o) { S = S + Real(o.Area) * o.Depth; });
    over(m_solids, [&](const auto& o) { Q = Q + Real(o.ElasticModulus) * o.Area; });
    g.yTop = S / g.A;
    g.yBottom = m_beamBottom - g.yTop;
    g.E = Q / g.A;
    over(m_solids, [&](const auto& o) {
      g.I = g.I + power(o.Height, 3) * o.Width / 12;
      g.I = g.I + power(Real(o.Depth) - g.yTop, 2) * o.Area;
    });
    completeSection(g);

    Real B, Bm, Be, P, H, Pm, Hm, Pe, He;
    over(m_bars, [&](const auto& o) {
      B = B + o.Area;
      Bm = Bm + Real(o.Area) * o.Depth;
      Be = Be + Real(o.Area) * g.E;
    });
    over(m_tendons, [&](const auto& o) {
      P = P + o.Area;
      H = H + o.SheathArea;
      Pm = Pm + Real(o.Depth) * o.Area;
      Hm = Hm + Real(o.SheathDepth) * o.SheathArea;
      Pe = Pe + Real(o.Area) * g.E;
      He = He + Real(o.SheathArea) * g.E;
    });
    c.A = g.A - B - H;
    c.yTop = (g.A * g.yTop - Bm - Hm) / c.A;
    c.yBottom = m_beamBottom - c.yTop;
    c.E = (g.E * g.A - Be - He) / c.A;
    t.A = g.A - B - P;
    t.yTop = (g.A * g.yTop - Bm - Pm) / t.A;
    t.yBottom = m_beamBottom - t.yTop;
    t.E = (g.E * g.A - Be - Pe) / t.A;

    Real Bc, Bt, Hc, Pt;
    over(m_bars, [&](const auto& o) {
      Bc = Bc + power(c.yTop - o.Depth, 2) * o.Area;
      Bt = Bt + power(t.yTop - o.Depth, 2) * o.Area;
    });
    over(m_tendons, [&](const auto& o) {
      Hc = Hc + power(c.yTop - o.SheathDepth, 2) * o.SheathArea;
      Pt = Pt + power(t.yTop - o.Depth, 2) * o.Area;
    });
    c.I = power(g.yTop - c.yTop, 2) * g.A + g.I - Bc - Hc;
    t.I = power(g.yTop - t.yTop, 2) * g.A + g.I - Bt - Pt;
    completeSection(c);
    completeSection(t);

    Section d, x;
    if (g.E.value() == 0) {
      m_desk.showMessage(
          "Warning: Avarage elastic modulus of solid is 0.\rEquivalent sections calculations are skipped.");
    } else {
      Real Bn, Bnm, Bne, Pn, Pnm, Pne;
      over(m_bars, [&](const auto& o) {
        const Real ns = Real(o.ElasticModulus) / g.E;
        Bn = Bn + ns * o.Area;
        Bnm = Bnm + ns * o.Area * o.Depth;
        Bne = Bne + Real(o.ElasticModulus) * o.Area;
      });
      over(m_tendons, [&](const auto& o) {
        const Real np = Real(o.ElasticModulus) / g.E;
        Pn = Pn + np * o.Area;
        Pnm = Pnm + np * o.Area * o.Depth;
        Pne = Pne + Real(o.Area) * o.ElasticModulus;
      });
      d.A = c.A + Bn;
      d.yTop = (c.A * c.yTop + Bnm) / d.A;
      d.yBottom = m_beamBottom - d.yTop;
      d.E = (c.E * c.A + Bne) / d.A;
      x.A = t.A + Bn + Pn;
      x.yTop = (t.A * t.yTop + Bnm + Pnm) / x.A;
      x.yBottom = m_beamBottom - x.yTop;
      x.E = (t.E * t.A + Bne + Pne) / x.A;

      Real Bd, Bx, Px;
      over(m_bars, [&](const auto& o) {
        const Real ns = Real(o.ElasticModulus) / g.E;
        Bd = Bd + power(d.yTop - o.Depth, 2) * ns * o.Area;
        Bx = Bx + power(x.yTop - o.Depth, 2) * ns * o.Area;
      });
      over(m_tendons, [&](const auto& o) {
        const Real np = Real(o.ElasticModulus) / g.E;
        Px = Px + power(x.yTop - o.Depth, 2) * np * o.Area;
      });
      d.I = power(c.yTop - d.yTop, 2) * c.A + c.I + Bd;
      x.I = power(t.yTop - x.yTop, 2) * t.A + t.I + Bx + Px;
      completeSection(d);
      completeSection(x);
    }
    for (Section* s : {&g, &c, &t, &d, &x}) {
      s->yTop = s->yTop - m_beamTop;
      m_transcript.add("section",
                       {s->A.value(), s->yTop.value(), s->yBottom.value(), s->I.value(), s->ZTop.value(),
                        s->ZBottom.value(), s->E.value(), s->EI.value(), s->EA.value()});
    }
    m_d = d;
    m_x = x;
  }

  // State of the section

  template <class Law>
  static Real checked(Law&& law) {
    base::fpflags::clear();
    const double stress = law();
    if (const auto kind = base::fpflags::raised()) throw base::NumericFault(*kind, "reference");
    return {stress};
  }

  template <class Object>
  void addSteel(Row<Object>& row) {
    row.CurrentForce = row.CurrentStress * row.object.Area * row.object.Number;
    if (row.CurrentForce < 0)
      m_compression = m_compression - row.CurrentForce;
    else
      m_tension = m_tension + row.CurrentForce;
  }

  void addAxial(Real force) {
    if (force < 0)
      m_compression = m_compression - force;
    else
      m_tension = m_tension + force;
  }

  static bool isFixed(Stage stage, const model::TendonObject& tendon) {
    if (stage != Stage::Tendon) return false;
    if (tendon.Prestressing == "Pre-tensioning") return false;
    if (tendon.Prestressing == "Post-tensioning") return true;
    throw base::InternalError(base::kImpossibleCase, "Prestressing");
  }

  /// @param solid, steel  (row) -> strain
  /// @param lever         (depth) -> arm of the moment; used where `withMoment`
  template <class Solid, class Steel, class Lever>
  void evaluate(Stage stage, Solid&& solid, Steel&& steel, Lever&& lever, bool withMoment) {
    m_compression = 0;
    m_tension = 0;
    if (withMoment) m_moment = 0;
    for (auto& row : m_solids) {
      row.CurrentStrain = solid(row);
      row.CurrentStress =
          checked([&] { return materials::fncSSSolid(row.CurrentStrain.value(), row.object, m_context); });
      row.CurrentForce = row.CurrentStress * row.object.Area * row.object.Number;
      if (row.CurrentForce > 0)
        m_compression = m_compression + row.CurrentForce;
      else
        m_tension = m_tension - row.CurrentForce;
      if (withMoment) m_moment = m_moment - lever(row.object.Depth) * row.CurrentForce;
    }
    for (auto& row : m_bars) {
      row.CurrentStrain = steel(row);
      row.CurrentStress =
          checked([&] { return materials::fncSSBar(row.CurrentStrain.value(), row.object, m_context); });
      addSteel(row);
      if (withMoment) m_moment = m_moment + lever(row.object.Depth) * row.CurrentForce;
    }
    for (auto& row : m_tendons) {
      if (isFixed(stage, row.object))
        row.CurrentStrain = row.BaseStrain;
      else
        row.CurrentStrain = steel(row);
      row.CurrentStress =
          checked([&] { return materials::fncSSTendon(row.CurrentStrain.value(), row.object, m_context); });
      addSteel(row);
      if (withMoment) m_moment = m_moment + lever(row.object.Depth) * row.CurrentForce;
    }
    if (stage == Stage::Tendon) return;
    for (const auto& axial : m_axialForces) {
      addAxial(axial.Force);
      if (withMoment) m_moment = m_moment + lever(axial.Depth) * axial.Force;
    }
  }

  void evaluateUniform(Stage stage) {
    const Real U = m_uniformStrain;
    evaluate(
        stage, [&](const auto& row) { return row.BaseStrain + U; },
        [&](const auto& row) { return row.BaseStrain - U; }, [](Real) { return Real(0); }, false);
  }

  void evaluateLinear(Stage stage) {
    const Real N = m_neutralAxis;
    const Real T = m_topStrain;
    evaluate(
        stage, [&](const auto& row) { return row.BaseStrain - ((Real(row.object.Depth) - N) * T) / N; },
        [&](const auto& row) { return ((Real(row.object.Depth) - N) * T) / N + row.BaseStrain; },
        [&](Real D) { return D - N; }, true);
  }

  void commitStrains() {
    for (auto& row : m_solids) row.BaseStrain = row.CurrentStrain;
    for (auto& row : m_bars) row.BaseStrain = row.CurrentStrain;
    for (auto& row : m_tendons) row.BaseStrain = row.CurrentStrain;
    m_transcript.add(state("strain without load"));
  }

  // The searches

  void waitWhilePaused() {
    while (m_desk.control.state == RunState::Paused) m_desk.doEvents();
    if (m_desk.control.state == RunState::Over) throw Over{JobOutcome::End::EndedByUser, ""};
  }

  void status(const std::string& text) { m_transcript.add("Status: " + text); }

  [[nodiscard]] Real probeOf(int i, Real middle) const {
    return ((Real(m_options.Precision) * i * m_options.DiffWidth) + 1.0) * middle;
  }

  [[noreturn]] static void fail(const std::string& text) { throw Over{JobOutcome::End::SearchFailed, text}; }

  static std::string stageName(Stage stage) { return stage == Stage::Tendon ? "Tendon" : "Axial force"; }

  /// N, MN and the search of the loading stage.
  void search(Kind kind, Stage stage) {
    Real& x = kind == Kind::N ? m_uniformStrain : m_neutralAxis;
    int iteration = 1;
    for (;;) {
      Triple probe;
      Triple residual;
      probe(0) = x;
      for (int i = -1; i <= 1; ++i) {
        x = probeOf(i, probe(0));
        m_transcript.add("Count: " + std::to_string(iteration) +
                         (kind == Kind::MN ? "/" + std::to_string(m_outerIteration) : std::string()));
        if (kind == Kind::N) {
          evaluateUniform(stage);
        } else {
          if (kind == Kind::MN) {
            m_curvature = m_topStrain / m_neutralAxis;
            m_topStrain = m_neutralAxis * m_curvature;
          } else {
            m_topStrain = m_imposed * m_neutralAxis;
          }
          evaluateLinear(stage);
        }
        residual(i) = m_compression - m_tension;
        probe(i) = x;
      }
      x = probe(0);
      if (kind == Kind::N) m_transcript.add(state("current values"));
      Real tolerance = Real(m_options.Precision) * minimum(m_compression, m_tension);
      if (kind != Kind::Loading) tolerance = tolerance / power(10, 3);
      if (absolute(residual(0)) <= tolerance) return;
      if (iteration >= m_options.MaxIteration) {
        if (kind == Kind::Loading) fail("Loading convergence failed.");
        fail(stageName(stage) + (kind == Kind::N ? " convergence (N) failed." : " convergence (MN) failed."));
      }
      ++iteration;
      x = x - residual(0) / ((residual(1) - residual(-1)) / (probe(1) - probe(-1)));
      waitWhilePaused();
      status(kind == Kind::Loading ? "Loading" : stageName(stage) + (kind == Kind::N ? " (N)" : " (MN)"));
      m_desk.doEvents();
    }
  }

  void searchMoment(Stage stage) {
    m_outerIteration = 1;
    for (;;) {
      Triple probe;
      Triple residual;
      probe(0) = m_topStrain;
      for (int j = -1; j <= 1; ++j) {
        m_topStrain = probeOf(j, probe(0));
        search(Kind::MN, stage);
        residual(j) = m_moment;
        probe(j) = m_topStrain;
      }
      m_moment = residual(0);
      m_topStrain = probe(0);
      m_transcript.add(state("current values"));
      const Real tolerance = maximum(absolute(m_axialMoment) * m_options.Precision / power(10, 3),
                                     absolute(m_tendonMoment) * m_options.Precision / power(10, 3));
      if (absolute(residual(0)) <= tolerance) return;
      if (m_outerIteration >= m_options.MaxIteration) fail(stageName(stage) + " convergence (MM) failed.");
      ++m_outerIteration;
      m_topStrain = m_topStrain - residual(0) / ((residual(1) - residual(-1)) / (probe(1) - probe(-1)));
      waitWhilePaused();
      status(stageName(stage) + " (MM)");
      m_desk.doEvents();
    }
  }

  // The stages before loading

  void preLoadingBreak() {
    m_transcript.add("sound: " + m_options.pausePreLoadingSound);
    if (!m_options.pausePreLoading) return;
    m_desk.pause(PauseCause::PreLoading);
    waitWhilePaused();
  }

  void searchesBeforeLoading(Stage stage) {
    search(Kind::N, stage);
    commitStrains();
    preLoadingBreak();
    searchMoment(stage);
    commitStrains();
    preLoadingBreak();
  }

  void prestressStage() {
    m_neutralAxis = m_beamTop + m_d.yTop;
    Real force;
    m_tendonMoment = 0;
    m_axialMoment = 0;
    for (const auto& row : m_tendons) {
      const model::TendonObject& o = row.object;
      const Real stress = checked([&] { return materials::fncSSTendon(o.IntroductionStrain, o, m_context); });
      force = force + Real(o.Area) * stress * o.Number;
      m_tendonMoment = m_tendonMoment + Real(o.Area) * stress * o.Number * (Real(o.Depth) - m_neutralAxis);
    }
    m_uniformStrain = (force / m_d.A) / m_d.E;
    m_topStrain = (-(m_tendonMoment / m_d.ZTop)) / m_d.E;
    searchesBeforeLoading(Stage::Tendon);
    m_tendonCurvature = m_curvature;
  }

  void axialForceStage() {
    m_neutralAxis = m_beamTop + m_x.yTop;
    Real force;
    m_axialMoment = 0;
    for (const auto& axial : m_axialForces) {
      force = force + axial.Force;
      m_axialMoment = m_axialMoment + (Real(axial.Depth) - m_neutralAxis) * axial.Force;
    }
    m_uniformStrain = (force / m_x.A) / m_x.E;
    m_topStrain = (-(m_axialMoment / m_x.ZTop)) / m_x.E;
    searchesBeforeLoading(Stage::AxialForce);
    m_axialCurvature = m_curvature;
  }

  // Loading

  static bool isBetween(Real m, Real a, Real b) { return (a <= m && m <= b) || (b <= m && m <= a); }

  static Real interpolated(Real m, const Point& a, const Point& b) {
    return ((b.Curvature - a.Curvature) / (b.Moment - a.Moment)) * (m - a.Moment) + a.Curvature;
  }

  /// Load, pieces and deflections of the present step.
  void respond(const model::BeamObject& beam, int step, Real moment) {
    const int fibers = beam.HalfSpanFiberNumber;
    const Real piece = beam.HalfSpanFiberLength;
    m_load = moment / (Real(beam.ShearSpan) / 2);
    // Steps are counted in 16 bits, and in the lookup the last but one.
    if (step - 1 > 32767) throw base::NumericFault(base::NumericFault::Kind::Overflow, "reference");
    Real rotation = 0;
    for (int i = 0; i <= fibers - 1; ++i) {
      Point& fiber = m_fiberState[static_cast<std::size_t>(i)];
      const Real place = (Real(0.5) + i) * piece;
      if (Real(beam.FlexuralSpan) / 2 <= place)
        fiber.Moment = moment - (place - Real(beam.FlexuralSpan) / 2) * (moment / beam.ShearSpan);
      else
        fiber.Moment = moment;
      fiber.Curvature = m_axialCurvature + m_tendonCurvature;
      int& bracket = m_fiberBracket[static_cast<std::size_t>(i)];
      const auto point = [&](int j) -> const Point& { return m_relation[static_cast<std::size_t>(j)]; };
      bool found = false;
      for (int j = bracket; j <= step - 1 && !found; ++j) {
        if (!isBetween(fiber.Moment, point(j).Moment, point(j + 1).Moment)) continue;
        fiber.Curvature = interpolated(fiber.Moment, point(j), point(j + 1));
        bracket = j;
        found = true;
      }
      for (int j = bracket; j >= 1 && !found; --j) {
        if (!isBetween(fiber.Moment, point(j - 1).Moment, point(j).Moment)) continue;
        fiber.Curvature = interpolated(fiber.Moment, point(j - 1), point(j));
        bracket = j;
        found = true;
      }
      rotation = rotation + fiber.Curvature * piece;
    }

    const auto curvature = [&](int j) { return m_fiberState[static_cast<std::size_t>(j)].Curvature; };
    Real sum = 0;
    for (int j = 0; j <= fibers - 1; ++j) sum = sum + (piece * curvature(j)) * piece * (Real(0.5) + j);
    m_displacement = (Real(beam.Span) / 2) * rotation - sum;
    for (int i = 0; i <= fibers - 1; ++i) {
      sum = 0;
      for (int j = i + 1; j <= fibers - 1; ++j) sum = sum + (piece * curvature(j)) * piece * (j - i);
      m_deflection[static_cast<std::size_t>(i)] =
          (Real(beam.Span) / 2 - (Real(0.5) + i) * piece) * rotation - sum;
    }
  }

  void setMu(Real moment) {
    m_mu = base::scientificText(moment.value());
    m_transcript.add("Mu: " + m_mu);
  }

  /// Strain cells of one table, with the watch; strains are gathered in `line`.
  template <class Object>
  void strainCells(const char* heading, std::vector<Row<Object>>& rows, int& column) {
    int number = 0;
    for (auto& row : rows) {
      ++number;
      if (row.object.Output != 1) continue;
      cell(column, row.CurrentStrain);
      if (!row.object.WatchStrain.empty()) {
        const Real W = base::numberOf(row.object.WatchStrain, "reference");
        const Real P = row.PreviousStrain;
        const Real S = row.CurrentStrain;
        if ((P < W && W <= S) || (S < W && W <= P)) {
          m_transcript.add("crossed " + std::string(heading) + std::to_string(number) + " column " +
                               std::to_string(column),
                           {W.value(), S.value()});
          m_transcript.add("sound: " + m_options.pauseWatchSound);
          if (m_options.pauseWatch) {
            m_desk.pause(PauseCause::Watch);
            waitWhilePaused();
            status("Loading");
          }
        }
        row.PreviousStrain = row.CurrentStrain;
      }
      ++column;
    }
  }

  void cell(int column, Real value) { m_transcript.add("cell " + std::to_string(column), {value.value()}); }

  template <class Object>
  static void outputStrains(const std::vector<Row<Object>>& rows, std::string& line) {
    for (const auto& row : rows)
      if (row.object.Output == 1) Transcript::append(line, std::array{row.CurrentStrain.value()});
  }

  template <class Object>
  static void startWatch(std::vector<Row<Object>>& rows) {
    for (auto& row : rows)
      if (!row.object.WatchStrain.empty()) row.PreviousStrain = row.CurrentStrain;
  }

  void loadingStage() {
    const model::BeamObject& beam = m_beams[0];
    startWatch(m_solids);
    startWatch(m_bars);
    startWatch(m_tendons);
    setMu(0);
    int step = 0;
    m_relation.resize(2);
    m_relation[0].Curvature = 0;
    m_fiberState.resize(static_cast<std::size_t>(beam.HalfSpanFiberNumber) + 1);
    m_fiberBracket.resize(m_fiberState.size());
    m_deflection.resize(m_fiberState.size());
    for (;;) {
      const auto at = static_cast<std::size_t>(step);
      m_imposed = m_relation[at].Curvature;
      search(Kind::Loading, Stage::Loading);
      m_relation[at].Moment = m_moment;
      if (m_compression < 0.000001 && step > 0)
        throw Over{JobOutcome::End::Collapsed, "Loading causes compression force = tension force = 0."};
      if (m_options.beepConvergence) m_transcript.add("sound: " + m_options.convergenceSound);
      m_relation[at + 1].Curvature = m_relation[at].Curvature;
      m_relation[at].Curvature = (m_axialCurvature + m_tendonCurvature) + m_relation[at].Curvature;
      const Point now = m_relation[at];
      respond(beam, step, now.Moment);
      if (base::numberOf(m_mu, "reference") < now.Moment) setMu(now.Moment);

      const std::array<double, 6> values = {m_load.value(),        m_displacement.value(),
                                            now.Moment.value(),    now.Curvature.value(),
                                            m_neutralAxis.value(), m_compression.value()};
      if (m_options.tableSolver) {
        m_transcript.add("row " + std::to_string(step));
        int column = 0;
        for (const double value : values) cell(column++, value);
        strainCells("Solid Strain ", m_solids, column);
        strainCells("Bar Strain ", m_bars, column);
        strainCells("Tendon Strain ", m_tendons, column);
        m_transcript.add("row ends");
      }
      std::string line = "line";
      Transcript::append(line, values);
      outputStrains(m_solids, line);
      outputStrains(m_bars, line);
      outputStrains(m_tendons, line);
      m_transcript.add(line);
      ++m_rows;
      m_transcript.add(state("current values"));
      m_transcript.add("charts " + std::to_string(step),
                       {now.Moment.value(), now.Curvature.value(), m_load.value(), m_displacement.value()});
      line = "pieces";
      for (int i = 0; i <= beam.HalfSpanFiberNumber - 1; ++i) {
        const auto piece = static_cast<std::size_t>(i);
        Transcript::append(
            line, std::array{m_fiberState[piece].Moment.value(), m_fiberState[piece].Curvature.value(),
                             m_deflection[piece].value()});
      }
      m_transcript.add(line);

      ++step;
      m_relation.emplace_back();
      Real& imposed = m_relation[static_cast<std::size_t>(step)].Curvature;
      if (m_desk.step == "Small") {
        if (imposed > m_options.SmallTo) {
          imposed = imposed + m_options.LargeStep;
          m_desk.step = "Large";
          m_transcript.add("step box: Large");
        } else {
          imposed = imposed + m_options.SmallStep;
        }
      } else if (m_desk.step == "Large") {
        imposed = imposed + m_options.LargeStep;
      } else {
        imposed = imposed + base::numberOf(m_desk.step, "reference");
      }
      if (imposed >= m_options.LargeTo) throw Over{JobOutcome::End::LoadingEnd, "Loading end."};
      waitWhilePaused();
      status("Loading");
      m_desk.doEvents();
    }
  }

  const JobOptions& m_options;
  Desk& m_desk;
  Transcript& m_transcript;
  materials::StressStrainContext& m_context;
  std::vector<model::BeamObject> m_beams;
  std::vector<Row<model::SolidObject>> m_solids;
  std::vector<Row<model::BarObject>> m_bars;
  std::vector<Row<model::TendonObject>> m_tendons;
  std::vector<model::AxialForceObject> m_axialForces;

  Real m_beamTop, m_beamBottom;
  Section m_d, m_x;
  Real m_uniformStrain, m_topStrain, m_neutralAxis;
  Real m_curvature;  ///< of the present stage
  Real m_imposed;
  Real m_compression, m_tension, m_moment;
  Real m_tendonMoment, m_axialMoment, m_tendonCurvature, m_axialCurvature;
  int m_outerIteration = 0;

  std::vector<Point> m_relation;
  std::vector<Point> m_fiberState;
  std::vector<int> m_fiberBracket;
  std::vector<Real> m_deflection;  ///< without that of midspan
  Real m_load, m_displacement;
  std::string m_mu;
  int m_rows = 0;
};

}  // namespace torvik::analysis::reference
