// Golden images: every row of the blitter table run on the test picture, compared
// pixel by pixel with a committed output, so that later speed work keeps every pixel.
//
// Files: tests/blitters/golden/<name>_<size>x.bin.gz, the output image as raw
// little-endian 16-bit pixels, gzip-compressed. To (re)write them:
//   LUMIVEX_UPDATE_GOLDEN=1 <build dir>/tests/blitters/test_blitters_golden
// (add --gtest_filter='Table/Golden.Matches/hq*' or similar for some rows only).
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "blit_harness.h"
#include "test_picture.h"

namespace
{

struct Row {
    int index;
    int size;
    std::string name;
    BlitterFunc function;
};

std::vector<Row> TableRows()
{
    std::vector<Row> rows;
    std::unique_ptr<BlitterRecord, void (*)(void *)> table(BuildBlitterTable(), free);
    if (!table) return rows;
    for (int i = 0; table.get()[i].size != 0; i++)
        rows.push_back({i, table.get()[i].size, table.get()[i].name, table.get()[i].function});
    return rows;
}

// Test failures name the row, not its bytes.
void PrintTo(const Row &row, std::ostream *os)
{
    *os << '"' << row.name << "\" " << row.size << "x";
}

// "Horizontal 25%" -> "horizontal_25", "Super 2xSaI" -> "super_2xsai".
std::string Sanitise(const std::string &name)
{
    std::string out;
    for (char ch : name) {
        if (std::isalnum((unsigned char)ch))
            out += (char)std::tolower((unsigned char)ch);
        else if (!out.empty() && out.back() != '_')
            out += '_';
    }
    while (!out.empty() && out.back() == '_')
        out.pop_back();
    return out;
}

std::string GoldenPath(const Row &row)
{
    return std::string(LUMIVEX_SOURCE_DIR) + "/tests/blitters/golden/" + Sanitise(row.name) + "_" +
           std::to_string(row.size) + "x.bin.gz";
}

bool UpdateRequested()
{
    const char *v = getenv("LUMIVEX_UPDATE_GOLDEN");
    return v && *v && std::string(v) != "0";
}

bool ReadGolden(const std::string &path, std::vector<uint16_t> &pixels, size_t count)
{
    gzFile f = gzopen(path.c_str(), "rb");
    if (!f) return false;
    std::vector<uint8_t> bytes(count * 2 + 1);
    const int got = gzread(f, bytes.data(), (unsigned)bytes.size());
    gzclose(f);
    if (got != (int)(count * 2)) return false; // a short or over-long file is no match
    pixels.resize(count);
    for (size_t i = 0; i < count; i++)
        pixels[i] = (uint16_t)(bytes[2 * i] | (bytes[2 * i + 1] << 8));
    return true;
}

bool WriteGolden(const std::string &path, const uint16_t *pixels, size_t count)
{
    std::vector<uint8_t> bytes(count * 2);
    for (size_t i = 0; i < count; i++) {
        bytes[2 * i] = (uint8_t)(pixels[i] & 0xFF);
        bytes[2 * i + 1] = (uint8_t)(pixels[i] >> 8);
    }
    gzFile f = gzopen(path.c_str(), "wb9");
    if (!f) return false;
    const int put = gzwrite(f, bytes.data(), (unsigned)bytes.size());
    return gzclose(f) == Z_OK && put == (int)bytes.size();
}

// How many calls make one still frame's picture settle: "Interleaved" draws one
// row parity per call on a four-call cycle whose phase lives on across calls, so
// it gets a whole cycle; every other kind draws its picture in one call.
int CallsPerFrame(const Row &row)
{
    return row.name == "Interleaved" ? 4 : 1;
}

::testing::AssertionResult SameImage(const uint16_t *got, const std::vector<uint16_t> &want, int width)
{
    size_t mismatches = 0, first = 0;
    for (size_t i = 0; i < want.size(); i++)
        if (got[i] != want[i] && mismatches++ == 0) first = i;
    if (mismatches == 0) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << mismatches << " pixels differ, the first at (" << first % width << ", "
                                         << first / width << "): got 0x" << std::hex << got[first] << ", golden 0x"
                                         << want[first];
}

class Golden : public ::testing::TestWithParam<Row>
{
};

TEST_P(Golden, Matches)
{
    const Row &row = GetParam();
    const std::vector<uint16_t> picture = MakeTestPicture();
    BlitHarness h(kTestPictureWidth, kTestPictureHeight, row.size);
    for (int y = 0; y < h.height; y++)
        for (int x = 0; x < h.width; x++)
            h.src(x, y) = picture[(size_t)y * h.width + x];
    const int outWidth = h.width * row.size;
    const size_t count = (size_t)outWidth * h.height * row.size;
    const std::string path = GoldenPath(row);

    for (int k = 0; k < CallsPerFrame(row); k++)
        h.run(row.function);
    const std::vector<uint16_t> firstFrame(h.front.begin(), h.front.begin() + count);

    std::vector<uint16_t> golden;
    if (UpdateRequested()) {
        ASSERT_TRUE(WriteGolden(path, firstFrame.data(), count)) << "cannot write " << path;
        golden = firstFrame;
    } else {
        ASSERT_TRUE(ReadGolden(path, golden, count))
            << "missing or malformed golden image " << path
            << "; regenerate with LUMIVEX_UPDATE_GOLDEN=1 test_blitters_golden";
        EXPECT_TRUE(SameImage(firstFrame.data(), golden, outWidth)) << row.name << " " << row.size << "x, first frame";
    }

    // An unchanged second frame must leave the picture as it was.
    for (int k = 0; k < CallsPerFrame(row); k++)
        h.run(row.function);
    EXPECT_TRUE(SameImage(h.front.data(), golden, outWidth)) << row.name << " " << row.size << "x, still frame";
}

INSTANTIATE_TEST_SUITE_P(Table, Golden, ::testing::ValuesIn(TableRows()),
                         [](const ::testing::TestParamInfo<Row> &info) {
                             return Sanitise(info.param.name) + "_" + std::to_string(info.param.size) + "x";
                         });

TEST(GoldenTable, CoversEveryRow)
{
    const std::vector<Row> rows = TableRows();
    ASSERT_EQ(rows.size(), 105u);
    // Every row has a file name of its own, except that none may collide.
    std::vector<std::string> names;
    for (const Row &r : rows)
        names.push_back(GoldenPath(r));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

TEST(GoldenTable, TestPictureUsesManyColoursAndEdges)
{
    // The picture must exercise the scalers: many colours, and both flat and busy neighbourhoods.
    const std::vector<uint16_t> p = MakeTestPicture();
    ASSERT_EQ(p.size(), (size_t)kTestPictureWidth * kTestPictureHeight);
    std::vector<uint16_t> sorted(p);
    std::sort(sorted.begin(), sorted.end());
    const size_t colours = std::unique(sorted.begin(), sorted.end()) - sorted.begin();
    EXPECT_GE(colours, 60u);
    size_t flat = 0, busy = 0;
    for (int y = 0; y + 1 < kTestPictureHeight; y++)
        for (int x = 0; x + 1 < kTestPictureWidth; x++) {
            const uint16_t e = p[(size_t)y * kTestPictureWidth + x];
            const bool same =
                e == p[(size_t)y * kTestPictureWidth + x + 1] && e == p[(size_t)(y + 1) * kTestPictureWidth + x];
            (same ? flat : busy)++;
        }
    EXPECT_GT(flat, 1500u);
    EXPECT_GT(busy, 1500u);
    for (uint16_t px : p)
        ASSERT_EQ(px & 0x8000, 0);
}

} // namespace
