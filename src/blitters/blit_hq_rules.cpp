// Data of the HQ family: the top-left quarter's rule for each of the 256 patterns of
// hq2x, hq3x and hq4x, as in the published case tables, and their expansion into the
// programs of blit_hq_rules.h.
//
// A case lists its patterns and one token per output pixel of the top-left quarter:
//   hq2x: the block's top-left pixel;
//   hq3x: the top-left corner and the top edge's middle pixel (the centre is always w5);
//   hq4x: the 2 x 2 top-left pixels in row order.
// A token is a rule code, or "Dab?x:y": rule x when the pair test of wa and wb finds
// them different, else rule y. The codes are the published interpolation names of
// each pixel position; the legends below give their weights in sixteenths.
#include "blitters/blit_hq_rules.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

namespace lvhq
{
namespace
{

struct RuleCase {
    const char *patterns;
    const char *rules;
};

struct Rule {
    const char *code;
    const char *terms; // "neighbour:weight" pairs, weights in sixteenths adding up to 16
};

// hq2x, the top-left pixel.
const Rule kHQ2xLegend0[] = {
    {"0", "5:16"},          {"10", "5:12 1:4"},     {"11", "5:12 4:4"},    {"12", "5:12 2:4"},
    {"20", "5:8 4:4 2:4"},  {"21", "5:8 1:4 2:4"},  {"22", "5:8 1:4 4:4"}, {"60", "5:10 2:4 4:2"},
    {"61", "5:10 4:4 2:2"}, {"70", "5:12 4:2 2:2"}, {"90", "5:4 4:6 2:6"}, {"100", "5:14 4:1 2:1"},
    {nullptr, nullptr},
};

// hq3x, the top-left corner and the top edge.
const Rule kHQ3xLegend0[] = {
    {"1M", "5:12 1:4"},   {"1U", "5:12 2:4"}, {"1L", "5:12 4:4"}, {"2", "5:8 4:4 2:4"},
    {"4", "5:2 4:7 2:7"}, {"5", "4:8 2:8"},   {"C", "5:16"},      {nullptr, nullptr},
};
const Rule kHQ3xLegend1[] = {
    {"1", "5:12 2:4"}, {"3", "5:14 2:2"}, {"6", "2:12 5:4"}, {"C", "5:16"}, {nullptr, nullptr},
};

// hq4x, pixels (0,0), (0,1), (1,0), (1,1).
const Rule kHQ4xLegend00[] = {
    {"0", "5:16"},      {"11", "5:12 4:4"}, {"12", "5:12 2:4"}, {"20", "5:8 2:4 4:4"}, {"50", "2:8 4:8"},
    {"80", "5:10 1:6"}, {"81", "5:10 4:6"}, {"82", "5:10 2:6"}, {nullptr, nullptr},
};
const Rule kHQ4xLegend01[] = {
    {"0", "5:16"},          {"10", "5:12 1:4"}, {"12", "5:12 2:4"}, {"14", "2:12 5:4"},
    {"21", "2:8 5:4 4:4"},  {"31", "5:14 4:2"}, {"50", "2:8 5:8"},  {"60", "5:10 2:4 4:2"},
    {"61", "5:10 2:4 1:2"}, {"82", "5:10 2:6"}, {"83", "2:10 4:6"}, {nullptr, nullptr},
};
const Rule kHQ4xLegend10[] = {
    {"0", "5:16"},          {"10", "5:12 1:4"}, {"11", "5:12 4:4"}, {"13", "4:12 5:4"},
    {"21", "4:8 5:4 2:4"},  {"32", "5:14 2:2"}, {"50", "4:8 5:8"},  {"60", "5:10 4:4 2:2"},
    {"61", "5:10 4:4 1:2"}, {"81", "5:10 4:6"}, {"83", "4:10 2:6"}, {nullptr, nullptr},
};
const Rule kHQ4xLegend11[] = {
    {"0", "5:16"},      {"30", "5:14 1:2"},     {"31", "5:14 4:2"},
    {"32", "5:14 2:2"}, {"70", "5:12 4:2 2:2"}, {nullptr, nullptr},
};

const RuleCase kHQ2xCases[] = {
    {"0 1 4 32 128 5 132 160 33 129 36 133 164 161 37 165", "20"},
    {"2 34 130 162", "22"},
    {"16 17 48 49", "20"},
    {"64 65 68 69", "20"},
    {"8 12 136 140", "21"},
    {"3 35 131 163", "11"},
    {"6 38 134 166", "22"},
    {"20 21 52 53", "20"},
    {"144 145 176 177", "20"},
    {"192 193 196 197", "20"},
    {"96 97 100 101", "20"},
    {"40 44 168 172", "21"},
    {"9 13 137 141", "12"},
    {"18 50", "22"},
    {"80 81", "20"},
    {"72 76", "21"},
    {"10 138", "D42?10:20"},
    {"66", "22"},
    {"24", "21"},
    {"7 39 135", "11"},
    {"148 149 180", "20"},
    {"224 228 225", "20"},
    {"41 169 45", "12"},
    {"22 54", "22"},
    {"208 209", "20"},
    {"104 108", "21"},
    {"11 139", "D42?0:20"},
    {"19 51", "D26?11:60"},
    {"146 178", "22"},
    {"84 85", "20"},
    {"112 113", "20"},
    {"200 204", "21"},
    {"73 77", "D84?12:61"},
    {"42 170", "D42?10:90"},
    {"14 142", "D42?10:90"},
    {"67", "11"},
    {"70", "22"},
    {"28", "21"},
    {"152", "21"},
    {"194", "22"},
    {"98", "22"},
    {"56", "21"},
    {"25", "12"},
    {"26 31", "D42?0:20"},
    {"82 214", "22"},
    {"88 248", "21"},
    {"74 107", "D42?0:20"},
    {"27", "D42?0:20"},
    {"86", "22"},
    {"216", "21"},
    {"106", "10"},
    {"30", "10"},
    {"210", "22"},
    {"120", "21"},
    {"75", "D42?0:20"},
    {"29", "12"},
    {"198", "22"},
    {"184", "21"},
    {"99", "11"},
    {"57", "12"},
    {"71", "11"},
    {"156", "21"},
    {"226", "22"},
    {"60", "21"},
    {"195", "11"},
    {"102", "22"},
    {"153", "12"},
    {"58", "D42?10:70"},
    {"83", "11"},
    {"92", "21"},
    {"202", "D42?10:70"},
    {"78", "D42?10:70"},
    {"154", "D42?10:70"},
    {"114", "22"},
    {"89", "12"},
    {"90", "D42?10:70"},
    {"55 23", "D26?11:60"},
    {"182 150", "22"},
    {"213 212", "20"},
    {"241 240", "20"},
    {"236 232", "21"},
    {"109 105", "D84?12:61"},
    {"171 43", "D42?0:90"},
    {"143 15", "D42?0:90"},
    {"124", "21"},
    {"203", "D42?0:20"},
    {"62", "10"},
    {"211", "11"},
    {"118", "22"},
    {"217", "12"},
    {"110", "10"},
    {"155", "D42?0:20"},
    {"188", "21"},
    {"185", "12"},
    {"61", "12"},
    {"157", "12"},
    {"103", "11"},
    {"227", "11"},
    {"230", "22"},
    {"199", "11"},
    {"220", "21"},
    {"158", "D42?10:70"},
    {"234", "D42?10:70"},
    {"242", "22"},
    {"59", "D42?0:20"},
    {"121", "12"},
    {"87", "11"},
    {"79", "D42?0:20"},
    {"122", "D42?10:70"},
    {"94", "D42?10:70"},
    {"218", "D42?10:70"},
    {"91", "D42?0:20"},
    {"229", "20"},
    {"167", "11"},
    {"173", "12"},
    {"181", "20"},
    {"186", "D42?10:70"},
    {"115", "11"},
    {"93", "12"},
    {"206", "D42?10:70"},
    {"205 201", "12"},
    {"174 46", "D42?10:70"},
    {"179 147", "11"},
    {"117 116", "20"},
    {"189", "12"},
    {"231", "11"},
    {"126", "10"},
    {"219", "D42?0:20"},
    {"125", "D84?12:61"},
    {"221", "12"},
    {"207", "D42?0:90"},
    {"238", "10"},
    {"190", "10"},
    {"187", "D42?0:90"},
    {"243", "11"},
    {"119", "D26?11:60"},
    {"237 233", "12"},
    {"175 47", "D42?0:100"},
    {"183 151", "11"},
    {"245 244", "20"},
    {"250", "10"},
    {"123", "D42?0:20"},
    {"95", "D42?0:20"},
    {"222", "10"},
    {"252", "21"},
    {"249", "12"},
    {"235", "D42?0:20"},
    {"111", "D42?0:100"},
    {"63", "D42?0:100"},
    {"159", "D42?0:20"},
    {"215", "11"},
    {"246", "22"},
    {"254", "10"},
    {"253", "12"},
    {"251", "D42?0:20"},
    {"239", "D42?0:100"},
    {"127", "D42?0:100"},
    {"191", "D42?0:100"},
    {"223", "D42?0:20"},
    {"247", "11"},
    {"255", "D42?0:100"},
};
const RuleCase kHQ3xCases[] = {
    {"0 1 4 32 128 5 132 160 33 129 36 133 164 161 37 165", "2 1"},
    {"2 34 130 162", "1M C"},
    {"16 17 48 49", "2 1"},
    {"64 65 68 69", "2 1"},
    {"8 12 136 140", "1M 1"},
    {"3 35 131 163", "1L C"},
    {"6 38 134 166", "1M C"},
    {"20 21 52 53", "2 1"},
    {"144 145 176 177", "2 1"},
    {"192 193 196 197", "2 1"},
    {"96 97 100 101", "2 1"},
    {"40 44 168 172", "1M 1"},
    {"9 13 137 141", "1U 1"},
    {"18 50", "1M D26?C:3"},
    {"80 81", "2 1"},
    {"72 76", "1M 1"},
    {"10 138", "D42?1M:4 D42?C:3"},
    {"66", "1M C"},
    {"24", "1M 1"},
    {"7 39 135", "1L C"},
    {"148 149 180", "2 1"},
    {"224 228 225", "2 1"},
    {"41 169 45", "1U 1"},
    {"22 54", "1M D26?C:3"},
    {"208 209", "2 1"},
    {"104 108", "1M 1"},
    {"11 139", "D42?C:4 D42?C:3"},
    {"19 51", "D26?1L:2 D26?C:6"},
    {"146 178", "1M D26?C:1"},
    {"84 85", "2 1"},
    {"112 113", "2 1"},
    {"200 204", "1M 1"},
    {"73 77", "D84?1U:2 1"},
    {"42 170", "D42?1M:5 D42?C:1"},
    {"14 142", "D42?1M:5 D42?C:6"},
    {"67", "1L C"},
    {"70", "1M C"},
    {"28", "1M 1"},
    {"152", "1M 1"},
    {"194", "1M C"},
    {"98", "1M C"},
    {"56", "1M 1"},
    {"25", "1U 1"},
    {"26 31", "D42?C:4 C"},
    {"82 214", "1M D26?C:3"},
    {"88 248", "1M 1"},
    {"74 107", "D42?C:4 D42?C:3"},
    {"27", "D42?C:4 D42?C:3"},
    {"86", "1M D26?C:3"},
    {"216", "1M 1"},
    {"106", "1M C"},
    {"30", "1M D26?C:3"},
    {"210", "1M C"},
    {"120", "1M 1"},
    {"75", "D42?C:4 D42?C:3"},
    {"29", "1U 1"},
    {"198", "1M C"},
    {"184", "1M 1"},
    {"99", "1L C"},
    {"57", "1U 1"},
    {"71", "1L C"},
    {"156", "1M 1"},
    {"226", "1M C"},
    {"60", "1M 1"},
    {"195", "1L C"},
    {"102", "1M C"},
    {"153", "1U 1"},
    {"58", "D42?1M:2 C"},
    {"83", "1L C"},
    {"92", "1M 1"},
    {"202", "D42?1M:2 C"},
    {"78", "D42?1M:2 C"},
    {"154", "D42?1M:2 C"},
    {"114", "1M C"},
    {"89", "1U 1"},
    {"90", "D42?1M:2 C"},
    {"55 23", "D26?1L:2 D26?C:6"},
    {"182 150", "1M D26?C:1"},
    {"213 212", "2 1"},
    {"241 240", "2 1"},
    {"236 232", "1M 1"},
    {"109 105", "D84?1U:2 1"},
    {"171 43", "D42?C:5 D42?C:1"},
    {"143 15", "D42?C:5 D42?C:6"},
    {"124", "1M 1"},
    {"203", "D42?C:4 D42?C:3"},
    {"62", "1M D26?C:3"},
    {"211", "1L C"},
    {"118", "1M D26?C:3"},
    {"217", "1U 1"},
    {"110", "1M C"},
    {"155", "D42?C:4 D42?C:3"},
    {"188", "1M 1"},
    {"185", "1U 1"},
    {"61", "1U 1"},
    {"157", "1U 1"},
    {"103", "1L C"},
    {"227", "1L C"},
    {"230", "1M C"},
    {"199", "1L C"},
    {"220", "1M 1"},
    {"158", "D42?1M:2 D26?C:3"},
    {"234", "D42?1M:2 C"},
    {"242", "1M C"},
    {"59", "D42?C:4 D42?C:3"},
    {"121", "1U 1"},
    {"87", "1L D26?C:3"},
    {"79", "D42?C:4 D42?C:3"},
    {"122", "D42?1M:2 C"},
    {"94", "D42?1M:2 D26?C:3"},
    {"218", "D42?1M:2 C"},
    {"91", "D42?C:4 D42?C:3"},
    {"229", "2 1"},
    {"167", "1L C"},
    {"173", "1U 1"},
    {"181", "2 1"},
    {"186", "D42?1M:2 C"},
    {"115", "1L C"},
    {"93", "1U 1"},
    {"206", "D42?1M:2 C"},
    {"205 201", "1U 1"},
    {"174 46", "D42?1M:2 C"},
    {"179 147", "1L C"},
    {"117 116", "2 1"},
    {"189", "1U 1"},
    {"231", "1L C"},
    {"126", "1M D26?C:3"},
    {"219", "D42?C:4 D42?C:3"},
    {"125", "D84?1U:2 1"},
    {"221", "1U 1"},
    {"207", "D42?C:5 D42?C:6"},
    {"238", "1M C"},
    {"190", "1M D26?C:1"},
    {"187", "D42?C:5 D42?C:1"},
    {"243", "1L C"},
    {"119", "D26?1L:2 D26?C:6"},
    {"237 233", "1U 1"},
    {"175 47", "D42?C:2 C"},
    {"183 151", "1L C"},
    {"245 244", "2 1"},
    {"250", "1M C"},
    {"123", "D42?C:4 D42?C:3"},
    {"95", "D42?C:4 C"},
    {"222", "1M D26?C:3"},
    {"252", "1M 1"},
    {"249", "1U 1"},
    {"235", "D42?C:4 D42?C:3"},
    {"111", "D42?C:2 C"},
    {"63", "D42?C:2 C"},
    {"159", "D42?C:4 C"},
    {"215", "1L C"},
    {"246", "1M D26?C:3"},
    {"254", "1M D26?C:3"},
    {"253", "1U 1"},
    {"251", "D42?C:4 D42?C:3"},
    {"239", "D42?C:2 C"},
    {"127", "D42?C:2 D42?C:3"},
    {"191", "D42?C:2 C"},
    {"223", "D42?C:4 D26?C:3"},
    {"247", "1L C"},
    {"255", "D42?C:2 C"},
};
const RuleCase kHQ4xCases[] = {
    {"0 1 4 32 128 5 132 160 33 129 36 133 164 161 37 165", "20 60 60 70"},
    {"2 34 130 162", "80 10 61 30"},
    {"16 17 48 49", "20 60 60 70"},
    {"64 65 68 69", "20 60 60 70"},
    {"8 12 136 140", "80 61 10 30"},
    {"3 35 131 163", "81 31 81 31"},
    {"6 38 134 166", "80 10 61 30"},
    {"20 21 52 53", "20 60 60 70"},
    {"144 145 176 177", "20 60 60 70"},
    {"192 193 196 197", "20 60 60 70"},
    {"96 97 100 101", "20 60 60 70"},
    {"40 44 168 172", "80 61 10 30"},
    {"9 13 137 141", "82 82 32 32"},
    {"18 50", "80 10 61 30"},
    {"80 81", "20 60 60 70"},
    {"72 76", "80 61 10 30"},
    {"10 138", "D42?80:50 D42?10:50 D42?10:50 D42?30:0"},
    {"66", "80 10 61 30"},
    {"24", "80 61 10 30"},
    {"7 39 135", "81 31 81 31"},
    {"148 149 180", "20 60 60 70"},
    {"224 228 225", "20 60 60 70"},
    {"41 169 45", "82 82 32 32"},
    {"22 54", "80 10 61 30"},
    {"208 209", "20 60 60 70"},
    {"104 108", "80 61 10 30"},
    {"11 139", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"19 51", "D26?81:12 D26?31:14 81 31"},
    {"146 178", "80 10 61 30"},
    {"84 85", "20 60 60 70"},
    {"112 113", "20 60 60 70"},
    {"200 204", "80 61 10 30"},
    {"73 77", "D84?82:11 82 D84?32:13 32"},
    {"42 170", "D42?80:50 D42?10:21 D42?10:83 D42?30:70"},
    {"14 142", "D42?80:50 D42?10:83 D42?10:21 D42?30:70"},
    {"67", "81 31 81 31"},
    {"70", "80 10 61 30"},
    {"28", "80 61 10 30"},
    {"152", "80 61 10 30"},
    {"194", "80 10 61 30"},
    {"98", "80 10 61 30"},
    {"56", "80 61 10 30"},
    {"25", "82 82 32 32"},
    {"26 31", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"82 214", "80 10 61 30"},
    {"88 248", "80 61 10 30"},
    {"74 107", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"27", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"86", "80 10 61 30"},
    {"216", "80 61 10 30"},
    {"106", "80 10 10 30"},
    {"30", "80 10 10 30"},
    {"210", "80 10 61 30"},
    {"120", "80 61 10 30"},
    {"75", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"29", "82 82 32 32"},
    {"198", "80 10 61 30"},
    {"184", "80 61 10 30"},
    {"99", "81 31 81 31"},
    {"57", "82 82 32 32"},
    {"71", "81 31 81 31"},
    {"156", "80 61 10 30"},
    {"226", "80 10 61 30"},
    {"60", "80 61 10 30"},
    {"195", "81 31 81 31"},
    {"102", "80 10 61 30"},
    {"153", "82 82 32 32"},
    {"58", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"83", "81 31 81 31"},
    {"92", "80 61 10 30"},
    {"202", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"78", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"154", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"114", "80 10 61 30"},
    {"89", "82 82 32 32"},
    {"90", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"55 23", "D26?81:12 D26?31:14 81 31"},
    {"182 150", "80 10 61 30"},
    {"213 212", "20 60 60 70"},
    {"241 240", "20 60 60 70"},
    {"236 232", "80 61 10 30"},
    {"109 105", "D84?82:11 82 D84?32:13 32"},
    {"171 43", "D42?0:50 D42?0:21 D42?0:83 D42?0:70"},
    {"143 15", "D42?0:50 D42?0:83 D42?0:21 D42?0:70"},
    {"124", "80 61 10 30"},
    {"203", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"62", "80 10 10 30"},
    {"211", "81 31 81 31"},
    {"118", "80 10 61 30"},
    {"217", "82 82 32 32"},
    {"110", "80 10 10 30"},
    {"155", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"188", "80 61 10 30"},
    {"185", "82 82 32 32"},
    {"61", "82 82 32 32"},
    {"157", "82 82 32 32"},
    {"103", "81 31 81 31"},
    {"227", "81 31 81 31"},
    {"230", "80 10 61 30"},
    {"199", "81 31 81 31"},
    {"220", "80 61 10 30"},
    {"158", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"234", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"242", "80 10 61 30"},
    {"59", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"121", "82 82 32 32"},
    {"87", "81 31 81 31"},
    {"79", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"122", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"94", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"218", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"91", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"229", "20 60 60 70"},
    {"167", "81 31 81 31"},
    {"173", "82 82 32 32"},
    {"181", "20 60 60 70"},
    {"186", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"115", "81 31 81 31"},
    {"93", "82 82 32 32"},
    {"206", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"205 201", "82 82 32 32"},
    {"174 46", "D42?80:20 D42?10:12 D42?10:11 D42?30:0"},
    {"179 147", "81 31 81 31"},
    {"117 116", "20 60 60 70"},
    {"189", "82 82 32 32"},
    {"231", "81 31 81 31"},
    {"126", "80 10 10 30"},
    {"219", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"125", "D84?82:11 82 D84?32:13 32"},
    {"221", "82 82 32 32"},
    {"207", "D42?0:50 D42?0:83 D42?0:21 D42?0:70"},
    {"238", "80 10 10 30"},
    {"190", "80 10 10 30"},
    {"187", "D42?0:50 D42?0:21 D42?0:83 D42?0:70"},
    {"243", "81 31 81 31"},
    {"119", "D26?81:12 D26?31:14 81 31"},
    {"237 233", "82 82 32 32"},
    {"175 47", "D42?0:20 0 0 0"},
    {"183 151", "81 31 81 31"},
    {"245 244", "20 60 60 70"},
    {"250", "80 10 10 30"},
    {"123", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"95", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"222", "80 10 10 30"},
    {"252", "80 61 10 30"},
    {"249", "82 82 32 32"},
    {"235", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"111", "D42?0:20 0 0 0"},
    {"63", "D42?0:20 0 0 0"},
    {"159", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"215", "81 31 81 31"},
    {"246", "80 10 61 30"},
    {"254", "80 10 10 30"},
    {"253", "82 82 32 32"},
    {"251", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"239", "D42?0:20 0 0 0"},
    {"127", "D42?0:20 0 0 0"},
    {"191", "D42?0:20 0 0 0"},
    {"223", "D42?0:50 D42?0:50 D42?0:50 0"},
    {"247", "81 31 81 31"},
    {"255", "D42?0:20 0 0 0"},
};

struct Family {
    int size;
    int outputs;
    const RuleCase *cases;
    size_t caseCount;
    const Rule *legends[4];
    int rows[4], columns[4]; // top-left quarter's output positions
};

// Quarter turn clockwise: where neighbour wk goes.
constexpr int kTurn[10] = {0, 3, 6, 9, 2, 5, 8, 1, 4, 7};
constexpr int kPatternBit[10] = {0, 1, 2, 4, 8, 0, 16, 32, 64, 128};

int Turn(int n, int quarters)
{
    for (int i = 0; i < quarters; i++)
        n = kTurn[n];
    return n;
}

// Weights of a rule code in one legend, indexed by neighbour 1..9.
bool LookUp(const Rule *legend, const std::string &code, int weights[10])
{
    for (const Rule *r = legend; r->code; r++) {
        if (code != r->code) continue;
        for (int k = 0; k < 10; k++)
            weights[k] = 0;
        const char *s = r->terms;
        int sum = 0;
        while (*s) {
            char *end = nullptr;
            const long n = strtol(s, &end, 10);
            const long w = strtol(end + 1, &end, 10);
            weights[n] += (int)w;
            sum += (int)w;
            s = end;
            while (*s == ' ')
                s++;
        }
        return sum == 16;
    }
    return false;
}

struct Token {
    int condition = -1; // 0 w4/w2, 1 w2/w6, 2 w6/w8, 3 w8/w4; -1 none
    std::string ifDifferent, otherwise;
};

Token ParseToken(const std::string &t)
{
    Token token;
    if (t.size() > 4 && t[0] == 'D' && t[3] == '?') {
        const std::string pair = t.substr(1, 2);
        token.condition = pair == "42" ? 0 : pair == "26" ? 1 : pair == "68" ? 2 : pair == "84" ? 3 : -1;
        const size_t colon = t.find(':');
        token.ifDifferent = t.substr(4, colon - 4);
        token.otherwise = t.substr(colon + 1);
    } else {
        token.ifDifferent = token.otherwise = t;
    }
    return token;
}

std::vector<std::string> Split(const char *s)
{
    std::vector<std::string> out;
    std::string cur;
    for (; *s; s++) {
        if (*s == ' ') {
            if (!cur.empty()) out.push_back(cur);
            cur.clear();
        } else {
            cur += *s;
        }
    }
    if (!cur.empty()) out.push_back(cur);
    return out;
}

void Build(ProgramSet &set, const Family &f)
{
    // Top-left quarter's tokens for each pattern.
    std::vector<Token> tokens[256];
    for (size_t c = 0; c < f.caseCount; c++) {
        const std::vector<std::string> rules = Split(f.cases[c].rules);
        for (const std::string &p : Split(f.cases[c].patterns)) {
            std::vector<Token> &t = tokens[atoi(p.c_str()) & 255];
            for (const std::string &r : rules)
                t.push_back(ParseToken(r));
        }
    }
    set.size = f.size;
    set.outputsPerQuarter = f.outputs;
    // Each quarter's outputs are kept in row order: slot[q][o] is where output o of
    // the top-left rule goes in quarter q's program.
    int slot[4][4];
    for (int q = 0; q < 4; q++) {
        int position[4];
        for (int o = 0; o < f.outputs; o++) {
            // Turning (r, c) a quarter clockwise gives (c, size - 1 - r).
            int r = f.rows[o], c = f.columns[o];
            for (int i = 0; i < q; i++) {
                const int nr = c, nc = f.size - 1 - r;
                r = nr;
                c = nc;
            }
            position[o] = r * f.size + c;
        }
        for (int o = 0; o < f.outputs; o++) {
            int rank = 0;
            for (int k = 0; k < f.outputs; k++)
                rank += position[k] < position[o];
            slot[q][o] = rank;
            set.position[q][rank] = (uint8_t)position[o];
        }
    }
    // Resolve each pattern's tokens to weights once.
    struct Resolved {
        int condition;
        int ifDifferent[10], otherwise[10];
    };
    std::vector<Resolved> resolved[256];
    for (int p = 0; p < 256; p++)
        for (int o = 0; o < f.outputs && o < (int)tokens[p].size(); o++) {
            Resolved r;
            r.condition = tokens[p][o].condition;
            if (!LookUp(f.legends[o], tokens[p][o].ifDifferent, r.ifDifferent) ||
                !LookUp(f.legends[o], tokens[p][o].otherwise, r.otherwise))
                abort();
            resolved[p].push_back(r);
        }
    std::map<std::string, int> known[4];
    for (int key = 0; key < kKeyCount; key++) {
        uint32_t packed = 0;
        for (int q = 0; q < 4; q++) {
            // The pattern as the top-left quarter's rule sees it: its neighbour n is
            // the block's neighbour n turned q quarters clockwise.
            int pattern = 0;
            for (int n = 1; n <= 9; n++)
                if (n != 5 && (key & kPatternBit[Turn(n, q)])) pattern |= kPatternBit[n];
            QuarterProgram program;
            program.index.fill(kNoTerm);
            program.weight.fill(0);
            const std::vector<Resolved> &t = resolved[pattern];
            for (int o = 0; o < (int)t.size(); o++) {
                bool different = false;
                if (t[o].condition >= 0) different = (key >> (8 + (t[o].condition + q) % 4)) & 1;
                const int *weights = different ? t[o].ifDifferent : t[o].otherwise;
                int term = 0;
                for (int n = 1; n <= 9; n++) {
                    if (!weights[n]) continue;
                    program.index[4 * slot[q][o] + term] = kNeighbourByte[Turn(n, q)];
                    program.weight[4 * slot[q][o] + term] = (int8_t)weights[n];
                    term++;
                }
            }
            std::string name(reinterpret_cast<const char *>(program.index.data()), 16);
            name.append(reinterpret_cast<const char *>(program.weight.data()), 16);
            auto it = known[q].find(name);
            int number;
            if (it == known[q].end()) {
                number = (int)set.programs[q].size();
                if (number > 255) abort();
                known[q].emplace(name, number);
                set.programs[q].push_back(program);
            } else {
                number = it->second;
            }
            packed |= (uint32_t)number << (8 * q);
        }
        set.program[key] = packed;
    }
    if (f.size <= 3) {
        const int terms = 4 * f.outputs;
        set.blockBytes = 2 * 4 * terms;
        set.block.assign((size_t)kKeyCount * set.blockBytes, 0);
        const int order[4] = {0, 1, 3, 2};
        for (int key = 0; key < kKeyCount; key++) {
            uint8_t *b = set.block.data() + (size_t)key * set.blockBytes;
            for (int k = 0; k < 4; k++) {
                const int q = order[k];
                const QuarterProgram &p = set.programs[q][(set.program[key] >> (8 * q)) & 0xFF];
                memcpy(b + k * terms, p.index.data(), terms);
                memcpy(b + 4 * terms + k * terms, p.weight.data(), terms);
            }
        }
    }
}

} // namespace

const ProgramSet &Programs(int size)
{
    static ProgramSet sets[3];
    static std::once_flag once;
    std::call_once(once, [] {
        const Family families[3] = {
            {2, 1, kHQ2xCases, sizeof kHQ2xCases / sizeof kHQ2xCases[0], {kHQ2xLegend0}, {0}, {0}},
            {3, 2, kHQ3xCases, sizeof kHQ3xCases / sizeof kHQ3xCases[0], {kHQ3xLegend0, kHQ3xLegend1}, {0, 0}, {0, 1}},
            {4,
             4,
             kHQ4xCases,
             sizeof kHQ4xCases / sizeof kHQ4xCases[0],
             {kHQ4xLegend00, kHQ4xLegend01, kHQ4xLegend10, kHQ4xLegend11},
             {0, 0, 1, 1},
             {0, 1, 0, 1}},
        };
        for (int i = 0; i < 3; i++)
            Build(sets[i], families[i]);
    });
    return sets[(size < 2 ? 2 : size > 4 ? 4 : size) - 2];
}

} // namespace lvhq
