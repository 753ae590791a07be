#!/usr/bin/env bash
# The editor as a user installs it: `cmake --install` into a fresh prefix
# gives an editor that starts under a virtual display and opens its help page
# from the installed location, and `cpack` makes a Debian package that holds
# the program, its desktop entry, metainfo and icons and depends on the tools
# it runs. Usage: tst_install.sh BUILD_DIR
set -euo pipefail
build=$(realpath "$1")
work=$(mktemp -d)
editor=""
cleanup() {
    [ -n "$editor" ] && kill "$editor" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT
fail() {
    echo "FAIL: $*" >&2
    exit 1
}

prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
for file in bin/tanselo libexec/tanselo/libtanselo-tool-signals.so share/tanselo/help/product.html \
    share/applications/org.tanselo.Tanselo.desktop share/metainfo/org.tanselo.Tanselo.metainfo.xml \
    share/icons/hicolor/scalable/apps/org.tanselo.Tanselo.svg \
    share/icons/hicolor/48x48/apps/org.tanselo.Tanselo.png; do
    [ -f "$prefix/$file" ] || fail "cmake --install left out $file"
done
echo "PASS: cmake --install put every file in place"

# The installed editor, started as a desktop would start it. The desktop's
# opener is a stand-in that writes down what it is asked to open.
mkdir "$work/bin" "$work/home"
cat >"$work/bin/xdg-open" <<SCRIPT
#!/bin/sh
echo "\$1" >>"$work/opened"
SCRIPT
chmod +x "$work/bin/xdg-open"
cat >"$work/session.sh" <<SCRIPT
#!/usr/bin/env bash
set -euo pipefail
HOME="$work/home" PATH="$work/bin:\$PATH" "$prefix/bin/tanselo" >"$work/editor.log" 2>&1 &
echo \$! >"$work/editor.pid"
window=\$(timeout 30 xdotool search --sync --onlyvisible --name '^silence.wav\$' | head -1)
[ -n "\$window" ] || exit 3
sleep 0.5
xdotool windowfocus --sync "\$window"
xdotool key alt+h
sleep 0.5
xdotool key Return
for _ in \$(seq 100); do [ -s "$work/opened" ] && break; sleep 0.1; done
kill "\$(cat "$work/editor.pid")"
SCRIPT
env -u QT_QPA_PLATFORM -u DISPLAY xvfb-run -a -s "-screen 0 1280x800x24" bash "$work/session.sh" ||
    fail "the installed editor did not show its window (log: $(cat "$work/editor.log" 2>/dev/null))"
[ -f "$work/home/Documents/Tanselo/silence.wav" ] || fail "the installed editor made no silence track"
opened=$(cat "$work/opened" 2>/dev/null || true)
[ "$opened" = "file://$prefix/share/tanselo/help/product.html" ] ||
    fail "Help ▸ Tanselo Home Page opened \"$opened\", not the installed page"
echo "PASS: the installed editor starts and opens $opened"

# The Debian package.
(cd "$build" && cpack -G DEB -B "$work/package" >/dev/null)
package=$(ls "$work"/package/tanselo_*_amd64.deb)
[ -f "$package" ] || fail "cpack made no tanselo_<version>_amd64.deb"
listing=$(dpkg-deb -c "$package")
for file in ./usr/bin/tanselo ./usr/libexec/tanselo/libtanselo-tool-signals.so \
    ./usr/share/applications/org.tanselo.Tanselo.desktop ./usr/share/metainfo/org.tanselo.Tanselo.metainfo.xml \
    ./usr/share/icons/hicolor/scalable/apps/org.tanselo.Tanselo.svg \
    ./usr/share/icons/hicolor/256x256/apps/org.tanselo.Tanselo.png ./usr/share/tanselo/help/product.html; do
    grep -q " $file\$" <<<"$listing" || fail "the package does not hold $file"
done
depends=$(dpkg-deb -f "$package" Depends)
for needed in sox libsox-fmt-all ffmpeg libqt6widgets6 libsndfile1; do
    grep -Eq "(^|, )$needed( |,|$)" <<<"$depends" || fail "the package does not depend on $needed: $depends"
done
echo "PASS: $(basename "$package") holds the editor and depends on: $depends"
echo "3 passed, 0 failed"
