#!/bin/sh
# SPDX-License-Identifier: 0BSD
# Takes the sample game's two libraries the whole way, from what artists save to what the game plays.
#   tour.sh BIN    BIN is the folder of the built programs
set -eu
bin=$(cd "$1" && pwd)
batch="$bin/emberdeck-batch"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

step() { printf '\n== %s\n' "$1"; }

# A copy, so that the libraries in the project stay as they are. The plug-in and the game come with it.
cp -R "$bin/bonfire-project/." "$work"
cd "$work"

step "The project's plug-in offers these effect types"
"$batch" types bonfire.Fx00a | grep '(id'

step "The libraries load without a repair"
"$batch" check --strict bonfire.Fx00a inferno.Fx00c

step "What they hold"
"$batch" info bonfire.Fx00a
"$batch" info inferno.Fx00c

step "Text to compressed and back gives the same bytes"
"$batch" convert bonfire.Fx00a there.Fx00c
"$batch" convert there.Fx00c back.Fx00a
cmp bonfire.Fx00a back.Fx00a
rm there.Fx00c back.Fx00a

step "Re-saving a folder with the present plug-in changes nothing"
cksum bonfire.Fx00a inferno.Fx00c > before
"$batch" update . --checkout no
cksum bonfire.Fx00a inferno.Fx00c | cmp before -
echo "bonfire.Fx00a and inferno.Fx00c are as they were"

step "What the small one needs"
"$batch" deps bonfire.Fx00a | head -n 12

step "Packing"
"$batch" pack bonfire.Fx00a
"$batch" pack inferno.Fx00c --depfile inferno.d

step "Strict reading of the packed files"
"$batch" dump bonfire.Fx00p | head -n 12
"$batch" dump inferno.Fx00p | head -n 2

step "The game reads them"
"$bin/bonfire" --headless bonfire.Fx00p | head -n 24
"$bin/bonfire" --headless inferno.Fx00p > inferno.txt
echo "... and $(wc -l < inferno.txt) lines for inferno.Fx00p"

step "Launch, as the window's button does"
"$batch" launch bonfire.Fx00a --command-line "--headless \"$work/bonfire.Fx00p\"" > launched.txt
for _ in 1 2 3 4 5 6 7 8 9 10; do [ -s launched.txt ] && break; sleep 0.2; done
echo "the game printed $(wc -l < launched.txt) lines"

printf '\nDone: both libraries were loaded, checked, converted, updated, packed and played.\n'
