// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/texts.h"

#include "base/number_text.h"

namespace torvik::job {

namespace {

using run::Stage;
using section::Search;

struct SearchTexts {
  Stage stage;
  Search search;
  const char* status;
  const char* failure;
};

constexpr SearchTexts kSearches[] = {
    {Stage::Tendon, Search::N, "Tendon (N)", "Tendon convergence (N) failed."},
    {Stage::Tendon, Search::MN, "Tendon (MN)", "Tendon convergence (MN) failed."},
    {Stage::Tendon, Search::MM, "Tendon (MM)", "Tendon convergence (MM) failed."},
    {Stage::AxialForce, Search::N, "Axial force (N)", "Axial force convergence (N) failed."},
    {Stage::AxialForce, Search::MN, "Axial force (MN)", "Axial force convergence (MN) failed."},
    {Stage::AxialForce, Search::MM, "Axial force (MM)", "Axial force convergence (MM) failed."},
    {Stage::Loading, Search::Loading, "Loading", "Loading convergence failed."},
};

const SearchTexts& textsOf(Stage stage, Search search) {
  for (const SearchTexts& texts : kSearches)
    if (texts.stage == stage && texts.search == search) return texts;
  throw base::InternalError(base::kImpossibleCase, "texts of a search");
}

}  // namespace

const char* textOf(Notice notice) {
  switch (notice) {
    case Notice::WithoutModulus:
      return "Warning: Avarage elastic modulus of solid is 0.\rEquivalent sections calculations are skipped.";
  }
  throw base::InternalError(base::kImpossibleCase, "notice");
}

const char* statusOf(Stage stage, Search search) {
  return textsOf(stage, search).status;
}

const char* failureOf(Stage stage, Search search) {
  return textsOf(stage, search).failure;
}

std::string placeOf(std::optional<Stage> stage, int step) {
  if (!stage) return "Section parameters";
  switch (*stage) {
    case Stage::Tendon:
      return "Prestress introduction";
    case Stage::AxialForce:
      return "Axial force stage";
    case Stage::Loading:
      return step < 0 ? "Loading" : "Loading, step " + base::plainText(step + 1);
  }
  throw base::InternalError(base::kImpossibleCase, "stage");
}

std::string wordsOf(const section::Fault& fault) {
  std::string what = fault.subject();
  if (const auto& row = fault.row())
    what = std::string(model::sectionNameOf(row->table)) + " " +
           base::plainText(static_cast<long long>(row->row) + 1) + " of the job: " + what;
  if (fault.kind()) return base::NumericFault(*fault.kind(), what).what();
  return base::InternalError(base::kImpossibleCase, what).what();
}

}  // namespace torvik::job
