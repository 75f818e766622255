/*
 * CHIP-8 / SUPER-CHIP: a complete Lumivex host. The machine itself lives in
 * ../core (chip8.h); this file only describes it to Lumivex and answers its
 * callbacks: run a frame, open a ROM, freeze and defrost, menu commands and
 * settings. Lumivex does everything else (window, menus, scaling, keys,
 * gamepads, sound output, file dialogs, screenshots, network play).
 *
 * Written in plain C style so that it reads like a host in any language.
 */
#include <lumivex/lumivex.h>

#include "chip8.h"

#include <stdio.h>
#include <string.h>

#define SCREEN_WIDTH 256 /* the 64x32 display at 4x, the 128x64 one at 2x */
#define SCREEN_HEIGHT 128
#define FPS 60
#define RATE 44100
#define BEEP_HZ 440
#define RGB(r, g, b) (uint16_t)(((r) << 10) | ((g) << 5) | (b)) /* 5 bits each */

#define ROM_TYPE KS_FOURCC('C', '8', 'r', 'm')
#define CREATOR KS_FOURCC('L', 'v', 'C', '8')
#define CMD_MACHINE KS_FOURCC('C', '8', 'm', 'a') /* +0 CHIP-8, +1 SUPER-CHIP (the submenu's tags) */
#define CMD_PAUSE KS_FOURCC('C', '8', 'p', 'a')
#define FREEZES_FOLDER 1 /* index into folders[] */

/* The hex keypad          on the keyboard
 *   1 2 3 C                 1 2 3 4
 *   4 5 6 D                 Q W E R
 *   7 8 9 E                 A S D F
 *   A 0 B F                 Z X C V
 * In two-player games player 1 usually has the left of the pad and player 2 the
 * right column: the bundled game uses 1/4 and C/D. Those are also the directions
 * a gamepad drives for each player. */
static KSButton buttons[] = {
    /* title, group (player), default key (Mac virtual key code), function */
    {"Keypad 1", 1, 18, KS_FUNCTION_UP},
    {"Keypad 2", 1, 19, KS_FUNCTION_INPUT},
    {"Keypad 3", 1, 20, KS_FUNCTION_INPUT},
    {"Keypad C", 2, 21, KS_FUNCTION_UP},
    {"Keypad 4", 1, 12, KS_FUNCTION_DOWN},
    {"Keypad 5", 1, 13, KS_FUNCTION_CONTROLLER_5},
    {"Keypad 6", 1, 14, KS_FUNCTION_INPUT},
    {"Keypad D", 2, 15, KS_FUNCTION_DOWN},
    {"Keypad 7", 1, 0, KS_FUNCTION_INPUT},
    {"Keypad 8", 1, 1, KS_FUNCTION_INPUT},
    {"Keypad 9", 1, 2, KS_FUNCTION_INPUT},
    {"Keypad E", 2, 3, KS_FUNCTION_CONTROLLER_5},
    {"Keypad A", 1, 6, KS_FUNCTION_INPUT},
    {"Keypad 0", 1, 7, KS_FUNCTION_INPUT},
    {"Keypad B", 1, 8, KS_FUNCTION_INPUT},
    {"Keypad F", 2, 9, KS_FUNCTION_CONTROLLER_6},
    {"Fast Forward", 0, 48, KS_FUNCTION_SPEED},                     /* Tab */
    {"Full Screen", 0, 103, KS_FUNCTION_FULL_SCREEN},               /* F11 */
    {"Quick Freeze", 0, 96, KS_FUNCTION_QUICK_FREEZE},              /* F5 */
    {"Quick Defrost", 0, 98, KS_FUNCTION_QUICK_DEFROST},            /* F7 */
    {"Quick Screenshot", 0, 111, KS_FUNCTION_QUICK_SCREENSHOT},     /* F12 */
    {"Quick Audio Recording", 0, 101, KS_FUNCTION_QUICK_AUDIO_REC}, /* F9 */
    {"Quick Quit", 0, 53, KS_FUNCTION_QUICK_QUIT},                  /* Escape, hold two seconds */
    {NULL},
};
/* The keypad value of buttons[0..15], in the order above. */
static const uint8_t keypad_value[16] = {0x1, 0x2, 0x3, 0xC, 0x4, 0x5, 0x6, 0xD,
                                         0x7, 0x8, 0x9, 0xE, 0xA, 0x0, 0xB, 0xF};

static const KSMenuItem menus[] = {
    {KS_MENU_APPLICATION, 1, (int32_t)KS_STD_ABOUT, NULL},
    {KS_MENU_FILE, 1, (int32_t)KS_STD_OPEN, NULL}, /* "Open Recent" follows as item 2 */
    {KS_MENU_FILE, 3, (int32_t)KS_STD_CLOSE, NULL},
    {KS_MENU_FILE, 5, (int32_t)KS_STD_RESET, NULL}, /* 5, not 4: a separator before it */
    {KS_MENU_FILE, 6, (int32_t)CMD_MACHINE, "Machine\nCHIP-8%1\nSUPER-CHIP%2"},
    {KS_MENU_FILE, 8, (int32_t)KS_STD_PAGE_SETUP, NULL},
    {KS_MENU_FILE, 9, (int32_t)KS_STD_PRINT, NULL},
    {KS_MENU_EDIT, 1, (int32_t)KS_STD_EDIT, NULL},
    {KS_MENU_OPTIONS, 1, (int32_t)KS_STD_FREEZE, NULL},
    {KS_MENU_OPTIONS, 2, (int32_t)KS_STD_DEFROST, NULL},
    {KS_MENU_OPTIONS, 4, (int32_t)KS_STD_SCREENSHOT, NULL},
    {KS_MENU_OPTIONS, 5, (int32_t)KS_STD_AUDIO_REC, NULL},
    {KS_MENU_OPTIONS, 6, (int32_t)KS_STD_FULL_SCREEN, NULL},
    {KS_MENU_OPTIONS, 8, (int32_t)KS_STD_NETWORK_HOST, NULL},
    {KS_MENU_OPTIONS, 9, (int32_t)KS_STD_NETWORK_JOIN, NULL},
    {KS_MENU_OPTIONS, 11, (int32_t)CMD_PAUSE, "Pause%k"},
    {0},
};

static const KSWebLink links[] = {
    {"CHIP-8 on Wikipedia", "https://en.wikipedia.org/wiki/CHIP-8"},
    {"Cowgod's CHIP-8 Technical Reference", "http://devernay.free.fr/hacks/chip8/C8TECH10.HTM"},
    {"-", NULL},
    {"CHIP-8 Research Facility", "https://chip-8.github.io/"},
    {"Octo, a CHIP-8 IDE", "https://johnearnest.github.io/Octo/"},
    {NULL, NULL},
};

static const char *folders[] = {"Screenshots", "Freezes", "Recordings"};

enum { PREF_SPEED = 1, PREF_COLOURS, PREF_QUIRKS = 5 }; /* indexes into prefs[] */
static KSPrefItem prefs[] = {
    /* type, text, stored name, default (a 1-based item for pop-ups) */
    {KS_PREF_HEADING, "Machine", NULL, 0},
    {KS_PREF_POPUP,
     "Speed:\n10 instructions per frame\n15 instructions per frame\n20 instructions per frame\n"
     "30 instructions per frame\n50 instructions per frame\n100 instructions per frame\n"
     "200 instructions per frame\n1000 instructions per frame",
     "CHIP8::Speed", 5},
    {KS_PREF_POPUP, "Colours:\nAmber\nGreen Phosphor\nPaper\nIce\nPlum", "CHIP8::Colours", 1},
    {KS_PREF_SPACER, NULL, NULL, 0},
    {KS_PREF_HEADING, "Quirks", NULL, 0},
    {KS_PREF_CHECKBOX, "Shifts read VY", "CHIP8::Quirk::ShiftUsesVY", 0},
    {KS_PREF_CHECKBOX, "Load and store advance I", "CHIP8::Quirk::LoadStoreIncrementsI", 0},
    {KS_PREF_CHECKBOX, "Jump with offset uses VX", "CHIP8::Quirk::JumpWithVX", 0},
    {KS_PREF_CHECKBOX, "Logic instructions clear VF", "CHIP8::Quirk::LogicResetsVF", 0},
    {KS_PREF_CHECKBOX, "Sprites wrap round the edges", "CHIP8::Quirk::WrapSprites", 0},
    {KS_PREF_CHECKBOX, "Drawing waits for the next frame", "CHIP8::Quirk::DisplayWait", 0},
    {KS_PREF_SMALL_SPACER, NULL, NULL, 0},
    {KS_PREF_NOTE,
     "Programs for the original CHIP-8 often want the first, second, fourth and last quirk; "
     "SUPER-CHIP programs want the third. Changes apply at once.",
     NULL, 0},
    {KS_PREF_END},
};
static const int speeds[] = {10, 15, 20, 30, 50, 100, 200, 1000};
static const uint16_t palette[][2] = {
    /* ink, background */
    {RGB(31, 22, 4), RGB(4, 2, 0)},   {RGB(9, 31, 12), RGB(1, 5, 2)},  {RGB(4, 4, 6), RGB(28, 28, 25)},
    {RGB(20, 28, 31), RGB(2, 4, 10)}, {RGB(31, 20, 30), RGB(7, 2, 9)},
};

static KSConfigParameters config;
static chip8::Machine machine;
static bool loaded, paused, fault_shown;
static uint16_t ink, paper;
static double beep_phase;

/* Network play compares these with the peer's: four checksums of the loaded ROM (whole, first half,
   second half, and whole followed by the settings that change how it runs). */
static void send_crcs(void)
{
    std::vector<uint8_t> bytes = machine.rom();
    const size_t size = bytes.size(), half = size / 2;
    const chip8::Quirks &q = machine.quirks;
    const uint8_t settings[] = {(uint8_t)machine.model(),
                                q.shift_uses_vy,
                                q.load_store_increments_i,
                                q.jump_with_vx,
                                q.logic_resets_vf,
                                q.wrap_sprites,
                                q.display_wait,
                                (uint8_t)(machine.instructions_per_frame >> 8),
                                (uint8_t)machine.instructions_per_frame};
    bytes.insert(bytes.end(), settings, settings + sizeof settings);
    KSSetHardwareEnvironCRCs(chip8::crc32_of(bytes.data(), size), chip8::crc32_of(bytes.data(), half),
                             chip8::crc32_of(bytes.data() + half, size - half),
                             chip8::crc32_of(bytes.data(), bytes.size()));
}

static void handle_prefchange(void)
{
    chip8::Quirks &q = machine.quirks;
    q.shift_uses_vy = prefs[PREF_QUIRKS + 0].currentValue != 0;
    q.load_store_increments_i = prefs[PREF_QUIRKS + 1].currentValue != 0;
    q.jump_with_vx = prefs[PREF_QUIRKS + 2].currentValue != 0;
    q.logic_resets_vf = prefs[PREF_QUIRKS + 3].currentValue != 0;
    q.wrap_sprites = prefs[PREF_QUIRKS + 4].currentValue != 0;
    q.display_wait = prefs[PREF_QUIRKS + 5].currentValue != 0;
    const int speed = prefs[PREF_SPEED].currentValue, colours = prefs[PREF_COLOURS].currentValue;
    machine.instructions_per_frame = speeds[speed >= 1 && speed <= 8 ? speed - 1 : 4];
    ink = palette[colours >= 1 && colours <= 5 ? colours - 1 : 0][0];
    paper = palette[colours >= 1 && colours <= 5 ? colours - 1 : 0][1];
    if (loaded) send_crcs();
}

static void draw(uint16_t *screen)
{
    const int scale = SCREEN_WIDTH / machine.width();
    for (int y = 0; y < SCREEN_HEIGHT; y++)
        for (int x = 0; x < SCREEN_WIDTH; x++)
            screen[y * SCREEN_WIDTH + x] = machine.pixel(x / scale, y / scale) ? ink : paper;
}

static void beep(int16_t *out)
{
    const int samples = (int)(config.frequency / config.framerate);
    const bool on = loaded && !paused && machine.beeping();
    for (int s = 0; s < samples; s++) { /* a square wave while the sound timer runs */
        out[s] = on ? (beep_phase < 0.5 ? 5000 : -5000) : 0;
        beep_phase += (double)BEEP_HZ / config.frequency;
        if (beep_phase >= 1.0) beep_phase -= 1.0;
    }
}

static void handle_frame(uint16_t *screen, void *sound)
{
    if (loaded && !paused) {
        uint16_t keys = 0;
        for (int b = 0; b < 16; b++)
            if (buttons[b].state) keys |= (uint16_t)(1u << keypad_value[b]);
        machine.set_keys(keys);
        machine.run_frame();
        if (machine.halted() && !fault_shown) {
            char text[96];
            const chip8::State &s = machine.state();
            if (s.fault == chip8::Fault::Exit)
                snprintf(text, sizeof text, "The program ended");
            else
                snprintf(text, sizeof text, "Stopped at %03X: %02X%02X", s.pc, s.memory[s.pc],
                         s.memory[(s.pc + 1) & 0xFFF]);
            KSDisplayPlacard(text);
            fault_shown = true;
        }
    }
    draw(screen);
    if (sound) beep((int16_t *)sound);
}

static bool handle_open(uint32_t type, const char *path)
{
    std::vector<uint8_t> rom;
    const chip8::RomError error = chip8::read_rom_file(path, rom);
    if (error != chip8::RomError::None) {
        KSHeadsUpAlert("Unable to open the ROM.", chip8::describe(error));
        return false;
    }
    /* The same ROM always starts with the same random numbers, on both ends of a network game. */
    machine.set_seed(chip8::crc32_of(rom.data(), rom.size()));
    machine.load(rom);
    loaded = true;
    paused = fault_shown = false;
    send_crcs();
    KSSetFreezePath(KSGetOutputPath(FREEZES_FOLDER, "frz"));
    return true;
}

static void handle_close(void)
{
    loaded = false;
}

static bool handle_freeze(const char *path)
{
    return loaded && machine.freeze(path);
}

static bool handle_defrost(const char *path)
{
    if (!loaded || !machine.defrost(path)) return false;
    fault_shown = machine.halted();
    send_crcs(); /* the state file may carry the other model */
    return true;
}

static void handle_command(uint32_t command)
{
    if (command == KS_CMD_RESET) {
        machine.reset();
        fault_shown = false;
    } else if (command == CMD_MACHINE || command == CMD_MACHINE + 1) {
        machine.set_model(command == CMD_MACHINE ? chip8::Model::Chip8 : chip8::Model::SuperChip);
        machine.reset();
        fault_shown = false;
        send_crcs();
        KSDisplayPlacard(command == CMD_MACHINE ? "CHIP-8" : "SUPER-CHIP");
    } else if (command == CMD_PAUSE) {
        paused = !paused;
        KSDisplayPlacard(paused ? "Paused" : "Running");
    }
}

static bool handle_menuupdate(uint32_t command, bool window, bool network)
{
    switch (command) {
    case KS_STD_OPEN:
        return !network;
    case KS_STD_RESET:
    case KS_STD_DEFROST:
    case CMD_MACHINE:
    case CMD_MACHINE + 1:
    case CMD_PAUSE: /* these would put the two machines of a network game out of step */
        return window && loaded && !network;
    case KS_STD_FREEZE:
        return window && loaded;
    default:
        return window;
    }
}

/* The open dialog offers files that look like CHIP-8 programs. */
static bool handle_filter(uint32_t type, uint32_t creator, const uint8_t *header, int64_t size)
{
    return type == ROM_TYPE || chip8::looks_like_rom(header, size);
}

int main(void)
{
    if (!LVHandshake(LUMIVEX_SHELL_VERSION, LUMIVEX_VERSION_TEXT)) return 1;
    strcpy(config.emulator_name, "CHIP-8");
    strcpy(config.original_author, "The Lumivex developers");
    strcpy(config.mac_author, "The Lumivex developers");
    strcpy(config.version, "1.0");
    config.framerate = FPS;
    config.requires_file = 1; /* the window opens with the first ROM */
    config.menuitems = menus;
    config.buttons = buttons;
    config.weblinks = links;
    config.output_folders = folders;
    config.prefs = prefs;
    config.handle_prefchange = handle_prefchange;
    config.uses_sound = 1;
    config.frequency = RATE;
    config.sample_bits = 16;
    config.stereo = 0;
    config.initial_width = SCREEN_WIDTH;
    config.initial_height = SCREEN_HEIGHT;
    config.file_type = ROM_TYPE;
    config.file_creator = CREATOR;
    config.handle_open = handle_open;
    config.handle_command = handle_command;
    config.handle_frame = handle_frame;
    config.handle_close = handle_close;
    config.handle_freeze = handle_freeze;
    config.handle_defrost = handle_defrost;
    config.handle_menuupdate = handle_menuupdate;
    config.handle_filter = handle_filter;
    handle_prefchange(); /* the defaults, until the shell reads the stored settings */
    KSInit(&config);
    KSExecute();
    KSTerm();
    return 0;
}
