// The CHIP-8 sample's assembler, and the bundled game built with it.
#include "assembler.h"
#include "chip8.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

using namespace chip8;

namespace
{

uint16_t one_instruction(const std::string &line)
{
    const AssemblyResult r = assemble(line + "\n");
    EXPECT_TRUE(r.ok()) << line << ": " << (r.errors.empty() ? "" : r.errors[0]);
    if (r.bytes.size() != 2) return 0xFFFF;
    return static_cast<uint16_t>(r.bytes[0] << 8 | r.bytes[1]);
}

std::string read_text(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

std::vector<uint8_t> read_bytes(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

} // namespace

TEST(Chip8Assembler, EncodesEveryInstructionForm)
{
    const std::pair<const char *, uint16_t> table[] = {
        {"cls", 0x00E0},
        {"ret", 0x00EE},
        {"scd 5", 0x00C5},
        {"scr", 0x00FB},
        {"scl", 0x00FC},
        {"exit", 0x00FD},
        {"low", 0x00FE},
        {"high", 0x00FF},
        {"jp 0x345", 0x1345},
        {"jp v0, $300", 0xB300},
        {"call 0x456", 0x2456},
        {"se v3, 0x42", 0x3342},
        {"se v3, v4", 0x5340},
        {"sne va, 7", 0x4A07},
        {"sne va, vb", 0x9AB0},
        {"ld v1, 255", 0x61FF},
        {"ld v1, -1", 0x61FF},
        {"ld v1, v2", 0x8120},
        {"ld i, 0xABC", 0xAABC},
        {"ld v5, dt", 0xF507},
        {"ld v5, k", 0xF50A},
        {"ld dt, v5", 0xF515},
        {"ld st, v5", 0xF518},
        {"ld f, v5", 0xF529},
        {"ld hf, v5", 0xF530},
        {"ld b, v5", 0xF533},
        {"ld [i], v5", 0xF555},
        {"ld v5, [i]", 0xF565},
        {"ld r, v5", 0xF575},
        {"ld v5, r", 0xF585},
        {"add v2, 3", 0x7203},
        {"add v2, v3", 0x8234},
        {"add i, v2", 0xF21E},
        {"or v1, v2", 0x8121},
        {"and v1, v2", 0x8122},
        {"xor v1, v2", 0x8123},
        {"sub v1, v2", 0x8125},
        {"shr v1", 0x8116},
        {"shr v1, v2", 0x8126},
        {"subn v1, v2", 0x8127},
        {"shl v1", 0x811E},
        {"shl v1, v2", 0x812E},
        {"rnd v9, 0b1111", 0xC90F},
        {"drw v1, v2, 15", 0xD12F},
        {"drw v1, v2, 0", 0xD120},
        {"skp vf", 0xEF9E},
        {"sknp v0", 0xE0A1},
        {"LD V1, VF", 0x81F0},
    };
    for (const auto &row : table)
        EXPECT_EQ(one_instruction(row.first), row.second) << row.first;
}

TEST(Chip8Assembler, LabelsConstantsExpressionsAndData)
{
    const AssemblyResult r = assemble("; a small program\n"
                                      "SPEED = 2 * (3 + 1)\n"
                                      "HALF equ SPEED / 2\n"
                                      "start:  ld v0, SPEED - 1   ; forward reference below\n"
                                      "        ld i, sprite\n"
                                      "        jp start\n"
                                      "sprite: db 0b1111_0000, $0F, HALF, -2\n"
                                      "words:  dw 0x1234, words\n"
                                      "LATE = sprite + 1\n"
                                      "        ld i, LATE\n");
    ASSERT_TRUE(r.ok()) << r.errors[0];
    const std::vector<uint8_t> expected = {0x60, 0x07, 0xA2, 0x06, 0x12, 0x00, 0xF0, 0x0F,
                                           0x04, 0xFE, 0x12, 0x34, 0x02, 0x0A, 0xA2, 0x07};
    EXPECT_EQ(r.bytes, expected);
}

TEST(Chip8Assembler, ErrorsNameTheLineAndTheProblem)
{
    const AssemblyResult r = assemble("start: cls\n"             // 1
                                      "        frobnicate v1\n"  // 2
                                      "        ld v1, 256\n"     // 3
                                      "        jp nowhere\n"     // 4
                                      "start:  ret\n"            // 5
                                      "        drw v1, v2\n"     // 6
                                      "        add vg, 1\n"      // 7
                                      "        drw v1, v2, 16\n" // 8
                                      "        ld v1, 0b102\n"   // 9
                                      "LOOP = LOOP + 1\n",       // 10
                                      "game.c8s");
    ASSERT_EQ(r.errors.size(), 9u);
    EXPECT_TRUE(r.bytes.empty());
    const char *expected[] = {
        "game.c8s:2: error: unknown instruction 'frobnicate'",
        "game.c8s:3: error: byte value 256 out of range",
        "game.c8s:4: error: undefined name 'nowhere'",
        "game.c8s:5: error: 'start' is already defined",
        "game.c8s:6: error: 'drw' takes 3 operands, found 2",
        "game.c8s:7: error: expected a register V0 to VF, found 'vg'",
        "game.c8s:8: error: value 16 out of range",
        "game.c8s:9: error: bad digit '2' in number",
        "game.c8s:10: error: constants refer to each other in a circle",
    };
    for (size_t k = 0; k < r.errors.size(); k++)
        EXPECT_EQ(r.errors[k], expected[k]);
}

TEST(Chip8Assembler, DeeplyNestedExpressionsAreAnErrorNotACrash)
{
    const AssemblyResult parens = assemble("ld v0, " + std::string(100000, '(') + "1\n", "deep.c8s");
    ASSERT_EQ(parens.errors.size(), 1u);
    EXPECT_EQ(parens.errors[0], "deep.c8s:1: error: expression nested too deeply");
    const AssemblyResult minus = assemble("db " + std::string(100000, '-') + "1\n", "deep.c8s");
    ASSERT_EQ(minus.errors.size(), 1u);
}

TEST(Chip8Assembler, RefusesAProgramLargerThanMemory)
{
    std::string source;
    for (int k = 0; k < 1793; k++)
        source += "cls\n"; // 3586 bytes
    const AssemblyResult r = assemble(source, "big.c8s");
    ASSERT_EQ(r.errors.size(), 1u);
    EXPECT_NE(r.errors[0].find("big.c8s:1793: error: program is 3586 bytes"), std::string::npos) << r.errors[0];
}

TEST(Chip8Assembler, AssembledProgramRunsOnTheMachine)
{
    // Counts V1 up to 10 with a loop, stores its decimal digits and exits.
    const AssemblyResult r = assemble("        ld v1, 0\n"
                                      "again:  add v1, 1\n"
                                      "        se v1, 10\n"
                                      "        jp again\n"
                                      "        ld i, digits\n"
                                      "        ld b, v1\n"
                                      "        exit\n"
                                      "digits: db 0, 0, 0\n");
    ASSERT_TRUE(r.ok());
    Machine m;
    ASSERT_TRUE(m.load(r.bytes));
    m.instructions_per_frame = 1000;
    m.run_frame();
    EXPECT_EQ(m.state().fault, Fault::Exit);
    EXPECT_EQ(m.state().v[1], 10);
    const int digits = 0x200 + static_cast<int>(r.bytes.size()) - 3;
    EXPECT_EQ(m.state().memory[static_cast<size_t>(digits)], 0);
    EXPECT_EQ(m.state().memory[static_cast<size_t>(digits + 1)], 1);
    EXPECT_EQ(m.state().memory[static_cast<size_t>(digits + 2)], 0);
}

TEST(Chip8Game, CommittedRomIsTheAssembledSource)
{
    const std::string source = read_text(LUMIVEX_SOURCE_DIR "/examples/chip8/games/volley.c8s");
    ASSERT_FALSE(source.empty());
    const AssemblyResult r = assemble(source, "volley.c8s");
    ASSERT_TRUE(r.ok()) << r.errors[0];
    EXPECT_EQ(r.bytes, read_bytes(LUMIVEX_SOURCE_DIR "/examples/chip8/games/volley.ch8"));
}

TEST(Chip8Game, TitleAnimatesAndAKeyStartsAHiResGame)
{
    Machine m;
    ASSERT_TRUE(m.load(read_bytes(LUMIVEX_SOURCE_DIR "/examples/chip8/games/volley.ch8")));
    m.instructions_per_frame = 50;
    for (int f = 0; f < 30; f++)
        m.run_frame();
    EXPECT_FALSE(m.state().hires);
    const auto title = m.state().display;
    EXPECT_GT(std::count(title.begin(), title.end(), 1), 100) << "the name is drawn";
    for (int f = 0; f < 10; f++)
        m.run_frame();
    EXPECT_TRUE(m.state().display != title) << "the ball moves";

    for (int f = 40; f < 100; f++)
        m.run_frame();    // keys held from the last game are ignored for a moment
    m.set_keys(1 << 0xC); // player 2 up starts the game
    m.run_frame();
    m.set_keys(0);
    for (int f = 0; f < 5; f++)
        m.run_frame();
    EXPECT_TRUE(m.state().hires);
    EXPECT_FALSE(m.halted());

    // Player 1 holds down: the left paddle's column fills lower down the field.
    auto paddle_top = [&](int x) {
        for (int y = 13; y < 63; y++)
            if (m.pixel(x, y)) return y;
        return -1;
    };
    const int before = paddle_top(4);
    m.set_keys(1 << 0x4);
    for (int f = 0; f < 20; f++)
        m.run_frame();
    EXPECT_GT(paddle_top(4), before);
    m.set_keys(0);

    // Nobody plays: points are scored and the game runs to its end without faults.
    for (int f = 0; f < 60 * 120 && !(m.state().v[8] == 9 || m.state().v[9] == 9); f++)
        m.run_frame();
    EXPECT_TRUE(m.state().v[8] == 9 || m.state().v[9] == 9);
    EXPECT_FALSE(m.halted());
}
