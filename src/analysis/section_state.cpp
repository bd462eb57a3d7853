// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/section_state.h"

#include <cmath>
#include <span>
#include <string>

#include "base/fault.h"
#include "base/number_text.h"

namespace torvik::analysis {

namespace {

using base::NumericFault;

std::string nameOfRow(const char* table, std::size_t row) {
  return std::string(table) + " " + base::plainText(static_cast<long long>(row) + 1) + " of the job";
}

double baseStrainOf(const model::SolidObject& row) {
  return row.InitialStrain;
}
double baseStrainOf(const model::BarObject& row) {
  return row.InitialStrain;
}
double baseStrainOf(const model::TendonObject& row) {
  return row.IntroductionStrain;
}

}  // namespace

/// The same strain everywhere.
struct SectionState::Uniform {
  static constexpr bool kHasMoment = false;
  double U;

  void strainSolids(Rows& rows) const {
    for (std::size_t i = 0; i < rows.size(); ++i) rows.CurrentStrain[i] = rows.BaseStrain[i] + U;
  }
  void strainSteel(Rows& rows) const {
    for (std::size_t i = 0; i < rows.size(); ++i) rows.CurrentStrain[i] = steel(rows, i);
  }
  [[nodiscard]] double steel(const Rows& rows, std::size_t i) const { return rows.BaseStrain[i] - U; }
  [[nodiscard]] double lever(double) const { return 0; }
};

/// A plane through zero at depth N. Each of these loops runs once a trial over all fibres: plain pointers
/// without overlap let the compiler take several rows at a time.
struct SectionState::Linear {
  static constexpr bool kHasMoment = true;
  double T;
  double N;

  void strainSolids(Rows& rows) const {
    const double* __restrict depth = rows.Depth.data();
    const double* __restrict base = rows.BaseStrain.data();
    double* __restrict strain = rows.CurrentStrain.data();
    const std::size_t count = rows.size();
    for (std::size_t i = 0; i < count; ++i) strain[i] = base[i] - ((depth[i] - N) * T) / N;
  }
  void strainSteel(Rows& rows) const {
    for (std::size_t i = 0; i < rows.size(); ++i) rows.CurrentStrain[i] = steel(rows, i);
  }
  [[nodiscard]] double steel(const Rows& rows, std::size_t i) const {
    return ((rows.Depth[i] - N) * T) / N + rows.BaseStrain[i];
  }
  [[nodiscard]] double lever(double depth) const { return depth - N; }
};

template <class Law, class Row>
void SectionState::fill(Table<Law>& table, const char* name, const std::vector<Row>& rows) {
  table.name = name;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    table.rows.Depth.push_back(row.Depth);
    table.rows.Area.push_back(row.Area);
    table.rows.Number.push_back(row.Number);
    table.rows.BaseStrain.push_back(baseStrainOf(row));
    if (i > 0 && materials::sameLaw(rows[i - 1], row))
      table.runs.back().last = i + 1;
    else
      table.runs.push_back({i, i + 1, Law(row)});
  }
  table.rows.CurrentStrain.assign(rows.size(), 0.0);
  table.rows.CurrentStress.assign(rows.size(), 0.0);
  table.rows.CurrentForce.assign(rows.size(), 0.0);
}

SectionState::SectionState(const model::ObjectTables& job, materials::StressStrainContext& context)
    : m_context(&context) {
  fill(m_solids, "Solid", job.Solids);
  fill(m_bars, "Bar", job.Bars);
  fill(m_tendons, "Tendon", job.Tendons);
  for (std::size_t i = 0; i < job.Tendons.size(); ++i) {
    const model::TendonObject& row = job.Tendons[i];
    m_prestressing.push_back(row.Prestressing == "Pre-tensioning"    ? Prestressing::Pre
                             : row.Prestressing == "Post-tensioning" ? Prestressing::Post
                                                                     : Prestressing::Unknown);
    if (m_prestressing.back() == Prestressing::Unknown) m_unknownPrestressing[i] = row.Prestressing;
  }
  for (const model::AxialForceObject& row : job.AxialForces) m_axialForces.push_back({row.Depth, row.Force});
}

template <class Law>
void SectionState::findStresses(Table<Law>& table) {
  const std::span<const double> strains(table.rows.CurrentStrain);
  const std::span<double> stresses(table.rows.CurrentStress);
  for (Run<Law>& run : table.runs) {
    if (run.law.isPlain()) {
      const std::size_t count = run.last - run.first;
      run.law.stresses(strains.subspan(run.first, count), stresses.subspan(run.first, count));
      continue;
    }
    std::size_t i = run.first;
    try {
      for (; i < run.last; ++i) stresses[i] = run.law.stress(strains[i], *m_context);
    } catch (const NumericFault& fault) {
      throw fault.within(nameOfRow(table.name, i));
    } catch (const base::InternalError& error) {
      throw error.within(nameOfRow(table.name, i));
    }
  }
}

template <class Profile>
void SectionState::strainTendons(Stage stage, const Profile& profile) {
  Rows& rows = m_tendons.rows;
  if (stage != Stage::Tendon) {
    profile.strainSteel(rows);
    return;
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    switch (m_prestressing[i]) {
      case Prestressing::Pre:
        rows.CurrentStrain[i] = profile.steel(rows, i);
        break;
      case Prestressing::Post:
        rows.CurrentStrain[i] = rows.BaseStrain[i];
        break;
      case Prestressing::Unknown:
        throw base::InternalError(base::kImpossibleCase, nameOfRow("Tendon", i) + ": Prestressing \"" +
                                                             base::printable(m_unknownPrestressing.at(i)) +
                                                             "\"");
    }
  }
}

/// After the flags told of a fault: finds the row, or nothing where the flag was raised on a path not taken.
template <class Law>
void SectionState::checkTable(const Table<Law>& table) {
  const Rows& rows = table.rows;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto check = [&](double value, const char* what) {
      if (!std::isfinite(value))
        throw NumericFault(
            std::isnan(value) ? NumericFault::Kind::InvalidOperation : NumericFault::Kind::Overflow, what)
            .within(nameOfRow(table.name, i));
    };
    check(rows.CurrentStrain[i], "strain");
    check(rows.CurrentStress[i], "stress");
    check(rows.CurrentForce[i], "force");
  }
}

template <class Profile>
SectionState::Forces SectionState::evaluate(Stage stage, const Profile& profile) {
  double compression = 0.0;
  double tension = 0.0;
  double moment = 0.0;

  profile.strainSolids(m_solids.rows);
  findStresses(m_solids);
  {
    const Rows& rows = m_solids.rows;
    const double* __restrict depth = rows.Depth.data();
    const double* __restrict area = rows.Area.data();
    const double* __restrict number = rows.Number.data();
    const double* __restrict stress = rows.CurrentStress.data();
    double* __restrict forces = m_solids.rows.CurrentForce.data();
    const std::size_t count = rows.size();
    for (std::size_t i = 0; i < count; ++i) {
      const double force = stress[i] * area[i] * number[i];
      forces[i] = force;
      if (force > 0)
        compression += force;
      else
        tension -= force;
      if constexpr (Profile::kHasMoment) moment -= profile.lever(depth[i]) * force;
    }
  }

  const auto sumSteel = [&](Rows& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const double force = rows.CurrentStress[i] * rows.Area[i] * rows.Number[i];
      rows.CurrentForce[i] = force;
      if (force < 0)
        compression -= force;
      else
        tension += force;
      if constexpr (Profile::kHasMoment) moment += profile.lever(rows.Depth[i]) * force;
    }
  };
  profile.strainSteel(m_bars.rows);
  findStresses(m_bars);
  sumSteel(m_bars.rows);
  strainTendons(stage, profile);
  findStresses(m_tendons);
  sumSteel(m_tendons.rows);

  if (stage != Stage::Tendon) {
    for (const AxialForce& axial : m_axialForces) {
      if (axial.Force < 0)
        compression -= axial.Force;
      else
        tension += axial.Force;
      if constexpr (Profile::kHasMoment) moment += profile.lever(axial.Depth) * axial.Force;
    }
  }

  if (base::fpflags::raised()) {
    base::fpflags::clear();
    checkTable(m_solids);
    checkTable(m_bars);
    checkTable(m_tendons);
    base::finite(compression, "sum of compression");
    base::finite(tension, "sum of tension");
    base::finite(moment, "moment of the section");
  }
  return {compression, tension, moment};
}

SectionState::Forces SectionState::EvaluateUniform(Stage stage, double UniformStrain) {
  return evaluate(stage, Uniform{UniformStrain});
}

SectionState::Forces SectionState::EvaluateLinear(Stage stage, double TopStrain, double NeutralAxis) {
  if (NeutralAxis == 0)
    throw NumericFault(NumericFault::Kind::DivisionByZero, "strain profile: the neutral axis depth is 0");
  return evaluate(stage, Linear{TopStrain, NeutralAxis});
}

void SectionState::CommitStrains() {
  for (Rows* rows : {&m_solids.rows, &m_bars.rows, &m_tendons.rows}) rows->BaseStrain = rows->CurrentStrain;
}

double SectionState::tendonStress(std::size_t row, double strain) {
  for (Run<materials::TendonLaw>& run : m_tendons.runs)
    if (row < run.last) {
      try {
        return run.law.stress(strain, *m_context);
      } catch (const NumericFault& fault) {
        throw fault.within(nameOfRow("Tendon", row));
      } catch (const base::InternalError& error) {
        throw error.within(nameOfRow("Tendon", row));
      }
    }
  throw base::InternalError(base::kImpossibleCase, nameOfRow("Tendon", row));
}

}  // namespace torvik::analysis
