#define LANES_UNDER_TEST OneVector
#include "tests/lanes/lanes_tests.hpp"

namespace finance::test {
namespace {

bool can_run() { return true; }

}  // namespace
}  // namespace finance::test

LANES_TESTS(LanesSse2OneVector)
