// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "materials/stress_strain.h"

/// Rows and a scripted user for the tests of this folder.
namespace torvik::materials::testing {

struct SolidValues {
  double E = 28000;
  double ef = -0.0001;
  double fc = 30;
  double VolumetricRatio = 0.01;
};

inline model::SolidObject solid(const std::string& type, const SolidValues& values = {}) {
  model::SolidObject row;
  row.Type = type;
  row.ElasticModulus = values.E;
  row.FlexuralStrain = values.ef;
  row.UltimateStress = values.fc;
  row.UltimateStrain = 0.001;  // no law of a solid reads it
  row.VolumetricRatio = values.VolumetricRatio;
  return row;
}

struct SteelValues {
  double E = 200000;
  double fy = 295;
  double ey = 0.001475;
  double fu = 440;
  double eu = 0.2;
};

inline constexpr SteelValues kTendonValues{200000, 930, 0.00465, 1080, 0.05};

template <class Row>
Row steel(const std::string& type, const SteelValues& values) {
  Row row;
  row.Type = type;
  row.ElasticModulus = values.E;
  row.YieldStress = values.fy;
  row.YieldStrain = values.ey;
  row.UltimateStress = values.fu;
  row.UltimateStrain = values.eu;
  return row;
}

inline model::BarObject bar(const std::string& type, const SteelValues& values = {}) {
  return steel<model::BarObject>(type, values);
}

inline model::TendonObject tendon(const std::string& type, const SteelValues& values = kTendonValues) {
  return steel<model::TendonObject>(type, values);
}

/// Answers from a list, and writes down all that it is shown and asked.
class ScriptedUser : public ConfinementPrompt {
 public:
  explicit ScriptedUser(std::deque<std::string> answers) : m_answers(std::move(answers)) {}
  void showMessage(const std::string& text) override { transcript.push_back("! " + text); }
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override {
    transcript.push_back("? " + title + " | " + prompt + " | " + defaultText);
    const std::string answer = m_answers.at(0);
    m_answers.pop_front();
    return answer;
  }

  std::vector<std::string> transcript;

 private:
  std::deque<std::string> m_answers;
};

}  // namespace torvik::materials::testing
