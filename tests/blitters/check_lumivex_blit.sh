#!/bin/sh
# Drives the lumivex-blit tool: listing, a lossless round trip, an enlargement and
# every kind of bad input (each must print a message and exit 1).
set -u
tool=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
tab=$(printf '\t')

"$tool" --list >"$dir/list" || fail "--list exited $?"
[ "$(grep -c "$tab" "$dir/list")" -eq 27 ] || fail "--list does not show 27 names"
grep -qx "Super Eagle${tab}2 4" "$dir/list" || fail "--list lacks Super Eagle with sizes 2 and 4"
grep -qx "Simple Smoothing${tab}2 3" "$dir/list" || fail "--list lacks Simple Smoothing with sizes 2 and 3"

"$tool" --test-picture "$dir/in.png" || fail "--test-picture exited $?"
# The test picture is exact in 5-5-5, so Plain at 1x gives the same pixels back.
"$tool" "$dir/in.png" "$dir/same.png" Plain 1 >/dev/null || fail "Plain 1 exited $?"
cmp -s "$dir/in.png" "$dir/same.png" || fail "Plain 1 changed the picture"
"$tool" "$dir/in.png" "$dir/big.png" "Super Eagle" 2 >/dev/null || fail "Super Eagle 2 exited $?"
# PNG header: width and height as big-endian words at bytes 16 and 20.
size=$(od -An -tx1 -j16 -N8 "$dir/big.png" | tr -d ' \n')
[ "$size" = "000000c000000090" ] || fail "Super Eagle 2 of 96x72 is not 192x144 ($size)"

expect_error() {
    what=$1
    shift
    "$tool" "$@" >/dev/null 2>"$dir/err"
    rc=$?
    [ $rc -eq 1 ] || fail "$what: exit $rc, expected 1"
    grep -q "lumivex-blit: \|usage:" "$dir/err" || fail "$what: no message"
}
expect_error "unknown name" "$dir/in.png" "$dir/x.png" "Nope" 2
expect_error "size the name lacks" "$dir/in.png" "$dir/x.png" "HQ2X" 3
expect_error "size out of range" "$dir/in.png" "$dir/x.png" Plain 6
expect_error "size not a number" "$dir/in.png" "$dir/x.png" Plain 2x
expect_error "missing input" "$dir/none.png" "$dir/x.png" Plain 2
printf 'not a picture' >"$dir/bad.png"
expect_error "corrupt input" "$dir/bad.png" "$dir/x.png" Plain 2
expect_error "unwritable output" "$dir/in.png" "$dir/no/such/dir/x.png" Plain 2
expect_error "missing arguments" "$dir/in.png"
expect_error "bad frame count" "$dir/in.png" "$dir/x.png" Plain 2 --frames 0
[ -e "$dir/x.png" ] && fail "a failed run wrote its output"

[ $failures -eq 0 ] && echo "lumivex-blit: all checks passed"
exit $failures
