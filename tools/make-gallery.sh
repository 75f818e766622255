#!/bin/sh
# Regenerates docs/gallery/ and docs/gallery.md: the project's test picture through
# every blitter, at the largest size each name offers up to 4x.
#
#   cmake --build <build dir> --target lumivex-blit
#   tools/make-gallery.sh [<build dir>]        (default: build)
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
case $build in /*) ;; *) build=$(pwd)/$build ;; esac
tool=$build/tools/lumivex-blit/lumivex-blit
if [ ! -x "$tool" ]; then
    echo "make-gallery: no $tool; build it with: cmake --build $build --target lumivex-blit" >&2
    exit 1
fi

out=$root/docs/gallery
mkdir -p "$out"
rm -f "$out"/*.png
"$tool" --test-picture "$out/test-picture.png"

tab=$(printf '\t')
md=$root/docs/gallery.md
{
    echo "# Scaler gallery"
    echo
    echo "The project's own test picture (96 × 72, RGB 5-5-5) through every blitter, each at the"
    echo "largest size its name offers up to 4×. Made with \`lumivex-blit\` by \`tools/make-gallery.sh\`;"
    echo "run the script again after changing a blitter."
    echo
    echo "Try one on your own picture: \`lumivex-blit IN.png OUT.png \"Super Eagle\" 2\`"
    echo "(\`lumivex-blit --list\` shows every name with its sizes)."
    echo
    echo "## The test picture"
    echo
    echo "![The test picture at 1×](gallery/test-picture.png)"
    echo
} >"$md"

"$tool" --list | grep "$tab" | while IFS="$tab" read -r name sizes; do
    size=0
    for s in $sizes; do
        if [ "$s" -le 4 ] && [ "$s" -gt "$size" ]; then size=$s; fi
    done
    slug=$(printf '%s' "$name" | tr 'A-Z' 'a-z' | sed 's/[^a-z0-9]\{1,\}/-/g; s/-$//')
    file=${slug}_${size}x.png
    "$tool" "$out/test-picture.png" "$out/$file" "$name" "$size" >/dev/null
    {
        echo "## $name ($size×)"
        echo
        echo "![$name at $size×](gallery/$file)"
        echo
    } >>"$md"
done
echo "make-gallery: wrote $md and $(ls "$out" | wc -l) pictures in $out"
