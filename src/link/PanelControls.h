// The dialog's controls of the amplifier by id.
#pragma once

namespace tonvane::controls {

constexpr int connect = 2060;
constexpr int term = 2061;

constexpr int dump = 2070;
constexpr int registerNumber = 2071;
constexpr int registerLength = 2072;
constexpr int registerName = 2073;
constexpr int wordFirst = 2074;  // five boxes
constexpr int wordLast = 2078;
constexpr int send = 2079;
constexpr int read = 2080;
constexpr int set1 = 2081;
constexpr int biq = 2082;
constexpr int split = 2083;
constexpr int drcFirst = 2084;  // two check boxes
constexpr int linkFirst = dump;
constexpr int linkLast = drcFirst + 1;  // 2070 to 2085 serve only while connected

constexpr int drcBoxFirst = 2090;  // threshold, alpha, attack, release of the first DRC, then of
constexpr int drcBoxLast = 2097;   // the second
constexpr int crossover = 2098;

}  // namespace tonvane::controls
