# Shared by scripts/run and scripts/test: Debian packages and the build.

KIV_PACKAGES=(
  cmake g++ make ccache pkg-config
  qtbase5-dev qtbase5-dev-tools qttools5-dev qttools5-dev-tools qttranslations5-l10n
  libgdal-dev gdal-bin
  unixodbc odbc-mdbtools
  libproj-dev proj-bin proj-data
  libboost-dev libeigen3-dev
  fonts-dejavu-core fonts-wqy-microhei
  clang libclang-rt-14-dev
  help2man lintian dpkg-dev man-db
  parallel
)

# Installs the packages that are missing (nothing to do on a prepared machine).
kiv_install_packages() {
  local missing=()
  for p in "${KIV_PACKAGES[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Compiler cache keyed on paths relative to the checkout, so that a clone in
# another folder (as CI makes) reuses what an earlier build compiled.
export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$PWD}"
export CCACHE_NOHASHDIR=1

# kiv_build <build dir> [cmake options...]
kiv_build() {
  local dir=$1; shift
  cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
  cmake --build "$dir" -j2
}
