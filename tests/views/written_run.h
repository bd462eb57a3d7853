// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <utility>

#include "run/writer.h"

namespace torvik::tests {

/// A run written by hand, in place of a job.
struct WrittenRun {
  materials::StressStrainContext laws;
  std::shared_ptr<run::Run> run;
  run::RunWriter writer;

  explicit WrittenRun(model::ObjectTables job)
      : run(std::make_shared<run::Run>(withBeam(std::move(job)), run::Origin{})), writer(*run) {
    writer.begin(laws);
    writer.beginLoading(0);
  }

  static model::ObjectTables withBeam(model::ObjectTables job) {
    if (job.Beams.empty()) job.Beams.push_back({.Use = 1, .ShearSpan = 2000});
    return job;
  }
  /// The cells of a row: 1, 2, 3 to 6, then the strains of a plane of 1 at depth 0 and 0 at 12.5.
  void tellRow(int step) {
    writer.beginRow(step);
    for (std::size_t column = 0; column < run->columns().size(); ++column)
      writer.cell(static_cast<double>(column + 1));
    writer.endRow();
  }
  void addSteps(int count) {
    for (int step = run->steps(); count > 0; --count, ++step) {
      run::Step numbers;
      numbers.Load = 1;
      numbers.Displacement = 2;
      numbers.Moment = 3;
      numbers.Curvature = 4;
      numbers.NeutralAxis = 5;
      numbers.CompressionForce = 6;
      numbers.TopStrain = 1;
      numbers.NeutralAxisOfRows = 12.5;
      writer.bendBeam(numbers.Moment, numbers.Curvature);
      tellRow(step);
      writer.step(numbers, {section::Plane{1, 12.5}, laws.memory});
    }
  }
};

}  // namespace torvik::tests
