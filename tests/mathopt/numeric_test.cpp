// Resampling maps: a null output array is ignored, not written (the wrapping products,
// fractions and print geometry on out-of-domain input are golden vectors).
#include <gtest/gtest.h>

#include <kxbase/mathopt/amathopt.h>

TEST(ResampleMaps, NullOutputIsIgnored) {
    AMathOpt::ResampleLine(5, 7, nullptr);
    AMathOpt::ResampleSegMap(5, 7, 3, 2, nullptr);
}
