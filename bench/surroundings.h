// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <vector>

#include "analysis/host.h"
#include "analysis/sink.h"

namespace torvik::bench {

/// Surroundings that cost a job nothing.
class SilentHost : public analysis::Host {
 public:
  void doEvents() override {}
  void reportMessage(const std::string&) override {}
  void showMessage(const std::string&) override {}
  void playSound(const std::string&) override {}
  void setPanel(analysis::Panel, const std::string&) override {}
  void setCount(int, int) override {}
  std::string stepText() override { return m_step; }
  void setStepText(const std::string& text) override { m_step = text; }
  void pause(analysis::PauseCause) override {}

 private:
  std::string m_step = "Small";
};

/// Keeps the rows of a job.
class RowsInMemory : public analysis::Sink {
 public:
  std::vector<double> values;
  void resultRow(std::span<const double> row) override {
    values.insert(values.end(), row.begin(), row.end());
  }
};

}  // namespace torvik::bench
