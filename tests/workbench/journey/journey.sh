#!/usr/bin/env bash
# Drives the whole program with keys and mouse on a display of its own: draws, alters, takes back,
# hides and saves, and lets the recorded journal do the same without a window. Both files are equal.
# Usage: journey.sh WORKBENCH MARQUELL ADD-ON DATA FOLDER
set -euo pipefail

if [ "${1:-}" != --on-display ]; then
  # A little less than the test may take, so that the display goes too. A key that a busy machine
  # lets go late is not repeated.
  exec timeout --kill-after=5 110 xvfb-run -a -s "-screen 0 1900x1000x24 -r" \
    bash "$0" --on-display "$@"
fi
workbench=$2 marquell=$3 add_on=$4 data=$5 folder=$6

# Its name is typed: in capitals a key held down for too short a time would write another.
work=${TMPDIR:-/tmp}/journey.$$
mkdir -m 700 "$work"
export HOME="$work" XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/run"
mkdir -m 700 "$XDG_RUNTIME_DIR"
program_pid='' manager_pid=''

finish() {
  local status=$?
  if [ $status -ne 0 ]; then
    import -window root "$folder/journey-failed.png" 2>/dev/null &&
      echo "How the display looked: $folder/journey-failed.png" >&2
    tail -n 20 "$work"/*.log >&2
  fi
  [ -z "$program_pid" ] || kill "$program_pid" 2>/dev/null || true
  [ -z "$manager_pid" ] || kill "$manager_pid" 2>/dev/null || true
  rm -rf "$work"
  exit $status
}
trap finish EXIT

fail() {
  echo "journey: $*" >&2
  exit 1
}

# Until the command succeeds; 20 seconds at the most.
await() {
  local what=$1
  shift
  local deadline=$((SECONDS + 20))
  until "$@"; do
    [ $SECONDS -lt $deadline ] || fail "waited in vain for $what"
    sleep 0.05
  done
}

is_running() { kill -0 "$program_pid" 2>/dev/null; }
has_ended() { ! is_running; }

is_focused() {
  is_running || fail "the program has gone while it should show \"$1\""
  local name
  # shellcheck disable=SC2053
  name=$(xdotool getwindowfocus getwindowname 2>/dev/null) && [[ $name == $1 ]]
}

# The window whose title fits the pattern has the keyboard.
await_window() { await "the window \"$1\"" is_focused "$1"; }

# A search breaks off when any window goes meanwhile: one that finds nothing proves nothing.
window_named() {
  local found
  for _ in 1 2 3; do
    found=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n1)
    [ -z "$found" ] || break
  done
  echo "$found"
}
is_shown() { [ -n "$(window_named "$1")" ]; }
is_gone() { ! is_shown "$1"; }

activated() {
  local window
  window=$(window_named "$1")
  [ -n "$window" ] && xdotool windowactivate "$window" 2>/dev/null && is_focused "$2"
}
bring_to_front() { await "the window \"$2\" in front" activated "$1" "$2"; }
main_window() { bring_to_front ' - Marquell Workbench$' '* - Marquell Workbench'; }
dialog() { bring_to_front '^Marquell$' 'Marquell'; }

# Keys go to the window that has the keyboard; the program takes them one after the other.
press() { xdotool key --delay 30 "$@"; }
write() { xdotool type --delay 15 -- "$1"; }

# A share of the main window's width and height, in percent.
pointer_to() {
  local X Y WIDTH HEIGHT WINDOW SCREEN place
  place=$(xdotool getwindowgeometry --shell "$(window_named ' - Marquell Workbench$')")
  eval "$place"
  xdotool mousemove --sync $((X + WIDTH * $1 / 100)) $((Y + HEIGHT * $2 / 100))
}

drag() {
  pointer_to "$1" "$2"
  xdotool mousedown 1
  pointer_to $((($1 + $3) / 2)) $((($2 + $4) / 2))
  pointer_to "$3" "$4"
  xdotool mouseup 1
}

# The tools follow the second rule's menu in the keyboard's order.
choose_tool() {
  press alt+w
  local n
  for ((n = 0; n < $1; ++n)); do press Tab; done
  press space
}
rectangle=2 cube=5

# The journal has lines with these beginnings, in this order.
expect_deeds() {
  local deed line
  while IFS= read -r deed; do
    until [[ ${line:-} == "$deed"* ]]; do
      IFS= read -r line <&3 || fail "no \"$deed\" in its place in $folder/recorded.journal"
    done
    line=
  done 3<"$folder/recorded.journal"
}

has_manager() { xdotool get_desktop >/dev/null 2>&1; }

openbox >"$work/manager.log" 2>&1 &
manager_pid=$!
await "the window manager" has_manager
cp "$data" "$work/part.vtu"
"$workbench" "$work/part.vtu" --add-on "$add_on" >"$work/workbench.log" 2>&1 &
program_pid=$!
await_window 'part.vtu - Marquell Workbench'

press alt+j r # Journal, Record
press alt+d Return # Data, the add-on's entry
await_window Marquell
press alt+v
write phi
press alt+m
write '*2'
press Return
choose_tool $rectangle
main_window
drag 45 45 60 70
dialog
press alt+a # Apply Alteration
await "the star of unsaved changes" is_shown 'part.vtu[*] - Marquell Workbench$'
press alt+u # Undo last alter
press alt+a
main_window
press alt+e u # Edit, Undo
press alt+e r # Edit, Redo
dialog
press alt+m ctrl+Tab # the page Blank
choose_tool $cube
press Tab Tab Tab Tab ctrl+a # the sphere, Shade, Anchor X, Size X
write 1.25
press Return
press alt+a # Apply Blanking
await_window 'Marquell Workbench'
press alt+y # yes, turn blanking on
# The keyboard then goes to whichever window the manager chooses.
await "the question's end" is_gone '^Marquell Workbench$'
main_window
press ctrl+shift+s
await_window 'Save As'
write "$work/window.vtu"
press Return
await_window 'window.vtu - Marquell Workbench'
press alt+j s # Journal, Stop
press alt+j l # Journal, Save recorded lines
await_window 'Save recorded lines'
write "$work/recorded.journal"
press Return
await_window 'window.vtu - Marquell Workbench'
press ctrl+q
await "the program's end" has_ended
wait "$program_pid" || fail "the program ended with $?"
program_pid=

cp "$work/recorded.journal" "$work/window.vtu" "$folder"
"$marquell" run "$work/recorded.journal" "$data" -o "$folder/headless.vtu" --force --quiet \
  --add-on "$add_on" || fail "the recorded journal does not play: $folder/recorded.journal"
# Every deed of above is there, in its order; the picks' numbers come from the mouse.
expect_deeds <<'DEEDS'
$!GEOMETRY RECTANGLE
Marquell PICKRECTANGLE
Marquell ALTERAREA VARIABLE="phi" MODIFIER="*2"
Marquell UNDOALTER
Marquell ALTERAREA VARIABLE="phi" MODIFIER="*2"
$!UNDO
$!REDO
$!BLANKING VALUE{INCLUDE = YES}
Marquell PICKCUBE
Marquell BLANKAREA
DEEDS
cmp "$folder/window.vtu" "$folder/headless.vtu" ||
  fail "the window's file and the journal's differ: $folder/window.vtu $folder/headless.vtu"
grep -q 'PICKCUBE.* SIZEX=1.25 ' "$folder/recorded.journal" ||
  fail "the box was not sized by its field"
! cmp -s "$folder/window.vtu" "$data" || fail "nothing was changed"
grep -q PICK_BLANK "$folder/window.vtu" || fail "nothing was hidden"
