# An apt of our own beside the machine's: same mirrors, nothing installed, nothing of the machine's changed,
# no root needed. Source after common.sh.

# debian_indexes: "URI RELEASE COMPONENT" of every Debian index that this machine's apt is set up for.
debian_indexes() {
  # shellcheck disable=SC2016  # apt's own placeholders
  apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Identifier: Packages' |
    awk -v codename="$(. /etc/os-release && echo "$VERSION_CODENAME")" \
      'index($2, codename) == 1 && $3 == "main" && !seen[$0]++'
}

# private_apt_init DIR TYPE [RELEASE]: TYPE is deb or deb-src; RELEASE keeps only that one.
private_apt_init() {
  local dir=$1 type=$2 release=${3:-}
  mkdir -p "$dir/state/lists/partial" "$dir/cache/archives/partial"
  : >"$dir/state/status"
  debian_indexes | awk -v type="$type" -v release="$release" \
    'release == "" || $2 == release { print type, $1, $2, $3 }' >"$dir/sources.list"
  [ -s "$dir/sources.list" ] || { echo "this machine's apt knows no Debian mirror"; return 1; }
}

# private_apt DIR ARCH ARGUMENT...: apt-get with everything below DIR.
private_apt() {
  local dir=$1 arch=$2
  shift 2
  apt-get -q -o Dir::Etc::sourcelist="$dir/sources.list" -o Dir::Etc::sourceparts=/dev/null \
    -o Dir::Etc::preferencesparts=/dev/null -o Dir::State="$dir/state" -o Dir::State::status="$dir/state/status" \
    -o Dir::Cache="$dir/cache" -o APT::Architecture="$arch" -o APT::Sandbox::User="$(id -un)" \
    -o APT::Install-Recommends=false -o Acquire::Retries=3 "$@"
}
