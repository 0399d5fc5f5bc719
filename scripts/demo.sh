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
echo "== zeb_table: a GB18030 CSV file read on a task thread, printed as UTF-8 with INI settings"
"$build/examples/zeb_table" "$root/examples/data/contacts.gb18030.csv" "$root/examples/data/table.ini"
echo
echo "== zeb_dates: today in every text style"
"$build/examples/zeb_dates"
echo
echo "== zeb_lunar: today in the lunar calendar, its year's stem, branch and animal, the next solar term"
"$build/examples/zeb_lunar"
echo
echo "== zeb_addressbook: a vCard address book (2.1 GB2312, 3.0, 4.0) sorted by pinyin, written as 4.0"
"$build/examples/zeb_addressbook" "$root/examples/data/contacts.vcf" "$build/contacts.v4.vcf"

echo "== zeb_settings: settings kept in the registry ($build/registry/user.db), run twice"
rm -rf "$build/registry"
ZEB_REGISTRY_DIR="$build/registry" "$build/examples/zeb_settings"
ZEB_REGISTRY_DIR="$build/registry" "$build/examples/zeb_settings"
echo
echo "== zeb_component: a component registered in the same registry, loaded by its name and handed a data bundle"
ZEB_REGISTRY_DIR="$build/registry" "$build/examples/zeb_component"
echo
zeb="$build/tools/zeb/zeb"
data="$root/examples/data"
echo "== zeb, the command-line tool"
echo "-- zeb convert: the GB18030 poem as UTF-8, as iconv would convert it"
"$zeb" convert -f GB18030 -t UTF-8 "$data/jingyesi.gb18030.txt"
echo "-- zeb hash: the MD5 digests of the example data, in the layout of md5sum"
"$zeb" hash "$data"/*
echo "-- zeb base64: a line of text as Base64, and back"
encoded=$(echo "zeb_common" | "$zeb" base64)
echo "$encoded"
echo "$encoded" | "$zeb" base64 -d
echo "-- zeb grep: the lines of README.md that match '*zeb_common*'"
"$zeb" grep '*zeb_common*' "$root/README.md"
echo "-- zeb date: a leap day in every text style"
"$zeb" date 2024-02-29
echo "-- zeb lunar: the first day of a leap month, with the year's solar terms"
"$zeb" lunar 2023-03-22 | head -n 6
echo "-- zeb csv: the GB18030 contact list as JSON lines in UTF-8"
"$zeb" csv "$data/contacts.gb18030.csv" --json --charset GB18030
echo "-- zeb ini: the demo's settings file, one value changed in a copy"
cp "$data/table.ini" "$build/table.ini"
"$zeb" ini set "$build/table.ini" print title "Contacts (copy)"
"$zeb" ini list "$build/table.ini"
echo "-- zeb reg: a value set in the demo's registry store by one process, read by the next"
ZEB_REGISTRY_DIR="$build/registry" "$zeb" reg set 'HKCU\Software\zebworks\demo' greeting "你好"
ZEB_REGISTRY_DIR="$build/registry" "$zeb" reg list 'HKCU\Software\zebworks\demo'
echo "-- zeb vcard: the shipped address book as JSON lines"
"$zeb" vcard "$data/contacts.vcf" --json
echo "-- zeb pinyin: a name with tone marks, with tone numbers, and as initials"
"$zeb" pinyin 欧阳娜娜
"$zeb" pinyin --tones numbers 欧阳娜娜
"$zeb" pinyin --initials 欧阳娜娜
echo "-- zeb similar: every similarity score of two spellings"
"$zeb" similar "Report 2024" "report-2024"
echo "-- zeb log level: a log folder set to debug through its marker file, then read back"
"$zeb" log level "$logs/tool" debug
"$zeb" log level "$logs/tool"
echo "== zeb_folders: the library's sources enumerated, then copied with a progress line"
rm -rf "$build/folders_copy"
"$build/examples/zeb_folders" "$root/zeb/thread" "$build/folders_copy/thread" '*.h'
