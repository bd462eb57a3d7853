// SPDX-License-Identifier: GPL-3.0-or-later
#include "section/beam_response.h"

#include <algorithm>
#include <limits>

#include "base/fault.h"

namespace torvik::section {

using base::divide;
using base::NumericFault;

void MomentCurvature::append(double Moment, double Curvature) {
  m_moment.push_back(Moment);
  m_curvature.push_back(Curvature);
  if (m_moment.size() % kBlock == 1 && m_moment.size() > 1) {
    const auto [least, greatest] = std::minmax_element(m_moment.end() - kBlock - 1, m_moment.end());
    m_blocks.push_back({*least, *greatest});
  }
}

bool MomentCurvature::isBetween(double moment, std::size_t j) const {
  const double a = m_moment[j];
  const double b = m_moment[j + 1];
  return (a <= moment && moment <= b) || (b <= moment && moment <= a);
}

bool MomentCurvature::mayHold(double moment, std::size_t block) const {
  return block >= m_blocks.size() || (m_blocks[block].least <= moment && moment <= m_blocks[block].greatest);
}

std::size_t MomentCurvature::bracketUpward(double moment, std::size_t from, std::size_t points) const {
  for (std::size_t j = from; j + 1 < points;) {
    if (j % kBlock == 0 && !mayHold(moment, j / kBlock)) {
      j += kBlock;
      continue;
    }
    if (isBetween(moment, j)) return j;
    ++j;
  }
  return kNone;
}

std::size_t MomentCurvature::bracketDownward(double moment, std::size_t from) const {
  for (std::size_t j = from; j >= 1;) {
    if (j % kBlock == 0 && !mayHold(moment, j / kBlock - 1)) {
      j -= kBlock;
      continue;
    }
    if (isBetween(moment, j - 1)) return j;
    --j;
  }
  return kNone;
}

double MomentCurvature::interpolated(double moment, std::size_t j) const {
  const double slope = divide(m_curvature[j + 1] - m_curvature[j], m_moment[j + 1] - m_moment[j],
                              "curvature of a piece of the beam: two successive steps have one moment");
  return slope * (moment - m_moment[j]) + m_curvature[j];
}

BeamResponse::BeamResponse(const model::BeamObject& beam)
    : m_span(beam.Span),
      m_flexuralSpan(beam.FlexuralSpan),
      m_shearSpan(beam.ShearSpan),
      m_piece(beam.HalfSpanFiberLength) {
  const auto count = static_cast<std::size_t>(std::max<int>(beam.HalfSpanFiberNumber, 0));
  m_moment.assign(count, 0.0);
  m_curvature.assign(count, 0.0);
  m_bracket.assign(count, 0);
}

double BeamResponse::place(std::size_t i) const {
  return (0.5 + static_cast<double>(i)) * m_piece;
}

void BeamResponse::update(const MomentCurvature& relation, int Step, double baseCurvature) {
  const auto last = static_cast<std::size_t>(Step);
  const double moment = relation.Moment(last);
  m_load = divide(moment, m_shearSpan / 2, "load, M / (ShearSpan / 2)");
  // Brackets are counted in 16 bits: the row of step 32768 is the last one, with or without pieces.
  if (Step - 1 > std::numeric_limits<std::int16_t>::max())
    throw NumericFault(NumericFault::Kind::Overflow, "step number in the curvatures along the beam");

  const double slopeOfMoment = divide(moment, m_shearSpan, "moment along the beam, M / ShearSpan");
  m_rotation = 0;
  for (std::size_t i = 0; i < m_moment.size(); ++i) {
    double& M = m_moment[i];
    M = moment;
    if (m_flexuralSpan / 2 <= place(i))
      M = base::finite(moment - (place(i) - m_flexuralSpan / 2) * slopeOfMoment, "moment along the beam");

    m_curvature[i] = baseCurvature;
    const auto from = static_cast<std::size_t>(m_bracket[i]);
    // The two searches keep different ends of the bracket, on purpose: upward the lower one, downward the
    // upper one.
    if (const std::size_t lower = relation.bracketUpward(M, from, last + 1);
        lower != MomentCurvature::kNone) {
      m_curvature[i] = relation.interpolated(M, lower);
      m_bracket[i] = static_cast<std::int32_t>(lower);
    } else if (const std::size_t upper = relation.bracketDownward(M, from); upper != MomentCurvature::kNone) {
      m_curvature[i] = relation.interpolated(M, upper - 1);
      m_bracket[i] = static_cast<std::int32_t>(upper);
    }
    m_rotation = m_rotation + m_curvature[i] * m_piece;
  }

  double sum = 0;
  for (std::size_t j = 0; j < m_curvature.size(); ++j)
    sum += (m_piece * m_curvature[j]) * m_piece * (0.5 + static_cast<double>(j));
  m_displacement = base::finite((m_span / 2) * m_rotation - sum, "displacement");
}

std::vector<double> BeamResponse::Deflection() const {
  const std::size_t count = m_curvature.size();
  std::vector<double> deflection(count);
  for (std::size_t i = 0; i < count; ++i) {
    double sum = 0;
    for (std::size_t j = i + 1; j < count; ++j)
      sum += (m_piece * m_curvature[j]) * m_piece * static_cast<double>(j - i);
    deflection[i] = (m_span / 2 - (0.5 + static_cast<double>(i)) * m_piece) * m_rotation - sum;
  }
  return deflection;
}

}  // namespace torvik::section
