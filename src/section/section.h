// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "materials/stress_strain.h"
#include "model/objects.h"
#include "section/fault.h"
#include "section/values.h"

/// One cross section: rows with laws, and what they answer to a strain. Signs: solids compression positive,
/// bars and tendons tension positive; an added strain counts compression positive. docs/theory.md, "State of
/// the section".
namespace torvik::section {

// The strain that is added over the depth.

/// The same everywhere.
struct Uniform {
  double UniformStrain = 0;
};
/// `TopStrain` at depth 0 and nothing at the depth `NeutralAxis`, which is not 0: ((D - N) * T) / N.
struct Plane {
  double TopStrain = 0;
  double NeutralAxis = 0;  ///< [mm]
};
/// `strain` at a depth, falling by `curvature` with every millimetre below it; a curvature of 0 is as good as
/// any.
struct AtDepth {
  double strain = 0;
  double depth = 0;      ///< [mm]
  double curvature = 0;  ///< [1/mm]
};
using Profile = std::variant<Uniform, Plane, AtDepth>;

struct AxialForce {
  double Depth = 0;  ///< [mm]
  double Force = 0;  ///< compression positive [N]
};

enum class TendonsFollow : std::uint8_t {
  Section,       ///< all tendons strain with the section
  Prestressing,  ///< "Post-tensioning" tendons keep their base strain
};

/// What takes part in a balance besides the rows.
struct Conditions {
  std::span<const AxialForce> axial;
  TendonsFollow tendons = TendonsFollow::Section;
};

/// Sums of an evaluation. Both forces are sums of non-negative terms [N].
struct Forces {
  double CompressionForce = 0;
  double TensionForce = 0;
  double SectionMoment =
      0;  ///< about the neutral axis, or the depth of `AtDepth` [N mm]; 0 of a uniform strain

  [[nodiscard]] double outOfBalance() const { return CompressionForce - TensionForce; }
};

/// Rows and laws of a job, and no state: what changes from one evaluation to the next comes as an argument.
class Section {
 public:
  /// @param job    rows in use; not kept
  /// @param files  gives user files their numbers, which stand until its next job
  Section(const model::ObjectTables& job, materials::StressStrainContext& files);

  /// `InitialStrain` of solids and bars, `IntroductionStrain` of tendons.
  [[nodiscard]] const BaseStrains& initialStrains() const { return m_initialStrains; }
  /// The axial forces of the job.
  [[nodiscard]] std::span<const AxialForce> axialForces() const { return m_axialForces; }
  /// Room for the values of all rows, all 0.
  [[nodiscard]] State emptyState() const;

  /// Strain, stress and force of every row, and their sums in table order.
  /// @param laws  where an answer is missing, or a file not read, its prompt is asked and the file read in
  /// the
  ///              order of the rows
  /// @param rows  of this section; after a fault it holds what was worked out before it
  /// @throws Fault; InputError as whoever answers
  Forces evaluate(const BaseStrains& base, const Conditions& conditions, const Profile& profile,
                  materials::StressStrainContext& laws, State& rows) const;

  /// The strain that such an evaluation gives to one row, tendons following the section.
  [[nodiscard]] double strain(RowOf row, const BaseStrains& base, const Profile& profile) const;

  /// What the law of a tendon row gives for a strain. @throws Fault
  double tendonStress(std::size_t row, double strain, materials::StressStrainContext& laws) const;

 private:
  /// Neighbouring rows [first, last) that have one law.
  template <class Law>
  struct Stretch {
    std::size_t first;
    std::size_t last;
    Law law;
  };
  template <class Law>
  struct Table {
    model::ObjectKind kind;
    std::vector<double> Depth;   ///< [mm]
    std::vector<double> Area;    ///< of one piece [mm2]
    std::vector<double> Number;  ///< whole numbers
    std::vector<Stretch<Law>> stretches;
    [[nodiscard]] std::size_t size() const { return Depth.size(); }
  };
  enum class Prestressing : std::uint8_t { Pre, Post, Unknown };

  template <class Law, class Row>
  static void fill(Table<Law>& table, std::vector<double>& initialStrains, const std::vector<Row>& rows,
                   materials::StressStrainContext& files);
  template <class Law>
  static void findStresses(const Table<Law>& table, RowValues& values, materials::StressStrainContext& laws);
  template <class Added>
  void strainTendons(const std::vector<double>& base, TendonsFollow follow, const Added& added,
                     RowValues& values) const;
  template <class Added>
  Forces evaluateAdded(const BaseStrains& base, const Conditions& conditions, const Added& added,
                       materials::StressStrainContext& laws, State& rows) const;

  Table<materials::SolidLaw> m_solids{model::ObjectKind::Solid, {}, {}, {}, {}};
  Table<materials::BarLaw> m_bars{model::ObjectKind::Bar, {}, {}, {}, {}};
  Table<materials::TendonLaw> m_tendons{model::ObjectKind::Tendon, {}, {}, {}, {}};
  BaseStrains m_initialStrains;
  std::vector<Prestressing> m_prestressing;
  std::map<std::size_t, std::string> m_unknownPrestressing;  ///< text by row, for the message
  std::vector<AxialForce> m_axialForces;
};

}  // namespace torvik::section
