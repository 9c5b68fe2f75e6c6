# Debian packages that the project needs, and how to get those that are missing.
# Sourced by ./run and ./test.

build_packages=(g++ cmake ninja-build ccache qt6-base-dev qt6-svg-dev libgl-dev nlohmann-json3-dev)
run_packages=(libqt6svg6 qt6-qpa-plugins qt6-translations-l10n fonts-dejavu-core)
test_packages=(libgtest-dev libgmock-dev libbenchmark-dev libsqlite3-dev mdbtools nginx-light fonts-dejavu-core
  libxml2-utils xsltproc)

say() { printf '== %s\n' "$*"; }

# Installs those of the named packages that are not here yet; needs root only then.
need_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ "${#missing[@]}" -eq 0 ] && return
  echo "Устанавливаю: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Нужны права root: apt-get install ${missing[*]}" >&2; exit 1; }
    as_root=(sudo)
  fi
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
