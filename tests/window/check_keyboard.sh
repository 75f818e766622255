#!/usr/bin/env bash
# Real X key events (xdotool) to the test card host: the physical A key presses the
# button bound to key code 0, losing focus releases it, and holding the quick-quit
# key (Escape) for two seconds ends the program with status 0.
set -euo pipefail
host="$1"; probe="$2"
if [ -z "${DISPLAY:-}" ]; then exec xvfb-run -a -s "-screen 0 1280x1024x24" "$0" "$@"; fi
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$work"' EXIT
export XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" SDL_AUDIODRIVER=dummy QT_QPA_PLATFORM=xcb
"$probe" settings "$XDG_CONFIG_HOME/Lumivex/Test Card.conf" 1 0
lamp=8 # "Joypad 2 Left", bound to key code 0: the key in the place of A
"$host" > "$work/host.log" 2>&1 &
pid=$!
sleep 3
win=$(xdotool search --name "^Test Card$" | head -n 1)
xdotool windowfocus --sync "$win"
shot() { import -window root "$work/shot.png"; }
fail() { echo "FAIL: $*"; cat "$work/host.log"; exit 1; }

shot; "$probe" lamp "$work/shot.png" $lamp && fail "lamp lit before any key"
xdotool keydown a; sleep 0.5
shot; "$probe" lamp "$work/shot.png" $lamp || fail "A held but its button is not pressed"
xdotool keyup a; sleep 0.5
shot; "$probe" lamp "$work/shot.png" $lamp && fail "A released but its button is still pressed"

# Focus loss while the key is held leaves nothing pressed: the key goes up while
# another window has the focus, so the host never sees that release.
xmessage -name other "other window" &
sleep 1
xdotool windowfocus --sync "$win"; xdotool keydown a; sleep 0.5
shot; "$probe" lamp "$work/shot.png" $lamp || fail "A held but its button is not pressed (second time)"
other=$(xdotool search --name "^other$" | head -n 1)
xdotool windowfocus --sync "$other"; sleep 0.5
xdotool keyup a; sleep 0.2
xdotool windowfocus --sync "$win"; sleep 0.5
shot; "$probe" lamp "$work/shot.png" $lamp && fail "focus loss left the button pressed"

# Quick quit: hold Escape two seconds.
xdotool windowfocus --sync "$win"
xdotool keydown Escape; sleep 3; xdotool keyup Escape
for _ in $(seq 20); do kill -0 "$pid" 2>/dev/null || break; sleep 0.2; done
kill -0 "$pid" 2>/dev/null && fail "still running after holding quick quit"
wait "$pid"; status=$?
[ "$status" -eq 0 ] || fail "exit status $status"
echo "keyboard: press, release, focus loss and quick quit all behave"
