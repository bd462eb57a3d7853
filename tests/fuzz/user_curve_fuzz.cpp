// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "base/fault.h"
#include "base/number_text.h"
#include "base/temporary_folder.h"
#include "fuzz/fuzz_targets.h"
#include "materials/user_curve.h"

namespace torvik::fuzz {

namespace {

using materials::CurvePlace;
using materials::CurveRecords;
using materials::UserCurves;

std::vector<double> numbersOf(std::string_view text) {
  std::vector<double> numbers;
  for (std::size_t at = 0; at < text.size() && numbers.size() < 32;) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    if (const auto number = base::toNumber(text.substr(at, end - at))) numbers.push_back(*number);
    at = end + 1;
  }
  return numbers;
}

std::string_view takePart(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('#'), rest.size());
  const std::string_view part = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return part;
}

CurveRecords checkedCurve(std::string_view text) {
  CurveRecords curve = materials::parseCurve(text, "curve.txt");
  const auto whole = static_cast<std::size_t>(curve.PointCount);
  expect(curve.Strains.size() == curve.Stresses.size(), "both columns have one length");
  expect(curve.Strains.size() >= whole && curve.Strains.size() <= whole + 1, "at most one record is bad");
  if (curve.Strains.size() > whole)
    expect(!curve.failure.empty() && curve.Strains.back() == 0, "a bad record is told, its strain is 0");
  if (!curve.failure.empty()) expectOneLine(curve.failure);
  for (std::size_t i = 0; i < curve.Strains.size(); ++i)
    expect(std::isfinite(curve.Strains[i]) && std::isfinite(curve.Stresses[i]), "records are finite");
  return curve;
}

bool isRising(const CurveRecords& curve) {
  return std::adjacent_find(curve.Strains.begin(), curve.Strains.end(), std::greater_equal<>()) ==
         curve.Strains.end();
}

/// Within the range of any segment that holds the strain; 0 outside all, and at the very first point where
/// the search comes from below.
void expectOnCurve(double stress, double strain, const CurveRecords& curve) {
  const std::size_t count = curve.Strains.size();
  bool inside = false;
  for (std::size_t i = 0; i + 1 < count; ++i) {
    if (strain < curve.Strains[i] || curve.Strains[i + 1] < strain) continue;
    inside = true;
    const auto [low, high] = std::minmax(curve.Stresses[i], curve.Stresses[i + 1]);
    const double rounding =
        1e-12 * (std::fabs(low) + std::fabs(high)) +
        2 * std::numeric_limits<double>::denorm_min() * (curve.Strains[i + 1] - curve.Strains[i]);
    if (low - rounding <= stress && stress <= high + rounding) return;
  }
  expect((!inside || strain == curve.Strains.front()) && stress == 0,
         "a stress lies on the curve: " + base::plainText(stress) + " at " + base::plainText(strain));
}

}  // namespace

void userCurve(std::string_view bytes) {
  static const tests::TemporaryFolder folder;
  const std::vector<double> strains = numbersOf(takePart(bytes));
  const std::string_view texts[] = {takePart(bytes), bytes};
  const CurveRecords curves[] = {checkedCurve(texts[0]), checkedCurve(texts[1])};
  const std::string names[] = {folder / "a.txt", folder / "b.txt"};
  for (std::size_t i = 0; i < 2; ++i) std::ofstream(names[i], std::ios::binary) << texts[i];

  int reports = 0;
  const UserCurves::Report report = [&](const std::string& caption, const std::string& text) {
    expect(caption.ends_with(" fncSSBarFile"), "the caption names the function");
    expectOneLine(text);
    ++reports;
  };
  UserCurves one("fncSSBarFile");
  UserCurves two("fncSSBarFile");
  CurvePlace wandering;  // goes to and fro on the first file
  CurvePlace shared;     // changes its file at every call
  const bool regular = curves[0].failure.empty() && curves[0].PointCount > 0 && isRising(curves[0]);
  for (std::size_t i = 0; i < strains.size(); ++i) {
    base::fpflags::clear();
    try {
      const double stress = one.stress(strains[i], one.numberOf(names[0]), wandering, report);
      // What overflows on the way raises the flags.
      expect(std::isfinite(stress) || base::fpflags::raised(), "a stress is finite");
      if (regular && std::isfinite(stress)) expectOnCurve(stress, strains[i], curves[0]);
    } catch (const base::NumericFault& fault) {
      expectOneLine(fault.what());
      expect(!regular || fault.kind() == base::NumericFault::Kind::Overflow, "a rising curve has no fault");
    }
    try {
      two.stress(strains[i], two.numberOf(names[i % 2]), shared, report);
      if (i % 5 == 4) two.startJob(shared);
    } catch (const base::NumericFault& fault) {
      expectOneLine(fault.what());
    }
  }
  expect(reports == 0 || !curves[0].failure.empty() || !curves[1].failure.empty(), "only a failure is told");
  base::fpflags::clear();
}

}  // namespace torvik::fuzz
