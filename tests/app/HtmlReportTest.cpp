#include <limits>

#include <gmock/gmock.h>

#include "app/HtmlReport.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using testing::Not;

DesignReport smallReport() {
    DesignReport report;
    report.isFinite = true;
    report.largestPoleRadius = 0.5;
    report.gainClampDb = -6.0;
    report.chain.highestGain = {5.25, 188.0, 40961};
    report.sections = {{}};
    report.words = {0x800000, 0, 0, 0, 0x3FFFFFF};
    report.poleRadii = {0.5};
    const double gap = std::numeric_limits<double>::quiet_NaN();
    report.curves = {{50, 100, 15000}, {0, 1, 2}, {-1, gap, 1},
                     {0, 0, 0},        {0, 0, 0}, {0.25, 0.25, 0.25}};
    return report;
}

TEST(HtmlReport, IsOnePageThatNeedsNothingElse) {
    const std::string page =
        HtmlReport(smallReport(), {"r\n.csv", "<script>", "f>"}, "<svg id=\"plot\"></svg>");
    for (const char* part :
         {"r .csv", "&lt;script&gt;", "f&gt;", "<svg id=\"plot\"></svg>", "3FFFFFF",
          "+5.25 dB at 188.0 Hz, the highest of 40961 frequencies; with the -6 dB of the gain "
          "clamp that is -0.75 dB"}) {
        EXPECT_THAT(page, HasSubstr(part));
    }
    for (const char* outside : {"<script", "http", "src=", "href=", "url(", "@import", ">nan"}) {
        EXPECT_THAT(page, Not(HasSubstr(outside)));
    }
}

TEST(HtmlReport, PutsWarningsFirst) {
    DesignReport report = smallReport();
    const auto page = [&] { return HtmlReport(report, {"r", "", "f"}, ""); };
    EXPECT_THAT(page(), testing::AllOf(HasSubstr("Target: flat"), Not(HasSubstr("Look at this"))));
    report.warnings = {"The fit & all."};
    EXPECT_THAT(page(), testing::AllOf(HasSubstr("Look at this"), HasSubstr("The fit &amp; all.")));
    report.largestPoleRadius = 1.5;
    EXPECT_LT(page().find("Do not use this filter"), page().find("<svg"));
}

}  // namespace
}  // namespace tonvane
