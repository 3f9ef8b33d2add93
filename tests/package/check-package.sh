#!/usr/bin/env bash
# Checks the Debian package that `make package` built, without installing it:
# unpacked into a throw-away folder, it must hold the program and its files
# where they belong, a valid desktop entry, file type and catalogue entry,
# computed library dependencies, and a program that runs from there.
#
#   tests/package/check-package.sh [BUILD]
set -euo pipefail
build=${1:-build}
deb=$(ls "$build"/vantor-planner_*.deb 2>/dev/null | head -n 1)
[ -n "$deb" ] || { echo "no package in $build: run make package" >&2; exit 1; }
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
dpkg-deb -x "$deb" "$root"
fail() { echo "FAIL: $*" >&2; exit 1; }

share=$root/usr/share
for f in usr/bin/vantor-planner \
         usr/share/vantor-planner/blank.db usr/share/vantor-planner/sample-school.VNPL \
         usr/share/vantor-planner/TipOfTheDay.txt usr/share/vantor-planner/help/index.html \
         usr/share/applications/vantor-planner.desktop \
         usr/share/mime/packages/vantor-planner.xml \
         usr/share/metainfo/org.vantor.Planner.metainfo.xml \
         usr/share/icons/hicolor/scalable/apps/vantor-planner.svg \
         usr/share/icons/hicolor/48x48/apps/vantor-planner.png \
         usr/share/icons/hicolor/256x256/apps/vantor-planner.png; do
  [ -e "$root/$f" ] || fail "$f is missing"
done
# Nothing of the build or the tests comes along.
stray=$(cd "$root" && find . -type f | grep -v -E '^\./usr/(bin/vantor-planner|share/(vantor-planner|applications|mime|metainfo|icons|doc)/)' || true)
[ -z "$stray" ] || fail "unexpected files: $stray"

depends=$(dpkg-deb -f "$deb" Depends)
for lib in libqt6widgets6 libsqlite3-0 libcsv3 qt6-qpa-plugins; do
  grep -q "$lib" <<<"$depends" || fail "Depends lacks $lib: $depends"
done

desktop-file-validate "$share/applications/vantor-planner.desktop"
appstreamcli validate --no-net "$share/metainfo/org.vantor.Planner.metainfo.xml" >/dev/null

# The file type: by extension in any case, and by SQLite's header.
mime=$(mktemp -d)
mkdir -p "$mime/mime/packages"
cp /usr/share/mime/packages/freedesktop.org.xml "$share/mime/packages/vantor-planner.xml" \
  "$mime/mime/packages/"
update-mime-database "$mime/mime" >/dev/null 2>&1
grep -q ':application/x-vantor-planner-project:\*\.vnpl$' "$mime/mime/globs2" ||
  fail "no *.vnpl glob"
grep -q 'application/x-vantor-planner-project' "$mime/mime/magic" || fail "no SQLite magic"
grep -q 'application/x-vantor-planner-project application/vnd.sqlite3' "$mime/mime/subclasses" ||
  fail "not a kind of SQLite database"
rm -rf "$mime"

# The unpacked program runs and finds its files in its share folder.
out=$(mktemp -d)
QT_QPA_PLATFORM=offscreen "$root/usr/bin/vantor-planner" --version | grep -q '^vantor-planner '
QT_QPA_PLATFORM=offscreen "$root/usr/bin/vantor-planner" --export-html "$out/all.html" --all \
  "$share/vantor-planner/sample-school.VNPL"
grep -q 'Class 7A' "$out/all.html" || fail "the sample school's export lacks Class 7A"
rm -rf "$out"
echo "package ok: $deb"
