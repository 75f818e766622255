#!/usr/bin/env bash
# The CHIP-8 host in a real window (Xvfb) on its bundled game: the title animates,
# a player key starts the game, and with the machine paused a quick defrost brings
# back exactly the picture of the quick freeze after play has gone on.
set -euo pipefail
host="$1"; rom="$2"
if [ -z "${DISPLAY:-}" ]; then exec xvfb-run -a -s "-screen 0 1024x768x24" "$0" "$@"; fi
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$work"' EXIT
export XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" SDL_AUDIODRIVER=dummy QT_QPA_PLATFORM=xcb
"$host" "$rom" > "$work/host.log" 2>&1 &
pid=$!
fail() { echo "FAIL: $*"; cat "$work/host.log"; for f in "$work"/*.png; do cp "$f" "/tmp/chip8-window-failed-$(basename "$f")"; done 2>/dev/null || true; exit 1; }
win=""
for _ in $(seq 50); do
    win=$(xdotool search --onlyvisible --pid "$pid" 2>/dev/null | head -n 1 || true)
    [ -n "$win" ] && break
    sleep 0.2
done
[ -n "$win" ] || fail "no window"
shot() { import -window root "$work/$1.png"; }
# Number of pixels that differ between two screenshots.
differ() { compare -metric AE "$work/$1.png" "$work/$2.png" null: 2>&1 | cut -d' ' -f1 || true; }
press() { xdotool keydown "$1"; sleep "${2:-0.3}"; xdotool keyup "$1"; }
settle() { sleep 3; } # placards fade out after 2.5 seconds

settle; shot title1; sleep 0.5; shot title2
[ "$(differ title1 title2)" -gt 0 ] || fail "the title does not animate"
sleep 1
press 4                                 # keypad C: player 2 starts the game
sleep 1.5; shot game
[ "$(differ title2 game)" -gt 2000 ] || fail "a player key did not start the game"

press q 1                               # keypad 4: player 1 down
xdotool key ctrl+k                      # Options > Pause
settle; shot paused
press F5 0.2                            # quick freeze
settle; shot frozen
[ "$(differ paused frozen)" -eq 0 ] || fail "freezing changed the picture"
ls "$XDG_DATA_HOME"/Morrowvale/CHIP-8/Freezes/*.frz > /dev/null 2>&1 || fail "no state file written"

xdotool key ctrl+k                      # play on
press 1 1                               # player 1 up
sleep 1
xdotool key ctrl+k
settle; shot later
[ "$(differ frozen later)" -gt 0 ] || fail "the picture did not change after the freeze"
press F7 0.2                            # quick defrost, still paused
settle; shot defrosted
[ "$(differ frozen defrosted)" -eq 0 ] || fail "the defrosted picture differs from the frozen one"

xdotool keydown Escape; sleep 3; xdotool keyup Escape
for _ in $(seq 20); do kill -0 "$pid" 2>/dev/null || break; sleep 0.2; done
kill -0 "$pid" 2>/dev/null && fail "still running after holding quick quit"
wait "$pid" || fail "exit status $?"
echo "chip8 window: title animates, keys start the game, quick defrost restores the quick freeze's picture"
