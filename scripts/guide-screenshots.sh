#!/usr/bin/env bash
# Pictures of every dialog for the user guide, taken from the real program in
# each language: scripts/guide-screenshots.sh [build folder]
# Writes docs/guide/images/<language>/<picture>.png.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
kivdesk="$build/bin/kivdesk"
[ -x "$kivdesk" ] || { echo "no $kivdesk: build kivdesk first" >&2; exit 1; }

# A private configuration folder, so that the user's language setting and
# recently used systems do not show in the pictures.
config=$(mktemp -d)
trap 'rm -rf "$config"' EXIT
export XDG_CONFIG_HOME="$config" QT_QPA_PLATFORM=offscreen

# picture name, then kivdesk's arguments
shots=(
  "main|"
  "point|--command CoordsTransform_PointCoordsTransCommand"
  "selector|--command CoordsTransform_PointCoordsTransCommand --click pushButton_Original"
  "calc7|--command CoordsTransform_7params"
  "calc4|--command CoordsTransform_4params"
  "set7|--command CoordsTransform_Set7params"
  "set4|--command CoordsTransform_Set4params"
  "file|--command CoordsTransform_FileDataProjTransCommand"
  "formats|--command CoordsTransform_FileDataProjTransCommand --click pushButton_Format"
  "format-editor|--command CoordsTransform_FileDataProjTransCommand --click pushButton_Format --click pushButton_Add"
  "dataset|--command CoordsTransform_DataProjTransCommand"
  "output-srs|--command CoordsTransform_DataProjTransCommand --click pushButton_OutputCoordSys"
  "new-geo|--command CoordsTransform_DataProjTransCommand --click pushButton_OutputCoordSys --click NewProj_pushButton --click #0"
  "new-proj|--command CoordsTransform_DataProjTransCommand --click pushButton_OutputCoordSys --click NewProj_pushButton --click #1"
  "batch|--command CoordsTransform_BatchProjectTrans"
  "about|--click actionAbout"
)

status=0
for lang in zh_CN en; do
  mkdir -p "docs/guide/images/$lang"
  for shot in "${shots[@]}"; do
    name=${shot%%|*}
    read -r -a args <<< "${shot#*|}"
    out="docs/guide/images/$lang/$name.png"
    if ! timeout 60 "$kivdesk" --lang "$lang" "${args[@]}" --screenshot "$out" 2>/dev/null; then
      echo "failed: $lang $name" >&2
      status=1
    fi
  done
done
exit $status
