#include <limits>

#include <gmock/gmock.h>

#include "app/HtmlReport.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using testing::Not;

DesignReport smallReport() {
    DesignReport report;
    report.sampleRate = 48000;
    report.isFinite = true;
    report.largestPoleRadius = 0.5;
    report.gainClampDb = -6.0;
    report.highestGain = {5.25, 188.0, 40961};
    report.sections = {{1.0, 0.0, 0.0, 0.0, 0.0, {0x800000, 0, 0, 0, 0x3FFFFFF}}};
    report.poleRadii = {0.5};
    const double gap = std::numeric_limits<double>::quiet_NaN();
    report.curves = {{50, 100, 15000}, {0, 1, 2}, {-1, gap, 1}, {0, 0, 0}, {0.25, 0.25, 0.25}};
    return report;
}

// The names of the elements that are open at the end, or the first that is closed out of turn.
std::string unbalanced(const std::string& page) {
    std::vector<std::string> open;
    for (size_t at = page.find('<'); at != std::string::npos; at = page.find('<', at + 1)) {
        const size_t end = page.find('>', at);
        const std::string body = page.substr(at + 1, end - at - 1);
        const std::string name = body.substr(0, body.find_first_of(" \n/", 1));
        if (body.starts_with("!") || name == "meta" || body.ends_with("/")) {
            continue;
        }
        if (!body.starts_with("/")) {
            open.push_back(name);
        } else if (open.empty() || "/" + open.back() != body) {
            return body;
        } else {
            open.pop_back();
        }
    }
    return open.empty() ? "" : open.back();
}

TEST(HtmlReport, IsOneWellFormedPageThatNeedsNothingElse) {
    const std::string page =
        HtmlReport(smallReport(), {"a<b>&\"c'\n.csv", "<script>", "f>"}, "<svg id=\"plot\"></svg>");
    EXPECT_EQ(unbalanced(page), "");
    EXPECT_THAT(page, HasSubstr("a&lt;b&gt;&amp;&quot;c&#39; .csv"));
    EXPECT_THAT(page, HasSubstr("&lt;script&gt;"));
    EXPECT_THAT(page, HasSubstr("f&gt;"));
    EXPECT_THAT(page, HasSubstr("<svg id=\"plot\"></svg>"));
    for (const char* outside : {"<script", "http", "src=", "href=", "url(", "@import"}) {
        EXPECT_THAT(page, Not(HasSubstr(outside)));
    }
    EXPECT_THAT(page, Not(HasSubstr(">nan")));
    EXPECT_THAT(page, HasSubstr("3FFFFFF"));
    EXPECT_THAT(page, HasSubstr("+5.25 dB at 188.0 Hz, the highest of 40961 frequencies; with the "
                                "-6 dB of the gain clamp that is -0.75 dB"));
}

TEST(HtmlReport, PutsWarningsFirst) {
    DesignReport report = smallReport();
    const std::string good = HtmlReport(report, {"r", "", "f"}, "");
    EXPECT_THAT(good, HasSubstr("Target: flat"));
    EXPECT_THAT(good, Not(HasSubstr("Look at this")));
    report.warnings = {"The fit & all."};
    EXPECT_THAT(HtmlReport(report, {"r", "", "f"}, ""),
                testing::AllOf(HasSubstr("Look at this"), HasSubstr("The fit &amp; all.")));
    report.largestPoleRadius = 1.5;
    const std::string bad = HtmlReport(report, {"r", "", "f"}, "");
    EXPECT_LT(bad.find("Do not use this filter"), bad.find("<svg"));
}

}  // namespace
}  // namespace tonvane
