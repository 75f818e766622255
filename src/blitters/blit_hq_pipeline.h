// The HQ blitters' row pipeline. Included twice by blit_hq.cpp, inside a namespace of
// its own: once for the baseline instruction set and once under an AVX2 target, with
// LV_HQ_AVX2 telling which. Both copies compute the same integers, so they draw the
// same pixels; AVX2 only changes how many are computed at once.
//
// For each source row that has a changed column (three-plane change tracking), the row
// and its two neighbours are edge-replicated into padded rows (index i = x + 1), looked
// up in gRGBtoYUV, and every neighbouring pair is tested once: H (i, i+1) in the row,
// V, DR, DL between the row above and the row (U) and between the row and the row
// below (D). Each pixel's key (pattern and the four pair tests) is assembled from those
// flags, and each block to redraw is filled by its four quarter programs.

inline uint8_t Different(uint32_t a, uint32_t b)
{
    const int dy = (int)((a >> 16) & 0xFF) - (int)((b >> 16) & 0xFF);
    const int du = (int)((a >> 8) & 0xFF) - (int)((b >> 8) & 0xFF);
    const int dv = (int)(a & 0xFF) - (int)(b & 0xFF);
    return (dy > 48 || dy < -48 || du > 7 || du < -7 || dv > 6 || dv < -6) ? 1 : 0;
}

// out[i] = Different(a[i], b[i]) for i < n.
inline void DiffRun(const uint32_t *a, const uint32_t *b, uint8_t *out, int n)
{
    int i = 0;
#if defined(__SSE2__)
    // Per byte |a - b| by two saturating subtractions; a byte over its threshold
    // (Y 48, U 7, V 6) survives the saturating subtraction of the threshold.
    const __m128i limit = _mm_set1_epi32(0x00300706);
    const __m128i one = _mm_set1_epi8(1);
    for (; i + 16 <= n; i += 16) {
        __m128i same[4];
        for (int k = 0; k < 4; k++) {
            const __m128i va = _mm_loadu_si128(reinterpret_cast<const __m128i *>(a + i + 4 * k));
            const __m128i vb = _mm_loadu_si128(reinterpret_cast<const __m128i *>(b + i + 4 * k));
            const __m128i d = _mm_or_si128(_mm_subs_epu8(va, vb), _mm_subs_epu8(vb, va));
            same[k] = _mm_cmpeq_epi32(_mm_subs_epu8(d, limit), _mm_setzero_si128());
        }
        const __m128i packed = _mm_packs_epi16(_mm_packs_epi32(same[0], same[1]), _mm_packs_epi32(same[2], same[3]));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out + i), _mm_andnot_si128(packed, one));
    }
#endif
    for (; i < n; i++)
        out[i] = Different(a[i], b[i]);
}

// Scratch for one call, carved by blit_hq.cpp: every array has width + 8 entries.
struct Work {
    int width;
    uint16_t *padded[3];                       // width + 8
    uint32_t *yuv[3];                          // width + 8
    int yuvRow[3];                             // source row held by each slot, -1 none
    uint8_t *pairV[2], *pairDR[2], *pairDL[2]; // width + 8; slot 0 upper pair, 1 lower
    int pairRows[2][2];                        // rows of each pair slot
    uint8_t *h;                                // width + 8
    uint16_t *key;                             // width + 8
    uint32_t *comp[3];                         // R, G, B column triplets, width + 8
    uint8_t *draw;                             // changed columns 0..width of the row
};

inline void PadRow(const uint16_t *row, uint16_t *out, int width)
{
    out[0] = row[0];
    memcpy(out + 1, row, (size_t)width * 2);
    for (int i = width + 1; i < width + 8; i++)
        out[i] = row[width - 1];
}

// YUV of padded source row r, cached across rows.
inline const uint32_t *YuvOf(Work &w, const uint16_t *const *padded, const int *rows, int slot)
{
    const int r = rows[slot];
    for (int s = 0; s < 3; s++)
        if (w.yuvRow[s] == r) return w.yuv[s];
    // Replace a slot not holding any of the three rows in use.
    int victim = 0;
    for (int s = 0; s < 3; s++)
        if (w.yuvRow[s] != rows[0] && w.yuvRow[s] != rows[1] && w.yuvRow[s] != rows[2]) victim = s;
    uint32_t *out = w.yuv[victim];
    const uint16_t *p = padded[slot];
    for (int i = 0; i < w.width + 8; i++)
        out[i] = gRGBtoYUV[p[i]];
    w.yuvRow[victim] = r;
    return out;
}

// Pair tests between padded rows a (upper) and b (lower), cached by row numbers.
inline int PairOf(Work &w, const uint32_t *a, const uint32_t *b, int ra, int rb, int prefer)
{
    for (int s = 0; s < 2; s++)
        if (w.pairRows[s][0] == ra && w.pairRows[s][1] == rb) return s;
    const int s = prefer;
    const int n = w.width + 2;
    DiffRun(a, b, w.pairV[s], n);
    DiffRun(a, b + 1, w.pairDR[s], n - 1);
    DiffRun(a + 1, b, w.pairDL[s], n - 1);
    w.pairRows[s][0] = ra;
    w.pairRows[s][1] = rb;
    return s;
}

// What drawing a row's blocks reads, held in locals so that the stores to the
// destination do not force the pointers to be reloaded for every block.
struct View {
    const lvhq::ProgramSet *set;
    const uint32_t *program;
    const lvhq::QuarterProgram *quarter[4];
    const uint8_t *block;
    const uint16_t *key;
    const uint32_t *comp[3];
    const uint16_t *mid;
};

template <int N> inline void DrawBlock(const View &w, int x, uint16_t *d, uint32_t dstPitch)
{
    [[maybe_unused]] const lvhq::ProgramSet &set = *w.set;
    const uint32_t packed = w.program[w.key[x]];
    uint16_t block[16];
#if LV_HQ_AVX2
    const __m128i nR = _mm_loadu_si128(reinterpret_cast<const __m128i *>(w.comp[0] + x));
    const __m128i nG = _mm_loadu_si128(reinterpret_cast<const __m128i *>(w.comp[1] + x));
    const __m128i nB = _mm_loadu_si128(reinterpret_cast<const __m128i *>(w.comp[2] + x));
    if constexpr (N == 2) {
        // One output per quarter: quarters 0, 1, 3, 2 give the block in row order.
        const uint8_t *terms = w.block + (size_t)w.key[x] * 32;
        const __m128i idx = _mm_loadu_si128(reinterpret_cast<const __m128i *>(terms));
        const __m128i wt = _mm_loadu_si128(reinterpret_cast<const __m128i *>(terms + 16));
        auto sum = [&](__m128i n) {
            const __m128i s = _mm_maddubs_epi16(_mm_shuffle_epi8(n, idx), wt);
            return _mm_srli_epi16(_mm_hadd_epi16(s, s), 4);
        };
        const __m128i pix =
            _mm_or_si128(_mm_or_si128(_mm_slli_epi16(sum(nR), 10), _mm_slli_epi16(sum(nG), 5)), sum(nB));
        const uint64_t both = (uint64_t)_mm_cvtsi128_si64(pix);
        const uint32_t top = (uint32_t)both, bottom = (uint32_t)(both >> 32);
        memcpy(d, &top, 4);
        memcpy(reinterpret_cast<uint8_t *>(d) + dstPitch, &bottom, 4);
        return;
    } else if constexpr (N == 3) {
        // Quarters 0 and 1 in the low half, 3 and 2 in the high half: the results are
        // pixels 0, 1, 2, 5 and 3, 6, 7, 8 of the block (4 is the centre, w5).
        const uint8_t *terms = w.block + (size_t)w.key[x] * 64;
        const __m256i vi = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(terms));
        const __m256i vw = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(terms + 32));
        auto sum = [&](__m128i n) {
            const __m256i s = _mm256_maddubs_epi16(_mm256_shuffle_epi8(_mm256_broadcastsi128_si256(n), vi), vw);
            return _mm256_srli_epi16(_mm256_hadd_epi16(s, s), 4);
        };
        const __m256i pix =
            _mm256_or_si256(_mm256_or_si256(_mm256_slli_epi16(sum(nR), 10), _mm256_slli_epi16(sum(nG), 5)), sum(nB));
        const uint64_t a = (uint64_t)_mm_cvtsi128_si64(_mm256_castsi256_si128(pix));
        const uint64_t b = (uint64_t)_mm_cvtsi128_si64(_mm256_extracti128_si256(pix, 1));
        const uint32_t centre = w.mid[x + 1] & 0x7FFFu;
        uint8_t *row = reinterpret_cast<uint8_t *>(d);
        const uint32_t r0 = (uint32_t)a, r1 = (uint32_t)(b & 0xFFFF) | centre << 16, r2 = (uint32_t)(b >> 32);
        const uint16_t r0c = (uint16_t)(a >> 32), r1c = (uint16_t)(a >> 48), r2a = (uint16_t)(b >> 16);
        memcpy(row, &r0, 4);
        memcpy(row + 4, &r0c, 2);
        memcpy(row + dstPitch, &r1, 4);
        memcpy(row + dstPitch + 4, &r1c, 2);
        memcpy(row + 2 * (size_t)dstPitch, &r2a, 2);
        memcpy(row + 2 * (size_t)dstPitch + 2, &r2, 4);
        return;
    } else {
        const lvhq::QuarterProgram &p0 = w.quarter[0][packed & 0xFF];
        const lvhq::QuarterProgram &p1 = w.quarter[1][(packed >> 8) & 0xFF];
        const lvhq::QuarterProgram &p2 = w.quarter[2][(packed >> 16) & 0xFF];
        const lvhq::QuarterProgram &p3 = w.quarter[3][packed >> 24];
        const __m256i i01 = _mm256_loadu2_m128i(reinterpret_cast<const __m128i *>(p1.index.data()),
                                                reinterpret_cast<const __m128i *>(p0.index.data()));
        const __m256i w01 = _mm256_loadu2_m128i(reinterpret_cast<const __m128i *>(p1.weight.data()),
                                                reinterpret_cast<const __m128i *>(p0.weight.data()));
        const __m256i i32 = _mm256_loadu2_m128i(reinterpret_cast<const __m128i *>(p2.index.data()),
                                                reinterpret_cast<const __m128i *>(p3.index.data()));
        const __m256i w32 = _mm256_loadu2_m128i(reinterpret_cast<const __m128i *>(p2.weight.data()),
                                                reinterpret_cast<const __m128i *>(p3.weight.data()));
        auto sum = [&](__m128i n) {
            const __m256i b = _mm256_broadcastsi128_si256(n);
            const __m256i a = _mm256_maddubs_epi16(_mm256_shuffle_epi8(b, i01), w01);
            const __m256i c = _mm256_maddubs_epi16(_mm256_shuffle_epi8(b, i32), w32);
            return _mm256_srli_epi16(_mm256_hadd_epi16(a, c), 4);
        };
        __m256i pix =
            _mm256_or_si256(_mm256_or_si256(_mm256_slli_epi16(sum(nR), 10), _mm256_slli_epi16(sum(nG), 5)), sum(nB));
        // Each quarter's outputs are in row order, so the pairs are (dword): quarter 0
        // rows 0-1, quarter 3 rows 2-3, quarter 1 rows 0-1, quarter 2 rows 2-3.
        pix = _mm256_permutevar8x32_epi32(pix, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
        uint8_t *row = reinterpret_cast<uint8_t *>(d);
        const __m128i lo = _mm256_castsi256_si128(pix), hi = _mm256_extracti128_si256(pix, 1);
        _mm_storel_epi64(reinterpret_cast<__m128i *>(row), lo);
        _mm_storel_epi64(reinterpret_cast<__m128i *>(row + dstPitch), _mm_unpackhi_epi64(lo, lo));
        _mm_storel_epi64(reinterpret_cast<__m128i *>(row + 2 * (size_t)dstPitch), hi);
        _mm_storel_epi64(reinterpret_cast<__m128i *>(row + 3 * (size_t)dstPitch), _mm_unpackhi_epi64(hi, hi));
        return;
    }
#else
    uint8_t n[3][16];
    memcpy(n[0], w.comp[0] + x, 16);
    memcpy(n[1], w.comp[1] + x, 16);
    memcpy(n[2], w.comp[2] + x, 16);
    for (int q = 0; q < 4; q++) {
        const lvhq::QuarterProgram &p = w.quarter[q][(packed >> (8 * q)) & 0xFF];
        for (int o = 0; o < set.outputsPerQuarter; o++) {
            int c[3] = {0, 0, 0};
            for (int t = 0; t < 4; t++) {
                const uint8_t i = p.index[4 * o + t];
                if (i & 0x80) continue;
                for (int k = 0; k < 3; k++)
                    c[k] += p.weight[4 * o + t] * n[k][i];
            }
            block[set.position[q][o]] = (uint16_t)((c[0] >> 4) << 10 | (c[1] >> 4) << 5 | (c[2] >> 4));
        }
    }
#endif
    if constexpr (N == 3) block[4] = (uint16_t)(w.mid[x + 1] & 0x7FFF); // the centre is the pixel itself
    for (int r = 0; r < N; r++)
        memcpy(reinterpret_cast<uint8_t *>(d) + (size_t)dstPitch * r, block + N * r, N * 2);
}

template <int N>
void BlitRows(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int width,
              int height, Work &w)
{
    const lvhq::ProgramSet &set = lvhq::Programs(N);
    const int cols = width + 1; // copies of columns 0..width (the last one replicated)
    uint16_t *planes[3];
    for (int p = 0; p < 3; p++)
        planes[p] = reinterpret_cast<uint16_t *>(delta) + (size_t)p * height * cols;
    auto srcRow = [&](int y) { return ::lv_lanes::RowAt(src, srcPitch, y); };
    for (int s = 0; s < 3; s++)
        w.yuvRow[s] = -1;
    w.pairRows[0][0] = w.pairRows[1][0] = -1;
    w.pairRows[0][1] = w.pairRows[1][1] = -1;
    int paddedRow[3] = {-1, -1, -1}; // source row padded into w.padded[slot]
    for (int y = 0; y < height; y++) {
        const int rows[3] = {y > 0 ? y - 1 : 0, y, y < height - 1 ? y + 1 : height - 1};
        const uint16_t *padded[3];
        for (int k = 0; k < 3; k++) {
            int slot = -1;
            for (int s = 0; s < 3; s++)
                if (paddedRow[s] == rows[k]) slot = s;
            if (slot < 0) {
                for (int s = 0; s < 3; s++)
                    if (paddedRow[s] != rows[0] && paddedRow[s] != rows[1] && paddedRow[s] != rows[2]) slot = s;
                PadRow(srcRow(rows[k]), w.padded[slot], width);
                paddedRow[slot] = rows[k];
            }
            padded[k] = w.padded[slot];
        }
        // Change tracking: column c's copies sit at [c]; the row itself always, the
        // rows above and below only where they are distinct rows.
        uint16_t *copy[3] = {planes[0] + (size_t)y * cols, planes[1] + (size_t)y * cols, planes[2] + (size_t)y * cols};
        const bool checkUp = rows[0] != y, checkDown = rows[2] != y;
        uint8_t *changed = w.draw;
        unsigned any = 0;
        for (int c = 0; c < cols; c++) {
            unsigned ch = padded[1][c + 1] != copy[1][c];
            if (checkUp) ch |= padded[0][c + 1] != copy[0][c];
            if (checkDown) ch |= padded[2][c + 1] != copy[2][c];
            changed[c] = (uint8_t)ch;
            any |= ch;
        }
        if (!any) continue;
        memcpy(copy[1], padded[1] + 1, (size_t)cols * 2);
        if (checkUp) memcpy(copy[0], padded[0] + 1, (size_t)cols * 2);
        if (checkDown) memcpy(copy[2], padded[2] + 1, (size_t)cols * 2);

        // Keys of the row.
        const uint32_t *yuv[3];
        for (int k = 0; k < 3; k++)
            yuv[k] = YuvOf(w, padded, rows, k);
        DiffRun(yuv[1], yuv[1] + 1, w.h, width + 1);
        const int u = PairOf(w, yuv[0], yuv[1], rows[0], rows[1], 0);
        const int dn = PairOf(w, yuv[1], yuv[2], rows[1], rows[2], 1 - u);
        const uint8_t *uv = w.pairV[u], *udr = w.pairDR[u], *udl = w.pairDL[u];
        const uint8_t *dv = w.pairV[dn], *ddr = w.pairDR[dn], *ddl = w.pairDL[dn];
        const uint8_t *h = w.h;
        for (int x = 0; x < width; x++) {
            const int i = x + 1;
            w.key[x] =
                (uint16_t)(udr[i - 1] | uv[i] << 1 | udl[i] << 2 | h[i - 1] << 3 | h[i] << 4 | ddl[i - 1] << 5 |
                           dv[i] << 6 | ddr[i] << 7 | udl[i - 1] << 8 | udr[i] << 9 | ddl[i] << 10 | ddr[i - 1] << 11);
        }
        // Column triplets (above, own, below) of each 5-bit component.
        for (int i = 0; i < width + 8; i++) {
            const uint32_t a = padded[0][i], b = padded[1][i], c = padded[2][i];
            w.comp[0][i] = (a >> 10 & 31) | (b >> 10 & 31) << 8 | (c >> 10 & 31) << 16;
            w.comp[1][i] = (a >> 5 & 31) | (b >> 5 & 31) << 8 | (c >> 5 & 31) << 16;
            w.comp[2][i] = (a & 31) | (b & 31) << 8 | (c & 31) << 16;
        }

        View view;
        view.set = &set;
        view.program = set.program;
        for (int q = 0; q < 4; q++)
            view.quarter[q] = set.programs[q].data();
        view.block = set.block.data();
        view.key = w.key;
        for (int k = 0; k < 3; k++)
            view.comp[k] = w.comp[k];
        view.mid = padded[1];
        // The redraw walk: a change in column x + 1 redraws blocks x, x + 1, x + 2;
        // a change in column 0 redraws blocks 0 and 1.
        uint16_t *out = ::lv_lanes::RowAt(dst, dstPitch, (ptrdiff_t)N * y);
        int counter = changed[0] ? 2 : 0;
        for (int x = 0; x < width; x++) {
            if (changed[x + 1]) counter = 3;
            if (counter < 1) continue;
            counter--;
            DrawBlock<N>(view, x, out + N * x, dstPitch);
        }
    }
}
