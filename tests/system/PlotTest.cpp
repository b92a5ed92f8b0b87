// Pictures of a design, as a person asks for them.
#include <algorithm>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "system/Program.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using testing::Not;
using tests::Contents;
using Arguments = std::vector<std::string>;

class Plot : public testing::Test {
  protected:
    Plot() { folder.copyGolden("port44.qsr", "r.qsr"); }

    tests::ProgramResult run(Arguments arguments) {
        return tests::RunProgram(arguments, {folder.path()});
    }
    // The SVG of these curves.
    std::string svg(const std::string& curves) {
        EXPECT_EQ(run({"plot", "r.qsr", "-o", "p.svg", "--show", curves}).exitCode, 0);
        return Contents(folder / "p.svg");
    }

    tests::TemporaryFolder folder;
};

// Width and height in the header of a PNG file.
std::string pngSize(const std::string& png) {
    return png.size() < 24 ? "no PNG" : png.substr(16, 8);
}

TEST_F(Plot, WritesTheKindOfItsExtensionInItsSize) {
    using namespace std::string_literals;
    const auto result = run({"plot", "r.qsr", "-o", "p.PNG"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "Wrote p.PNG\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(pngSize(Contents(folder / "p.PNG")), "\0\0\x02\xEE\0\0\x01\x2C"s);  // 750x300
    EXPECT_EQ(run({"plot", "r.qsr", "-o", "q.png", "--size", "600x400", "--scale", "2"}).exitCode,
              0);
    EXPECT_EQ(pngSize(Contents(folder / "q.png")), "\0\0\x04\xB0\0\0\x03\x20"s);  // 1200x800
    EXPECT_EQ(run({"plot", "r.qsr", "-o", "p.pdf"}).exitCode, 0);
    EXPECT_THAT(Contents(folder / "p.pdf"), testing::StartsWith("%PDF-"));
    EXPECT_THAT(svg("all"), HasSubstr("width=\"750px\" height=\"300px\""));
    EXPECT_LT(Contents(folder / "p.svg").size(), 1000000U);
}

TEST_F(Plot, ShowsTheCurvesThatAreAskedFor) {
    const std::string red = "stroke:rgb(100%,0%,0%)";
    const std::string blue = "stroke:rgb(0%,0%,100%)";
    EXPECT_THAT(svg("biquads"), testing::AllOf(HasSubstr(red), Not(HasSubstr(blue))));
    EXPECT_THAT(svg("measured,target"), testing::AllOf(Not(HasSubstr(red)), HasSubstr(blue)));
    const std::string usual = svg("target,measured,biquads");
    EXPECT_EQ(run({"plot", "r.qsr", "-o", "u.svg"}).exitCode, 0);
    EXPECT_TRUE(Contents(folder / "u.svg") == usual);
    EXPECT_EQ(run({"plot", "r.qsr", "-o", "c.svg", "--caption", "\xFF another"}).exitCode, 0);
    EXPECT_FALSE(Contents(folder / "c.svg") == usual);
}

TEST_F(Plot, OfADesignIsTheSamePicture) {
    const Arguments target{"--target", tests::GoldenPath("warm3.txt"), "--gain-clamp", "-4"};
    Arguments plot{"plot", "r.qsr", "-o", "p.svg"};
    Arguments design{"design", "r.qsr", "-o", "f.txt", "--plot", "d.svg"};
    for (Arguments* arguments : {&plot, &design}) {
        arguments->insert(arguments->end(), target.begin(), target.end());
        const auto result = run(*arguments);
        EXPECT_EQ(result.exitCode, 0) << result.err;
    }
    EXPECT_TRUE(Contents(folder / "p.svg") == Contents(folder / "d.svg"));
    EXPECT_EQ(tests::ParseFilterFile(Contents(folder / "f.txt")).words.size(), 35U);
}

TEST_F(Plot, SaysWhatIsWrongInOneLineAndWritesNothing) {
    const std::set<std::string> before = folder.names();
    const struct {
        Arguments options;
        const char* complaint;
    } cases[] = {
        {{"--plot", "p.gif"}, "p.gif: expected a name that ends in .png, .svg or .pdf"},
        {{"--plot", "none/p.png"}, "none/p.png: cannot be written: "},
        {{"--plot", "p.png", "--size", "300"}, "--size: expected WIDTHxHEIGHT"},
        {{"--plot", "p.png", "--size", "9000x300"}, "at most 8000 each"},
        {{"--plot", "p.png", "--size", "8000x8000", "--scale", "8"}, "100 million pixels"},
        {{"--plot", "p.png", "--size", "300x100"}, "p.png: a picture of 300x100 has no room"},
        {{"--plot", "p.png", "--show", "target,noise"}, "there is no curve noise; expected all,"},
    };
    for (const auto& c : cases) {
        Arguments design{"design", "r.qsr", "-o", "f.txt"};
        design.insert(design.end(), c.options.begin(), c.options.end());
        Arguments plot{"plot", "r.qsr", "-o"};
        plot.insert(plot.end(), c.options.begin() + 1, c.options.end());
        for (const Arguments& arguments : {design, plot}) {
            const auto result = run(arguments);
            EXPECT_EQ(result.exitCode, 1) << c.complaint;
            EXPECT_THAT(result.err, HasSubstr(c.complaint));
            EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
            EXPECT_EQ(folder.names(), before) << c.complaint;
        }
    }
    folder.copyGolden("port44.qsr", "r.png");
    const auto overwriting = run({"plot", "r.png", "-o", "r.png"});
    EXPECT_EQ(overwriting.exitCode, 1);
    EXPECT_THAT(overwriting.err, HasSubstr("r.png: would overwrite"));
    EXPECT_EQ(run({"plot", "r.qsr", "-o", "p.png", "--scale", "0"}).exitCode, 2);
}

}  // namespace
}  // namespace tonvane
