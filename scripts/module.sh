# Installing the module into a Wine prefix. Source after common.sh and wine.sh.

# twain_folder ARCH: the folder below C:\windows where data sources of that bitness are looked for.
twain_folder() {
  [ "$1" = x86 ] && echo twain_32 || echo twain_64
}

# install_module ARCH PREFIX BINARIES: puts BINARIES/ZYRTWAIN.ds and its side files where they belong. Wine's manager
# looks for nothing but sane.ds and gphoto2.ds, so the module stands there once more, and Wine's own two are gone.
install_module() {
  local twain=$2/drive_c/windows/$(twain_folder "$1")
  rm -f "$twain/sane.ds" "$twain/gphoto2.ds"
  mkdir -p "$twain/ZYR/Languages"
  cp "$3/ZYRTWAIN.ds" "$twain/ZYR/ZYRTWAIN.ds"
  cp "$3/ZYRTWAIN.ds" "$twain/sane.ds"
  cp "$3/ZYRTWAIN.CHM" "$twain/ZYR/ZYRTWAIN.CHM"
  # The module looks beside itself, and for its installation in ZYR.
  cp "$ZYR_ROOT/resources/Settings.XML" "$twain/ZYR/Settings.XML"
  cp "$ZYR_ROOT/resources/Settings.XML" "$twain/Settings.XML"
  find "$3/Languages" -name '*.Phrases' -exec cp {} "$twain/ZYR/Languages/" \;
}

# module_settings ARCH PREFIX NAME=VALUE...: stores settings of the module, all by one call into the running session.
# A VALUE of digits is a number, any other a text, and every one behind NAME:= is a text.
module_settings() {
  local arch=$1 prefix=$2 file=$2/settings.reg pair name value
  shift 2
  {
    printf 'REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\ZYR\\TWAIN]\n'
    for pair in "$@"; do
      value=${pair#*=}
      name=${pair%%=*}
      if [[ $value =~ ^[0-9]+$ && $name != *: ]]; then
        printf '"%s"=dword:%08x\n' "$name" "$value"
      else
        value=${value//\\/\\\\}
        printf '"%s"="%s"\n' "${name%:}" "${value//\"/\\\"}"
      fi
    done
  } >"$file"
  wine_in_session "$arch" "$prefix" regedit /S "Z:$file" </dev/null >/dev/null 2>&1
}
