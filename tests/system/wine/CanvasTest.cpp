// The tests that are a program for Windows themselves.
#include <gmock/gmock.h>

#include "system/wine/Wine.h"

namespace tonvane {
namespace {

TEST(GdiCanvas, DrawsAsEveryCanvasDoes) {
    const auto result = tests::RunUnderWine({.program = "tests-ui_win32.exe"});
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, testing::HasSubstr("[  PASSED  ] "));
}

}  // namespace
}  // namespace tonvane
