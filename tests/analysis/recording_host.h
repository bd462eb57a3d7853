// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "analysis/host.h"
#include "analysis/run_state.h"
#include "analysis/sink.h"
#include "base/number_text.h"
#include "materials/confinement.h"

namespace torvik::analysis {

/// Writes down what a job asks of its surroundings, in one list with what it gives to its sinks.
class RecordingHost : public Host, public materials::ConfinementPrompt {
 public:
  RunControl control{RunState::Running};
  std::vector<std::string> events;
  std::string step = "Small";
  bool recordCounts = false;
  std::function<void(const std::string&)> onEvent;  ///< called after each event is written down

  void note(const std::string& event) {
    events.push_back(event);
    if (onEvent) onEvent(event);
  }

  void doEvents() override { note("events"); }
  void reportMessage(const std::string& text) override { note("report: " + text); }
  void showMessage(const std::string& text) override { note("message: " + text); }
  void playSound(const std::string& file) override { note("sound: " + file); }
  void setPanel(Panel panel, const std::string& text) override {
    static const char* const kNames[] = {"Beam Top", "Beam Bottom", "Status", "Mu"};
    note(std::string(kNames[static_cast<int>(panel)]) + ": " + text);
  }
  void setCount(int iteration, int outerIteration) override {
    if (recordCounts)
      note("Count: " + base::plainText(iteration) +
           (outerIteration > 0 ? "/" + base::plainText(outerIteration) : std::string()));
  }
  std::string stepText() override { return step; }
  void setStepText(const std::string& text) override {
    step = text;
    note("step box: " + text);
  }
  void pause(PauseCause cause) override {
    note(cause == PauseCause::Watch ? "pause at watch" : "pause before loading");
  }
  std::string inputBox(const std::string&, const std::string& title, const std::string&) override {
    note("ask: " + title);
    return title == "Section Shape" ? "r" : "300";
  }
};

/// Keeps the rows of a job and writes its other calls into a host's list.
class RecordingSink : public Sink {
 public:
  explicit RecordingSink(RecordingHost* host = nullptr) : m_host(host) {}

  std::vector<std::vector<double>> rows;
  std::vector<double> reportedCurvatures;

  void sectionParameters(const SectionParameterTable&) override { note("section parameters"); }
  void strainWithoutLoad(const SectionState&) override { note("strain without load"); }
  void currentValues(const SectionState&) override { note("current values"); }
  void beginRow(int Step) override { note("row " + base::plainText(Step)); }
  void watchCrossed(const WatchCrossing& crossing) override {
    note("crossed: " + std::string(crossing.heading) + " column " + base::plainText(crossing.column));
  }
  void endRow() override { note("row ends"); }
  void resultRow(std::span<const double> values) override {
    rows.emplace_back(values.begin(), values.end());
    note("line");
  }
  void loadStep(const LoadStep& step) override {
    reportedCurvatures.push_back(step.Curvature);
    note("charts");
  }
  void jobOver(const SectionState&) override { note("over"); }

 private:
  void note(const std::string& event) {
    if (m_host) m_host->note(event);
  }
  RecordingHost* m_host;
};

}  // namespace torvik::analysis
