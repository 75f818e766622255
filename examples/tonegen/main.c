/*
 * Tone generator: a Lumivex host whose sound is 22050 Hz, 8-bit, mono at 50 frames
 * a second (441 samples a frame). Up and Down glide the pitch of a sine tone; the
 * picture shows the pitch as a bar and this frame's samples as a trace.
 */
#include <lumivex/lumivex.h>
#include <math.h>
#include <string.h>

#define WIDTH 160
#define HEIGHT 120
#define RATE 22050
#define FPS 50
#define SAMPLES (RATE / FPS)
#define RGB(r, g, b) (uint16_t)(((r) << 10) | ((g) << 5) | (b)) /* 5 bits each */

static KSButton buttons[] = {
    /* title, group, default key (Mac virtual key code), function */
    {"Pitch Up", 1, 126, KS_FUNCTION_UP},
    {"Pitch Down", 1, 125, KS_FUNCTION_DOWN},
    {"Full Screen", 0, 103, KS_FUNCTION_FULL_SCREEN},               /* F11 */
    {"Quick Audio Recording", 0, 101, KS_FUNCTION_QUICK_AUDIO_REC}, /* F9 */
    {"Quick Quit", 0, 53, KS_FUNCTION_QUICK_QUIT},                  /* Escape, hold two seconds */
    {NULL},
};
static const KSMenuItem menus[] = {
    {KS_MENU_APPLICATION, 1, (int32_t)KS_STD_ABOUT, NULL},
    {KS_MENU_FILE, 1, (int32_t)KS_STD_RESET, NULL},
    {KS_MENU_OPTIONS, 1, (int32_t)KS_STD_AUDIO_REC, NULL},
    {KS_MENU_OPTIONS, 2, (int32_t)KS_STD_FULL_SCREEN, NULL},
    {0},
};
static const KSWebLink links[] = {{NULL, NULL}};
static KSPrefItem prefs[] = {{KS_PREF_END}};

static const double lowest = 110.0, highest = 1760.0; /* four octaves, A2 to A6 */
static double pitch = 440.0, phase;
static int8_t trace[SAMPLES];

static void tone(int8_t *out)
{
    if (buttons[0].state) pitch *= 1.01; /* about a semitone every six frames */
    if (buttons[1].state) pitch /= 1.01;
    pitch = pitch < lowest ? lowest : pitch > highest ? highest : pitch;
    for (int s = 0; s < SAMPLES; s++) { /* signed 8-bit samples, as the record says */
        out[s] = (int8_t)(60 * sin(phase));
        phase = fmod(phase + 2 * M_PI * pitch / RATE, 2 * M_PI);
    }
}

static void draw(uint16_t *fb)
{
    const int bar = (int)((HEIGHT - 8) * log(pitch / lowest) / log(highest / lowest));
    for (int y = 0; y < HEIGHT; y++)
        for (int x = 0; x < WIDTH; x++)
            fb[y * WIDTH + x] = (x < 12 && HEIGHT - 4 - y <= bar && y < HEIGHT - 4) ? RGB(31, 20, 0) : RGB(2, 3, 8);
    for (int x = 16; x < WIDTH - 4; x++) { /* the first 140 samples of this frame */
        const int y = HEIGHT / 2 - trace[x - 16] * (HEIGHT / 2 - 8) / 64;
        fb[y * WIDTH + x] = RGB(0, 31, 12);
    }
}

static void handle_frame(uint16_t *back, void *sound_buffer)
{
    int8_t silent[SAMPLES];
    int8_t *out = sound_buffer ? (int8_t *)sound_buffer : silent; /* null: sound is off or backed up */
    tone(out);
    memcpy(trace, out, sizeof trace);
    draw(back);
}

static bool handle_open(uint32_t type, const char *path)
{
    return false;
}
static void handle_command(uint32_t command)
{
    if (command == KS_CMD_RESET) pitch = 440.0;
}
static bool handle_menuupdate(uint32_t command, bool window, bool network)
{
    return window;
}

int main(void)
{
    static KSConfigParameters config;
    if (!LVHandshake(LUMIVEX_SHELL_VERSION, LUMIVEX_VERSION_TEXT)) return 1;
    strcpy(config.emulator_name, "Tone Generator");
    strcpy(config.original_author, "The Lumivex developers");
    strcpy(config.mac_author, "The Lumivex developers");
    strcpy(config.version, "1.0");
    config.framerate = FPS;
    config.requires_file = 0;
    config.menuitems = menus;
    config.buttons = buttons;
    config.weblinks = links;
    config.prefs = prefs;
    config.uses_sound = 1;
    config.frequency = RATE;
    config.sample_bits = 8;
    config.stereo = 0;
    config.initial_width = WIDTH;
    config.initial_height = HEIGHT;
    config.handle_open = handle_open;
    config.handle_command = handle_command;
    config.handle_frame = handle_frame;
    config.handle_menuupdate = handle_menuupdate;
    KSInit(&config);
    KSExecute();
    KSTerm();
    return 0;
}
