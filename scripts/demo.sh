#!/usr/bin/env bash
# The demo: installs what is missing, builds the example programs and runs each of them.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
# shellcheck source=scripts/deps.sh
source "$root/scripts/deps.sh"
zeb_install_missing_packages

build=${ZEB_BUILD_DIR:-$root/build}/demo
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DZEB_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j "$(nproc)" >/dev/null

logs="$build/logs"
rm -rf "$logs"
echo "== zeb_grep: the lines of README.md that match '*zeb_common*', with their hashes"
"$build/examples/zeb_grep" '*zeb_common*' "$root/README.md" --log "$logs"
echo
echo "== its log, $logs/zeb_grep.log (the marker file $logs/mdebug set debug level)"
cat "$logs/zeb_grep.log"
echo
echo "== zeb_convert: a poem stored as GB18030 and as Big5, printed as UTF-8"
"$build/examples/zeb_convert" "$root/examples/data/jingyesi.gb18030.txt" gb18030
"$build/examples/zeb_convert" "$root/examples/data/jingyesi.big5.txt" BIG5
echo
echo "== zeb_tasks: a task on a task thread reads README.md, converts it and logs each step"
"$build/examples/zeb_tasks" "$root/README.md" "$logs/tasks"
grep -E 'demo|ttask' "$logs/tasks/zeb_tasks.log" | tail -n 8
echo
echo "== zeb_dates: today in every text style"
"$build/examples/zeb_dates"
echo
echo "== zeb_folders: the library's sources enumerated, then copied with a progress line"
rm -rf "$build/folders_copy"
"$build/examples/zeb_folders" "$root/zeb/thread" "$build/folders_copy/thread" '*.h'
