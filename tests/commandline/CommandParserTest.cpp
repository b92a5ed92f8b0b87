#include <gmock/gmock.h>

#include "commandline/CommandParser.h"

namespace tonvane {
namespace {

using Words = std::vector<std::string>;

struct Draw {
    std::string source, caption = "none";
    bool measure = false;
    Words curves, exports;
    double from = 0.0;
    int timesDone = 0;
};

// What comes of a command line, and how often its command was done.
int parse(const Words& words, Draw& draw) {
    CommandParser program("Draws.");
    Command command = program.subcommand("draw", "Draw something");
    Command source = command.exactlyOneOf("source");
    source.option("source", draw.source, "What is drawn");
    source.flag("--measure", draw.measure, "Draw what is measured");
    command.option("-c,--caption", draw.caption, "Text below");
    command.option("--show", draw.curves, "Curves").separatedBy(',');
    command.option("--from", draw.from, "Seconds").notNegative();
    const auto take = [&draw](const std::string& word) -> std::string {
        draw.exports.push_back(word);
        return word == "bad" ? "is bad" : "";
    };
    command.repeatable("--export", "FILE", take, "Files");
    command.action([&draw] { ++draw.timesDone; });
    return program.run(words);
}

TEST(CommandParser, DoesWhatGoodWordsAskFor) {
    Draw draw;
    EXPECT_EQ(parse({"draw", "/s", "--show", "a,b", "--show", "c", "-c", "", "--export", "e",
                     "--from", "0.5", "--export", "f"},
                    draw),
              0);
    EXPECT_EQ(draw.timesDone, 1);
    EXPECT_EQ(draw.source, "/s");
    EXPECT_EQ(draw.caption, "");
    EXPECT_EQ(draw.curves, (Words{"a", "b", "c"}));
    EXPECT_EQ(draw.exports, (Words{"e", "f"}));
    EXPECT_EQ(draw.from, 0.5);
}

TEST(CommandParser, RefusesBadWordsWithoutDoingAnything) {
    for (const Words& words : std::vector<Words>{{""},
                                                 {"draw", ""},
                                                 {"draw", "s", ""},
                                                 {"draw", "s", "t"},
                                                 {"draw", "--measure", ""},
                                                 {"draw", "s", "-c", "t", ""},
                                                 {"draw", "s", "--from", "nan"},
                                                 {"draw", "s", "--export", "bad"}}) {
        Draw draw;
        EXPECT_EQ(parse(words, draw), CommandParser::badUsage) << testing::PrintToString(words);
        EXPECT_EQ(draw.timesDone, 0) << testing::PrintToString(words);
    }
}

}  // namespace
}  // namespace tonvane
