// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fmt/format.h>

#include <array>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "analysis/job.h"
#include "analysis/sink.h"
#include "base/errors.h"
#include "materials/confinement.h"

namespace torvik::analysis {

/// The window and the user around a job. Writes down what the job asks of them, in one list with what it
/// gives to its sinks. Values stand behind a tab in their shortest exact form, so equal lines mean equal
/// bits.
class RecordingHost : public Host, public materials::ConfinementPrompt {
 public:
  RunControl control{RunState::Running};
  std::vector<std::string> events;
  std::string step = "Small";
  bool pausing = false;  ///< a pause takes effect, for one call of doEvents or two
  std::function<void(RecordingHost&, int)> atEvents;  ///< what the user does; with the number of the call
  std::vector<std::string> answers = {"r", "300"};    ///< to the input boxes, in turn; then nobody answers

  void note(std::string event, const std::vector<double>& values = {}) {
    if (!values.empty()) event += fmt::format("\t{}", fmt::join(values, " "));
    events.push_back(std::move(event));
  }

  void doEvents() override {
    note("events");
    ++m_calls;
    if (control.state == RunState::Paused && m_calls % 2 == 0) control.state = RunState::Running;
    if (atEvents) atEvents(*this, m_calls);
  }
  void reportMessage(const std::string& text) override { note("report: " + text); }
  void showMessage(const std::string& text) override { note("message: " + text); }
  void playSound(const std::string& file) override { note("sound: " + file); }
  void setPanel(Panel panel, const std::string& text) override {
    static constexpr std::array kNames = {"Beam Top: ", "Beam Bottom: ", "Status: ", "Mu: "};
    note(kNames.at(static_cast<std::size_t>(panel)) + text);
  }
  void setCount(int inner, int outer) override { note(fmt::format("Count: {}/{}", inner, outer)); }
  std::string stepText() override { return step; }
  void setStepText(const std::string& text) override {
    step = text;
    note("step box: " + text);
  }
  void pause(PauseCause cause) override {
    note(cause == PauseCause::Watch ? "pause at watch" : "pause before loading");
    if (pausing && control.state == RunState::Running) control.state = RunState::Paused;
  }
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& text) override {
    note(fmt::format("ask: {} / {} / {}", prompt, title, text));
    if (m_asked == answers.size()) throw base::InputError("nobody answers");
    return answers[m_asked++];
  }

 private:
  int m_calls = 0;
  std::size_t m_asked = 0;
};

/// Keeps the rows of a job and writes all that it gets into a host's list.
class RecordingSink : public Sink {
 public:
  explicit RecordingSink(RecordingHost* host = nullptr) : m_host(host) {}

  std::vector<std::vector<double>> rows;

  void sectionParameters(const SectionParameterTable& table) override {
    for (const SectionParameterRow& row : table.rows) note("section", row.values());
  }
  void strainWithoutLoad(const SectionState& state) override { noteState("strain without load", state); }
  void currentValues(const SectionState& state) override { noteState("current values", state); }
  void beginRow(int Step) override { note(fmt::format("row {}", Step)); }
  void cell(int column, double value) override { note(fmt::format("cell {}", column), {value}); }
  void watchCrossed(const WatchCrossing& c) override {
    note(fmt::format("crossed: {} column {}", c.heading, c.column), {c.WatchStrain, c.strain});
  }
  void endRow() override { note("row ends"); }
  void resultRow(std::span<const double> values) override {
    rows.emplace_back(values.begin(), values.end());
    note("line", values);
  }
  void loadStep(const LoadStep& step) override {
    const BeamResponse& beam = step.beam;
    note(fmt::format("charts {}", step.Step),
         {step.Moment, step.Curvature, beam.Load(), beam.Displacement()});
    std::vector<double> values;
    const std::vector<double> deflection = beam.Deflection();
    for (std::size_t i = 0; i < deflection.size(); ++i)
      values.insert(values.end(), {beam.pieceMoments()[i], beam.pieceCurvatures()[i], deflection[i]});
    note("pieces", values);
  }
  void jobOver(const SectionState& state) override { noteState("over", state); }

 private:
  template <class Values = std::initializer_list<double>>
  void note(const std::string& event, const Values& values = {}) {
    if (m_host) m_host->note(event, {values.begin(), values.end()});
  }
  void noteState(const std::string& event, const SectionState& state) {
    std::vector<double> values;
    for (const SectionState::Rows* r : {&state.solids(), &state.bars(), &state.tendons()})
      for (std::size_t i = 0; i < r->size(); ++i)
        values.insert(values.end(),
                      {r->BaseStrain[i], r->CurrentStrain[i], r->CurrentStress[i], r->CurrentForce[i]});
    note(event, values);
  }
  RecordingHost* m_host;
};

/// A job in its surroundings.
struct JobRun {
  RecordingHost host;
  RecordingSink sink{&host};
  materials::StressStrainContext context;
  JobOutcome outcome;

  explicit JobRun(RecordingHost user) : host(std::move(user)) {
    context.prompt = &host;
    context.report = [&](const std::string& caption, const std::string&) { host.note("curve: " + caption); };
  }
  JobRun(model::ObjectTables job, const JobOptions& options, RecordingHost user = {})
      : JobRun(std::move(user)) {
    Sink* const sinks[] = {&sink};
    outcome = runJob(job, options, host.control, host, sinks, context);
  }
};

}  // namespace torvik::analysis
