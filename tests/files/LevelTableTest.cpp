// Tables as measuring programs write them, made here with every quirk crossed with every other.
#include <algorithm>
#include <array>
#include <cstdio>

#include <gmock/gmock.h>

#include "files/LevelTable.h"
#include "files/TestFiles.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using tests::Rows;
using tests::RowsOf;

// How a table is written: the choice for each quirk, 0 for the plainest.
enum Quirk {
    style,
    lineEnd,
    lastEnd,
    header,
    encoding,
    order,
    columns,
    repeats,
    range,
    quirkCount
};
constexpr std::array<int, quirkCount> choices{13, 3, 3, 5, 3, 3, 3, 2, 2};
using Quirks = std::array<int, quirkCount>;

struct Style {
    const char* separator;
    char decimal;
    char thousands;  // 0 for none
    bool quoted;
};
constexpr std::array<Style, 13> styles{{{",", '.', 0, false},
                                        {"\t", '.', 0, false},
                                        {"\t", '.', ',', false},
                                        {"\t", ',', 0, false},
                                        {"\t", ',', '.', false},
                                        {";", '.', 0, false},
                                        {" ; ", ',', 0, false},
                                        {";", '.', ',', false},
                                        {" , ", '.', ',', true},
                                        {",", ',', 0, true},
                                        {"   ", '.', 0, false},
                                        {" ", '.', ',', false},
                                        {"  ", ',', 0, false}}};

const Rows wideRows{{10.5, -3.25},    {19.9, 0},         {20, 41.6541},    {999.9, -67.5},
                    {1001.7, 90.123}, {12345.6, 88.125}, {19998, 91.3543}, {96000, 12.5}};
const Rows narrowRows{{200, 67.6392}, {1000, 70}, {2500.25, 71.5}};

std::string numberText(double value, const Style& style) {
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", value);
    std::string number = text;
    const size_t point = std::min(number.find('.'), number.size());
    if (point < number.size()) {
        number[point] = style.decimal;
    }
    if (style.thousands != 0 && value >= 1000.0) {
        number.insert(point - 3, 1, style.thousands);
    }
    return style.quoted ? "\"" + number + "\"" : number;
}

std::string rowText(const std::pair<double, double>& row, const Style& style, int columns) {
    std::string text =
        numberText(row.first, style) + style.separator + numberText(row.second, style);
    for (int extra = 0; extra < (columns == 2 ? 12 : columns); ++extra) {
        text += style.separator + numberText(-123.4567, style);
    }
    return text;
}

std::vector<std::string> headerLines(int choice) {
    switch (choice) {
        case 1:
            return {"Freq      dB         Phase"};
        case 2:
            return {"* Measured in 2023, 20 to 24 kHz", "# 1001,7", "", "* Freq(Hz)\tSPL(dB)"};
        case 3:
            return {"\"On Axis\"",
                    "\"Frequency [Hz]\"\t\"Sound Pressure Level [dB] / [2.83V 1m]\""};
        case 4:
            return {"2023-11-05 woofer", "Hz;dB"};
        default:
            return {};
    }
}

std::string encoded(const std::string& text, int choice) {
    if (choice == 0) {
        return text;
    }
    std::string bytes = choice == 1 ? "\xEF\xBB\xBF" : "\xFF\xFE";
    for (const char c : text) {
        bytes += c;
        if (choice == 2) {
            bytes += '\0';
        }
    }
    return bytes;
}

std::string tableText(const Quirks& quirks) {
    const Style& style = styles.at(static_cast<size_t>(quirks[Quirk::style]));
    const char* end = std::array{"\n", "\r\n", "\r"}.at(static_cast<size_t>(quirks[lineEnd]));
    Rows rows = quirks[range] == 0 ? wideRows : narrowRows;
    if (quirks[repeats] == 1) {
        rows.insert(rows.begin() + 1, rows[0]);
    }
    if (quirks[order] == 1) {
        std::ranges::reverse(rows);
    } else if (quirks[order] == 2) {
        std::rotate(rows.begin(), rows.begin() + 2, rows.end());
    }
    std::string text;
    for (const std::string& line : headerLines(quirks[header])) {
        text += line + end;
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        text += (i == 0 ? "" : end) + rowText(rows[i], style, quirks[columns]);
    }
    if (quirks[lastEnd] != 1) {
        text += end;
    }
    return encoded(text + (quirks[lastEnd] == 2 ? "\t\t" : ""), quirks[encoding]);
}

// Expects the table's rows, and with --strict a refusal where the file leaves something open.
void expectRead(const Quirks& quirks) {
    const std::string text = tableText(quirks);
    SCOPED_TRACE(text);
    CsvTable table;
    InputNotes notes;
    ASSERT_EQ(tests::ComplaintOf([&] { ParseLevelTable("t", text, table, notes); }), "");
    EXPECT_EQ(RowsOf(table), quirks[range] == 0 ? wideRows : narrowRows);
    const bool leavesOpen = quirks[header] == 4 || quirks[columns] == 2;
    InputNotes strict(true);
    EXPECT_EQ(tests::ComplaintOf([&] { ParseLevelTable("t", text, table, strict); }) != "",
              leavesOpen);
    const bool isPlain = styles.at(static_cast<size_t>(quirks[Quirk::style])).decimal == '.' &&
                         quirks[header] + quirks[columns] + quirks[repeats] == 0;
    EXPECT_EQ(notes.texts().empty(), isPlain);
}

TEST(LevelTable, IsReadWithEveryPairOfQuirks) {
    for (int first = 0; first < quirkCount; ++first) {
        for (int second = first + 1; second < quirkCount; ++second) {
            for (int a = 0; a < choices.at(static_cast<size_t>(first)); ++a) {
                for (int b = 0; b < choices.at(static_cast<size_t>(second)); ++b) {
                    Quirks quirks{};
                    quirks.at(static_cast<size_t>(first)) = a;
                    quirks.at(static_cast<size_t>(second)) = b;
                    expectRead(quirks);
                }
            }
        }
    }
}

TEST(LevelTable, SaysWhatItGuessedAndStrictlyRefusesIt) {
    const struct {
        std::string text;
        Rows rows;
        const char* note;
    } cases[] = {
        // Commas that group thousands and decimal commas alike; the order of the rows decides.
        {"500\t70\n1,000\t71\n2,000\t72\n",
         {{500, 70}, {1000, 71}, {2000, 72}},
         "marks of thousands"},
        {"0,5\t70\n100,250\t71\n", {{0.5, 70}, {100.25, 71}}, "decimal commas"},
        {"500\t70\n1.000\t71\n2.000\t72\n",
         {{500, 70}, {1000, 71}, {2000, 72}},
         "marks of thousands"},
        {"20,67,120\n40,68,110\n", {{20, 67}, {40, 68}}, "between columns"},
        {"20\t1\n30\t2\n20\t3\n", {{20, 3}, {30, 2}}, "t:3: 20 Hz stands there once more"},
        {"3-way speaker\n20 1\n", {{20, 1}}, "t:1: passed over as a header"},
        {"20 1 2 3\n", {{20, 1}}, "column 2 of 4"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        CsvTable table;
        InputNotes notes;
        ParseLevelTable("t", c.text, table, notes);
        EXPECT_EQ(RowsOf(table), c.rows);
        EXPECT_THAT(notes.texts(), testing::Contains(HasSubstr(c.note)));
        const bool isGuess = std::string_view(c.note) != "decimal commas";  // 0,5 groups nothing
        InputNotes strict(true);
        EXPECT_EQ(tests::ComplaintOf([&] { ParseLevelTable("t", c.text, table, strict); }) != "",
                  isGuess);
    }
    CsvTable table;
    InputNotes notes;
    ParseLevelTable("t", "f/kHz\tdB\n0.02\t1\n20\t2\n20\t2", table, notes);
    EXPECT_EQ(RowsOf(table), (Rows{{20, 1}, {20000, 2}}));
    EXPECT_THAT(notes.texts(),
                ElementsAre(HasSubstr("1 header line passed over, frequencies in kHz"),
                            HasSubstr("1 row left out")));
}

TEST(LevelTable, RefusesWithLineAndReason) {
    std::string many;
    for (int i = 0; i < 32769; ++i) {
        many += std::to_string(i) + ",1\n";
    }
    const struct {
        std::string text;
        const char* complaint;
    } cases[] = {
        {"20,1\r\n\r\n30;2\r\n", "t:3: expected a row"},
        {"20,1\n30,2,3\n", "t:2: expected 2 columns"},
        {"20,1\n30,\n", "t:2: expected a row"},
        {"20,1\n30,nan\n", "t:2: expected a row of a frequency and a level; \"nan\""},
        {"20\t1\n1,00.7\t2\n", "t:2: expected a row of a frequency and a level; \"1,00.7\""},
        {"20.5 1\n20,5 1\n21.5 1\n", "t:2: expected a row"},
        {"20,1\nphase\n", "t:2: expected a row of a frequency and a level"},
        {"20,5,67,3\n20,7,67,4\n", "t:1: cannot tell commas between columns"},
        {"1,000\t70\n1,250\t71\n", "t:1: cannot tell whether commas"},
        {"20,1\n1e12,0\n", "t:2: expected a frequency"},
        {"20,1\n-1,0\n", "t:2: expected a frequency"},
        {"20,1\n30,401\n", "t:2: expected a level"},
        {std::string("20,1\n3\0000,1\n", 12), "t:2: expected text"},
        {many, "t: expected at most 32768 rows"},
        {"\n \n* 20 1\nHz;dB", "t: no rows"},
    };
    for (const auto& c : cases) {
        CsvTable table;
        InputNotes notes;
        EXPECT_THAT(tests::ComplaintOf([&] { ParseLevelTable("t", c.text, table, notes); }),
                    testing::StartsWith(c.complaint));
    }
    CsvTable table;
    InputNotes notes;
    EXPECT_EQ(tests::ComplaintOf([&] { ReadLevelTable("/none", table, notes); }),
              "/none: cannot be opened");
}

TEST(LevelTableAtARate, SaysWhatIsCutAndWhatIsLeftOpen) {
    const struct {
        const char* text;
        Rows rows;
        std::vector<std::string> notes;
    } cases[] = {
        {"20,1\n24000.9,2\n", {{20, 1}, {24000, 1}}, {}},
        {"20,1\n24000,2\n30000,3\n", {{20, 1}, {24000, 2}}, {"1 row above"}},
        {"50,1\n15000,2\n", {{50, 1}, {15000, 2}, {24000, 2}}, {}},
        {"20,1\n20000,2\n30000,3\n40000,4\n", {{20, 1}, {20000, 2}, {24000, 2}}, {"2 rows above"}},
        {"200,1\n5000,2\n",
         {{200, 1}, {5000, 2}, {24000, 2}},
         {"first level, at 200 Hz", "last level, at 5000 Hz"}},
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
