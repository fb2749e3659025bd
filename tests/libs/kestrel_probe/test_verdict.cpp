#include "libs/kestrel_probe/Verdict.h"

#include <gtest/gtest.h>
#include <limits>

using kestrel_probe::judge;
using kestrel_probe::Verdict;

namespace {

struct Row {
    const char* name;
    double error;
    double radius;
    double tolerance;
    Verdict verdict;
};

class VerdictTable : public testing::TestWithParam<Row> {};

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

const Row rows[] = {
    {"far_inside", 0.1, 0.1, 0.5, Verdict::Conforms},
    {"just_inside", 0.25, 0.25, 0.5, Verdict::Conforms},
    {"touching_the_inside", 0.375, 0.25, 0.5, Verdict::Undecided},
    {"on_the_tolerance", 0.5, 0.25, 0.5, Verdict::Undecided},
    {"outside_but_uncertain", 0.75, 0.25, 0.5, Verdict::Undecided},
    {"just_outside", 0.7501, 0.25, 0.5, Verdict::DoesNotConform},
    {"far_outside", 3.0, 0.1, 0.5, Verdict::DoesNotConform},
    {"certain_and_equal", 0.5, 0.0, 0.5, Verdict::Conforms},
    {"all_zero", 0.0, 0.0, 0.0, Verdict::Conforms},
    {"no_tolerance", 0.5, 0.25, 0.0, Verdict::DoesNotConform},
    {"huge_radius", 0.1, 100.0, 0.5, Verdict::Undecided},
    {"negative_error", -0.1, 0.1, 0.5, Verdict::Undecided},
    {"negative_radius", 0.1, -0.1, 0.5, Verdict::Undecided},
    {"negative_tolerance", 3.0, 0.1, -0.5, Verdict::Undecided},
    {"error_not_a_number", nan, 0.1, 0.5, Verdict::Undecided},
    {"radius_not_a_number", 0.1, nan, 0.5, Verdict::Undecided},
    {"tolerance_not_a_number", 0.1, 0.1, nan, Verdict::Undecided},
    {"infinite_error", inf, 0.1, 0.5, Verdict::Undecided},
    {"infinite_radius", 0.1, inf, 0.5, Verdict::Undecided},
    {"infinite_tolerance", 0.1, 0.1, inf, Verdict::Undecided},
};

} // namespace

TEST_P(VerdictTable, followsTheDecisionRule) {
    const Row& row = GetParam();
    EXPECT_EQ(judge(row.error, row.radius, row.tolerance), row.verdict);
}

INSTANTIATE_TEST_SUITE_P(Verdict, VerdictTable, testing::ValuesIn(rows),
                         [](const testing::TestParamInfo<Row>& row) { return row.param.name; });
