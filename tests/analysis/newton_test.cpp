// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/newton.h"

#include <gtest/gtest.h>

#include <vector>

namespace torvik::analysis {
namespace {

struct Trace {
  std::vector<double> trials;
  int yields = 0;
  int iterations = 1;
  double x = 0;
  SearchEnd end = SearchEnd::Failed;
};

/// Searches a root of f from x, with a fixed tolerance.
template <class F>
Trace search(const JobOptions& options, double x, double tolerance, F f, int yieldsBeforeEnd = 1 << 30) {
  Trace trace;
  trace.x = x;
  trace.end = newton(
      options, trace.x, trace.iterations,
      [&](double& residual) {
        trace.trials.push_back(trace.x);
        residual = f(trace.x);
        return SearchEnd::Converged;
      },
      [](double) {}, [&] { return tolerance; }, [&] { return ++trace.yields <= yieldsBeforeEnd; });
  return trace;
}

TEST(Newton, TriesTheLowerTheMiddleAndTheUpperValueInThisOrder) {
  const JobOptions options;  // precision 1e-3, difference width 1e-6
  const Trace trace = search(options, 2.0, 0, [](double x) { return x - 2.0; });
  EXPECT_EQ(trace.trials,
            (std::vector<double>{(1e-3 * -1 * 1e-6 + 1.0) * 2.0, 2.0, (1e-3 * 1e-6 + 1.0) * 2.0}));
  EXPECT_EQ(trace.end, SearchEnd::Converged);
  EXPECT_EQ(trace.x, 2.0);
  EXPECT_EQ(trace.yields, 0);
}

TEST(Newton, FindsASmoothRootAndCountsItsIterations) {
  const Trace trace = search({}, 1.0, 1e-12, [](double x) { return x * x - 2; });
  EXPECT_EQ(trace.end, SearchEnd::Converged);
  EXPECT_NEAR(trace.x, 1.4142135623730951, 1e-12);
  EXPECT_EQ(trace.yields, trace.iterations - 1);
  EXPECT_EQ(trace.trials.size(), 3u * static_cast<std::size_t>(trace.iterations));
}

TEST(Newton, SucceedsInTheVeryIterationThatIsTheLastOneAllowed) {
  const auto f = [](double x) { return x * x - 2; };
  const int needed = search({}, 1.0, 1e-12, f).iterations;
  JobOptions options;
  options.MaxIteration = static_cast<std::int16_t>(needed);
  EXPECT_EQ(search(options, 1.0, 1e-12, f).end, SearchEnd::Converged);
  options.MaxIteration = static_cast<std::int16_t>(needed - 1);
  EXPECT_EQ(search(options, 1.0, 1e-12, f).end, SearchEnd::Failed);
  options.MaxIteration = 1;
  EXPECT_EQ(search(options, 1.0, 1e-12, f).yields, 0);
}

TEST(Newton, DividesByNothingWhereItHasNoSlope) {
  const auto expectFault = [](double x, auto f, const char* where) {
    try {
      search({}, x, 0.5, f);
      ADD_FAILURE() << where;
    } catch (const base::NumericFault& fault) {
      EXPECT_EQ(fault.kind(), base::NumericFault::Kind::DivisionByZero);
      EXPECT_NE(fault.where().find(where), std::string::npos) << fault.where();
    }
  };
  expectFault(
      0.0, [](double x) { return x + 1; }, "residuals over trial values");
  expectFault(
      1.0, [](double) { return 1.0; }, "residual over slope");
  // In balance at once: the slope is not asked for.
  EXPECT_EQ(search({}, 0.0, 0, [](double) { return 0.0; }).end, SearchEnd::Converged);
}

TEST(Newton, StopsWhereTheUserEndsTheJob) {
  const Trace trace = search(
      {}, 2.0, 0, [](double x) { return x * x + 1; }, 3);
  EXPECT_EQ(trace.end, SearchEnd::EndedByUser);
  EXPECT_EQ(trace.trials.size(), 12u);
}

}  // namespace
}  // namespace torvik::analysis
