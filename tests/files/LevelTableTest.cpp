// Tables as measuring programs write them, every style crossed with every two quirks.
#include <regex>

#include <gmock/gmock.h>

#include "files/LevelTable.h"
#include "files/TestFiles.h"
#include "platform/FileAccess.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using tests::Rows;
using tests::RowsOf;

// What stands between columns, and the rows of a table.
const Rows rows{{19.9, -3.25}, {999.5, 0}, {1001.75, 90.123}, {96000, 12}};
constexpr std::pair<const char*, const char*> styles[] = {
    {",", "19.9,-3.25\n999.5,0\n1001.75,90.123\n96000,12\n"},
    {"\t", "19.9\t-3.25\n999.5\t0\n1001.75\t90.123\n96000\t12\n"},
    {"\t", "19.9\t-3.25\n999.5\t0\n1,001.75\t90.123\n96,000\t12\n"},
    {"\t", "19,9\t-3,25\n999,5\t0\n1001,75\t90,123\n96000\t12\n"},
    {"\t", "19,9\t-3,25\n999,5\t0\n1.001,75\t90,123\n96.000\t12\n"},
    {";", "19.9;-3.25\n999.5;0\n1001.75;90.123\n96000;12\n"},
    {" ; ", "19,9 ; -3,25\n999,5 ; 0\n1001,75 ; 90,123\n96000 ; 12\n"},
    {";", "19.9;-3.25\n999.5;0\n1,001.75;90.123\n96,000;12\n"},
    {" , ", "\"19.9\" , \"-3.25\"\n999.5,0\n\"1,001.75\",\"90.123\"\n\"96,000\",12\n"},
    {",", "\"19,9\",\"-3,25\"\n\"999,5\",0\n\"1001,75\",\"90,123\"\n\"96000\",12\n"},
    {"   ", "  19.9   -3.25\n 999.5    0\n1001.75   90.123\n96000  12\n"},
    {" ", "19.9 -3.25\n999.5 0\n1,001.75 90.123\n96,000 12\n"},
    {"  ", "19,9  -3,25\n999,5  0\n1001,75  90,123\n96000  12\n"},
};

// What else programs do to a table: a pattern and what comes into its place, with @ for what stands
// between columns; whether a note tells of it, and whether it leaves another reading open.
struct Quirk {
    const char* pattern;
    const char* replacement;
    bool isTold = false;
    bool isOpen = false;
};
constexpr Quirk quirks[] = {
    {"never", ""},
    {"(.)\n", "$1@-7\n", true},
    {"(.)\n", "$1@-7@8\n", true, true},
    {"^(.*\n)([^]*)", "$2$1"},
    {"^.*\n", "$&$&", true},
    {"^", "Freq      dB         Phase\n", true},
    {"^", "* Measured in 2023, 20 to 24 kHz\n# 1001,7\n\n* Freq(Hz)\tSPL(dB)\n", true},
    {"^", "\"On Axis\"\n\"Frequency [Hz]\"\t\"Sound Pressure Level [dB] / [2.83V 1m]\"\n", true},
    {"^", "2023-11-05 woofer\nHz;dB\n", true, true},
    {"\n$", ""},
    {"\n$", "\n\t\t"},
    {"\n", "\r\n"},
    {"\n", "\r"},
    {"^", "\xEF\xBB\xBF"},
};

std::string withQuirk(const std::string& text, const Quirk& quirk, const std::string& separator) {
    const std::string by = std::regex_replace(quirk.replacement, std::regex("@"), separator);
    return std::regex_replace(text, std::regex(quirk.pattern), by);
}

void expectRead(const std::string& text, bool isTold, bool isOpen) {
    SCOPED_TRACE(text);
    CsvTable table;
    InputNotes notes;
    ASSERT_EQ(tests::ComplaintOf([&] { ParseLevelTable("t", text, table, notes); }), "");
    EXPECT_EQ(RowsOf(table), rows);
    EXPECT_EQ(!notes.texts().empty(), isTold);
    InputNotes strict(true);
    const std::string refusal =
        tests::ComplaintOf([&] { ParseLevelTable("t", text, table, strict); });
    EXPECT_EQ(!refusal.empty(), isOpen);
}

TEST(LevelTable, IsReadInEveryStyleWithEveryTwoQuirksAndTheOpenOnesAreRefusedStrictly) {
    for (const auto& [separator, plain] : styles) {
        const bool hasCommas = std::string_view(plain).find("19,9") != std::string_view::npos;
        for (const Quirk& first : quirks) {
            for (const Quirk* second = &first + 1; second != std::end(quirks); ++second) {
                const std::string text =
                    withQuirk(withQuirk(plain, first, separator), *second, separator);
                expectRead(text, hasCommas || first.isTold || second->isTold,
                           first.isOpen || second->isOpen);
            }
        }
        const std::string wide =
            std::regex_replace(plain, std::regex("[^]"), std::string("$&\0", 3));
        expectRead("\xFF\xFE" + wide, hasCommas, false);
    }
}

TEST(LevelTable, SaysWhatItGuessedAndStrictlyRefusesIt) {
    const Rows thousands{{500, 70}, {1000, 71}, {2000, 72}};
    const struct {
        std::string text;
        Rows rows;
        const char* note;
    } cases[] = {
        // Commas that group thousands and decimal commas alike; the order of the rows decides.
        {"500\t70\n1,000\t71\n2,000\t72\n", thousands, "marks of thousands"},
        {"500\t70\n1.000\t71\n2.000\t72\n", thousands, "marks of thousands"},
        {"20,67,120\n40,68,110\n", {{20, 67}, {40, 68}}, "between columns"},
        {"20\t1\n30\t2\n20\t3\n", {{20, 3}, {30, 2}}, "t:3: 20 Hz stands there once more"},
        {"3-way speaker\n20 1\n", {{20, 1}}, "t:1: passed over as a header"},
        {"20 1 2 3\n", {{20, 1}}, "column 2 of 4"},
        // A zero groups nothing, so that these are no guesses.
        {"0,5\t70\n100,250\t71\n", {{0.5, 70}, {100.25, 71}}, "decimal commas"},
        {"f/kHz\tdB\n0.02\t1\n20\t2\n20\t2",
         {{20, 1}, {20000, 2}},
         "1 header line passed over, frequencies in kHz"},
        {"20 1\n30 2\n20 1\n", {{20, 1}, {30, 2}}, "1 row left out"},
        {"Sweep 20 Hz to 24 kHz\n20 1\n", {{20, 1}}, "1 header line passed over"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        CsvTable table;
        InputNotes notes;
        ParseLevelTable("t", c.text, table, notes);
        EXPECT_EQ(RowsOf(table), c.rows);
        EXPECT_THAT(notes.texts(), testing::Contains(HasSubstr(c.note)));
        InputNotes strict(true);
        EXPECT_EQ(tests::ComplaintOf([&] { ParseLevelTable("t", c.text, table, strict); }) != "",
                  &c - cases < 6);
    }
}

TEST(LevelTable, IsRefusedWithLineAndReason) {
    std::string many;
    for (int i = 0; i < 32769; ++i) {
        many += std::to_string(i) + ",1\n";
    }
    const std::string expectRow = "expected a row of a frequency and a level";
    tests::ExpectRefusals(
        {
            {"20,1\r\n\r\n30;2\r\n", ":3: " + expectRow},
            {"20,1\n30,2,3\n", ":2: expected 2 columns"},
            {"20,1\n30,nan\n", ":2: " + expectRow + "; \"nan\" is no such number"},
            {"20\t1\n1,00.7\t2\n", ":2: " + expectRow + "; \"1,00.7\""},
            {"20,5,67,3\n20,7,67,4\n", ":1: cannot tell commas between columns"},
            {"1,000\t70\n1,250\t71\n", ":1: cannot tell whether commas"},
            {"20,1\n1e12,0\n", ":2: expected a frequency"},
            {"20,1\n-1,0\n", ":2: expected a frequency"},
            {"20,1\n30,401\n", ":2: expected a level"},
            {std::string("20,1\n3\0000,1\n", 12), ":2: expected text"},
            {many, ": expected at most 32768 rows"},
            {"\n \n* 20 1\nHz;dB", ": no rows"},
        },
        [](const std::string& path) {
            CsvTable table;
            InputNotes notes;
            ParseLevelTable(path, ReadInputBytes(path, longestText), table, notes);
        });
}

TEST(LevelTableAtARate, SaysWhatIsCutAndWhatIsLeftOpen) {
    const struct {
        const char* text;
        Rows rows;
        std::vector<std::string> notes;
    } cases[] = {
        {"20,1\n24000.9,2\n", {{20, 1}, {24000, 1}}, {}},
        {"50,1\n15000,2\n", {{50, 1}, {15000, 2}, {24000, 2}}, {}},
        {"20,1\n24000,2\n30000,3\n", {{20, 1}, {24000, 2}}, {"1 row above"}},
        {"30000,1\n40000,2\n", {{24000, 1}}, {"2 rows above", "first level, at 30000 Hz"}},
        {"20,1\n5000,2\n", {{20, 1}, {5000, 2}, {24000, 2}}, {"last level, at 5000 Hz"}},
    };
    for (const auto& c : cases) {
        CsvTable table;
        InputNotes notes;
        ParseLevelTable("t", c.text, table, notes);
        FitTableToRate("t", table, 48000, notes);
        EXPECT_EQ(RowsOf(table), c.rows);
        ASSERT_EQ(notes.texts().size(), c.notes.size());
        for (size_t i = 0; i < c.notes.size(); ++i) {
            EXPECT_THAT(notes.texts()[i], HasSubstr(c.notes[i]));
        }
    }
}

}  // namespace
}  // namespace tonvane
