#include <gmock/gmock.h>

#include "app/CommandLine.h"
#include "files/TestFiles.h"
#include "tuning/RecordingMessages.h"

namespace tonvane {
namespace {

using Tokens = std::vector<std::string>;

TEST(CommandLine, IsSplitByTheRulesThatCallersRelyOn) {
    for (const auto& [raw, tokens] : std::vector<std::pair<std::string, Tokens>>{
             {"", {}},
             {"a  b ", {"a", "", "b", ""}},
             {"a\tb", {"a\tb"}},
             {R"("a b" c)", {"a b", "c"}},
             {R"("" b "")", {"", "b", ""}},
             {R"("a "b" c)", {"a \"b", "c"}},
             {R"("a" b" c)", {"a", "", "c"}},
             {R"("a b" )", {"a b", ""}},
             {R"(abc"d e" f)", {"bc\"d e", "f"}},
             {R"(")", {""}},
             {R"(""")", {"\""}},
             {R"(" a")", {"", ""}},
         }) {
        EXPECT_EQ(TokenizeCommandLine(raw), tokens) << raw;
    }
}

TEST(CommandLine, PutsTheFilterFileWhereTheCallerMeansIt) {
    for (const auto& [token, path] : std::vector<std::pair<std::string, std::string>>{
             {R"(.\f.txt)", "/app/f.txt"},
             {R"(.\sub\f.txt)", R"(/app/sub\f.txt)"},
             {R"(..\f.txt)", R"(/app/\f.txt)"},
             {R"(.hidden\f.txt)", R"(/app/idden\f.txt)"},
             {".f", "/app/"},
             {"x/f.txt", "/app/x/f.txt"},
             {R"(x\.f)", R"(x\.f)"},
             {R"(\f.txt)", R"(\f.txt)"},
         }) {
        EXPECT_EQ(ResolveFilterPath(token, "/app/"), path);
    }
}

TEST(CommandLine, SetsTheValuesOfABatchStart) {
    const struct {
        Tokens tokens;
        int32_t rate;
        std::string response;
        bool isCsv;
        std::string filter, target;
        bool prompt;
    } cases[] = {
        {{"-cmd", "44100"}, 48000, "", true, "", "", false},
        {{"-CMD", "44100", "r", "qsr", "f"}, 48000, "", true, "", "", false},
        {{"-cmd", "44100", "R.csv"}, 44100, "R.csv", true, "", "", false},
        {{"-cmd", "44100", "r", "csv", "f"}, 44100, "r", true, "/app/f", "", true},
        {{"-cmd", "", "r", "qsr", "f", "t", "-noprompt"}, 48000, "r", false, "/app/f", "t", false},
        {{"-cmd", "96000", "r", "qsr", "f", "t", ""}, 96000, "r", false, "/app/f", "t", true},
        {{"-cmd", "1", "r", "qsr", "f", "-noprompt"}, 1, "r", false, "/app/f", "-noprompt", true},
        {{"-cmd", "1", "r", "qsr", "", "t", "x"}, 1, "r", false, "", "t", false},
        {{"-cmd", "-5", "r", "QSR"}, 48000, "r", true, "", "", false},
        {{"-cmd", " 32000Hz", "", "qsr"}, 32000, "", false, "", "", false},
    };
    for (const auto& c : cases) {
        ProgramValues values;
        values.AppDirectory = "/app/";
        tests::RecordingMessages messages;
        const bool prompt = InterpretCommandLine(c.tokens, values, messages);
        EXPECT_THAT(
            std::tie(values.InputSampleRate, values.FilterSampleRate, values.ResponseFilePath,
                     values.ResponseIsCsv, values.FilterFilePath, values.TargetFilePath, prompt),
            testing::FieldsAre(c.rate, c.rate, c.response, c.isCsv, c.filter, c.target, c.prompt))
            << testing::PrintToString(c.tokens);
        EXPECT_TRUE(messages.errors.empty());  // a missing target file is none
    }
}

TEST(CommandLine, TakesADamagedTargetFileAsFarAsItGoes) {
    const tests::TemporaryFolder folder;
    const std::string path = folder.write("t.txt", "-savedcurve\n-4\n90,2\nx");
    ProgramValues values;
    tests::RecordingMessages messages;
    InterpretCommandLine(Tokens{"-cmd", "", "r", "csv", "", path}, values, messages);
    EXPECT_EQ(messages.errors, Tokens{"Failed to load desired response data. File is missing."});
    EXPECT_EQ(values.TargetCurveKind, savedCurve);
    EXPECT_EQ(values.InitialGainClamp, -4);
    EXPECT_EQ(values.DefaultTargetCurve.points[0], (CurvePoint{90, 2}));
}

}  // namespace
}  // namespace tonvane
