// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "model/objects.h"

namespace torvik::section {

/// The moment-curvature relation found so far, one point a step. It is asked for brackets by moment, at every
/// step for every piece of the beam; blocks of points keep their bounds so that a search steps over what can
/// not match.
class MomentCurvature {
 public:
  void append(double Moment, double Curvature);
  [[nodiscard]] std::size_t size() const { return m_moment.size(); }
  [[nodiscard]] double Moment(std::size_t j) const { return m_moment[j]; }
  [[nodiscard]] double Curvature(std::size_t j) const { return m_curvature[j]; }

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// The first j from `from` upward with the moment between those of points j and j + 1 (in either order,
  /// ends included); `kNone` where there is none.
  /// @param points  only the first so many are looked at
  [[nodiscard]] std::size_t bracketUpward(double moment, std::size_t from, std::size_t points) const;

  /// The first j from `from` downward to 1 with the moment between those of points j - 1 and j.
  [[nodiscard]] std::size_t bracketDownward(double moment, std::size_t from) const;

  /// Curvature on the line through points j and j + 1.
  /// @throws NumericFault DivisionByZero where both have one moment
  [[nodiscard]] double interpolated(double moment, std::size_t j) const;

 private:
  static constexpr std::size_t kBlock = 64;
  struct Bounds {
    double least;
    double greatest;
  };
  [[nodiscard]] bool isBetween(double moment, std::size_t j) const;
  [[nodiscard]] bool mayHold(double moment, std::size_t block) const;

  std::vector<double> m_moment;
  std::vector<double> m_curvature;
  std::vector<Bounds> m_blocks;  ///< block k: points 64 k to 64 k + 64, complete ones only
};

/// Half of a simply supported beam under two symmetric point loads, cut into `HalfSpanFiberNumber` pieces
/// from midspan outward. Turns the moment of a step into load, curvatures and deflections (docs/theory.md,
/// "The beam").
class BeamResponse {
 public:
  explicit BeamResponse(const model::BeamObject& beam);

  /// Takes the moment of step `Step`, a point of the relation; later ones take no part.
  /// @param baseCurvature  of the stages before loading: that of a piece whose moment is in no bracket
  /// @throws NumericFault DivisionByZero (shear span 0, two successive steps of one moment), Overflow (more
  /// steps
  ///         than 16 bits hold)
  void update(const MomentCurvature& relation, int Step, double baseCurvature);

  /// `FiberBracket`: where each piece's search last ended. With those of one step put back, the next one
  /// comes again.
  [[nodiscard]] const std::vector<std::int32_t>& brackets() const { return m_bracket; }
  void setBrackets(std::vector<std::int32_t> brackets) { m_bracket = std::move(brackets); }

  [[nodiscard]] double Load() const { return m_load; }                  ///< total of both point loads [N]
  [[nodiscard]] double Displacement() const { return m_displacement; }  ///< of midspan, downward [mm]

  [[nodiscard]] std::size_t pieceCount() const { return m_moment.size(); }
  [[nodiscard]] double place(std::size_t i) const;  ///< centre of piece i from midspan [mm]
  [[nodiscard]] std::span<const double> pieceMoments() const { return m_moment; }
  [[nodiscard]] std::span<const double> pieceCurvatures() const { return m_curvature; }
  /// Deflection at the centre of every piece [mm], worked out on demand: of all results it costs the most.
  [[nodiscard]] std::vector<double> Deflection() const;

 private:
  double m_span;
  double m_flexuralSpan;
  double m_shearSpan;
  double m_piece;
  std::vector<double> m_moment;
  std::vector<double> m_curvature;
  std::vector<std::int32_t> m_bracket;
  double m_load = 0;
  double m_rotation = 0;
  double m_displacement = 0;
};

}  // namespace torvik::section
