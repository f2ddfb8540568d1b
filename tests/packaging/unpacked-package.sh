#!/usr/bin/env bash
# unpacked-package.sh PACKAGE-FOLDER: unpacks the .deb there into a temporary
# root and runs the command line from it.
set -euo pipefail
shopt -s nullglob
debs=("$1"/*.deb)
[ ${#debs[@]} -eq 1 ] || { echo "expected one .deb in $1, found ${#debs[@]}"; exit 1; }
deb=${debs[0]}
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
fail() { echo "FAIL: $*"; exit 1; }

dpkg-deb -x "$deb" "$root"
info=$(dpkg-deb -f "$deb" Package Version Depends)
echo "$info"
grep -q '^Depends:.*libqt5core5a' <<<"$info" || fail "no Qt dependency in: $info"
grep -q '^Depends:.*libgdal' <<<"$info" || fail "no GDAL dependency in: $info"

ct="$root/usr/bin/coordstransform"
[ -x "$ct" ] && [ -x "$root/usr/bin/kivdesk" ] || fail "programs missing from /usr/bin"
for f in usr/share/coordstransform/data/"Geograpic transformation model"/coordtransform.xml \
         usr/share/coordstransform/data/translations/kivdesk_zh_CN.qm \
         usr/share/man/man1/coordstransform.1.gz usr/share/man/man1/coordstransform-models.1.gz \
         usr/share/man/man1/kivdesk.1.gz usr/share/bash-completion/completions/coordstransform \
         usr/share/applications/kivdesk.desktop usr/share/doc/coordstransform/copyright; do
  [ -e "$root/$f" ] || fail "missing /$f"
done
compgen -G "$root/usr/lib/coordstransform/lib/libCoordsTransformUI.so*" >/dev/null || fail "plug-in missing"
compgen -G "$root/usr/lib/coordstransform/lib/libCoordsTransformAlgo.so*" >/dev/null || fail "algorithm library missing"
MANPATH="$root/usr/share/man" man coordstransform-models 2>/dev/null | grep -q "models add" \
  || fail "man coordstransform-models does not show its usage"
MANPATH="$root/usr/share/man" man kivdesk 2>/dev/null | grep -q "kivdesk" || fail "man kivdesk"

# The command line from the unpacked root: its data, a model kept and used.
"$ct" --help | grep -q '^Usage: coordstransform' || fail "--help"
"$ct" models add --kind 7 --name "pkg test" --from EPSG:4214 --to EPSG:4326 \
  --params 15.8,-154.4,-82.3,0.52,-1.31,2.17,3.5e-6 || fail "models add"
"$ct" models --names | grep -qx "pkg test" || fail "the added model is not listed"
# Completion: commands, and model names (blanks and all) from the store.
completions() {
  COMP_WORDS=("$ct" "$@"); COMP_CWORD=$#; COMPREPLY=()
  _coordstransform
  printf '%s\n' "${COMPREPLY[@]}"
}
source "$root/usr/share/bash-completion/completions/coordstransform"
completions mod | grep -qx models || fail "completion of commands"
completions transform --model pk | grep -qx "pkg test" || fail "completion of model names"
completions models remove "" | grep -qx "pkg test" || fail "completion of models remove"
out=$(echo "39.9 116.4 50" | "$ct" transform --from EPSG:4214 --to EPSG:4326 --model "pkg test") || fail "transform"
[ -n "$out" ] || fail "transform printed nothing"

if command -v lintian >/dev/null; then
  lintian --fail-on error --suppress-tags-from-file /dev/null "$deb" || fail "lintian reports errors"
else
  echo "lintian not installed: not run"
fi
echo "package ok: $(basename "$deb"), $(du -k "$deb" | cut -f1) KiB"
