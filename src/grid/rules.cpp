// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/rules.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "base/errors.h"
#include "base/fault.h"
#include "base/number_text.h"
#include "materials/designations.h"

namespace torvik::grid {

namespace {

constexpr Derived kShearSpan{"ShearSpan", Formula::HalfDifference, "Span", "FlexuralSpan"};
constexpr Derived kFibreLength{"HalfSpanFiberLength", Formula::HalfQuotient, "Span", "HalfSpanFiberNumber"};

constexpr Derived kOfSpan[] = {kShearSpan, kFibreLength};
constexpr Derived kOfFlexuralSpan[] = {kShearSpan};
constexpr Derived kOfFibreNumber[] = {kFibreLength};
constexpr Derived kOfSides[] = {{"Area", Formula::Product, "Width", "Height"}};
constexpr Derived kOfFlexure[] = {{"FlexuralStrain", Formula::Quotient, "FlexuralStress", "ElasticModulus"}};
constexpr Derived kOfYield[] = {{"YieldStrain", Formula::Quotient, "YieldStress", "ElasticModulus"}};
constexpr Derived kOfFile[] = {{"Type", Formula::FileType, "File", ""}};
constexpr Derived kOfBarSize[] = {{"Area", Formula::BarArea, "Diameter", ""}};
constexpr Derived kOfTendonSize[] = {{"Area", Formula::TendonArea, "Diameter", ""}};
constexpr Derived kOfDepth[] = {{"SheathDepth", Formula::SameText, "Depth", ""}};
constexpr Derived kOfSheath[] = {{"SheathArea", Formula::Circle, "SheathDiameter", ""}};
constexpr Derived kOfPrestressing[] = {{"SheathArea", Formula::ZeroIfPreTensioned, "Prestressing", ""}};

constexpr double kNoLimit = -std::numeric_limits<double>::infinity();
constexpr double kLargeConcreteValue = 0.1;
constexpr double kLargeSteelStrain = 0.5;
constexpr std::string_view kTooLarge = "Too large a value, isn't it ?";
constexpr std::string_view kShouldBe = "Should be {} to {}.";

constexpr Rule derive(ObjectKind kind, std::string_view key, std::span<const Derived> derived) {
  return {kind, key, Check::None, 0, Response::Reject, {}, derived};
}

constexpr Rule withinSpin(ObjectKind kind, std::string_view key, std::string_view message,
                          std::span<const Derived> derived = {}) {
  return {kind, key, Check::WithinSpin, 0, Response::Reject, message, derived};
}

constexpr Rule withinSpan(std::string_view key, double least, std::string_view message,
                          std::span<const Derived> derived) {
  return {ObjectKind::Beam, key, Check::WithinSpan, least, Response::Reject, message, derived};
}

constexpr Rule warnAbove(ObjectKind kind, std::string_view key, double limit, std::string_view message,
                         std::span<const Derived> derived = {}) {
  return {kind, key, Check::AtMost, limit, Response::Warn, message, derived};
}

constexpr auto kBeam = ObjectKind::Beam;
constexpr auto kSolid = ObjectKind::Solid;
constexpr auto kBar = ObjectKind::Bar;
constexpr auto kTendon = ObjectKind::Tendon;

constexpr Rule kRules[] = {
    {kBeam, "Use", Check::None, 0, Response::Reject, {}, {}, true},
    withinSpan("Span", kNoLimit, "Span should be more than flexural span.", kOfSpan),
    withinSpan("FlexuralSpan", 0, "Flexural span should be 0 to less than span.", kOfFlexuralSpan),
    withinSpin(kBeam, "HalfSpanFiberNumber", "Half span fiber number should be {} to {}.", kOfFibreNumber),

    derive(kSolid, "File", kOfFile),
    withinSpin(kSolid, "Number", kShouldBe),
    derive(kSolid, "Width", kOfSides),
    derive(kSolid, "Height", kOfSides),
    derive(kSolid, "ElasticModulus", kOfFlexure),
    warnAbove(kSolid, "FlexuralStress", 0, "Generally negative.", kOfFlexure),
    warnAbove(kSolid, "UltimateStrain", kLargeConcreteValue, kTooLarge),
    warnAbove(kSolid, "VolumetricRatio", kLargeConcreteValue, kTooLarge),

    derive(kBar, "File", kOfFile),
    withinSpin(kBar, "Number", kShouldBe),
    derive(kBar, "Diameter", kOfBarSize),
    derive(kBar, "ElasticModulus", kOfYield),
    derive(kBar, "YieldStress", kOfYield),
    warnAbove(kBar, "UltimateStrain", kLargeSteelStrain, kTooLarge),

    derive(kTendon, "File", kOfFile),
    withinSpin(kTendon, "Number", kShouldBe),
    derive(kTendon, "Diameter", kOfTendonSize),
    derive(kTendon, "Depth", kOfDepth),
    derive(kTendon, "Prestressing", kOfPrestressing),
    derive(kTendon, "SheathDiameter", kOfSheath),
    derive(kTendon, "ElasticModulus", kOfYield),
    derive(kTendon, "YieldStress", kOfYield),
    warnAbove(kTendon, "UltimateStrain", kLargeSteelStrain, kTooLarge),

    withinSpin(ObjectKind::AxialForce, "Number", "Number should be {} to {}."),
};

/// One rule at work on one row.
class Application {
 public:
  Application(const Rule& rule, TextTable::Edit& edit, int row) : m_rule(rule), m_edit(edit), m_row(row) {}

  [[nodiscard]] bool passes() const {
    switch (m_rule.check) {
      case Check::None:
        return true;
      case Check::WithinSpan: {
        // Both are read before either is compared.
        const double flexural = number("FlexuralSpan");
        const double span = number("Span");
        return flexural >= m_rule.limit && flexural < span;
      }
      case Check::WithinSpin: {
        const double value = number(m_rule.key);
        return value >= spin().Minimum && value <= spin().Maximum;
      }
      case Check::AtMost:
        return number(m_rule.key) <= m_rule.limit;
    }
    throw base::InternalError(base::kImpossibleCase, "check of " + std::string(m_rule.key));
  }

  [[nodiscard]] std::string message() const {
    return fmt::format(fmt::runtime(m_rule.message), spin().Minimum, spin().Maximum);
  }

  /// Empty where the target stays as it is.
  [[nodiscard]] std::optional<std::string> textOf(const Derived& derived) const {
    switch (derived.formula) {
      case Formula::HalfDifference:
        return base::plainText(finite((number(derived.a) - number(derived.b)) / 2));
      case Formula::HalfQuotient:
        return base::plainText(quotient(number(derived.a) / 2, number(derived.b)));
      case Formula::Product:
        return base::plainText(finite(number(derived.a) * number(derived.b)));
      case Formula::Quotient:
        return base::plainText(quotient(number(derived.a), number(derived.b)));
      case Formula::Circle:
        return base::plainText(finite(materials::circleArea(number(derived.a))));
      case Formula::BarArea:
        return sizeArea(materials::barDesignations(), derived.a);
      case Formula::TendonArea:
        return sizeArea(materials::tendonDesignations(), derived.a);
      case Formula::SameText:
        return text(derived.a);
      case Formula::FileType:
        return text(derived.a).empty() ? "" : "File";
      case Formula::ZeroIfPreTensioned:
        if (text(derived.a) == kPreTensioning) return "0";
        if (text(derived.a) == kPostTensioning || text(derived.a).empty()) return std::nullopt;
        break;
    }
    throw base::InternalError(base::kImpossibleCase,
                              std::string(derived.a) + " \"" + base::printable(text(derived.a)) + "\"");
  }

  void put(std::string_view key, const std::string& text) {
    m_edit.put(m_row, columnOf(m_rule.kind, key), text);
  }

 private:
  [[nodiscard]] const std::string& text(std::string_view key) const {
    return m_edit.table().text(m_row, columnOf(m_rule.kind, key));
  }
  [[nodiscard]] double number(std::string_view key) const { return base::numberOf(text(key), "cell"); }
  /// Of a designation, else of a plain diameter.
  [[nodiscard]] std::string sizeArea(std::span<const materials::Designation> sizes,
                                     std::string_view key) const {
    const auto area = materials::designationArea(sizes, text(key));
    return base::plainText(area ? *area : finite(materials::circleArea(number(key))));
  }
  [[nodiscard]] static double finite(double value) { return base::finite(value, "derived cell"); }
  [[nodiscard]] static double quotient(double a, double b) { return base::divide(a, b, "derived cell"); }
  [[nodiscard]] const SpinRange& spin() const {
    return columnsOf(m_rule.kind)[static_cast<std::size_t>(columnOf(m_rule.kind, m_rule.key))].spin;
  }

  const Rule& m_rule;
  TextTable::Edit& m_edit;
  int m_row;
};

}  // namespace

const Rule* ruleOf(ObjectKind kind, std::string_view key) {
  const auto found =
      std::ranges::find_if(kRules, [&](const Rule& rule) { return rule.kind == kind && rule.key == key; });
  return found == std::end(kRules) ? nullptr : &*found;
}

void applyRule(const Rule& rule, TextTable::Edit& edit, int row, const std::string& before,
               const std::function<void(const std::string&)>& report) {
  Application cells(rule, edit, row);
  try {
    if (!cells.passes()) {
      report(cells.message());
      if (rule.response == Response::Reject) cells.put(rule.key, before);
    }
    for (const Derived& derived : rule.derived) {
      if (const auto text = cells.textOf(derived)) cells.put(derived.target, *text);
    }
  } catch (const base::NumericFault&) {
    // What is typed stays, and so do the cells that were to follow.
  }
}

}  // namespace torvik::grid
