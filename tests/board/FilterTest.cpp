#include "board/Filter.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

TEST(Filter, JumpsOnFallsOfMoreThanFivePercentOnly) {
    Filter filter;
    EXPECT_FLOAT_EQ(filter.LPF(100.0F), 100.0F) << "without a coefficient the input passes";
    filter.Coeff(0.9F);
    EXPECT_FLOAT_EQ(filter.LPF(96.0F), 99.6F);
    EXPECT_FLOAT_EQ(filter.LPF(94.0F), 94.0F);
    EXPECT_FLOAT_EQ(filter.LPF(194.0F), 104.0F);
    filter.Coeff(1.5F);
    EXPECT_FLOAT_EQ(filter.Coeff(), 1.0F);
    filter.Coeff(-0.2F);
    EXPECT_FLOAT_EQ(filter.Coeff(), 0.0F);
}

} // namespace
} // namespace ombrix
