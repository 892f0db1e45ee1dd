#define LANES_UNDER_TEST Twice<TwoVectors>
#include "tests/lanes/lanes_tests.hpp"

namespace finance::test {
namespace {

bool can_run() { return elementary::has_wide_lanes; }

}  // namespace
}  // namespace finance::test

LANES_TESTS(LanesAvx2FourVectors)
