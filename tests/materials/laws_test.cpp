// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <sstream>

#include "base/elementary.h"
#include "base/fault.h"
#include "base/files.h"
#include "base/message_of.h"
#include "base/number_text.h"
#include "base/temporary_folder.h"
#include "materials/designations.h"
#include "materials/stress_strain.h"

namespace torvik::materials {
namespace {

using base::exponential;
using base::power;
using tests::messageOf;

/// Of a row of any table; `fc` is the ultimate stress of a solid.
struct Values {
  double E = 200000, fy = 930, ey = 0.00465, fu = 1080, eu = 0.05, fc = 30, ef = -0.0001, r = 0.01;
};

template <class Law>
Law lawOf(const std::string& type, const Values& values = {}) {
  std::conditional_t<std::is_same_v<Law, BarLaw>, model::BarObject, model::TendonObject> steel;
  model::SolidObject solid;
  solid.Type = steel.Type = type;
  solid.ElasticModulus = steel.ElasticModulus = values.E;
  solid.FlexuralStrain = values.ef;
  solid.UltimateStress = values.fc;
  solid.VolumetricRatio = values.r;
  steel.YieldStress = values.fy;
  steel.YieldStrain = values.ey;
  steel.UltimateStress = values.fu;
  steel.UltimateStrain = values.eu;
  constexpr int kRow = std::is_same_v<Law, SolidLaw> ? 0 : 1;
  StressStrainContext noFiles;
  return Law(std::get<kRow>(std::tie(solid, steel)), noFiles);
}

// The formulas written out, every constant worked out anew.

constexpr ConfinementAnswers kAnswers{0.2, 0.4, 3000};

double solidStress(double e, const std::string& type, const Values& v) {
  const double E = v.E, fc = v.fc, r = v.r, k1 = kAnswers.k1, k2 = kAnswers.k2, fy = kAnswers.fy;
  const double fck = fc / 9.8 * 100, x = e / 0.002609;
  if (type == "Elastic") return E * e;
  if (e < v.ef) return 0;
  if (type == "e Function (Plane)") return fc * 6.75 * (exponential(-0.812 * x) - exponential(-1.218 * x));
  if (type == "JSCE (Design)") {
    if (e <= 0) return E * e;
    if (e <= 0.002) return (2 - e / 0.002) * (0.85 * fc * e / 0.002);
    return e <= 0.0035 ? 0.85 * fc : 0;
  }
  if (type == "Muguruma (Plane)") {
    const double Ec = 231000 * std::sqrt(fck / 200);
    const double e0 = 0.0013 * (fck / 1000 + 1), eu = 0.00413 * (1 - fck / 2000);
    const auto s = [=](double t) { return Ec * t + (fck - e0 * Ec) / (e0 * e0) * t * t; };
    double W = 0;
    for (double t = 0.00001; t <= e0; t = t + 0.00001) W = W + (s(t - 0.00001) + s(t)) * 0.00001 / 2;
    const double fu = fck + 2 * (W - e0 * fck) / (e0 + eu);
    if (e <= 0) return Ec * e * 9.8 / 100;
    if (e <= e0) return s(e) * 9.8 / 100;
    if (e <= eu) return (fck + (fu - fck) / (eu - e0) * (e - e0)) * 9.8 / 100;
    return e <= 0.01 ? fu / (eu - 0.01) * (e - 0.01) * 9.8 / 100 : 0;
  }
  const double Ek = E / 9.8 * 100, Z = 11.2 * fck * fck / (fy * r);
  const double fcc = fck + k1 * 3.8 * r * fy, ecc = 0.002 + k2 * 0.033 * r * fy / fck;
  const double n = Ek * ecc / (Ek * ecc - fcc);
  if (e <= 0) return Ek * e * 9.8 / 100;
  if (e <= ecc) return Ek * e * (1 - (1 / n) * power(e / ecc, n - 1)) * 9.8 / 100;
  return e <= ecc + 0.2 * fcc / Z ? (fcc - (e - ecc) * Z) * 9.8 / 100 : 0;
}

double barStress(double e, const std::string& type, const Values& v) {
  const double E = v.E, fy = v.fy, ey = v.ey, eu = v.eu;
  if (type == "Elastic") return E * e;
  if (type == "FRP Bar") return 0 <= e && e <= eu ? E * e : 0;
  if (type == "JSCE (Design)") {
    if (-0.03 < e && e <= -ey) return -fy;
    if (-ey <= e && e <= ey && e != -0.03) return E * e;
    return ey <= e && e <= eu ? fy : 0;
  }
  const double d = eu - 0.015, t = std::abs(e) - 0.015;
  const double m = ((v.fu / fy) * power(30 * d + 1, 2) - 60 * d - 1) / (15 * power(d, 2));
  const double H = (m * t + 2) / (60 * t + 2) + t * (60 - m) / (2 * power(30 * d + 1, 2));
  if (-0.03 <= e && e <= -0.015) return -fy * H;
  if (-0.015 <= e && e <= -ey) return -fy;
  if (-0.03 <= e && -ey <= e && e <= ey) return E * e;
  if (ey <= e && e <= 0.015) return fy;
  return 0.015 <= e && e <= eu ? fy * H : 0;
}

double tendonStress(double e, const std::string& type, const Values& v) {
  const double E = v.E, fy = v.fy, ey = v.ey, fu = v.fu, eu = v.eu;
  if (type == "Steel Bar") {
    if (e == -eu) return 0;
    if (-eu < e && e <= -ey) return -((-e - ey) * (fu - fy) / (eu - ey) + fy);
    if (-ey <= e && e <= ey) return E * e;
    return ey <= e && e <= eu ? (e - ey) * (fu - fy) / (eu - ey) + fy : 0;
  }
  if (type != "JSCE (Design)") return barStress(e, type, v);
  const double ep = 0.84 * fu / E, slope = (0.93 - 0.84) * fu / (0.015 - ep);
  if (e == -0.03) return 0;
  if (-0.03 < e && e <= -0.015) return -0.93 * fu;
  if (-0.015 <= e && e <= -ep) return -(0.84 * fu + slope * (-e - ep));
  if (-ep <= e && e <= ep) return E * e;
  if (ep <= e && e <= 0.015) return 0.84 * fu + slope * (e - ep);
  return 0.015 <= e && e <= eu ? 0.93 * fu : 0;
}

/// Over a dense sweep, and at the bounds with their neighbours on both sides.
template <class Law>
void expectBits(const std::string& type, const Values& values, const std::vector<double>& strains,
                const auto& longHand) {
  StressStrainContext context;
  context.memory.confinement = kAnswers;
  Law law = lawOf<Law>(type, values);
  law.stress(0, context);
  std::vector<double> stresses(strains.size());
  law.stresses(strains, stresses, context);
  for (std::size_t i = 0; i < strains.size(); ++i) {
    const auto bits = std::bit_cast<std::uint64_t>(longHand(strains[i], type, values));
    ASSERT_EQ(std::bit_cast<std::uint64_t>(law.stress(strains[i], context)), bits) << type << strains[i];
    ASSERT_EQ(std::bit_cast<std::uint64_t>(stresses[i]), bits) << type << strains[i];
  }
}

TEST(Laws, HaveTheBitsOfTheirFormulas) {
  const Values rows[] = {
      {200000, 295, 0.001475, 440, 0.2, 30, -0.00014482340769084444, 0.01},
      {193700.5, 345.6, 0.00178, 491.3, 0.0437, 23.7, -0.0123, 0.0173},
      {10000, 301.3, 0.0305, 452.7, 0.117, 82.4, 0, 0.003},
      {197000, 1180.7, 0.0301, 1272.3, 0.03, 21.107692307692574, -0.0001, 0.01},  // Muguruma's t stands on e0
      {50000, 900, -0.002, 1103.3, 0.014, 250, -0.0002, 0.02},
  };
  for (const Values& v : rows) {
    const double fck = v.fc / 9.8 * 100, ecc = 0.002 + 0.4 * 0.033 * v.r * 3000 / fck;
    const double end = ecc + 0.2 * (fck + 0.2 * 3.8 * v.r * 3000) / (11.2 * fck * fck / (3000 * v.r));
    std::vector<double> strains;
    for (int i = -4000; i <= 4000; ++i) strains.push_back(i * 1.7e-5 + 3e-7);
    for (const double b : {0., 0.002, 0.0035, 0.01, 0.015, 0.03, v.ef, v.ey, v.eu, ecc, end,
                           0.84 * v.fu / v.E, 0.0013 * (fck / 1000 + 1), 0.00413 * (1 - fck / 2000)})
      for (const double s : {b, -b})
        strains.insert(strains.end(), {s, std::nextafter(s, 9), std::nextafter(s, -9)});
    for (const auto type :
         {"Elastic", "JSCE (Design)", "e Function (Plane)", "Muguruma (Plane)", "Restoration (Confined)"})
      expectBits<SolidLaw>(type, v, strains, solidStress);
    for (const auto type : {"Elastic", "JSCE (Design)", "Steel Bar", "FRP Bar"}) {
      expectBits<BarLaw>(type, v, strains, barStress);
      expectBits<TendonLaw>(type, v, strains, tendonStress);
    }
  }
}

TEST(Laws, StressesAndFaultsByHand) {
  StressStrainContext context;
  context.memory.confinement = kAnswers;
  const auto at = [&](double e, auto law) { return law.stress(e, context); };
  EXPECT_NEAR(at(0.002609, lawOf<SolidLaw>("e Function (Plane)")), 30, 1e-3);
  // fck = 200 kgf/cm2: Ec = 231000, e0 = 0.00156, eu = 0.003717, W = 0.19769, fu = 156.68 kgf/cm2.
  EXPECT_NEAR(at(0.0068585, lawOf<SolidLaw>("Muguruma (Plane)", {.fc = 19.6})), 156.68 * 0.049, 0.04);
  // fck = 300, Ek = 300000 kgf/cm2: fcc = 322.8, ecc = 0.00332, Z = 33600, eu = 0.00524142857.
  const auto confined = lawOf<SolidLaw>("Restoration (Confined)", {.E = 29400, .fc = 29.4});
  EXPECT_NEAR(at(0.005241428, confined), 0.8 * 322.8 * 0.098, 1e-5);
  // d = 0.1, m = 340 / 3, H(0.015) = 37 / 29 - 0.025.
  const auto steelBar = lawOf<BarLaw>("Steel Bar", {.fy = 300, .fu = 450, .eu = 0.115});
  EXPECT_NEAR(at(-0.03, steelBar), -300 * (37.0 / 29 - 0.025), 1e-9);
  EXPECT_NEAR(at(-0.0499, lawOf<TendonLaw>("Steel Bar")), -1080 + 0.0001 * 150 / 0.04535, 1e-9);

  const auto expect = [&](const std::string& fault, auto law, double e) {
    const std::string message = messageOf([&] { return law.stress(e, context); });
    EXPECT_EQ(message.substr(message.find_last_of(':') + 1), fault) << e;
  };
  expect(" overflow", lawOf<SolidLaw>("e Function (Plane)", {.fc = 1e308}), 0.001);
  expect(" invalid operation", lawOf<SolidLaw>("Muguruma (Plane)", {.fc = -1}), -1);
  expect(" overflow", lawOf<SolidLaw>("Muguruma (Plane)", {.fc = 1e12}), -1);
  expect(" division by zero", lawOf<SolidLaw>("Restoration (Confined)", {.E = 0}), 0.001);
  expect(" division by zero", lawOf<BarLaw>("Steel Bar", {.eu = 0.015}), -1);
  expect(" division by zero", lawOf<BarLaw>("Steel Bar", {.eu = 0.015 - 1.0 / 30}), -0.02);
  expect("no error", lawOf<BarLaw>("Steel Bar", {.eu = 0.015 - 1.0 / 30}), 0.001);
  expect("no error", lawOf<TendonLaw>("JSCE (Design)", {.E = 0}), -0.03);
  expect(" division by zero", lawOf<TendonLaw>("JSCE (Design)", {.E = 0}), 0);
  expect(" division by zero", lawOf<TendonLaw>("Steel Bar", {.ey = -0.01, .eu = -0.01}), -0.01);
  EXPECT_THROW(lawOf<SolidLaw>("Steel Bar").stress(0, context), base::InternalError);
  EXPECT_THROW(lawOf<BarLaw>("FRP bar").stress(0, context), base::InternalError);
  EXPECT_THROW(lawOf<TendonLaw>("FILE").stress(0, context), base::InternalError);
}

TEST(Laws, AreTheSameWhereAllThatTheyReadIs) {
  const auto same = [](auto row, const char* type, auto field) {
    row.Type = type;
    const auto before = row;
    row.*field += 1;
    return sameLaw(before, row);
  };
  using S = model::SolidObject;
  using B = model::BarObject;
  for (const auto field : {&S::ElasticModulus, &S::FlexuralStrain, &S::UltimateStress, &S::VolumetricRatio})
    EXPECT_TRUE(same(S(), "File", field) && !same(S(), "Elastic", field));
  for (const auto field :
       {&B::ElasticModulus, &B::YieldStress, &B::YieldStrain, &B::UltimateStress, &B::UltimateStrain})
    EXPECT_TRUE(same(B(), "File", field) && !same(B(), "Elastic", field));
  EXPECT_FALSE(same(S(), "File", &S::File) || same(B(), "File", &B::File) || same(B(), "Elastic", &B::Type));
}

/// Nominal areas are those of circles, to four digits; a deformed bar has the diameter of a plain one of its
/// mass.
TEST(Designations, HaveTheNominalAreas) {
  const double bars[] = {6.35, 9.53, 12.7, 15.9, 19.1, 22.2, 25.4, 28.6, 31.8, 34.9, 38.1, 41.3, 50.8};
  const double tendons[] = {9.2, 11, 13, 15, 17, 19, 21, 23, 26, 29, 32, 36, 40};
  const auto expectAreas = [](std::span<const Designation> table, std::span<const double> diameters) {
    ASSERT_EQ(table.size(), diameters.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
      const auto& [entry, designation, area] = table[i];
      EXPECT_EQ(entry, std::string(designation.substr(11)) + " - " + std::string(designation.substr(0, 10)));
      EXPECT_EQ(base::scientificText(area, 3), base::scientificText(circleArea(diameters[i]), 3)) << entry;
      EXPECT_EQ(designationArea(table, designation), area);
    }
  };
  expectAreas(barDesignations(), bars);
  expectAreas(tendonDesignations(), tendons);
  EXPECT_EQ(designationArea(barDesignations(), "JIS G 3109 11"), std::nullopt);
}

/// Writes down all that it is shown and asked.
struct User : ConfinementPrompt {
  void showMessage(const std::string& text) override { log += text + "|"; }
  std::string inputBox(const std::string& text, const std::string& title,
                       const std::string& preset) override {
    log += title + ": " + text + " " + preset + "|";
    std::string answer;
    std::getline(answers, answer, ',');
    return answer;
  }
  std::istringstream answers;
  std::string log;
};

TEST(Confinement, IsAskedForOnce) {
  User user;
  user.answers.str(",rc,c,0,strong,98,R,294");
  ConfinementAnswers circle;
  const auto ask = [&] { return circle.askWhereMissing(0.01, user), 0; };
  EXPECT_EQ(messageOf(ask), "yield stress of confining tie: not a number");
  EXPECT_EQ(messageOf(ask) + messageOf(ask), "no errorno error");
  EXPECT_TRUE(circle.k1 == 1 && circle.k2 == 1 && circle.fy == 1000);
  const std::string shape =
      "Volumetric ratio = 4As/(s*D), given value is 0.01.|"
      "Section Shape: Rectangular (r) or Circular (c) ? r|";
  const std::string again = shape + "Press \"r\" or \"c\".|";
  const std::string stress = "Yield stress: Yield stress of confining tie ? 300|";
  EXPECT_EQ(user.log, again + again + shape + "Circular section is selected.|" + stress + stress + stress);

  user.log.clear();
  StressStrainContext context;
  context.prompt = &user;
  SolidLaw law = lawOf<SolidLaw>("Restoration (Confined)");
  EXPECT_EQ(law.stress(-1, context), 0);  // below cracking, and asked nevertheless
  context.startJob();
  EXPECT_EQ(law.stress(0.003, context), solidStress(0.003, "Restoration (Confined)", {}));
  EXPECT_EQ(user.log, shape + "Rectangular section is selected.|" + stress);
  context.memory.confinement = circle;
  EXPECT_NE(law.stress(0.003, context), solidStress(0.003, "Restoration (Confined)", {}));
}

TEST(LookOnly, NeitherReadsNorAsksNorMovesTheJob) {
  const tests::TemporaryFolder folder;
  base::replaceWholeFile(folder / "jump", "0 0\n10 1\n50 1\n60 2\n");
  User user;
  user.answers.str("r,300");
  StressStrainContext job;
  job.prompt = &user;
  job.report = [&](auto& caption, auto&) { user.log += caption; };
  model::SolidObject row;
  row.File = folder / "jump";
  const auto lawOf = [&](const std::string& type) {
    row.Type = type;
    return SolidLaw(row, job);
  };
  const SolidLaw file = lawOf("File");
  const SolidLaw confined = lawOf("Restoration (Confined)");
  row.File = folder / "missing";
  const SolidLaw missing = lawOf("File");

  StressStrainContext look = job.lookOnly();
  for (const SolidLaw* law : {&file, &confined, &missing})
    EXPECT_THROW(law->stress(0.5, look), base::InternalError);
  EXPECT_EQ(user.log, "");

  // At 1 a search from below finds 10 and one from above 50.
  EXPECT_EQ(file.stress(0.5, job), 5);
  const LawMemory before = job.memory;
  base::replaceWholeFile(folder / "jump", "");
  look = job.lookOnly();
  EXPECT_EQ(file.stress(3, look), 0);
  EXPECT_EQ(file.stress(1, look), 50) << "the points that the job has read";
  EXPECT_EQ(file.stress(1, job), 10) << "the job stands where it stood";
  EXPECT_EQ(file.stress(3, job), 0);
  job.memory = before;
  EXPECT_EQ(file.stress(1, job), 10) << "a memory that comes back brings back what a law gave";
}

}  // namespace
}  // namespace torvik::materials
