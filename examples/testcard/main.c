/*
 * Test card: a complete Lumivex host in one file. It draws an animated test card
 * (colour bars, gradients, fine detail, a bouncing sprite, a frame counter and a
 * lamp per button), plays a tone for each pressed button, and leaves everything
 * else (window, menus, scaling, keys, sound output) to Lumivex.
 */
#include <lumivex/lumivex.h>
#include <math.h>
#include <stdio.h>
#include <string.h>

#define WIDTH 320
#define HEIGHT 240
#define RATE 44100
#define FPS 60
#define RGB(r, g, b) (uint16_t)(((r) << 10) | ((g) << 5) | (b)) /* 5 bits each */

static KSButton buttons[] = {
    /* title, group, default key (Mac virtual key code), function */
    {"Joypad 1 Up", 1, 126, KS_FUNCTION_UP},     {"Joypad 1 Down", 1, 125, KS_FUNCTION_DOWN},
    {"Joypad 1 Left", 1, 123, KS_FUNCTION_LEFT}, {"Joypad 1 Right", 1, 124, KS_FUNCTION_RIGHT},
    {"Joypad 1 Fire", 1, 6, KS_FUNCTION_CONTROLLER_5}, {"Joypad 1 Jump", 1, 7, KS_FUNCTION_CONTROLLER_6},
    {"Joypad 2 Up", 2, 13, KS_FUNCTION_UP},      {"Joypad 2 Down", 2, 1, KS_FUNCTION_DOWN},
    {"Joypad 2 Left", 2, 0, KS_FUNCTION_LEFT},   {"Joypad 2 Right", 2, 2, KS_FUNCTION_RIGHT},
    {"Joypad 2 Fire", 2, 12, KS_FUNCTION_CONTROLLER_5}, {"Joypad 2 Jump", 2, 14, KS_FUNCTION_CONTROLLER_6},
    {"Fast Forward", 0, 48, KS_FUNCTION_SPEED},          /* Tab */
    {"Full Screen", 0, 103, KS_FUNCTION_FULL_SCREEN},    /* F11 */
    {"Quick Freeze", 0, 96, KS_FUNCTION_QUICK_FREEZE},   /* F5 */
    {"Quick Defrost", 0, 98, KS_FUNCTION_QUICK_DEFROST}, /* F7 */
    {"Quick Screenshot", 0, 111, KS_FUNCTION_QUICK_SCREENSHOT}, /* F12 */
    {"Quick Audio Recording", 0, 101, KS_FUNCTION_QUICK_AUDIO_REC}, /* F9 */
    {"Quick Quit", 0, 53, KS_FUNCTION_QUICK_QUIT},       /* Escape, hold two seconds */
    {NULL},
};
#define PLAYER_BUTTONS 12
#define CMD_INVERT KS_FOURCC('T', 'C', 'i', 'v')

static const KSMenuItem menus[] = {
    {KS_MENU_APPLICATION, 1, (int32_t)KS_STD_ABOUT, NULL},
    {KS_MENU_FILE, 1, (int32_t)KS_STD_RESET, NULL},
    {KS_MENU_FILE, 3, (int32_t)KS_STD_PRINT, NULL}, /* 3: a separator before it */
    {KS_MENU_EDIT, 1, (int32_t)KS_STD_EDIT, NULL},
    {KS_MENU_OPTIONS, 1, (int32_t)KS_STD_AUDIO_REC, NULL},
    {KS_MENU_OPTIONS, 2, (int32_t)KS_STD_SCREENSHOT, NULL},
    {KS_MENU_OPTIONS, 3, (int32_t)KS_STD_FULL_SCREEN, NULL},
    {KS_MENU_OPTIONS, 5, (int32_t)CMD_INVERT, "Invert Colours%i"},
    {0},
};
static const KSWebLink links[] = {
    {"Lumivex Documentation", "https://example.org/lumivex"},
    {"-", NULL},
    {"Test Card Patterns", "https://en.wikipedia.org/wiki/Test_card"},
    {NULL, NULL},
};
static const char *folders[] = {"Screenshots", "Recordings"};
static KSPrefItem prefs[] = {{KS_PREF_END}};

static uint32_t frame;
static int inverted;
static double phase[PLAYER_BUTTONS + 1];

static void box(uint16_t *fb, int x0, int y0, int w, int h, uint16_t c)
{
    for (int y = y0; y < y0 + h; y++)
        for (int x = x0; x < x0 + w; x++)
            if (x >= 0 && x < WIDTH && y >= 0 && y < HEIGHT) fb[y * WIDTH + x] = c;
}

static void digit(uint16_t *fb, int x0, int y0, int d, uint16_t c)
{
    static const uint16_t font[10] = {0x7B6F, 0x2C97, 0x73E7, 0x73CF, 0x5BC9, 0x79CF, 0x79EF, 0x7249, 0x7BEF, 0x7BCF};
    for (int i = 0; i < 15; i++) /* 3 x 5 glyph, two pixels per dot */
        if (font[d] & (0x4000 >> i)) box(fb, x0 + (i % 3) * 2, y0 + (i / 3) * 2, 2, 2, c);
}

static void draw(uint16_t *fb)
{
    static const uint16_t bars[8] = {RGB(31, 31, 31), RGB(31, 31, 0), RGB(0, 31, 31), RGB(0, 31, 0),
                                     RGB(31, 0, 31),  RGB(31, 0, 0),  RGB(0, 0, 31),  RGB(0, 0, 0)};
    for (int i = 0; i < 8; i++) box(fb, i * 40, 0, 40, 80, bars[i]);
    for (int x = 0; x < WIDTH; x++) { /* four ramps of 32 steps */
        const int v = x * 32 / WIDTH;
        box(fb, x, 80, 1, 12, RGB(v, 0, 0));
        box(fb, x, 92, 1, 12, RGB(0, v, 0));
        box(fb, x, 104, 1, 12, RGB(0, 0, v));
        box(fb, x, 116, 1, 12, RGB(v, v, v));
    }
    for (int y = 128; y < 176; y++) /* fine detail: checks, lines, a diagonal */
        for (int x = 0; x < WIDTH; x++) {
            uint16_t c = RGB(4, 4, 6);
            if (x < 80) c = ((x + y) & 1) ? RGB(31, 31, 31) : 0;
            else if (x < 160) c = (y & 1) ? RGB(31, 31, 31) : 0;
            else if (x < 240) c = (x & 1) ? RGB(31, 31, 31) : 0;
            else if ((x - 240) == (y - 128) || (x - 240) == 2 * (y - 128) - 40) c = RGB(31, 24, 0);
            fb[y * WIDTH + x] = c;
        }
    box(fb, 0, 176, WIDTH, 64, RGB(2, 3, 8));
    const int t = (int)(frame % 240), bx = t < 120 ? t * 2 : (240 - t) * 2; /* bouncing sprite */
    const int by = 182 + (int)(20 * fabs(sin(frame * 0.08)));
    box(fb, 40 + bx, by, 12, 12, RGB(31, 16, 0));
    box(fb, 43 + bx, by + 3, 6, 6, RGB(31, 31, 12));
    for (int i = 0, n = (int)frame; i < 6; i++, n /= 10) digit(fb, 300 - i * 8, 224, n % 10, RGB(31, 31, 31));
    for (int i = 0; buttons[i].title; i++) /* one lamp per button: lit while pressed */
        box(fb, 4 + i * 9, 226, 7, 7, buttons[i].state ? RGB(0, 31, 0) : RGB(6, 6, 6));
    if (inverted)
        for (int i = 0; i < WIDTH * HEIGHT; i++) fb[i] ^= 0x7FFF;
}

static void sound(int16_t *out)
{
    const int samples = RATE / FPS;
    for (int s = 0; s < samples; s++) {
        double v = 0;
        if ((frame % FPS) < 6) v += 0.05 * sin(phase[PLAYER_BUTTONS]); /* a soft tick each second */
        phase[PLAYER_BUTTONS] += 2 * M_PI * 880.0 / RATE;
        for (int b = 0; b < PLAYER_BUTTONS; b++) { /* a note per pressed button */
            if (buttons[b].state) v += 0.12 * sin(phase[b]);
            phase[b] += 2 * M_PI * 220.0 * pow(2.0, b / 12.0) / RATE;
        }
        out[2 * s] = out[2 * s + 1] = (int16_t)(v * 32767);
    }
}

static void handle_frame(uint16_t *back, void *sound_buffer)
{
    frame++;
    draw(back);
    if (sound_buffer) sound(sound_buffer);
}

static bool handle_open(uint32_t type, const char *path) { return false; }
static void handle_command(uint32_t command)
{
    if (command == KS_CMD_RESET) frame = 0;
    if (command == CMD_INVERT) inverted = !inverted;
}
static bool handle_menuupdate(uint32_t command, bool window, bool network) { return window && !network; }
static bool handle_state(const char *path) { return false; } /* a test card has no state */

int main(void)
{
    static KSConfigParameters config;
    if (!LVHandshake(LUMIVEX_SHELL_VERSION, LUMIVEX_VERSION_TEXT)) return 1;
    strcpy(config.emulator_name, "Test Card");
    strcpy(config.original_author, "The Lumivex developers");
    strcpy(config.mac_author, "The Lumivex developers");
    strcpy(config.version, "1.0");
    config.framerate = FPS;
    config.requires_file = 0;
    config.menuitems = menus;
    config.buttons = buttons;
    config.weblinks = links;
    config.output_folders = folders;
    config.prefs = prefs;
    config.uses_sound = 1;
    config.frequency = RATE;
    config.sample_bits = 16;
    config.stereo = 1;
    config.initial_width = WIDTH;
    config.initial_height = HEIGHT;
    config.handle_open = handle_open;
    config.handle_command = handle_command;
    config.handle_frame = handle_frame;
    config.handle_freeze = handle_state;
    config.handle_defrost = handle_state;
    config.handle_menuupdate = handle_menuupdate;
    KSInit(&config);
    KSExecute();
    KSTerm();
    return 0;
}
