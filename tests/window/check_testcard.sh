#!/usr/bin/env bash
# Starts the test card host in a real window (Xvfb), takes a screenshot of the
# screen and checks the picture at Plain 1x and 3x, and, in a window stretched to
# no whole multiple, with nearest and with linear sampling.
set -euo pipefail
host="$1"; probe="$2"
if [ -z "${DISPLAY:-}" ]; then exec xvfb-run -a -s "-screen 0 1280x1024x24" "$0" "$@"; fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" SDL_AUDIODRIVER=dummy QT_QPA_PLATFORM=xcb
status=0
for config in "1 0 -" "3 0 -" "2 0 1000x740" "2 1 1000x740"; do
  set -- $config
  "$probe" settings "$XDG_CONFIG_HOME/Lumivex/Test Card.conf" "$1" "$2"
  "$host" > "$work/host.log" 2>&1 &
  pid=$!
  sleep 3
  expected="$1"
  if [ "$3" != "-" ]; then
    xdotool search --sync --name "Test Card" windowsize --sync "${3%x*}" "${3#*x}" >/dev/null 2>&1 || true
    sleep 1
    expected=0
  fi
  import -window root "$work/shot.png"
  kill "$pid" 2>/dev/null || true
  wait "$pid" 2>/dev/null || true
  if ! "$probe" check "$work/shot.png" "$expected" "$2"; then
    status=1
    cp "$work/shot.png" "/tmp/testcard-failed-$1-$2.png" || true
    cat "$work/host.log"
  fi
done
exit $status
