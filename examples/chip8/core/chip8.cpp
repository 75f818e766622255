/* The CHIP-8 / SUPER-CHIP instruction set. */
#include "chip8.h"

#include <algorithm>
#include <cstring>

namespace chip8
{

namespace
{

/* The customary 4x5 hexadecimal digits. */
const uint8_t kSmallFont[16 * 5] = {
    0xF0, 0x90, 0x90, 0x90, 0xF0, 0x20, 0x60, 0x20, 0x20, 0x70, 0xF0, 0x10, 0xF0, 0x80, 0xF0, 0xF0,
    0x10, 0xF0, 0x10, 0xF0, 0x90, 0x90, 0xF0, 0x10, 0x10, 0xF0, 0x80, 0xF0, 0x10, 0xF0, 0xF0, 0x80,
    0xF0, 0x90, 0xF0, 0xF0, 0x10, 0x20, 0x40, 0x40, 0xF0, 0x90, 0xF0, 0x90, 0xF0, 0xF0, 0x90, 0xF0,
    0x10, 0xF0, 0xF0, 0x90, 0xF0, 0x90, 0x90, 0xE0, 0x90, 0xE0, 0x90, 0xE0, 0xF0, 0x80, 0x80, 0x80,
    0xF0, 0xE0, 0x90, 0x90, 0x90, 0xE0, 0xF0, 0x80, 0xF0, 0x80, 0xF0, 0xF0, 0x80, 0xF0, 0x80, 0x80,
};

/* The big font is the small one doubled in both directions: 8x10 glyphs. */
void install_fonts(std::array<uint8_t, kMemorySize> &memory)
{
    std::memcpy(&memory[kSmallFontAddress], kSmallFont, sizeof kSmallFont);
    for (int glyph = 0; glyph < 16; glyph++)
        for (int row = 0; row < 5; row++) {
            const uint8_t nibble = kSmallFont[glyph * 5 + row] >> 4;
            uint8_t wide = 0;
            for (int bit = 0; bit < 4; bit++)
                if (nibble & (1 << bit)) wide |= static_cast<uint8_t>(3 << (bit * 2));
            memory[static_cast<size_t>(kBigFontAddress + glyph * 10 + row * 2)] = wide;
            memory[static_cast<size_t>(kBigFontAddress + glyph * 10 + row * 2 + 1)] = wide;
        }
}

uint8_t &at(State &s, int address)
{
    return s.memory[static_cast<size_t>(address & (kMemorySize - 1))];
}

} // namespace

bool State::operator==(const State &o) const
{
    return memory == o.memory && v == o.v && stack == o.stack && flags == o.flags && display == o.display && i == o.i &&
           pc == o.pc && sp == o.sp && delay == o.delay && sound == o.sound && hires == o.hires && fault == o.fault &&
           wait_key == o.wait_key && keys == o.keys && rng == o.rng && frame == o.frame && model == o.model;
}

Machine::Machine(Model model, uint32_t seed) : model_(model), seed_(seed ? seed : 1u)
{
    reset();
}

bool Machine::load(const std::vector<uint8_t> &rom)
{
    if (rom.empty() || rom.size() > static_cast<size_t>(kMaxRomSize)) return false;
    rom_ = rom;
    reset();
    return true;
}

void Machine::reset()
{
    s_ = State{};
    install_fonts(s_.memory);
    std::copy(rom_.begin(), rom_.end(), s_.memory.begin() + kProgramStart);
    s_.rng = seed_;
    s_.model = model_;
}

uint32_t Machine::next_random()
{
    uint32_t x = s_.rng; /* xorshift32 */
    x ^= x << 13;
    x ^= x >> 17;
    x ^= x << 5;
    s_.rng = x;
    return x;
}

void Machine::fail(Fault fault)
{
    s_.pc = static_cast<uint16_t>((s_.pc - 2) & (kMemorySize - 1)); /* stay on the instruction */
    s_.fault = fault;
}

void Machine::run_frame()
{
    for (int n = 0; n < instructions_per_frame && !halted(); n++) {
        bool drew = false;
        step(&drew);
        if (drew && quirks.display_wait) break;
    }
    if (s_.delay > 0) s_.delay--;
    if (s_.sound > 0) s_.sound--;
    s_.frame++;
}

void Machine::draw(int vx, int vy, int rows)
{
    const int w = width(), h = height();
    const bool big = rows == 0 && s_.model == Model::SuperChip; /* Dxy0 draws nothing on CHIP-8 */
    const int columns = big ? 16 : 8;
    if (big) rows = 16;
    const int x0 = s_.v[static_cast<size_t>(vx)] % w, y0 = s_.v[static_cast<size_t>(vy)] % h;
    bool collision = false;
    for (int r = 0; r < rows; r++) {
        int y = y0 + r;
        if (y >= h) {
            if (!quirks.wrap_sprites) break;
            y %= h;
        }
        const unsigned bits = big ? (at(s_, s_.i + 2 * r) << 8) | at(s_, s_.i + 2 * r + 1) : at(s_, s_.i + r);
        for (int c = 0; c < columns; c++) {
            if (!(bits & (1u << (columns - 1 - c)))) continue;
            int x = x0 + c;
            if (x >= w) {
                if (!quirks.wrap_sprites) continue;
                x %= w;
            }
            uint8_t &p = s_.display[static_cast<size_t>(y * kHighWidth + x)];
            if (p) collision = true;
            p ^= 1;
        }
    }
    s_.v[15] = collision ? 1 : 0;
}

void Machine::scroll_down(int rows)
{
    const int w = width(), h = height();
    for (int y = h - 1; y >= 0; y--)
        for (int x = 0; x < w; x++)
            s_.display[static_cast<size_t>(y * kHighWidth + x)] =
                y >= rows ? s_.display[static_cast<size_t>((y - rows) * kHighWidth + x)] : 0;
}

void Machine::scroll_horizontal(int columns)
{
    const int w = width(), h = height();
    for (int y = 0; y < h; y++) {
        uint8_t *row = &s_.display[static_cast<size_t>(y * kHighWidth)];
        uint8_t copy[kHighWidth];
        std::memcpy(copy, row, static_cast<size_t>(w));
        for (int x = 0; x < w; x++) {
            const int from = x - columns;
            row[x] = (from >= 0 && from < w) ? copy[from] : 0;
        }
    }
}

bool Machine::step(bool *drew)
{
    if (drew) *drew = false;
    if (halted()) return false;
    const uint16_t op = static_cast<uint16_t>((at(s_, s_.pc) << 8) | at(s_, s_.pc + 1));
    s_.pc = static_cast<uint16_t>((s_.pc + 2) & (kMemorySize - 1));
    if (!is_valid_opcode(op, s_.model)) {
        fail(Fault::UnknownInstruction);
        return false;
    }
    const int x = (op >> 8) & 0xF, y = (op >> 4) & 0xF, n = op & 0xF;
    const uint8_t nn = op & 0xFF;
    const uint16_t nnn = op & 0xFFF;
    uint8_t &vx = s_.v[static_cast<size_t>(x)];
    uint8_t &vy = s_.v[static_cast<size_t>(y)];
    uint8_t &vf = s_.v[15];
    auto skip_if = [&](bool condition) {
        if (condition) s_.pc = static_cast<uint16_t>((s_.pc + 2) & (kMemorySize - 1));
    };

    switch (op >> 12) {
    case 0x0:
        if (op == 0x00E0) {
            s_.display.fill(0);
        } else if (op == 0x00EE) {
            if (s_.sp == 0) return fail(Fault::StackUnderflow), false;
            s_.pc = s_.stack[--s_.sp];
        } else if ((op & 0xFFF0) == 0x00C0) {
            scroll_down(n);
        } else if (op == 0x00FB) {
            scroll_horizontal(4);
        } else if (op == 0x00FC) {
            scroll_horizontal(-4);
        } else if (op == 0x00FD) {
            return fail(Fault::Exit), false;
        } else { /* 00FE, 00FF: change resolution, which clears the display */
            s_.hires = op == 0x00FF;
            s_.display.fill(0);
        }
        break;
    case 0x1:
        s_.pc = nnn;
        break;
    case 0x2:
        if (s_.sp >= kStackDepth) return fail(Fault::StackOverflow), false;
        s_.stack[s_.sp++] = s_.pc;
        s_.pc = nnn;
        break;
    case 0x3:
        skip_if(vx == nn);
        break;
    case 0x4:
        skip_if(vx != nn);
        break;
    case 0x5:
        skip_if(vx == vy);
        break;
    case 0x6:
        vx = nn;
        break;
    case 0x7:
        vx = static_cast<uint8_t>(vx + nn);
        break;
    case 0x8: {
        /* The flag is written after the result, so that VF as X ends up holding the flag. */
        uint8_t flag = vf;
        switch (n) {
        case 0x0:
            vx = vy;
            break;
        case 0x1:
            vx |= vy;
            if (quirks.logic_resets_vf) flag = 0;
            break;
        case 0x2:
            vx &= vy;
            if (quirks.logic_resets_vf) flag = 0;
            break;
        case 0x3:
            vx ^= vy;
            if (quirks.logic_resets_vf) flag = 0;
            break;
        case 0x4: {
            const unsigned sum = vx + vy;
            vx = static_cast<uint8_t>(sum);
            flag = sum > 0xFF;
            break;
        }
        case 0x5:
            flag = vx >= vy;
            vx = static_cast<uint8_t>(vx - vy);
            break;
        case 0x6: {
            const uint8_t source = quirks.shift_uses_vy ? vy : vx;
            flag = source & 1;
            vx = static_cast<uint8_t>(source >> 1);
            break;
        }
        case 0x7:
            flag = vy >= vx;
            vx = static_cast<uint8_t>(vy - vx);
            break;
        case 0xE: {
            const uint8_t source = quirks.shift_uses_vy ? vy : vx;
            flag = source >> 7;
            vx = static_cast<uint8_t>(source << 1);
            break;
        }
        }
        vf = flag;
        break;
    }
    case 0x9:
        skip_if(vx != vy);
        break;
    case 0xA:
        s_.i = nnn;
        break;
    case 0xB:
        s_.pc = static_cast<uint16_t>((nnn + (quirks.jump_with_vx ? vx : s_.v[0])) & (kMemorySize - 1));
        break;
    case 0xC:
        vx = static_cast<uint8_t>(next_random() >> 24) & nn;
        break;
    case 0xD:
        draw(x, y, n);
        if (drew) *drew = true;
        break;
    case 0xE:
        skip_if(((s_.keys >> (vx & 0xF)) & 1) == (nn == 0x9E ? 1 : 0));
        break;
    case 0xF:
        switch (nn) {
        case 0x07:
            vx = s_.delay;
            break;
        case 0x0A: /* wait for a key to be pressed and released; the instruction repeats meanwhile */
            if (s_.wait_key == kNoKey) {
                for (int k = 0; k < 16 && s_.wait_key == kNoKey; k++)
                    if (s_.keys & (1u << k)) s_.wait_key = static_cast<uint8_t>(k);
                s_.pc = static_cast<uint16_t>(s_.pc - 2);
            } else if (s_.keys & (1u << s_.wait_key)) {
                s_.pc = static_cast<uint16_t>(s_.pc - 2);
            } else {
                vx = s_.wait_key;
                s_.wait_key = kNoKey;
            }
            break;
        case 0x15:
            s_.delay = vx;
            break;
        case 0x18:
            s_.sound = vx;
            break;
        case 0x1E:
            s_.i = static_cast<uint16_t>((s_.i + vx) & (kMemorySize - 1));
            break;
        case 0x29:
            s_.i = static_cast<uint16_t>(kSmallFontAddress + (vx & 0xF) * 5);
            break;
        case 0x30:
            s_.i = static_cast<uint16_t>(kBigFontAddress + (vx & 0xF) * 10);
            break;
        case 0x33:
            at(s_, s_.i) = vx / 100;
            at(s_, s_.i + 1) = (vx / 10) % 10;
            at(s_, s_.i + 2) = vx % 10;
            break;
        case 0x55:
            for (int r = 0; r <= x; r++)
                at(s_, s_.i + r) = s_.v[static_cast<size_t>(r)];
            if (quirks.load_store_increments_i) s_.i = static_cast<uint16_t>((s_.i + x + 1) & (kMemorySize - 1));
            break;
        case 0x65:
            for (int r = 0; r <= x; r++)
                s_.v[static_cast<size_t>(r)] = at(s_, s_.i + r);
            if (quirks.load_store_increments_i) s_.i = static_cast<uint16_t>((s_.i + x + 1) & (kMemorySize - 1));
            break;
        case 0x75:
            for (int r = 0; r <= x; r++)
                s_.flags[static_cast<size_t>(r)] = s_.v[static_cast<size_t>(r)];
            break;
        case 0x85:
            for (int r = 0; r <= x; r++)
                s_.v[static_cast<size_t>(r)] = s_.flags[static_cast<size_t>(r)];
            break;
        }
        break;
    }
    return true;
}

bool is_valid_opcode(uint16_t op, Model model)
{
    const bool super = model == Model::SuperChip;
    const int n = op & 0xF;
    const uint8_t nn = op & 0xFF;
    switch (op >> 12) {
    case 0x0:
        if (op == 0x00E0 || op == 0x00EE) return true;
        return super && ((op & 0xFFF0) == 0x00C0 || (op >= 0x00FB && op <= 0x00FF));
    case 0x5:
    case 0x9:
        return n == 0;
    case 0x8:
        return n <= 7 || n == 0xE;
    case 0xE:
        return nn == 0x9E || nn == 0xA1;
    case 0xF:
        switch (nn) {
        case 0x07:
        case 0x0A:
        case 0x15:
        case 0x18:
        case 0x1E:
        case 0x29:
        case 0x33:
        case 0x55:
        case 0x65:
            return true;
        case 0x30:
        case 0x75:
        case 0x85:
            return super;
        default:
            return false;
        }
    default:
        return true;
    }
}

} // namespace chip8
