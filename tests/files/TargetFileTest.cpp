#include <gmock/gmock.h>

#include "files/TargetFile.h"
#include "files/TestFiles.h"

namespace tonvane {
namespace {

using enum TargetFileStatus;

const std::string knots = "90, 2\n220,1\n500,0\n1300,-1\n3000,-2\n8000,-3\n18000,-4\n";
const std::vector<CurvePoint> knotPoints{{90, 2},    {220, 1},   {500, 0},   {1300, -1},
                                         {3000, -2}, {8000, -3}, {18000, -4}};

// The built-in frequencies at 5 dB, with the first knots replaced.
TargetRecord curveOf(int32_t count) {
    TargetRecord record = BuiltInTargetCurve;
    for (CurvePoint& point : record.points) {
        point.level = 5;
    }
    std::copy_n(knotPoints.begin(), count, record.points.begin());
    return record;
}

TEST(TargetFile, LeavesWhatWasReadUpToAFault) {
    const tests::TemporaryFolder folder;
    const struct {
        std::string text;
        TargetFileStatus status;
        int32_t kind, gain, knotsRead;
        int32_t half = 0;  // the frequency that was read of the next knot
    } cases[] = {
        {"-zerocurve\n-6\n" + knots, loaded, 0, -6, 7},
        {"-usercurve\n3\n" + knots + "more", loaded, 1, 3, 7},
        {"-savedcurve\n-6\n" + knots, loaded, 2, -6, 7},
        {"-savedcurve\r\n-6\r\n90,2\r\n220, 1\r\n500,0\r\nx", damaged, 2, -6, 3},
        {"-savedcurve -6 " + knots, loaded, 2, -6, 7},  // the word fills what is read of its line
        {"", damaged, 7, -9, 0},
        {"-flatcurve\n-6\n" + knots, damaged, 7, -9, 0},
        {"-UserCurve\n-6\n" + knots, damaged, 7, -9, 0},
        {"-usercurves\n-6\n" + knots, damaged, 7, -9, 0},
        {"-usercurve\n" + knots, damaged, 1, 90, 0},  // the first frequency is taken for the gain
        {"-usercurve\nloud\n" + knots, damaged, 1, -9, 0},
        {"-usercurve\n-6\n90,2\n220,1\n500;0\n1300,-1", damaged, 1, -6, 2, 500},
        {"-usercurve\n-6\n90,2\n220,loud\n", damaged, 1, -6, 1, 220},
        {"-usercurve\n-6\n90\n220,1\n", damaged, 1, -6, 0, 90},
    };
    for (const auto& c : cases) {
        TargetSettings settings{curveOf(0), 7, -9};
        EXPECT_EQ(LoadTargetFile(folder.write("t.txt", c.text), settings), c.status) << c.text;
        EXPECT_EQ(settings.kind, c.kind) << c.text;
        EXPECT_EQ(settings.gainClampDb, c.gain) << c.text;
        TargetRecord expected = curveOf(c.knotsRead);
        if (c.half != 0) {
            expected.points[c.knotsRead].frequency = c.half;
        }
        EXPECT_EQ(settings.curve, expected) << c.text;
    }
    TargetSettings settings;
    EXPECT_EQ(LoadTargetFile(folder / "none.txt", settings), missing);
    EXPECT_EQ(LoadTargetFile(folder.path(), settings), closed);
}

TEST(TargetFile, IsWrittenAsTheReaderWantsIt) {
    EXPECT_EQ(FormatTargetFile(curveOf(7), userCurve, 6),
              "-usercurve\n-6\n90, 2\n220, 1\n500, 0\n1300, -1\n3000, -2\n8000, -3\n18000, -4\n");
    EXPECT_TRUE(FormatTargetFile(curveOf(7), zeroCurve, 0).starts_with("-zerocurve\n0\n90, 2\n"));
    EXPECT_TRUE(FormatTargetFile(curveOf(7), savedCurve, 12).starts_with("-savedcurve\n-12\n"));
    EXPECT_TRUE(FormatTargetFile(curveOf(7), 3, -1).starts_with("1\n90, 2\n"));
}

TEST(CheckedTargetFile, NamesTheLineAndWhatWasExpected) {
    tests::ExpectRefusals({{"", ":1: expected -zerocurve"},
                           {"-flat\n-6\n" + knots, ":1: expected -zerocurve"},
                           {"-usercurve\n" + knots, ":2: expected the gain clamp"},
                           {"-usercurve\n-13\n" + knots, ":2: expected the gain clamp"},
                           {"-usercurve\n-6\n90, 2\n220 1\n", ":4: expected a knot"},
                           {"-usercurve\n-6\n90, 2\n\n220, 1\n", ":4: expected a knot"},
                           {"-usercurve\n-6\n90, 2\n90, 1\n", ":4: expected a frequency"},
                           {"-usercurve\n-6\n0, 2\n", ":3: expected a frequency of 1 to"},
                           {"-usercurve\n-6\n1000001, 2\n", ":3: expected a frequency of 1 to"},
                           {"-usercurve\n-6\n90, 2\n220, -61\n", ":4: expected a level"}},
                          ReadCheckedTargetFile);
    const tests::TemporaryFolder folder;
    const auto settings =
        ReadCheckedTargetFile(folder.write("t.txt", "-savedcurve \r\n-6\r\n" + knots));
    EXPECT_EQ(settings.kind, savedCurve);
    EXPECT_TRUE(std::ranges::equal(knotPoints, std::span(settings.curve.points).first(7)));
}

}  // namespace
}  // namespace tonvane
