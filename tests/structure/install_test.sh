#!/bin/sh
# Installs a build into a directory of its own and looks for everything that belongs to it.
# usage: install_test.sh BUILD SOURCE
set -eu
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
cmake --install "$1" --prefix "$place" >/dev/null

for file in bin/td share/applications/tandemdeck.desktop \
  share/applications/tandemdeck-directory.desktop share/metainfo/org.tandemdeck.TandemDeck.metainfo.xml \
  share/man/man1/td.1 share/icons/hicolor/256x256/apps/tandemdeck.png share/tandemdeck/README.md \
  share/tandemdeck/tdsyntax.ini share/tandemdeck/td.tdh \
  share/doc/tandemdeck/manual/td.html share/icons/hicolor/16x16/apps/tandemdeck.png \
  share/icons/hicolor/scalable/apps/tandemdeck.svg share/doc/tandemdeck/README.md \
  share/doc/tandemdeck/CHANGELOG.md share/doc/tandemdeck/docs/architecture.md; do
  [ -s "$place/$file" ] || { echo "not installed: $file"; exit 1; }
done
# An unknown option tells how td is used, whether there is a display or not.
status=0
env -u DISPLAY "$place/bin/td" -q >"$place/usage" || status=$?
[ "$status" = 1 ] && grep -q "Usage:" "$place/usage" || { echo "td doesn't run from there"; exit 1; }

# The window's icons are looked for where an install puts them: another prefix reaches the source.
cmake -S "$2" -B "$place/build" -G Ninja -DTD_BUILD_TESTS=OFF -DCMAKE_INSTALL_PREFIX=/else/where >/dev/null
compile=$(sed -n 's/^ *"command": "\(.*commander\/program\.cpp\)",$/\1/p' "$place/build/compile_commands.json" |
  sed 's/\\\(.\)/\1/g; s/ -o [^ ]*//')
(cd "$place/build" && sh -c "$compile -E") >"$place/program.i"
for icon in 16x16/apps/tandemdeck.png scalable/apps/tandemdeck.svg; do
  grep -q "\"/else/where/share/icons/hicolor\" *\"/$icon\"" "$place/program.i" ||
    { echo "another prefix doesn't reach $icon"; exit 1; }
done
