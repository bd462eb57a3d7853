// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "materials/stress_strain.h"
#include "model/objects.h"

namespace torvik::analysis {

/// The three stages of a job. They differ in how tendons strain and in whether the axial forces take part.
enum class Stage : std::uint8_t { Tendon, AxialForce, Loading };

/// Strain, stress and force of every row of a job, for one description of the strain over the section. Rows
/// stand in table order; the fields of all rows of a table stand side by side.
///
/// Signs: solids compression positive, bars and tendons tension positive. docs/theory.md, "State of the
/// section".
class SectionState {
 public:
  struct Rows {
    std::vector<double> Depth;   ///< [mm]
    std::vector<double> Area;    ///< of one piece [mm2]
    std::vector<double> Number;  ///< whole numbers
    std::vector<double>
        BaseStrain;  ///< `InitialStrain`, of tendons `IntroductionStrain`, or the last committed strain
    std::vector<double> CurrentStrain;
    std::vector<double> CurrentStress;  ///< [N/mm2]
    std::vector<double> CurrentForce;   ///< `CurrentStress` * `Area` * `Number` [N]
    [[nodiscard]] std::size_t size() const { return Depth.size(); }
  };

  /// Sums of an evaluation. Both forces are sums of non-negative terms [N].
  struct Forces {
    double CompressionForce = 0;
    double TensionForce = 0;
    double SectionMoment = 0;  ///< about the neutral axis [N mm]; of a uniform strain 0
  };

  /// @param job      rows in use; not kept
  /// @param context  what the laws keep; must outlive the state
  SectionState(const model::ObjectTables& job, materials::StressStrainContext& context);

  /// Every row gets the strain `UniformStrain` (compression positive) on top of its base strain.
  /// @throws InternalError 51 for a law, or in the stage Tendon a `Prestressing`, of an unknown name
  /// @throws NumericFault that names the row
  Forces EvaluateUniform(Stage stage, double UniformStrain);

  /// The added strain is `TopStrain` (compression positive) at depth 0 and zero at the depth `NeutralAxis`.
  /// @throws as `EvaluateUniform`, and NumericFault DivisionByZero where `NeutralAxis` is 0
  Forces EvaluateLinear(Stage stage, double TopStrain, double NeutralAxis);

  /// The current strains become the base strains.
  void CommitStrains();

  /// What the law of a tendon row gives for a strain, without touching the row.
  double tendonStress(std::size_t row, double strain);

  [[nodiscard]] const Rows& solids() const { return m_solids.rows; }
  [[nodiscard]] const Rows& bars() const { return m_bars.rows; }
  [[nodiscard]] const Rows& tendons() const { return m_tendons.rows; }

 private:
  /// Neighbouring rows [first, last) that have one law.
  template <class Law>
  struct Run {
    std::size_t first;
    std::size_t last;
    Law law;
  };
  template <class Law>
  struct Table {
    const char* name;
    Rows rows;
    std::vector<Run<Law>> runs;
  };
  enum class Prestressing : std::uint8_t { Pre, Post, Unknown };
  struct AxialForce {
    double Depth;
    double Force;
  };
  struct Uniform;
  struct Linear;

  template <class Law, class Row>
  static void fill(Table<Law>& table, const char* name, const std::vector<Row>& rows);
  template <class Law>
  void findStresses(Table<Law>& table);
  template <class Profile>
  void strainTendons(Stage stage, const Profile& profile);
  template <class Profile>
  Forces evaluate(Stage stage, const Profile& profile);
  template <class Law>
  void checkTable(const Table<Law>& table);

  Table<materials::SolidLaw> m_solids;
  Table<materials::BarLaw> m_bars;
  Table<materials::TendonLaw> m_tendons;
  std::vector<Prestressing> m_prestressing;
  std::map<std::size_t, std::string> m_unknownPrestressing;  ///< text by row, for the message
  std::vector<AxialForce> m_axialForces;
  materials::StressStrainContext* m_context;
};

}  // namespace torvik::analysis
