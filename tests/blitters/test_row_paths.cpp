// A row whose every unit changed is drawn straight into the destination; a row
// with some unchanged units is drawn through the scratch line and copied span by
// span. Both must give the same picture: a frame that changes everywhere but in
// one stretch of every row, drawn over its predecessor, equals the same frame
// drawn from scratch.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "blit_harness.h"

namespace
{

struct Entry {
    std::string name;
    int size;
    BlitterFunc function;
};

// The tracked rows of the simple kinds ("Interleaved" keeps a phase across calls
// and is tested on its own).
std::vector<Entry> TrackedSimpleRows()
{
    std::vector<Entry> rows;
    std::unique_ptr<BlitterRecord, void (*)(void *)> table(BuildBlitterTable(), free);
    const char *kinds[] = {"Plain", "Horizontal", "Vertical", "Interpolated", "Blur", "RGB Mode", "Arcade"};
    for (int i = 0; table && table.get()[i].size != 0; i++) {
        const BlitterRecord &r = table.get()[i];
        const std::string name = r.name;
        if (r.size < 2) continue;
        for (const char *kind : kinds)
            if (name.rfind(kind, 0) == 0) rows.push_back({name, r.size, r.function});
    }
    return rows;
}

TEST(RowPaths, APartlyChangedFrameDrawsWhatAWholeFrameDraws)
{
    const std::vector<Entry> rows = TrackedSimpleRows();
    ASSERT_EQ(rows.size(), 4u + 4 * 4 + 4 * 4 + 4 * 4 + 3 + 4 + 4 * 4) << "every tracked simple row from 2x up";
    for (int width : {37, 64}) {
        const int height = 9;
        std::mt19937 rng(7 + width);
        std::vector<uint16_t> first((size_t)width * height), second(first.size());
        for (size_t i = 0; i < first.size(); i++) {
            first[i] = (uint16_t)(1 + rng() % 0x7FFF);
            const int x = (int)(i % width);
            // Unchanged in columns 8 to 15 of every row: whole units at every size.
            second[i] = x >= 8 && x < 16 ? first[i] : (uint16_t)(1 + rng() % 0x7FFF);
        }
        for (const Entry &e : rows) {
            BlitHarness mixed(width, height, e.size), whole(width, height, e.size);
            for (int y = 0; y < height; y++)
                for (int x = 0; x < width; x++) {
                    mixed.src(x, y) = first[(size_t)y * width + x];
                    whole.src(x, y) = second[(size_t)y * width + x];
                }
            mixed.run(e.function);
            for (int y = 0; y < height; y++)
                for (int x = 0; x < width; x++)
                    mixed.src(x, y) = second[(size_t)y * width + x];
            mixed.run(e.function);
            whole.run(e.function);
            for (int y = 0; y < height * e.size; y++)
                for (int x = 0; x < width * e.size; x++)
                    ASSERT_EQ(mixed.dst(x, y), whole.dst(x, y))
                        << e.name << " " << e.size << "x, width " << width << ", at " << x << "," << y;
        }
    }
}

} // namespace
