#include "QuorvaFinderExtension/Containment.hpp"

#include <stdexcept>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using fakePlatform::Operation;
using testing::ElementsAre;
using testing::IsEmpty;

using ContainmentTest = UnitTest;

TEST_F(ContainmentTest, BodyThatThrowsNothingRunsAndLogsNothing) {
    bool ran = false;
    contain("menu request", [&] { ran = true; });
    EXPECT_TRUE(ran);
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(ContainmentTest, StandardExceptionIsLoggedAsTheFailureOfTheOperation) {
    contain("menu request", [] { throw std::runtime_error("no menu today"); });
    EXPECT_THAT(messages(), ElementsAre("menu request failed: no menu today"));
}

TEST_F(ContainmentTest, ExceptionOfAnyOtherTypeIsLoggedAsUnknown) {
    contain("click", [] { throw 1; });
    EXPECT_THAT(messages(), ElementsAre("click failed: unknown exception"));
}

TEST_F(ContainmentTest, FailureThatCannotBeLoggedIsContainedToo) {
    platform().raise(Operation::logToConsole, outOfMemory);
    contain("click", [] { throw std::bad_alloc(); });
    EXPECT_THAT(messages(), IsEmpty());
}

}  // namespace
}  // namespace quorva
