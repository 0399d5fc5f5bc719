# Sourced by the scripts: installs the Debian packages the build needs, only those missing.
zeb_debian_packages=(
  cmake ninja-build g++ clang libclang-rt-14-dev pkg-config locales
  libgtest-dev libgmock-dev libbenchmark-dev libxxhash-dev libicu-dev libspdlog-dev libglib2.0-dev
  libcli11-dev doxygen dpkg-dev
  libcsv-dev libinih-dev libsimpleini-dev
  zlib1g-dev libdeflate-dev libssl-dev libmodpbase64-dev
  libsqlite3-dev
  unicode-data python3 bzip2
)

zeb_install_missing_packages() {
  local missing=() pkg
  for pkg in "${zeb_debian_packages[@]}"; do
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing missing packages: ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
}
