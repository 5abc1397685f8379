# Wine for both bitnesses: which one runs what, prefixes, sessions. Source after common.sh.
#
# pristine-<arch>  made once, never run in; every other prefix is copied from it in a moment.
# prefix-<arch>    where the unit tests run.
# A session is a prefix with its own X server and one idle program in it. Without the idle program every test would
# start Wine's services anew, and these would hold the test's output pipe open.

ZYR_WINE=$ZYR_BUILD/wine
ZYR_WINE32=$ZYR_BUILD/wine32

# wine_select ARCH: sets wine_loader, wine_server and wine_libraries; fails where nothing can run that architecture.
wine_select() {
  wine_libraries=
  case $1 in
    x64)
      wine_loader=/usr/lib/wine/wine64
      wine_server=/usr/lib/wine/wineserver64
      ;;
    x86)
      if [ -x /usr/lib/wine/wine ]; then
        wine_loader=/usr/lib/wine/wine
        wine_server=/usr/lib/wine/wineserver64
        [ -x "$wine_server" ] || wine_server=/usr/lib/wine/wineserver32
      else
        wine_loader=$ZYR_WINE32/usr/lib/wine/wine
        wine_server=$ZYR_WINE32/usr/lib/wine/wineserver32
        wine_libraries=$ZYR_WINE32/lib/i386-linux-gnu:$ZYR_WINE32/usr/lib/i386-linux-gnu
        wine_libraries+=:$ZYR_WINE32/usr/lib/i386-linux-gnu/pulseaudio
      fi
      ;;
    *) return 1 ;;
  esac
  [ -x "$wine_loader" ] && [ -x "$wine_server" ]
}

# wine_environment ARCH PREFIX [DISPLAY]: sets the array wine_env, to be given to `env`, and what wine_select sets.
# The locale is fixed: Wine takes from it how names of files are written, and in plain "C" it refuses an umlaut.
wine_environment() {
  wine_select "$1" || return 1
  wine_env=(-u DISPLAY -u WAYLAND_DISPLAY LC_ALL=C.UTF-8 WINEPREFIX="$2" WINELOADER="$wine_loader" WINESERVER="$wine_server"
    WINEARCH="$([ "$1" = x86 ] && echo win32 || echo win64)"
    WINEDEBUG="${ZYR_WINEDEBUG:--all}" "WINEDLLOVERRIDES=mscoree=;mshtml=;winemenubuilder.exe=d"
    HOME="$ZYR_WINE/home")
  [ -n "$wine_libraries" ] && wine_env+=(LD_LIBRARY_PATH="$wine_libraries")
  [ -n "${3:-}" ] && wine_env+=(DISPLAY="$3")
  return 0
}

# Settings of every prefix. A desktop of Wine's own gives title bars and focus without a window manager. There is no
# debugger to start on a crash: Wine's own ends the program with status 0 now and then, as if all were well.
wine_registry_defaults() {
  cat <<'REG'
REGEDIT4

[HKEY_CURRENT_USER\Software\Wine\Explorer]
"Desktop"="Default"

[HKEY_CURRENT_USER\Software\Wine\Explorer\Desktops]
"Default"="1280x900"

[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\AeDebug]
"Auto"="1"
"Debugger"="none"

[HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements]
"Arial"="Liberation Sans"
"Courier New"="Liberation Mono"
"Times New Roman"="Liberation Serif"
REG
}

wine_make_pristine() { # ARCH
  local final=$ZYR_WINE/pristine-$1 new=$ZYR_WINE/pristine-$1.new
  pristine_stands "$1" && return 0
  rm -rf "$final" "$new"
  mkdir -p "$new" "$ZYR_WINE/home"
  wine_environment "$1" "$new" || { echo "no Wine for $1 on this machine"; return 1; }
  env "${wine_env[@]}" "$wine_loader" wineboot -i </dev/null >/dev/null 2>&1 || return 1
  wine_registry_defaults >"$new/defaults.reg"
  env "${wine_env[@]}" "$wine_loader" regedit /S "Z:$new/defaults.reg" </dev/null >/dev/null 2>&1 || return 1
  env "${wine_env[@]}" "$wine_server" -k
  env "${wine_env[@]}" "$wine_server" -w
  cp /usr/share/wine/fonts/*.ttf /usr/share/fonts/truetype/liberation/*.ttf "$new/drive_c/windows/Fonts/" || return 1
  # A copy must not be brought up to date file by file when Wine's own package is newer.
  echo disable >"$new/.update-timestamp"
  wine_registry_defaults | cksum >"$new/complete"
  mv "$new" "$final"
}

pristine_stands() { # ARCH
  [ "$(cat "$ZYR_WINE/pristine-$1/complete" 2>/dev/null)" = "$(wine_registry_defaults | cksum)" ]
}

# wine_pristine ARCH: makes build/wine/pristine-ARCH unless it stands.
wine_pristine() {
  pristine_stands "$1" || once "$ZYR_WINE/pristine-$1.lock" wine_make_pristine "$1"
}

# wine_copy_prefix ARCH DIRECTORY: a fresh prefix there. The 700 MB of Wine's DLLs are links to the pristine ones, so
# that a copy takes a tenth of a second; the registry and the TWAIN folder are real. Whoever replaces another file
# below drive_c/windows must remove it first.
wine_copy_prefix() {
  local from=$ZYR_WINE/pristine-$1 to=$2 folder
  wine_pristine "$1" || return 1
  rm -rf "$to"
  mkdir -p "$to"
  cp -as "$from/." "$to/"
  rm -rf "$to"/*.reg "$to/dosdevices" "$to/.update-timestamp" "$to/complete" "$to"/drive_c/windows/twain_*
  cp -a "$from"/*.reg "$from/dosdevices" "$from/.update-timestamp" "$to/"
  for folder in "$from"/drive_c/windows/twain_*; do
    cp -a "$folder" "$to/drive_c/windows/"
  done
}

session_alive() { # PREFIX
  local pid
  pid=$(cat "$1/session/pid" 2>/dev/null) && kill -0 "$pid" 2>/dev/null && [ -e "$1/session/ready" ]
}

wine_start_session() { # ARCH PREFIX SECONDS
  local waited=0
  session_alive "$2" && return 0
  rm -rf "$2/session"
  mkdir -p "$2/session"
  setsid "$ZYR_ROOT/scripts/hold-wine-session.sh" "$@" </dev/null >"$2/session/log" 2>&1 &
  echo $! >"$2/session/pid"
  until session_alive "$2"; do
    kill -0 $! 2>/dev/null && [ $((waited += 1)) -lt 600 ] || { echo "no Wine session in $2"; return 1; }
    sleep 0.1
  done
}

# wine_session ARCH PREFIX [SECONDS]: starts the session unless it runs. It ends by itself after that time, so that one
# that nobody stops is not left behind for ever. Must be called before any pipe is made.
wine_session() {
  session_alive "$2" || once "$2.lock" wine_start_session "$1" "$2" "${3:-1800}"
}

# wine_end_session ARCH PREFIX: ends every program in the prefix and its X server, and waits until they are gone.
wine_end_session() {
  local pid
  pid=$(cat "$2/session/pid" 2>/dev/null) || return 0
  wine_environment "$1" "$2" || return 0
  env "${wine_env[@]}" "$wine_server" -k 2>/dev/null || true
  env "${wine_env[@]}" "$wine_server" -w 2>/dev/null || true
  while kill -0 "$pid" 2>/dev/null; do sleep 0.05; done
  rm -rf "$2/session"
}

# wine_in_session ARCH PREFIX COMMAND...: runs a Windows program, or one of Wine's own, in a running session.
wine_in_session() {
  local arch=$1 prefix=$2
  shift 2
  wine_environment "$arch" "$prefix" "$(cat "$prefix/session/display" 2>/dev/null)"
  env "${wine_env[@]}" "$wine_loader" "$@"
}

# wine_test_prefix ARCH: the path of the prefix of the unit tests, made when it is missing.
wine_test_prefix() {
  local prefix=$ZYR_WINE/prefix-$1
  [ -f "$prefix/system.reg" ] || once "$prefix.lock" wine_make_test_prefix "$1" "$prefix" >&2 || return 1
  echo "$prefix"
}

wine_make_test_prefix() { # ARCH PREFIX
  [ -f "$2/system.reg" ] || wine_copy_prefix "$1" "$2"
}

# pe_architecture FILE: x64, x86 or nothing, from the machine word of the executable.
pe_architecture() {
  local header machine
  header=$(od -An -t u4 -j 60 -N 4 "$1" 2>/dev/null | tr -d ' ')
  [ -n "$header" ] || return 1
  machine=$(od -An -t x2 -j $((header + 4)) -N 2 "$1" 2>/dev/null | tr -d ' ')
  case $machine in
    8664) echo x64 ;;
    014c) echo x86 ;;
    *) return 1 ;;
  esac
}
