# Working the source's window by its buttons, and photographing it. Source after common.sh, wine.sh and simulator.sh.

# The controls of the capture dialog, by the numbers of its template.
return_images=1 cancel=2 options=2000 delete_selected=2006 acquire_image=2010 select_sensor=2011 acquire_series=2012
manual_trigger=2013 help=2014 delete_all=2020 thumbnails_command=2007 status_panel=2100 exposure_panel=2101
thumbnails=2102 rows=2110 columns=2111

# The windows behind the button "Options", by the numbers of their templates.
options_title="Digital X-ray Options" options_tree=2151
password_title="ZYR Hardware Settings" password=2203 password_again=2205
path_title="Select Path" path_tree=2214 new_path=2215
new_path_title="New Directory" new_path_name=2217

# field PAGE FIELD [PART]: the control of a page of the options, by the page's place among all of them from 0; 6 is the
# button of a picked text.
field() { echo $((3000 + $1 * 256 + $2 * 8 + ${3:-0})); }

# zyrdialog ARCH PREFIX BINARIES STEP...: see `zyrdialog --help`.
zyrdialog() {
  local arch=$1 prefix=$2 binaries=$3
  shift 3
  wine_in_session "$arch" "$prefix" "$binaries/zyrdialog.exe" "$@" </dev/null 2>&1 | tr -d '\r'
}

# photograph ARCH PREFIX BINARIES FILE.png [TITLE]: the window as it is seen, with its frame.
photograph() {
  local frame
  frame=$(zyrdialog "$1" "$2" "$3" --title "${5:-ZYR TWAIN}" wait , pause 300 , frame) || { echo "$frame"; return 1; }
  /usr/bin/import -display "$(cat "$2/session/display")" -window root -crop "$frame" +repage "$4"
}

# show_window ARCH PREFIX OUT: a single image and a series of two, taken and returned as a user would; photographs of the
# window idle, armed, with three images, and armed in a series.
show_window() {
  local arch=$1 prefix=$2 out=$3 status=0
  rm -rf "$prefix/drive_c/out"
  mkdir -p "$prefix/drive_c/out"
  plug_in "$arch" "$prefix" 2000 D
  wine_in_session "$arch" "$prefix" "$prefix/drive_c/zyracquire/zyracquire.exe" --source "ZYR TWAIN" --out 'C:\out' --timeout 120 </dev/null &
  local acquiring=$!
  work_window "$arch" "$prefix" "$out" || status=1
  wait "$acquiring" || status=1
  unplug "$arch" "$prefix"
  [ "$(ls "$prefix/drive_c/out" | wc -l)" -eq 3 ] || status=1
  return "$status"
}

work_window() { # ARCH PREFIX OUT
  local bin=$ZYR_BUILD/$1/bin
  local -a where=("$1" "$2" "$bin")
  photograph "${where[@]}" "$3/window-idle.png" &&
    zyrdialog "${where[@]}" press $acquire_image , visible $exposure_panel &&
    photograph "${where[@]}" "$3/window-armed.png" &&
    zyrsim "${where[@]}" expose --wait 20 &&
    zyrdialog "${where[@]}" visible $thumbnails , press $acquire_series , visible $exposure_panel &&
    zyrsim "${where[@]}" expose --wait 20 &&
    zyrdialog "${where[@]}" hidden $exposure_panel , visible $exposure_panel &&
    photograph "${where[@]}" "$3/window-series.png" &&
    zyrsim "${where[@]}" expose --wait 20 &&
    zyrdialog "${where[@]}" hidden $exposure_panel , visible $exposure_panel , press $cancel , enabled $acquire_image &&
    photograph "${where[@]}" "$3/window-three-images.png" &&
    zyrdialog "${where[@]}" press $return_images
}
