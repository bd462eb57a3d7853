// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/fault.h"
#include "fuzz/fuzz_targets.h"
#include "job/any_job.h"
#include "job/reference_solver.h"

namespace torvik::fuzz {

void job(std::string_view bytes) {
  const tests::AnyJob given([&bytes] {
    if (bytes.empty()) return 128U;
    const auto first = static_cast<unsigned char>(bytes[0]);
    bytes.remove_prefix(1);
    return static_cast<unsigned>(first);
  });
  const tests::JobRun engine(given.tables, given.options, given.user, true);
  const tests::reference::Job slow(given.tables, given.options, given.user);
  const std::string disagreement = tests::reference::disagreement(engine, slow);
  expect(disagreement.empty(), "the engine and the slow path agree: " + disagreement);

  const run::End& end = engine.end();
  const bool isByUser = end.kind == run::End::Kind::EndedByUser;
  expect(end.message.empty() == isByUser, "every end but the user's has a message");
  if (!isByUser) expectOneLine(end.message);
  for (int step = 0; step < engine.run.steps(); ++step)
    expect(engine.run.shown(step) != nullptr, "every step can be shown again");
  base::fpflags::clear();
}

}  // namespace torvik::fuzz
