// SPDX-License-Identifier: GPL-3.0-or-later
#include "section/section.h"

#include <cmath>

#include "base/fault.h"

namespace torvik::section {

namespace {

using base::NumericFault;
using materials::StressStrainContext;

double baseStrainOf(const model::SolidObject& row) {
  return row.InitialStrain;
}
double baseStrainOf(const model::BarObject& row) {
  return row.InitialStrain;
}
double baseStrainOf(const model::TendonObject& row) {
  return row.IntroductionStrain;
}

// The profiles as the loops over the rows use them: the strain of a solid, that of steel, and the lever of a
// force. Each of these loops runs once a trial over all fibres: plain pointers without overlap let the
// compiler take several rows at a time.

struct AddedUniform {
  static constexpr bool kHasMoment = false;
  double U;

  [[nodiscard]] double solid(double base, double) const { return base + U; }
  [[nodiscard]] double steel(double base, double) const { return base - U; }
  [[nodiscard]] double lever(double) const { return 0; }
};

struct AddedPlane {
  static constexpr bool kHasMoment = true;
  double T;
  double N;

  [[nodiscard]] double solid(double base, double D) const { return base - ((D - N) * T) / N; }
  [[nodiscard]] double steel(double base, double D) const { return ((D - N) * T) / N + base; }
  [[nodiscard]] double lever(double D) const { return D - N; }
};

struct AddedAtDepth {
  static constexpr bool kHasMoment = true;
  double strain;
  double depth;
  double curvature;

  [[nodiscard]] double added(double D) const { return strain - (D - depth) * curvature; }
  [[nodiscard]] double solid(double base, double D) const { return base + added(D); }
  [[nodiscard]] double steel(double base, double D) const { return base - added(D); }
  [[nodiscard]] double lever(double D) const { return D - depth; }
};

template <class Use>
auto withAdded(const Profile& profile, const Use& use) {
  if (const auto* uniform = std::get_if<Uniform>(&profile)) return use(AddedUniform{uniform->UniformStrain});
  if (const auto* at = std::get_if<AtDepth>(&profile))
    return use(AddedAtDepth{at->strain, at->depth, at->curvature});
  const Plane& plane = std::get<Plane>(profile);
  if (plane.NeutralAxis == 0)
    throw Fault(NumericFault::Kind::DivisionByZero, {}, "strain profile: the neutral axis depth is 0");
  return use(AddedPlane{plane.TopStrain, plane.NeutralAxis});
}

template <class Strain>
void strainRows(const std::vector<double>& Depth, const std::vector<double>& base, std::vector<double>& out,
                const Strain& strain) {
  const double* __restrict depths = Depth.data();
  const double* __restrict bases = base.data();
  double* __restrict strains = out.data();
  const std::size_t count = Depth.size();
  for (std::size_t i = 0; i < count; ++i) strains[i] = strain(bases[i], depths[i]);
}

/// What a law throws becomes a fault of its row.
template <class Evaluate>
auto inRow(RowOf row, const Evaluate& evaluate) {
  try {
    return evaluate();
  } catch (const NumericFault& fault) {
    throw Fault(fault.kind(), row, fault.where());
  } catch (const base::InternalError& error) {
    throw Fault({}, row, error.impossibleCase());
  }
}

/// After the flags told of a fault: finds the row, or nothing where the flag was raised on a path not taken.
void checkTable(model::ObjectKind table, const RowValues& values) {
  for (std::size_t i = 0; i < values.strain.size(); ++i) {
    const auto check = [&](double value, const char* what) {
      if (!std::isfinite(value))
        throw Fault(std::isnan(value) ? NumericFault::Kind::InvalidOperation : NumericFault::Kind::Overflow,
                    RowOf{table, i}, what);
    };
    check(values.strain[i], "strain");
    check(values.stress[i], "stress");
    check(values.force[i], "force");
  }
}

void checkSum(double sum, const char* what) {
  try {
    base::finite(sum, what);
  } catch (const NumericFault& fault) {
    throw Fault(fault.kind(), {}, fault.where());
  }
}

}  // namespace

template <class Law, class Row>
void Section::fill(Table<Law>& table, std::vector<double>& initialStrains, const std::vector<Row>& rows,
                   StressStrainContext& files) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    table.Depth.push_back(row.Depth);
    table.Area.push_back(row.Area);
    table.Number.push_back(row.Number);
    initialStrains.push_back(baseStrainOf(row));
    if (i > 0 && materials::sameLaw(rows[i - 1], row))
      table.stretches.back().last = i + 1;
    else
      table.stretches.push_back({i, i + 1, Law(row, files)});
  }
}

Section::Section(const model::ObjectTables& job, StressStrainContext& files) {
  fill(m_solids, m_initialStrains.solids, job.Solids, files);
  fill(m_bars, m_initialStrains.bars, job.Bars, files);
  fill(m_tendons, m_initialStrains.tendons, job.Tendons, files);
  for (std::size_t i = 0; i < job.Tendons.size(); ++i) {
    const model::TendonObject& row = job.Tendons[i];
    m_prestressing.push_back(row.Prestressing == "Pre-tensioning"    ? Prestressing::Pre
                             : row.Prestressing == "Post-tensioning" ? Prestressing::Post
                                                                     : Prestressing::Unknown);
    if (m_prestressing.back() == Prestressing::Unknown) m_unknownPrestressing[i] = row.Prestressing;
  }
  for (const model::AxialForceObject& row : job.AxialForces) m_axialForces.push_back({row.Depth, row.Force});
}

State Section::emptyState() const {
  const auto values = [](std::size_t count) {
    const std::vector<double> zeros(count, 0.0);
    return RowValues{zeros, zeros, zeros};
  };
  return {values(m_solids.size()), values(m_bars.size()), values(m_tendons.size())};
}

template <class Law>
void Section::findStresses(const Table<Law>& table, RowValues& values, StressStrainContext& laws) {
  const std::span<const double> strains(values.strain);
  const std::span<double> stresses(values.stress);
  for (const Stretch<Law>& stretch : table.stretches) {
    const std::size_t count = stretch.last - stretch.first;
    if (stretch.law.stresses(strains.subspan(stretch.first, count), stresses.subspan(stretch.first, count),
                             laws))
      continue;
    for (std::size_t i = stretch.first; i < stretch.last; ++i)
      stresses[i] = inRow({table.kind, i}, [&] { return stretch.law.stress(strains[i], laws); });
  }
}

template <class Added>
void Section::strainTendons(const std::vector<double>& base, TendonsFollow follow, const Added& added,
                            RowValues& values) const {
  for (std::size_t i = 0; i < m_tendons.size(); ++i) {
    const bool asks = follow == TendonsFollow::Prestressing;
    if (asks && m_prestressing[i] == Prestressing::Unknown)
      throw Fault({}, RowOf{model::ObjectKind::Tendon, i},
                  "Prestressing \"" + base::printable(m_unknownPrestressing.at(i)) + "\"");
    const bool isFixed = asks && m_prestressing[i] == Prestressing::Post;
    values.strain[i] = isFixed ? base[i] : added.steel(base[i], m_tendons.Depth[i]);
  }
}

template <class Added>
Forces Section::evaluateAdded(const BaseStrains& base, const Conditions& conditions, const Added& added,
                              StressStrainContext& laws, State& rows) const {
  double compression = 0.0;
  double tension = 0.0;
  double moment = 0.0;

  strainRows(m_solids.Depth, base.solids, rows.solids.strain,
             [&](double strain, double depth) { return added.solid(strain, depth); });
  findStresses(m_solids, rows.solids, laws);
  {
    const double* __restrict depth = m_solids.Depth.data();
    const double* __restrict area = m_solids.Area.data();
    const double* __restrict number = m_solids.Number.data();
    const double* __restrict stress = rows.solids.stress.data();
    double* __restrict forces = rows.solids.force.data();
    const std::size_t count = m_solids.size();
    for (std::size_t i = 0; i < count; ++i) {
      const double force = stress[i] * area[i] * number[i];
      forces[i] = force;
      if (force > 0)
        compression += force;
      else
        tension -= force;
      if constexpr (Added::kHasMoment) moment -= added.lever(depth[i]) * force;
    }
  }

  const auto sumSteel = [&](const auto& table, RowValues& values) {
    for (std::size_t i = 0; i < table.size(); ++i) {
      const double force = values.stress[i] * table.Area[i] * table.Number[i];
      values.force[i] = force;
      if (force < 0)
        compression -= force;
      else
        tension += force;
      if constexpr (Added::kHasMoment) moment += added.lever(table.Depth[i]) * force;
    }
  };
  strainRows(m_bars.Depth, base.bars, rows.bars.strain,
             [&](double strain, double depth) { return added.steel(strain, depth); });
  findStresses(m_bars, rows.bars, laws);
  sumSteel(m_bars, rows.bars);
  strainTendons(base.tendons, conditions.tendons, added, rows.tendons);
  findStresses(m_tendons, rows.tendons, laws);
  sumSteel(m_tendons, rows.tendons);

  for (const AxialForce& axial : conditions.axial) {
    if (axial.Force < 0)
      compression -= axial.Force;
    else
      tension += axial.Force;
    if constexpr (Added::kHasMoment) moment += added.lever(axial.Depth) * axial.Force;
  }

  if (base::fpflags::raised()) {
    base::fpflags::clear();
    checkTable(model::ObjectKind::Solid, rows.solids);
    checkTable(model::ObjectKind::Bar, rows.bars);
    checkTable(model::ObjectKind::Tendon, rows.tendons);
    checkSum(compression, "sum of compression");
    checkSum(tension, "sum of tension");
    checkSum(moment, "moment of the section");
  }
  return {compression, tension, moment};
}

Forces Section::evaluate(const BaseStrains& base, const Conditions& conditions, const Profile& profile,
                         StressStrainContext& laws, State& rows) const {
  return withAdded(profile,
                   [&](const auto& added) { return evaluateAdded(base, conditions, added, laws, rows); });
}

double Section::strain(RowOf row, const BaseStrains& base, const Profile& profile) const {
  return withAdded(profile, [&](const auto& added) {
    switch (row.table) {
      case model::ObjectKind::Solid:
        return added.solid(base.solids.at(row.row), m_solids.Depth.at(row.row));
      case model::ObjectKind::Bar:
        return added.steel(base.bars.at(row.row), m_bars.Depth.at(row.row));
      case model::ObjectKind::Tendon:
        return added.steel(base.tendons.at(row.row), m_tendons.Depth.at(row.row));
      default:
        throw base::InternalError(base::kImpossibleCase, "strain of a row without a law");
    }
  });
}

double Section::tendonStress(std::size_t row, double strain, StressStrainContext& laws) const {
  for (const Stretch<materials::TendonLaw>& stretch : m_tendons.stretches)
    if (row < stretch.last)
      return inRow({model::ObjectKind::Tendon, row}, [&] { return stretch.law.stress(strain, laws); });
  throw base::InternalError(base::kImpossibleCase, "stress of a tendon that is not there");
}

}  // namespace torvik::section
