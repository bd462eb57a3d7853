// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/fields.h"

#include <type_traits>

#include "base/number_text.h"

namespace torvik::model {

namespace {

template <class Row>
constexpr Field<Row> field(std::string_view key, std::int16_t Row::*member, std::int16_t defaultValue) {
  return {key, member, defaultValue};
}

template <class Row>
constexpr Field<Row> field(std::string_view key, double Row::*member, double defaultValue) {
  return {key, member, defaultValue};
}

template <class Row>
constexpr Field<Row> field(std::string_view key, std::string Row::*member, std::string_view defaultValue) {
  return {key, member, defaultValue};
}

constexpr Field<BeamObject> kBeamFields[] = {
    field("Use", &BeamObject::Use, 1),
    field("Span", &BeamObject::Span, 10000),
    field("FlexuralSpan", &BeamObject::FlexuralSpan, 3000),
    field("ShearSpan", &BeamObject::ShearSpan, 3500),
    field("HalfSpanFiberNumber", &BeamObject::HalfSpanFiberNumber, 100),
    field("HalfSpanFiberLength", &BeamObject::HalfSpanFiberLength, 50),
};

constexpr Field<SolidObject> kSolidFields[] = {
    field("Use", &SolidObject::Use, 1),
    field("Output", &SolidObject::Output, 0),
    field("Type", &SolidObject::Type, "JSCE (Design)"),
    field("File", &SolidObject::File, ""),
    field("Number", &SolidObject::Number, 1),
    field("Width", &SolidObject::Width, 0),
    field("Height", &SolidObject::Height, 0),
    field("Area", &SolidObject::Area, 0),
    field("Depth", &SolidObject::Depth, 0),
    field("InitialStrain", &SolidObject::InitialStrain, 0),
    field("WatchStrain", &SolidObject::WatchStrain, ""),
    field("ElasticModulus", &SolidObject::ElasticModulus, 28000),
    field("FlexuralStress", &SolidObject::FlexuralStress, -4.055055415343644),
    field("FlexuralStrain", &SolidObject::FlexuralStrain, -0.00014482340769084444),
    field("UltimateStress", &SolidObject::UltimateStress, 30),
    field("UltimateStrain", &SolidObject::UltimateStrain, 0.0035),
    field("VolumetricRatio", &SolidObject::VolumetricRatio, 0),
};

constexpr Field<BarObject> kBarFields[] = {
    field("Use", &BarObject::Use, 1),
    field("Output", &BarObject::Output, 1),
    field("Type", &BarObject::Type, "JSCE (Design)"),
    field("File", &BarObject::File, ""),
    field("Number", &BarObject::Number, 1),
    field("Diameter", &BarObject::Diameter, "JIS G 3112 D13"),
    field("Area", &BarObject::Area, 126.7),
    field("Depth", &BarObject::Depth, 0),
    field("InitialStrain", &BarObject::InitialStrain, 0),
    field("WatchStrain", &BarObject::WatchStrain, ""),
    field("ElasticModulus", &BarObject::ElasticModulus, 200000),
    field("YieldStress", &BarObject::YieldStress, 295),
    field("YieldStrain", &BarObject::YieldStrain, 0.001475),
    field("UltimateStress", &BarObject::UltimateStress, 520),
    field("UltimateStrain", &BarObject::UltimateStrain, 0.2),
};

constexpr Field<TendonObject> kTendonFields[] = {
    field("Use", &TendonObject::Use, 1),
    field("Output", &TendonObject::Output, 1),
    field("Type", &TendonObject::Type, "JSCE (Design)"),
    field("File", &TendonObject::File, ""),
    field("Number", &TendonObject::Number, 1),
    field("Diameter", &TendonObject::Diameter, "JIS G 3109 13"),
    field("Area", &TendonObject::Area, 132.7),
    field("Depth", &TendonObject::Depth, 0),
    field("IntroductionStrain", &TendonObject::IntroductionStrain, 0.00378),
    field("Prestressing", &TendonObject::Prestressing, "Post-tensioning"),
    field("SheathDiameter", &TendonObject::SheathDiameter, 23),
    field("SheathArea", &TendonObject::SheathArea, 415.4756284372497),
    field("SheathDepth", &TendonObject::SheathDepth, 0),
    field("WatchStrain", &TendonObject::WatchStrain, ""),
    field("ElasticModulus", &TendonObject::ElasticModulus, 200000),
    field("YieldStress", &TendonObject::YieldStress, 930),
    field("YieldStrain", &TendonObject::YieldStrain, 0.00465),
    field("UltimateStress", &TendonObject::UltimateStress, 1080),
    field("UltimateStrain", &TendonObject::UltimateStrain, 0.05),
};

constexpr Field<AxialForceObject> kAxialForceFields[] = {
    field("Use", &AxialForceObject::Use, 1),
    field("Number", &AxialForceObject::Number, 1),
    field("Depth", &AxialForceObject::Depth, 0),
    field("Force", &AxialForceObject::Force, 0),
};

std::string textOfValue(std::int16_t value) {
  return base::plainText(static_cast<int>(value));
}
std::string textOfValue(double value) {
  return base::plainText(value);
}
std::string textOfValue(std::string_view value) {
  return std::string(value);
}

}  // namespace

template <class Row>
std::string Field<Row>::defaultText() const {
  return std::visit([](auto value) { return textOfValue(value); }, defaultValue);
}

template <class Row>
std::span<const Field<Row>> fieldsOf() {
  if constexpr (std::is_same_v<Row, BeamObject>) {
    return kBeamFields;
  } else if constexpr (std::is_same_v<Row, SolidObject>) {
    return kSolidFields;
  } else if constexpr (std::is_same_v<Row, BarObject>) {
    return kBarFields;
  } else if constexpr (std::is_same_v<Row, TendonObject>) {
    return kTendonFields;
  } else {
    static_assert(std::is_same_v<Row, AxialForceObject>);
    return kAxialForceFields;
  }
}

template <class Row>
std::string textOf(const Row& row, const Field<Row>& field) {
  return std::visit([&](auto member) { return textOfValue(row.*member); }, field.member);
}

template struct Field<BeamObject>;
template struct Field<SolidObject>;
template struct Field<BarObject>;
template struct Field<TendonObject>;
template struct Field<AxialForceObject>;
template std::span<const Field<BeamObject>> fieldsOf();
template std::span<const Field<SolidObject>> fieldsOf();
template std::span<const Field<BarObject>> fieldsOf();
template std::span<const Field<TendonObject>> fieldsOf();
template std::span<const Field<AxialForceObject>> fieldsOf();
template std::string textOf(const BeamObject&, const Field<BeamObject>&);
template std::string textOf(const SolidObject&, const Field<SolidObject>&);
template std::string textOf(const BarObject&, const Field<BarObject>&);
template std::string textOf(const TendonObject&, const Field<TendonObject>&);
template std::string textOf(const AxialForceObject&, const Field<AxialForceObject>&);

}  // namespace torvik::model
