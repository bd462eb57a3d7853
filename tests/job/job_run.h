// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "job/job.h"
#include "materials/confinement.h"

namespace torvik::tests {

/// The user around a job: goes on at every place unless told otherwise, and answers what is asked.
class User : public job::Host, public materials::ConfinementPrompt {
 public:
  std::string step = "Small";
  std::vector<std::string> answers = {"r", "300"};  ///< to the input boxes, in turn; then nobody answers
  /// At each place where the job gives way, numbered from 1. @return false: the user ends the job
  std::function<bool(User&, int)> atPlace = [](User&, int) { return true; };
  std::function<void()> look = [] {};  ///< at every call of the job's
  std::vector<std::string> told;       ///< notices, questions and failures of user files

  bool giveWay() {
    look();
    return atPlace(*this, ++m_places);
  }
  void count(int, int) override { look(); }
  bool proceed(run::Stage, section::Search) override { return giveWay(); }
  bool breakBeforeLoading() override { return giveWay(); }
  bool watchCrossed() override { return giveWay(); }
  void stepConverged() override { look(); }
  void notice(job::Notice notice) override { told.emplace_back(job::textOf(notice)); }
  std::string stepText() override {
    look();
    return step;
  }
  void setStepText(const std::string& text) override { told.push_back("step box: " + (step = text)); }
  void showMessage(const std::string& text) override { told.push_back(text); }
  std::string inputBox(const std::string& prompt, const std::string&, const std::string&) override {
    told.push_back(prompt);
    if (m_asked == answers.size()) throw base::InputError("nobody answers");
    return answers[m_asked++];
  }

 private:
  int m_places = 0;
  std::size_t m_asked = 0;
};

using Numbers = std::vector<double>;
/// What a job found, by what it is. Equal findings have equal bits.
using Findings = std::map<std::string, std::vector<Numbers>>;

inline Numbers numbersOf(const section::BaseStrains& base) {
  Numbers numbers = base.solids;
  numbers.insert(numbers.end(), base.bars.begin(), base.bars.end());
  numbers.insert(numbers.end(), base.tendons.begin(), base.tendons.end());
  return numbers;
}

/// Strain, stress and force of each row.
inline Numbers numbersOf(const section::State& state) {
  Numbers numbers;
  for (const section::RowValues* table : {&state.solids, &state.bars, &state.tendons})
    for (std::size_t i = 0; i < table->strain.size(); ++i)
      numbers.insert(numbers.end(), {table->strain[i], table->stress[i], table->force[i]});
  return numbers;
}

/// The first place where two jobs found different bits; empty where there is none.
inline std::string difference(Findings a, Findings b) {
  const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
  for (const auto& [what, numbers] : b) a[what];
  for (const auto& [what, left] : a) {
    const std::vector<Numbers>& right = b[what];
    for (std::size_t i = 0; i < std::max(left.size(), right.size()); ++i) {
      if (i < left.size() && i < right.size() && std::ranges::equal(left[i], right[i], {}, bits, bits))
        continue;
      const auto text = [i](const auto& side) {
        return i < side.size() ? fmt::format("{}", fmt::join(side[i], " ")) : "nothing";
      };
      return fmt::format("{} {}:\n{}\n{}", what, i, text(left), text(right));
    }
  }
  return {};
}

/// A job in its surroundings.
class JobRun {
 public:
  run::Run run;
  User user;

  /// @param looks  at each call the run's present rows are looked at, and a step that was
  JobRun(model::ObjectTables job, const job::JobOptions& options, User around = {}, bool looks = false)
      : run(std::move(job), {}), user(std::move(around)) {
    if (looks) user.look = [this] { look(); };
    materials::StressStrainContext laws;
    laws.prompt = &user;
    laws.report = [this](const std::string& caption, const std::string&) { user.told.push_back(caption); };
    run::RunWriter writer(run);
    job::runJob(options, user, writer, laws);
    user.look();
  }
  JobRun(const JobRun&) = delete;

  [[nodiscard]] const run::End& end() const { return *run.end(); }

  [[nodiscard]] Numbers row(int step) const {
    Numbers cells;
    for (std::size_t column = 0; column < run.columns().size(); ++column)
      cells.push_back(run.cell(step, column));
    return cells;
  }
  [[nodiscard]] std::vector<Numbers> rows() const {
    std::vector<Numbers> rows;
    for (int step = 0; step < run.steps(); ++step) rows.push_back(row(step));
    return rows;
  }

  /// All that stands in the run, and as "present" what was looked at.
  [[nodiscard]] Findings findings() const {
    Findings found;
    found["present"] = m_presents;
    found["end"] = {{static_cast<double>(end().kind), end().stage ? static_cast<double>(*end().stage) : -1,
                     static_cast<double>(end().step), run.peakMoment().value_or(-1)}};
    found["row at work"] = {run.rowAtWork() ? run.rowAtWork()->cells : Numbers()};
    auto& parameters = found["section parameters"];
    if (run.extent()) parameters.push_back({run.extent()->BeamTop, run.extent()->BeamBottom});
    if (const auto& table = run.sectionParameters())
      for (const section::SectionParameterRow& of : table->rows) {
        const auto values = of.values();
        parameters.emplace_back(values.begin(), values.end());
      }
    for (int commit = 1; commit <= run.commits(); ++commit)
      found["commit"].push_back(numbersOf(run.strainsWithoutLoad(commit)));
    found["row"] = rows();
    for (int number = 0; number < run.steps(); ++number) {
      const run::Step step = run.step(number);
      found["search"].push_back(
          {static_cast<double>(step.iterations), step.residual, step.TopStrain, step.NeutralAxisOfRows});
      const section::State* const shown = run.shown(number);
      found["shown"].push_back(shown ? numbersOf(*shown) : Numbers());
      const run::BeamLines& beam = run.beam(number);
      for (std::size_t i = 0; i < beam.place.size(); ++i)
        found["piece"].push_back({beam.place[i], beam.Moment[i], beam.Curvature[i], beam.Deflection[i]});
    }
    for (const run::Crossing& c : run.crossings())
      found["crossing"].push_back(
          {static_cast<double>(c.step), static_cast<double>(c.column), c.WatchStrain, c.strain});
    found["leftover"] = {numbersOf(run.leftoverBase()), numbersOf(run.leftover())};
    return found;
  }

 private:
  void look() {
    if (std::exchange(m_seen, run.presentVersion()) != run.presentVersion())
      m_presents.push_back(run.present() ? numbersOf(*run.present()) : Numbers());
    if (run.steps() == 0) return;
    static_cast<void>(run.shown(run.steps() / 2));
    static_cast<void>(run.beam(run.steps() / 2));
  }

  std::uint64_t m_seen = 0;
  std::vector<Numbers> m_presents;
};

}  // namespace torvik::tests
