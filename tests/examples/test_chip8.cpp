// The CHIP-8 sample's machine on its own: instructions, timers, drawing, quirks,
// state files and ROM files.
#include "chip8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <unistd.h>
#include <zlib.h>

using namespace chip8;

namespace
{

// Names the fields in which two states differ, so a failing row says what went wrong.
std::string differences(const State &a, const State &b)
{
    std::ostringstream out;
    for (int r = 0; r < 16; r++)
        if (a.v[r] != b.v[r]) out << " V" << std::hex << r << " " << int(a.v[r]) << "!=" << int(b.v[r]);
    out << std::hex;
    if (a.i != b.i) out << " I " << a.i << "!=" << b.i;
    if (a.pc != b.pc) out << " PC " << a.pc << "!=" << b.pc;
    if (a.sp != b.sp) out << " SP " << int(a.sp) << "!=" << int(b.sp);
    if (a.stack != b.stack) out << " stack";
    if (a.delay != b.delay) out << " DT " << int(a.delay) << "!=" << int(b.delay);
    if (a.sound != b.sound) out << " ST " << int(a.sound) << "!=" << int(b.sound);
    if (a.hires != b.hires) out << " hires";
    if (a.fault != b.fault) out << " fault " << int(a.fault) << "!=" << int(b.fault);
    if (a.rng != b.rng) out << " rng";
    if (a.flags != b.flags) out << " flags";
    if (a.wait_key != b.wait_key) out << " wait_key";
    for (size_t k = 0; k < a.memory.size(); k++)
        if (a.memory[k] != b.memory[k]) out << " mem[" << k << "] " << int(a.memory[k]) << "!=" << int(b.memory[k]);
    for (size_t k = 0; k < a.display.size(); k++)
        if (a.display[k] != b.display[k]) {
            out << " pixel(" << std::dec << k % kHighWidth << "," << k / kHighWidth << ")" << std::hex;
            break;
        }
    return out.str();
}

uint32_t xorshift32(uint32_t x)
{
    x ^= x << 13;
    x ^= x >> 17;
    x ^= x << 5;
    return x;
}

void put(State &s, int address, std::initializer_list<uint8_t> bytes)
{
    for (uint8_t b : bytes)
        s.memory[static_cast<size_t>(address++)] = b;
}

void set_pixel(State &s, int x, int y)
{
    s.display[static_cast<size_t>(y * kHighWidth + x)] = 1;
}

struct Row {
    const char *name;
    uint16_t opcode;
    std::function<void(State &)> before; // changes from power-on
    std::function<void(State &)> after;  // changes from `before`; then PC advances by 2 as well
    Quirks quirks = Quirks{};
    Model model = Model::SuperChip;
};

Quirks quirk(std::function<void(Quirks &)> set)
{
    Quirks q;
    set(q);
    return q;
}

const auto nothing = [](State &) {};

std::vector<Row> rows()
{
    return {
        {"00E0 clears the display", 0x00E0, [](State &s) { set_pixel(s, 3, 4), set_pixel(s, 63, 31); },
         [](State &s) { s.display.fill(0); }},
        {"00EE returns", 0x00EE, [](State &s) { s.sp = 1, s.stack[0] = 0x346; },
         [](State &s) { s.sp = 0, s.pc = 0x346 - 2; }},
        {"00EE with an empty stack faults", 0x00EE, nothing,
         [](State &s) { s.fault = Fault::StackUnderflow, s.pc = 0x200 - 2; }},
        {"1nnn jumps", 0x1ABC, nothing, [](State &s) { s.pc = 0xABC - 2; }},
        {"2nnn calls", 0x2456, nothing, [](State &s) { s.stack[0] = 0x202, s.sp = 1, s.pc = 0x456 - 2; }},
        {"2nnn with a full stack faults", 0x2456, [](State &s) { s.sp = kStackDepth; },
         [](State &s) { s.fault = Fault::StackOverflow, s.pc = 0x200 - 2; }},
        {"3xnn skips when equal", 0x3342, [](State &s) { s.v[3] = 0x42; }, [](State &s) { s.pc += 2; }},
        {"3xnn does not skip when different", 0x3342, [](State &s) { s.v[3] = 0x41; }, nothing},
        {"4xnn skips when different", 0x4342, [](State &s) { s.v[3] = 0x41; }, [](State &s) { s.pc += 2; }},
        {"4xnn does not skip when equal", 0x4342, [](State &s) { s.v[3] = 0x42; }, nothing},
        {"5xy0 skips when registers equal", 0x5120, [](State &s) { s.v[1] = s.v[2] = 9; }, [](State &s) { s.pc += 2; }},
        {"5xy0 does not skip when they differ", 0x5120, [](State &s) { s.v[1] = 9; }, nothing},
        {"6xnn loads", 0x6A7F, nothing, [](State &s) { s.v[10] = 0x7F; }},
        {"7xnn adds without touching VF", 0x7AFF, [](State &s) { s.v[10] = 2, s.v[15] = 7; },
         [](State &s) { s.v[10] = 1; }},
        {"8xy0 copies", 0x8120, [](State &s) { s.v[2] = 0x33; }, [](State &s) { s.v[1] = 0x33; }},
        {"8xy1 ors and keeps VF", 0x8121, [](State &s) { s.v[1] = 0x0F, s.v[2] = 0xF0, s.v[15] = 5; },
         [](State &s) { s.v[1] = 0xFF; }},
        {"8xy1 clears VF with the logic quirk", 0x8121, [](State &s) { s.v[1] = 0x0F, s.v[2] = 0xF0, s.v[15] = 5; },
         [](State &s) { s.v[1] = 0xFF, s.v[15] = 0; }, quirk([](Quirks &q) { q.logic_resets_vf = true; })},
        {"8xy2 ands", 0x8122, [](State &s) { s.v[1] = 0x3C, s.v[2] = 0x0F; }, [](State &s) { s.v[1] = 0x0C; }},
        {"8xy3 xors", 0x8123, [](State &s) { s.v[1] = 0x3C, s.v[2] = 0x0F; }, [](State &s) { s.v[1] = 0x33; }},
        {"8xy3 clears VF with the logic quirk", 0x8123, [](State &s) { s.v[1] = 1, s.v[15] = 1; },
         [](State &s) { s.v[15] = 0; }, quirk([](Quirks &q) { q.logic_resets_vf = true; })},
        {"8xy4 adds with carry", 0x8124, [](State &s) { s.v[1] = 0xF0, s.v[2] = 0x20; },
         [](State &s) { s.v[1] = 0x10, s.v[15] = 1; }},
        {"8xy4 adds without carry", 0x8124, [](State &s) { s.v[1] = 0x10, s.v[2] = 0x20, s.v[15] = 1; },
         [](State &s) { s.v[1] = 0x30, s.v[15] = 0; }},
        {"8xy4 into VF keeps the carry, not the sum", 0x8F14, [](State &s) { s.v[15] = 0xF0, s.v[1] = 0x20; },
         [](State &s) { s.v[15] = 1; }},
        {"8xy5 subtracts, VF 1 without borrow", 0x8125, [](State &s) { s.v[1] = 5, s.v[2] = 5; },
         [](State &s) { s.v[1] = 0, s.v[15] = 1; }},
        {"8xy5 subtracts, VF 0 with borrow", 0x8125, [](State &s) { s.v[1] = 4, s.v[2] = 5, s.v[15] = 1; },
         [](State &s) { s.v[1] = 0xFF, s.v[15] = 0; }},
        {"8xy6 shifts VX right", 0x8126, [](State &s) { s.v[1] = 0x05, s.v[2] = 0x80; },
         [](State &s) { s.v[1] = 0x02, s.v[15] = 1; }},
        {"8xy6 shifts VY with the shift quirk", 0x8126, [](State &s) { s.v[1] = 0x05, s.v[2] = 0x80; },
         [](State &s) { s.v[1] = 0x40, s.v[15] = 0; }, quirk([](Quirks &q) { q.shift_uses_vy = true; })},
        {"8xy7 subtracts the other way", 0x8127, [](State &s) { s.v[1] = 3, s.v[2] = 10; },
         [](State &s) { s.v[1] = 7, s.v[15] = 1; }},
        {"8xy7 with borrow", 0x8127, [](State &s) { s.v[1] = 10, s.v[2] = 3, s.v[15] = 1; },
         [](State &s) { s.v[1] = 0xF9, s.v[15] = 0; }},
        {"8xyE shifts VX left", 0x812E, [](State &s) { s.v[1] = 0x81, s.v[2] = 0x01; },
         [](State &s) { s.v[1] = 0x02, s.v[15] = 1; }},
        {"8xyE shifts VY with the shift quirk", 0x812E, [](State &s) { s.v[1] = 0x81, s.v[2] = 0x01; },
         [](State &s) { s.v[1] = 0x02, s.v[15] = 0; }, quirk([](Quirks &q) { q.shift_uses_vy = true; })},
        {"9xy0 skips when registers differ", 0x9120, [](State &s) { s.v[1] = 1; }, [](State &s) { s.pc += 2; }},
        {"9xy0 does not skip when equal", 0x9120, nothing, nothing},
        {"Annn loads I", 0xA123, nothing, [](State &s) { s.i = 0x123; }},
        {"Bnnn jumps to nnn + V0", 0xB300, [](State &s) { s.v[0] = 0x10, s.v[3] = 0x20; },
         [](State &s) { s.pc = 0x310 - 2; }},
        {"Bxnn jumps to xnn + VX with the jump quirk", 0xB300, [](State &s) { s.v[0] = 0x10, s.v[3] = 0x20; },
         [](State &s) { s.pc = 0x320 - 2; }, quirk([](Quirks &q) { q.jump_with_vx = true; })},
        {"Cxnn takes a masked random byte and advances the generator", 0xC50F, [](State &s) { s.rng = 0x12345678; },
         [](State &s) {
             s.rng = xorshift32(0x12345678);
             s.v[5] = static_cast<uint8_t>(s.rng >> 24) & 0x0F;
         }},
        {"Dxyn draws a sprite", 0xD123,
         [](State &s) {
             s.v[1] = 10, s.v[2] = 5, s.i = 0x300, put(s, 0x300, {0x80, 0x40, 0x81});
         },
         [](State &s) { set_pixel(s, 10, 5), set_pixel(s, 11, 6), set_pixel(s, 10, 7), set_pixel(s, 17, 7); }},
        {"Dxyn erases on collision and sets VF", 0xD121,
         [](State &s) { s.v[1] = 10, s.v[2] = 5, s.i = 0x300, put(s, 0x300, {0xC0}), set_pixel(s, 10, 5); },
         [](State &s) { s.display.fill(0), set_pixel(s, 11, 5), s.v[15] = 1; }},
        {"Ex9E skips when the key is down", 0xE39E, [](State &s) { s.v[3] = 0xA, s.keys = 1 << 0xA; },
         [](State &s) { s.pc += 2; }},
        {"Ex9E does not skip when it is up", 0xE39E, [](State &s) { s.v[3] = 0xA, s.keys = 1 << 0xB; }, nothing},
        {"ExA1 skips when the key is up", 0xE3A1, [](State &s) { s.v[3] = 0xA; }, [](State &s) { s.pc += 2; }},
        {"ExA1 does not skip when it is down", 0xE3A1, [](State &s) { s.v[3] = 0xA, s.keys = 1 << 0xA; }, nothing},
        {"Fx07 reads the delay timer", 0xF407, [](State &s) { s.delay = 42; }, [](State &s) { s.v[4] = 42; }},
        {"Fx15 sets the delay timer", 0xF415, [](State &s) { s.v[4] = 42; }, [](State &s) { s.delay = 42; }},
        {"Fx18 sets the sound timer", 0xF418, [](State &s) { s.v[4] = 42; }, [](State &s) { s.sound = 42; }},
        {"Fx1E adds to I", 0xF41E, [](State &s) { s.v[4] = 0x10, s.i = 0x2F8; }, [](State &s) { s.i = 0x308; }},
        {"Fx29 points I at a small digit", 0xF429, [](State &s) { s.v[4] = 0xB; },
         [](State &s) { s.i = kSmallFontAddress + 0xB * 5; }},
        {"Fx30 points I at a big digit", 0xF430, [](State &s) { s.v[4] = 7; },
         [](State &s) { s.i = kBigFontAddress + 7 * 10; }},
        {"Fx33 stores decimal digits", 0xF433, [](State &s) { s.v[4] = 254, s.i = 0x400; },
         [](State &s) {
             put(s, 0x400, {2, 5, 4});
         }},
        {"Fx55 stores V0..VX and leaves I", 0xF255, [](State &s) { s.v[0] = 1, s.v[1] = 2, s.v[2] = 3, s.i = 0x400; },
         [](State &s) {
             put(s, 0x400, {1, 2, 3});
         }},
        {"Fx55 advances I with the load/store quirk", 0xF255,
         [](State &s) { s.v[0] = 1, s.v[1] = 2, s.v[2] = 3, s.i = 0x400; },
         [](State &s) {
             put(s, 0x400, {1, 2, 3}), s.i = 0x403;
         },
         quirk([](Quirks &q) { q.load_store_increments_i = true; })},
        {"Fx65 loads V0..VX", 0xF165,
         [](State &s) {
             put(s, 0x400, {7, 8, 9}), s.i = 0x400;
         },
         [](State &s) { s.v[0] = 7, s.v[1] = 8; }},
        {"Fx65 advances I with the load/store quirk", 0xF165,
         [](State &s) {
             put(s, 0x400, {7, 8}), s.i = 0x400;
         },
         [](State &s) { s.v[0] = 7, s.v[1] = 8, s.i = 0x402; },
         quirk([](Quirks &q) { q.load_store_increments_i = true; })},
        {"Fx75 saves flags", 0xF275, [](State &s) { s.v[0] = 4, s.v[1] = 5, s.v[2] = 6, s.v[3] = 7; },
         [](State &s) { s.flags[0] = 4, s.flags[1] = 5, s.flags[2] = 6; }},
        {"Fx85 restores flags", 0xF185, [](State &s) { s.flags[0] = 4, s.flags[1] = 5, s.flags[2] = 6; },
         [](State &s) { s.v[0] = 4, s.v[1] = 5; }},
        {"00FF switches to hi-res and clears", 0x00FF, [](State &s) { set_pixel(s, 1, 1); },
         [](State &s) { s.hires = true, s.display.fill(0); }},
        {"00FE switches to low-res and clears", 0x00FE, [](State &s) { s.hires = true, set_pixel(s, 100, 60); },
         [](State &s) { s.hires = false, s.display.fill(0); }},
        {"00Cn scrolls down n rows", 0x00C3, [](State &s) { set_pixel(s, 5, 0), set_pixel(s, 6, 30); },
         [](State &s) { s.display.fill(0), set_pixel(s, 5, 3); }},
        {"00FB scrolls right 4 columns", 0x00FB, [](State &s) { set_pixel(s, 5, 2), set_pixel(s, 62, 2); },
         [](State &s) { s.display.fill(0), set_pixel(s, 9, 2); }},
        {"00FC scrolls left 4 columns", 0x00FC, [](State &s) { set_pixel(s, 5, 2), set_pixel(s, 2, 2); },
         [](State &s) { s.display.fill(0), set_pixel(s, 1, 2); }},
        {"00FD exits", 0x00FD, nothing, [](State &s) { s.fault = Fault::Exit, s.pc = 0x200 - 2; }},
        {"an unknown instruction halts on itself", 0x5121, nothing,
         [](State &s) { s.fault = Fault::UnknownInstruction, s.pc = 0x200 - 2; }},
        {"SUPER-CHIP instructions are unknown to CHIP-8", 0x00FF, nothing,
         [](State &s) { s.fault = Fault::UnknownInstruction, s.pc = 0x200 - 2; }, Quirks{}, Model::Chip8},
        {"Fx30 is unknown to CHIP-8", 0xF030, nothing,
         [](State &s) { s.fault = Fault::UnknownInstruction, s.pc = 0x200 - 2; }, Quirks{}, Model::Chip8},
    };
}

class Instruction : public testing::TestWithParam<Row>
{
};

TEST_P(Instruction, ChangesExactlyTheExpectedState)
{
    const Row &row = GetParam();
    Machine machine(row.model);
    machine.quirks = row.quirks;
    State &s = machine.state();
    row.before(s);
    put(s, s.pc, {static_cast<uint8_t>(row.opcode >> 8), static_cast<uint8_t>(row.opcode)});
    State expected = s;
    row.after(expected);
    expected.pc = static_cast<uint16_t>(expected.pc + 2);
    machine.step();
    EXPECT_TRUE(machine.state() == expected) << row.name << ":" << differences(machine.state(), expected);
}

INSTANTIATE_TEST_SUITE_P(Table, Instruction, testing::ValuesIn(rows()), [](const auto &info) {
    std::string name;
    for (const char *c = info.param.name; *c; c++)
        name += std::isalnum(static_cast<unsigned char>(*c)) ? *c : '_';
    return name;
});

Machine with_program(std::initializer_list<uint8_t> program, Model model = Model::SuperChip)
{
    Machine m(model);
    EXPECT_TRUE(m.load(std::vector<uint8_t>(program)));
    return m;
}

std::string temporary_path(const char *name)
{
    return testing::TempDir() + "chip8_" + std::to_string(getpid()) + "_" + name;
}

std::vector<uint8_t> read_file(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void write_file(const std::string &path, const std::vector<uint8_t> &bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void write_gzip(const std::string &path, const std::vector<uint8_t> &bytes)
{
    gzFile f = gzopen(path.c_str(), "wb");
    ASSERT_NE(f, nullptr);
    ASSERT_EQ(gzwrite(f, bytes.data(), static_cast<unsigned>(bytes.size())), static_cast<int>(bytes.size()));
    gzclose(f);
}

std::vector<uint8_t> game_rom()
{
    std::vector<uint8_t> rom;
    EXPECT_EQ(read_rom_file(LUMIVEX_SOURCE_DIR "/examples/chip8/games/volley.ch8", rom), RomError::None);
    return rom;
}

// Scripted play for both players: deterministic key masks per frame.
uint16_t scripted_keys(int frame)
{
    uint16_t keys = 0;
    if (frame % 400 >= 60 && frame % 400 < 64) keys |= 1 << 0x1; // start from the title
    if (frame > 100) {
        keys |= ((frame / 37) % 2) ? 1 << 0x1 : 1 << 0x4;
        keys |= ((frame / 23) % 2) ? 1 << 0xC : 1 << 0xD;
    }
    return keys;
}

} // namespace

TEST(Chip8Timers, CountDownOncePerFrameAndStopAtZero)
{
    Machine m = with_program({0x12, 0x00}); // spin
    m.state().delay = 3;
    m.state().sound = 2;
    EXPECT_TRUE(m.beeping());
    m.run_frame();
    EXPECT_EQ(m.state().delay, 2);
    EXPECT_EQ(m.state().sound, 1);
    m.run_frame();
    EXPECT_FALSE(m.beeping());
    m.run_frame();
    m.run_frame();
    EXPECT_EQ(m.state().delay, 0);
    EXPECT_EQ(m.state().sound, 0);
    EXPECT_EQ(m.state().frame, 4u);
}

TEST(Chip8Timers, InstructionsPerFrameIsTheSetting)
{
    // 7001 repeated: V0 counts the instructions run.
    std::vector<uint8_t> program;
    for (int k = 0; k < 200; k++)
        program.insert(program.end(), {0x70, 0x01});
    Machine m;
    ASSERT_TRUE(m.load(program));
    m.instructions_per_frame = 17;
    m.run_frame();
    EXPECT_EQ(m.state().v[0], 17);
    m.instructions_per_frame = 50;
    m.run_frame();
    EXPECT_EQ(m.state().v[0], 67);
}

TEST(Chip8Timers, DelayTimerPacesAProgram)
{
    // V0 = 10; DT = V0; loop: V1 = DT; if V1 != 0 goto loop; V2 = 1
    Machine m = with_program({0x60, 0x0A, 0xF0, 0x15, 0xF1, 0x07, 0x31, 0x00, 0x12, 0x04, 0x62, 0x01});
    for (int f = 0; f < 10; f++) {
        EXPECT_EQ(m.state().v[2], 0) << "frame " << f;
        m.run_frame();
    }
    m.run_frame();
    EXPECT_EQ(m.state().v[2], 1);
}

TEST(Chip8Draw, SpritesAreClippedAtTheEdgesByDefault)
{
    Machine m = with_program({0xD0, 0x11}); // draw 1 row at (V0, V1)
    m.state().v[0] = 62, m.state().v[1] = 31, m.state().i = 0x300, m.state().memory[0x300] = 0xFF;
    m.step();
    EXPECT_TRUE(m.pixel(62, 31) && m.pixel(63, 31));
    EXPECT_FALSE(m.pixel(0, 31) || m.pixel(5, 31));
}

TEST(Chip8Draw, SpritesWrapWithTheWrapQuirk)
{
    Machine m = with_program({0xD0, 0x12});
    m.quirks.wrap_sprites = true;
    m.state().v[0] = 62, m.state().v[1] = 31, m.state().i = 0x300;
    m.state().memory[0x300] = 0xF0, m.state().memory[0x301] = 0x80;
    m.step();
    EXPECT_TRUE(m.pixel(62, 31) && m.pixel(63, 31) && m.pixel(0, 31) && m.pixel(1, 31));
    EXPECT_TRUE(m.pixel(62, 0));
}

TEST(Chip8Draw, StartingPositionAlwaysWraps)
{
    Machine m = with_program({0xD0, 0x11});
    m.state().v[0] = 64 + 3, m.state().v[1] = 32 + 2, m.state().i = 0x300, m.state().memory[0x300] = 0x80;
    m.step();
    EXPECT_TRUE(m.pixel(3, 2));
}

TEST(Chip8Draw, CollisionIsReportedAndDrawingTwiceErases)
{
    Machine m = with_program({0xD0, 0x15, 0xD0, 0x15});
    m.state().v[0] = 20, m.state().v[1] = 10, m.state().i = kSmallFontAddress; // the digit 0
    m.step();
    EXPECT_EQ(m.state().v[15], 0);
    EXPECT_TRUE(m.pixel(20, 10));
    m.step();
    EXPECT_EQ(m.state().v[15], 1);
    for (int y = 0; y < 32; y++)
        for (int x = 0; x < 64; x++)
            EXPECT_FALSE(m.pixel(x, y));
}

TEST(Chip8Draw, HiResDraws16x16SpritesOverTheWholeScreen)
{
    // 00FF; D010 at (V0, V1) with 32 bytes at I
    Machine m = with_program({0x00, 0xFF, 0xD0, 0x10});
    m.step();
    EXPECT_EQ(m.width(), 128);
    EXPECT_EQ(m.height(), 64);
    m.state().v[0] = 110, m.state().v[1] = 47, m.state().i = 0x300;
    for (int r = 0; r < 16; r++)
        m.state().memory[static_cast<size_t>(0x300 + 2 * r)] = 0x80; // left column
    m.state().memory[0x31F] = 0x01;                                  // bottom right
    m.step();
    for (int r = 0; r < 16; r++)
        EXPECT_TRUE(m.pixel(110, 47 + r)) << r;
    EXPECT_TRUE(m.pixel(125, 62));
    EXPECT_FALSE(m.pixel(111, 47));
}

TEST(Chip8Draw, BigFontDigitsAreTenRowsTall)
{
    // 00FF; V0 = 8; F030; D12A
    Machine m = with_program({0x00, 0xFF, 0x60, 0x08, 0xF0, 0x30, 0xD1, 0x2A});
    for (int k = 0; k < 4; k++)
        m.step();
    int rows = 0;
    for (int y = 0; y < 64; y++)
        for (int x = 0; x < 8; x++)
            if (m.pixel(x, y)) {
                rows = std::max(rows, y + 1);
            }
    EXPECT_EQ(rows, 10);
    EXPECT_TRUE(m.pixel(0, 0) && m.pixel(7, 0) && m.pixel(0, 9));
}

TEST(Chip8Draw, DisplayWaitEndsTheFrameAfterADraw)
{
    // loop: D011; 7201; 1200 - V2 counts loop rounds
    Machine m = with_program({0xD0, 0x11, 0x72, 0x01, 0x12, 0x00});
    m.instructions_per_frame = 30;
    m.run_frame();
    EXPECT_EQ(m.state().v[2], 10);
    Machine waiting = with_program({0xD0, 0x11, 0x72, 0x01, 0x12, 0x00});
    waiting.instructions_per_frame = 30;
    waiting.quirks.display_wait = true;
    waiting.run_frame();
    EXPECT_EQ(waiting.state().v[2], 0);
    waiting.run_frame();
    EXPECT_EQ(waiting.state().v[2], 1);
}

TEST(Chip8Keys, WaitForKeyNeedsAPressAndARelease)
{
    Machine m = with_program({0xF5, 0x0A, 0x61, 0x01});
    m.instructions_per_frame = 10;
    m.run_frame();
    EXPECT_EQ(m.state().pc, 0x200);
    m.set_keys(1 << 0xE);
    m.run_frame();
    EXPECT_EQ(m.state().pc, 0x200) << "held down: still waiting";
    m.set_keys(0);
    m.run_frame();
    EXPECT_EQ(m.state().v[5], 0xE);
    EXPECT_EQ(m.state().v[1], 1);
}

TEST(Chip8Machine, IsDeterministicForTheSameSeedAndKeys)
{
    Machine a, b;
    ASSERT_TRUE(a.load(game_rom()));
    ASSERT_TRUE(b.load(game_rom()));
    a.instructions_per_frame = b.instructions_per_frame = 50;
    for (int f = 0; f < 1500; f++) {
        a.set_keys(scripted_keys(f));
        b.set_keys(scripted_keys(f));
        a.run_frame();
        b.run_frame();
    }
    EXPECT_TRUE(a.state() == b.state());
    Machine c(Model::SuperChip, 99);
    ASSERT_TRUE(c.load(game_rom()));
    EXPECT_NE(c.state().rng, a.state().rng);
}

TEST(Chip8Machine, ResetReturnsToPowerOnWithTheRom)
{
    Machine m;
    ASSERT_TRUE(m.load(game_rom()));
    const State power_on = m.state();
    for (int f = 0; f < 200; f++)
        m.run_frame();
    ASSERT_FALSE(m.state() == power_on);
    m.reset();
    EXPECT_TRUE(m.state() == power_on);
}

// ---- State files ----

TEST(Chip8State, FreezeThenDefrostGivesIdenticalFramesOnBothPaths)
{
    const std::string path = temporary_path("both.frz");
    Machine original;
    ASSERT_TRUE(original.load(game_rom()));
    original.instructions_per_frame = 50;
    int frame = 0;
    for (; frame < 900; frame++) {
        original.set_keys(scripted_keys(frame));
        original.run_frame();
    }
    ASSERT_TRUE(original.freeze(path.c_str()));

    Machine restored; // a fresh machine with another seed and model: everything comes from the file
    restored.set_model(Model::Chip8);
    restored.instructions_per_frame = 50;
    ASSERT_TRUE(restored.defrost(path.c_str()));
    EXPECT_TRUE(restored.state() == original.state());

    int frames_with_pixels = 0;
    for (int n = 0; n < 600; n++, frame++) {
        original.set_keys(scripted_keys(frame));
        restored.set_keys(scripted_keys(frame));
        original.run_frame();
        restored.run_frame();
        ASSERT_TRUE(restored.state().display == original.state().display) << "frame " << n;
        frames_with_pixels += std::count(original.state().display.begin(), original.state().display.end(), 1) > 0;
    }
    EXPECT_TRUE(restored.state() == original.state());
    EXPECT_GT(frames_with_pixels, 300);

    // Defrosting into the machine that has played on takes it back as well.
    const State later = original.state();
    ASSERT_TRUE(original.defrost(path.c_str()));
    EXPECT_FALSE(original.state() == later);
    EXPECT_EQ(original.state().frame, 900u);
    std::remove(path.c_str());
}

TEST(Chip8State, FileHasAVersionedHeaderAndChecksum)
{
    Machine m;
    ASSERT_TRUE(m.load(game_rom()));
    const std::vector<uint8_t> file = m.save_state();
    ASSERT_GT(file.size(), 16u);
    EXPECT_EQ(std::string(file.begin(), file.begin() + 4), "C8FZ");
    EXPECT_EQ(file[4], 1); // version
    const uint32_t size = file[8] | file[9] << 8 | file[10] << 16 | uint32_t(file[11]) << 24;
    EXPECT_EQ(size, file.size() - 16);
    const uint32_t crc = file[12] | file[13] << 8 | file[14] << 16 | uint32_t(file[15]) << 24;
    EXPECT_EQ(crc, crc32_of(file.data() + 16, file.size() - 16));
}

class RefusedState : public testing::TestWithParam<std::pair<const char *, std::function<void(std::vector<uint8_t> &)>>>
{
};

TEST_P(RefusedState, LeavesTheMachineUntouched)
{
    Machine source;
    ASSERT_TRUE(source.load(game_rom()));
    for (int f = 0; f < 120; f++)
        source.run_frame();
    std::vector<uint8_t> file = source.save_state();
    GetParam().second(file);

    Machine target;
    std::vector<uint8_t> other = {0x60, 0x01, 0x12, 0x02};
    ASSERT_TRUE(target.load(other));
    target.run_frame();
    const State before = target.state();
    const std::string path = temporary_path("refused.frz");
    write_file(path, file);
    EXPECT_FALSE(target.defrost(path.c_str())) << GetParam().first;
    EXPECT_FALSE(target.load_state(file.data(), file.size())) << GetParam().first;
    EXPECT_TRUE(target.state() == before) << GetParam().first;
    std::remove(path.c_str());
}

void recrc(std::vector<uint8_t> &f)
{
    const uint32_t crc = crc32_of(f.data() + 16, f.size() - 16);
    for (int b = 0; b < 4; b++)
        f[static_cast<size_t>(12 + b)] = static_cast<uint8_t>(crc >> (8 * b));
}

INSTANTIATE_TEST_SUITE_P(
    Chip8State, RefusedState,
    testing::Values(std::make_pair("empty", [](std::vector<uint8_t> &f) { f.clear(); }),
                    std::make_pair("header only", [](std::vector<uint8_t> &f) { f.resize(16); }),
                    std::make_pair("truncated by one byte", [](std::vector<uint8_t> &f) { f.pop_back(); }),
                    std::make_pair("one byte too many", [](std::vector<uint8_t> &f) { f.push_back(0); }),
                    std::make_pair("foreign magic", [](std::vector<uint8_t> &f) { f[0] = 'P'; }),
                    std::make_pair("foreign file",
                                   [](std::vector<uint8_t> &f) { std::fill(f.begin(), f.end(), 0x5A); }),
                    std::make_pair("newer version", [](std::vector<uint8_t> &f) { f[4] = 2; }),
                    std::make_pair("wrong payload size", [](std::vector<uint8_t> &f) { f[8] ^= 1; }),
                    std::make_pair("corrupt payload", [](std::vector<uint8_t> &f) { f[100] ^= 0x10; }),
                    std::make_pair("corrupt checksum", [](std::vector<uint8_t> &f) { f[13] ^= 0x01; }),
                    std::make_pair("stack pointer out of range with a good checksum",
                                   [](std::vector<uint8_t> &f) {
                                       // sp follows memory, V, stack, flags, display, I and PC.
                                       f[16 + 4096 + 16 + 32 + 16 + 1024 + 4] = 17;
                                       recrc(f);
                                   }),
                    std::make_pair("unknown model with a good checksum", [](std::vector<uint8_t> &f) {
                        f.back() = 7;
                        recrc(f);
                    })));

TEST(Chip8State, FreezeToAnUnwritablePathFails)
{
    Machine m;
    EXPECT_FALSE(m.freeze("/nonexistent-folder/state.frz"));
    EXPECT_FALSE(m.freeze(""));
    EXPECT_FALSE(m.defrost("/nonexistent-folder/state.frz"));
}

// ---- ROM files ----

TEST(Chip8Rom, PlainAndGzipFilesLoadTheSameBytes)
{
    const std::vector<uint8_t> rom = game_rom();
    const std::string plain = temporary_path("plain.ch8"), packed = temporary_path("packed.ch8.gz");
    write_file(plain, rom);
    write_gzip(packed, rom);
    ASSERT_LT(read_file(packed).size(), rom.size());
    std::vector<uint8_t> a, b;
    EXPECT_EQ(read_rom_file(plain.c_str(), a), RomError::None);
    EXPECT_EQ(read_rom_file(packed.c_str(), b), RomError::None);
    EXPECT_EQ(a, rom);
    EXPECT_EQ(b, rom);
    std::remove(plain.c_str());
    std::remove(packed.c_str());
}

TEST(Chip8Rom, TooLargeEmptyMissingAndDamagedFilesAreRefused)
{
    const std::string path = temporary_path("rom.ch8");
    std::vector<uint8_t> out = {1, 2, 3};
    write_file(path, std::vector<uint8_t>(kMaxRomSize + 1, 0x12));
    EXPECT_EQ(read_rom_file(path.c_str(), out), RomError::TooLarge);
    write_gzip(path, std::vector<uint8_t>(kMaxRomSize + 1, 0x12)); // small on disk, too large inside
    EXPECT_EQ(read_rom_file(path.c_str(), out), RomError::TooLarge);
    write_file(path, {});
    EXPECT_EQ(read_rom_file(path.c_str(), out), RomError::Empty);
    EXPECT_EQ(read_rom_file((path + ".missing").c_str(), out), RomError::CannotOpen);
    std::vector<uint8_t> rom = game_rom();
    write_gzip(path, rom);
    std::vector<uint8_t> damaged = read_file(path);
    damaged.resize(damaged.size() / 2); // a gzip stream cut in the middle
    write_file(path, damaged);
    EXPECT_EQ(read_rom_file(path.c_str(), out), RomError::Corrupt);
    EXPECT_EQ(out, (std::vector<uint8_t>{1, 2, 3})) << "untouched on failure";

    write_file(path, std::vector<uint8_t>(kMaxRomSize, 0x12));
    EXPECT_EQ(read_rom_file(path.c_str(), out), RomError::None);
    EXPECT_EQ(out.size(), static_cast<size_t>(kMaxRomSize));
    std::remove(path.c_str());
}

TEST(Chip8Rom, MachineRefusesEmptyAndOversizedRomsAndStaysAsItWas)
{
    Machine m;
    ASSERT_TRUE(m.load({0x60, 0x05}));
    m.step();
    const State before = m.state();
    EXPECT_FALSE(m.load({}));
    EXPECT_FALSE(m.load(std::vector<uint8_t>(kMaxRomSize + 1, 0x60)));
    EXPECT_TRUE(m.state() == before);
    EXPECT_TRUE(m.load(std::vector<uint8_t>(kMaxRomSize, 0x60)));
    EXPECT_EQ(m.state().memory[kMemorySize - 1], 0x60);
}

TEST(Chip8Rom, FilterAcceptsProgramsAndRefusesOtherFiles)
{
    uint8_t header[128] = {};
    const std::vector<uint8_t> rom = game_rom();
    std::copy(rom.begin(), rom.begin() + 128, header);
    EXPECT_TRUE(looks_like_rom(header, static_cast<int64_t>(rom.size())));
    EXPECT_TRUE(looks_like_rom(header, -1)) << "size unknown";
    EXPECT_FALSE(looks_like_rom(header, 1));
    EXPECT_FALSE(looks_like_rom(header, kMaxRomSize + 1));

    uint8_t zeros[128] = {};
    EXPECT_FALSE(looks_like_rom(zeros, 100)) << "0000 is no instruction here";

    uint8_t text[128];
    const char *line = "# a text file, not a program. ";
    for (size_t k = 0; k < sizeof text; k++)
        text[k] = static_cast<uint8_t>(line[k % 30]);
    EXPECT_FALSE(looks_like_rom(text, 400));

    uint8_t tiny[128] = {0x00, 0xE0}; // a two-byte program: zero-padded beyond its end
    EXPECT_TRUE(looks_like_rom(tiny, 2));
    uint8_t bad[128] = {0xF0, 0x99, 0x00};
    EXPECT_FALSE(looks_like_rom(bad, 50));
    EXPECT_FALSE(looks_like_rom(nullptr, 50));
}

TEST(Chip8Rom, ValidOpcodesDependOnTheModel)
{
    EXPECT_TRUE(is_valid_opcode(0x00E0, Model::Chip8));
    EXPECT_TRUE(is_valid_opcode(0xD125, Model::Chip8));
    EXPECT_FALSE(is_valid_opcode(0x00FF, Model::Chip8));
    EXPECT_TRUE(is_valid_opcode(0x00FF, Model::SuperChip));
    EXPECT_TRUE(is_valid_opcode(0x00C7, Model::SuperChip));
    EXPECT_FALSE(is_valid_opcode(0x0123, Model::SuperChip));
    EXPECT_FALSE(is_valid_opcode(0x8128, Model::SuperChip));
    EXPECT_FALSE(is_valid_opcode(0xE1A0, Model::SuperChip));
    EXPECT_FALSE(is_valid_opcode(0xF199, Model::SuperChip));
}
