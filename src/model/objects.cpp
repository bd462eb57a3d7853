// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/objects.h"

#include <algorithm>
#include <iterator>

namespace torvik::model {

namespace {

struct Names {
  std::string_view section;
  std::string_view table;
};

constexpr Names kNames[kObjectKinds] = {{"Beam", "Beams"},
                                        {"Solid", "Solids"},
                                        {"Bar", "Bars"},
                                        {"Tendon", "Tendons"},
                                        {"AxialForce", "AxialForces"}};

const Names& namesOf(ObjectKind kind) {
  const int index = static_cast<int>(kind);
  if (index < 0 || index >= kObjectKinds) {
    throw base::InternalError(base::kImpossibleCase, "object kind " + std::to_string(index));
  }
  return kNames[index];
}

}  // namespace

std::string_view sectionNameOf(ObjectKind kind) {
  return namesOf(kind).section;
}

std::string_view tableNameOf(ObjectKind kind) {
  return namesOf(kind).table;
}

std::size_t ObjectTables::rowCount(ObjectKind kind) const {
  return visitTable(*this, kind, [](const auto& rows) { return rows.size(); });
}

JobTables BuildJobTables(const ObjectTables& edited) {
  JobTables job;
  const auto copyUsed = [](const auto& from, auto& to) {
    std::copy_if(from.begin(), from.end(), std::back_inserter(to),
                 [](const auto& row) { return row.Use == 1; });
  };
  copyUsed(edited.Beams, job.tables.Beams);
  copyUsed(edited.Solids, job.tables.Solids);
  copyUsed(edited.Bars, job.tables.Bars);
  copyUsed(edited.Tendons, job.tables.Tendons);
  copyUsed(edited.AxialForces, job.tables.AxialForces);
  return job;
}

}  // namespace torvik::model
