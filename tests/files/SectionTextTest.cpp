// Exported sections, read back by the rules of each format and evaluated against the words.
#include <cmath>
#include <complex>
#include <map>
#include <numbers>
#include <sstream>

#include <gmock/gmock.h>

#include "files/SectionText.h"

namespace tonvane {
namespace {

// b0, b1, b2, a0, a1, a2 of (b0 + b1 z^-1 + b2 z^-2) / (a0 + a1 z^-1 + a2 z^-2).
using Section = std::array<double, 6>;
using Sections = std::vector<Section>;

// Words of coefficients with every sign, the ends of the range and single steps of 2^-23.
const std::vector<int32_t> words{
    0x0811221, 0x3003E2F, 0x07F01E3, 0x0FAE887, 0x38503B6,  // ordinary, poles near the circle
    0x0800000, 0x0000001, 0x3FFFFFF, 0x0000001, 0x3FFFFFF,  // 1, 2^-23 and -2^-23
    0x1FFFFFF, 0x2000000, 0x1000000, 0x0000000, 0x0400000,  // just under 4, -4, 2, 0, 0.5
    0x0800000, 0x0000000, 0x0000000, 0x0000000, 0x0000000,  // unity
};

// The value of a word by the definition of two's complement in 26 bits with 23 behind the point.
double valueOf(int32_t word) {
    return (word >= 1 << 25 ? word - (1 << 26) : word) * std::pow(2.0, -23);
}

Sections sectionsOfWords() {
    Sections sections;
    for (size_t at = 0; at < words.size(); at += 5) {
        sections.push_back({valueOf(words[at]), valueOf(words[at + 1]), valueOf(words[at + 2]), 1.0,
                            -valueOf(words[at + 3]), -valueOf(words[at + 4])});
    }
    return sections;
}

double decibelsAt(const Sections& sections, double cycles) {
    const std::complex<double> delay = std::polar(1.0, -2.0 * std::numbers::pi * cycles);
    std::complex<double> response = 1.0;
    for (const auto& [b0, b1, b2, a0, a1, a2] : sections) {
        response *= (b0 + delay * (b1 + delay * b2)) / (a0 + delay * (a1 + delay * a2));
    }
    return 20.0 * std::log10(std::abs(response));
}

void expectResponseOfWords(const Sections& read) {
    ASSERT_EQ(read.size(), words.size() / 5);
    for (const double cycles : {0.0, 0.0004, 0.002, 0.0104, 0.05, 0.11, 0.23, 0.31, 0.42, 0.5}) {
        EXPECT_NEAR(decibelsAt(read, cycles), decibelsAt(sectionsOfWords(), cycles), 1e-9)
            << cycles;
    }
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

const std::vector<std::string> remarks{"one", "two"};

TEST(SectionText, ForEqualizerApoHasTheWordsResponse) {
    Sections read;
    for (const std::string& line : linesOf(FormatEqualizerApo(DecodeSections(words), remarks))) {
        if (line.starts_with("#")) {
            continue;
        }
        std::istringstream in(line);
        std::string filter, state, kind, order, count, title;
        in >> filter >> state >> kind >> order >> count >> title;
        EXPECT_EQ(filter + state + kind + order + count + title, "Filter:ONIIROrder2Coefficients");
        Section section{};
        for (double& coefficient : section) {
            in >> coefficient;
        }
        EXPECT_TRUE(in && (in >> std::ws).eof()) << line;
        read.push_back(section);
    }
    expectResponseOfWords(read);
}

// Mappings and lists by their indentation: "key: value" under the keys above it, "- item" in a
// list.
struct Yaml {
    std::map<std::string, std::string> values;  // by path, such as filters/eq1/type
    std::map<std::string, std::vector<std::string>> lists;
};

Yaml parseYaml(const std::string& text) {
    Yaml yaml;
    std::vector<std::pair<size_t, std::string>> path;
    for (std::string line : linesOf(text)) {
        size_t indent = line.find_first_not_of(' ');
        if (indent == std::string::npos || line[indent] == '#') {
            continue;
        }
        const bool isItem = line.compare(indent, 2, "- ") == 0;
        const size_t colon = line.find(':');
        while (!path.empty() && path.back().first >= indent + (isItem ? 1 : 0)) {
            path.pop_back();
        }
        std::string where;
        for (const auto& [ignored, key] : path) {
            where += key + "/";
        }
        indent += isItem ? 2 : 0;
        if (colon == std::string::npos) {
            yaml.lists[where].push_back(line.substr(indent));
            continue;
        }
        const std::string key = line.substr(indent, colon - indent);
        const size_t value = line.find_first_not_of(' ', colon + 1);
        if (value == std::string::npos) {
            path.emplace_back(indent, key);
        } else {
            yaml.values[where + key] = line.substr(value);
        }
    }
    return yaml;
}

TEST(SectionText, ForCamillaDspHasTheWordsResponseThroughItsPipeline) {
    Yaml yaml = parseYaml(FormatCamillaDsp(DecodeSections(words), remarks));
    EXPECT_EQ(yaml.values["pipeline/type"], "Filter");
    EXPECT_EQ(yaml.values["pipeline/channels"], "[0]");
    Sections read;
    for (const std::string& name : yaml.lists["pipeline/names/"]) {
        const std::string filter = "filters/" + name + "/";
        EXPECT_EQ(yaml.values[filter + "type"], "Biquad");
        EXPECT_EQ(yaml.values[filter + "parameters/type"], "Free");
        const auto coefficient = [&](const char* key) {
            return std::stod(yaml.values.at(filter + "parameters/" + key));
        };
        read.push_back({coefficient("b0"), coefficient("b1"), coefficient("b2"), 1.0,
                        coefficient("a1"), coefficient("a2")});
    }
    expectResponseOfWords(read);
}

// y = b0 x + b1 x' + b2 x'' + a1 y' + a2 y'': the feedback is added.
TEST(SectionText, ForMiniDspHasTheWordsResponseWithFeedbackAdded) {
    const auto lines = linesOf(FormatMiniDsp(DecodeSections(words)));
    ASSERT_EQ(lines.size(), 6 * words.size() / 5);
    Sections read;
    for (size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i].ends_with(','), i + 1 < lines.size());
        const std::string body = lines[i].substr(0, lines[i].find(','));
        if (i % 6 == 0) {
            EXPECT_EQ(body, "biquad" + std::to_string(i / 6 + 1));
            read.push_back({0, 0, 0, 1, 0, 0});
            continue;
        }
        EXPECT_EQ(body.substr(0, 3), (std::array{"b0=", "b1=", "b2=", "a1=", "a2="})[i % 6 - 1]);
        const double value = std::stod(body.substr(3));
        read.back().at(i % 6 <= 3 ? i % 6 - 1 : i % 6) = i % 6 <= 3 ? value : -value;
    }
    expectResponseOfWords(read);
}

TEST(SectionText, AsCsvHasTheWordsResponse) {
    const auto lines = linesOf(FormatSectionCsv(DecodeSections(words)));
    EXPECT_EQ(lines.at(0), "section,b0,b1,b2,a1,a2");
    Sections read;
    for (size_t i = 1; i < lines.size(); ++i) {
        std::istringstream in(lines[i]);
        std::vector<double> cells;
        for (std::string cell; std::getline(in, cell, ',');) {
            cells.push_back(std::stod(cell));
        }
        ASSERT_EQ(cells.size(), 6U);
        EXPECT_EQ(cells[0], static_cast<double>(i));
        read.push_back({cells[1], cells[2], cells[3], 1.0, cells[4], cells[5]});
    }
    expectResponseOfWords(read);
}

TEST(DecimalText, IsThePlainNumberThatReadsBackTheSame) {
    for (const auto& [value, text] : {std::pair{0.0, "0.0"},
                                      {1.0, "1.0"},
                                      {-4.0, "-4.0"},
                                      {std::pow(2.0, -23), "0.00000011920928955078125"},
                                      {20000.0, "20000.0"}}) {
        EXPECT_EQ(std::stod(DecimalText(value)), value);
        EXPECT_EQ(DecimalText(value).substr(0, 12), std::string(text).substr(0, 12));
    }
    const double third = 1.0 / 3.0;
    EXPECT_EQ(std::stod(DecimalText(third * 1e-9)), third * 1e-9);
    EXPECT_EQ(DecimalText(1e-9).find('e'), std::string::npos);
}

}  // namespace
}  // namespace tonvane
