/*
 * A CHIP-8 / SUPER-CHIP machine: 4 KiB of memory, sixteen 8-bit registers, a
 * 16-level stack, two 60 Hz timers, a 16-key keypad and a 64x32 display that
 * SUPER-CHIP programs can switch to 128x64.
 *
 * The machine is deterministic: its random numbers come from a generator whose
 * state is part of the machine, so the same ROM, seed, settings and key presses
 * always give the same frames. No platform code: the host draws the display and
 * plays the beeper.
 */
#ifndef CHIP8_CHIP8_H
#define CHIP8_CHIP8_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace chip8
{

constexpr int kMemorySize = 4096;
constexpr int kProgramStart = 0x200;
constexpr int kMaxRomSize = kMemorySize - kProgramStart; /* 3584 bytes */
constexpr int kSmallFontAddress = 0x050;                 /* 16 glyphs of 4x5, 5 bytes each */
constexpr int kBigFontAddress = 0x0A0;                   /* 16 glyphs of 8x10, 10 bytes each */
constexpr int kLowWidth = 64;
constexpr int kLowHeight = 32;
constexpr int kHighWidth = 128;
constexpr int kHighHeight = 64;
constexpr int kStackDepth = 16;
constexpr uint8_t kNoKey = 0xFF;

enum class Model : uint8_t {
    Chip8 = 0,     /* the original instruction set; SUPER-CHIP instructions halt the machine */
    SuperChip = 1, /* adds hi-res, scrolling, 16x16 sprites, the big font and the flag registers */
};

/* Why the machine stopped running instructions. */
enum class Fault : uint8_t {
    None = 0,
    UnknownInstruction = 1,
    StackOverflow = 2,
    StackUnderflow = 3,
    Exit = 4, /* 00FD: the program ended itself */
};

/* Behaviours on which CHIP-8 interpreters historically differ. All false is the
   SUPER-CHIP behaviour most modern programs expect, with Bnnn jumping to nnn + V0. */
struct Quirks {
    bool shift_uses_vy = false;           /* 8xy6/8xyE shift VY into VX (the original interpreter) */
    bool load_store_increments_i = false; /* Fx55/Fx65 leave I at I + X + 1 */
    bool jump_with_vx = false;            /* Bxnn jumps to xnn + VX instead of nnn + V0 */
    bool logic_resets_vf = false;         /* 8xy1/8xy2/8xy3 clear VF */
    bool wrap_sprites = false;            /* sprite pixels past an edge wrap round instead of being clipped */
    bool display_wait = false;            /* a draw ends the frame's instructions, as if waiting for vblank */

    bool operator==(const Quirks &o) const
    {
        return shift_uses_vy == o.shift_uses_vy && load_store_increments_i == o.load_store_increments_i &&
               jump_with_vx == o.jump_with_vx && logic_resets_vf == o.logic_resets_vf &&
               wrap_sprites == o.wrap_sprites && display_wait == o.display_wait;
    }
};

/* Everything that a freeze file keeps. Plain data: tests set and compare it directly. */
struct State {
    std::array<uint8_t, kMemorySize> memory{};
    std::array<uint8_t, 16> v{};
    std::array<uint16_t, kStackDepth> stack{};
    std::array<uint8_t, 16> flags{};                         /* Fx75/Fx85 storage */
    std::array<uint8_t, kHighWidth * kHighHeight> display{}; /* 0 or 1 per pixel, rows of kHighWidth */
    uint16_t i = 0;
    uint16_t pc = kProgramStart;
    uint8_t sp = 0;
    uint8_t delay = 0;
    uint8_t sound = 0;
    bool hires = false;
    Fault fault = Fault::None;
    uint8_t wait_key = kNoKey; /* Fx0A: the key seen pressed, reported once released */
    uint16_t keys = 0;         /* bit k set while keypad key k is down */
    uint32_t rng = 1;          /* xorshift32 state, never 0 */
    uint64_t frame = 0;
    Model model = Model::SuperChip;

    bool operator==(const State &o) const;
    bool operator!=(const State &o) const { return !(*this == o); }
};

class Machine
{
  public:
    explicit Machine(Model model = Model::SuperChip, uint32_t seed = 0x2545F491u);

    /* Copies the ROM to 0x200 and resets. Refuses (false, machine untouched) an empty
       ROM or one larger than kMaxRomSize. */
    bool load(const std::vector<uint8_t> &rom);
    /* Back to power-on with the loaded ROM, the model and the seed. */
    void reset();
    void set_model(Model model) { model_ = model; } /* takes effect at the next reset */
    Model model() const { return model_; }
    void set_seed(uint32_t seed) { seed_ = seed ? seed : 1u; }

    void set_keys(uint16_t mask) { s_.keys = mask; }
    /* Runs instructions_per_frame instructions (fewer after a draw with display_wait,
       none once halted), then counts both timers down once. */
    void run_frame();
    /* Runs one instruction; false when the machine is halted. Returns true after a draw
       in *drew when drew is not null. */
    bool step(bool *drew = nullptr);

    int width() const { return s_.hires ? kHighWidth : kLowWidth; }
    int height() const { return s_.hires ? kHighHeight : kLowHeight; }
    bool pixel(int x, int y) const { return s_.display[static_cast<size_t>(y * kHighWidth + x)] != 0; }
    bool beeping() const { return s_.sound > 0; }
    bool halted() const { return s_.fault != Fault::None; }

    State &state() { return s_; }
    const State &state() const { return s_; }
    const std::vector<uint8_t> &rom() const { return rom_; }

    /* A state file: a 16-byte header (magic, version, payload size, CRC-32 of the payload)
       and the payload. Reading refuses a truncated, foreign, corrupt or inconsistent file
       with false and leaves the machine untouched. */
    std::vector<uint8_t> save_state() const;
    bool load_state(const uint8_t *data, size_t size);
    bool freeze(const char *path) const;
    bool defrost(const char *path);

    Quirks quirks;
    int instructions_per_frame = 15;

  private:
    void fail(Fault fault);
    void draw(int vx, int vy, int rows);
    void scroll_down(int rows);
    void scroll_horizontal(int columns);
    uint32_t next_random();

    State s_;
    std::vector<uint8_t> rom_;
    Model model_;
    uint32_t seed_;
};

/* Why a ROM file was refused. */
enum class RomError { None, CannotOpen, Empty, TooLarge, Corrupt };

/* Reads a ROM file, plain or gzip-compressed, into out (untouched on failure). */
RomError read_rom_file(const char *path, std::vector<uint8_t> &out);
const char *describe(RomError error);

/* True when the opcode is an instruction of the model. */
bool is_valid_opcode(uint16_t opcode, Model model = Model::SuperChip);
/* Judges a candidate file by its first 128 bytes (decompressed, zero-padded) and its
   size on disk (-1 when unknown): plausible when the size fits, the first instruction
   is valid and the start is not plain text. */
bool looks_like_rom(const uint8_t header[128], int64_t file_size);

/* CRC-32 (zlib's) of a byte range. */
uint32_t crc32_of(const uint8_t *data, size_t size);

} // namespace chip8

#endif
