# Works the program's windows as a person does, with keys and a mouse; sourced by ./start, which sets:
#   demo      the folder that the program runs in
#   pictures  where pictures go
#   started   what ends with the script
# open_window sets velorn (process) and window (the main one).
# shellcheck shell=bash disable=SC2154

picture() { # name
  import -window root "$pictures/$1.png"
}

# A screen without a window manager gives nobody the keyboard by itself; one with it wants to be asked.
give_keyboard() { # window
  xdotool windowactivate "$1" 2>/dev/null || true
  xdotool windowfocus "$1" 2>/dev/null || true
}

focus_main() { # once the toolkit is through with what it does at the end of a dialog
  for _ in $(seq 30); do
    give_keyboard "$window"
    sleep 0.2
    [ "$(xdotool getwindowfocus 2>/dev/null)" = "$window" ] && return
  done
  fail "the window does not take the keyboard"
}

open_screen() { # width height -> sets DISPLAY
  local number_file
  number_file=$(mktemp)
  Xvfb -displayfd 3 -screen 0 "$1x$2x24" -nolisten tcp 3>"$number_file" 2>/dev/null &
  started+=($!)
  for _ in $(seq 50); do
    [ -s "$number_file" ] && break
    sleep 0.1
  done
  [ -s "$number_file" ] || fail "no virtual screen"
  DISPLAY=:$(tr -d '[:space:]' <"$number_file")
  export DISPLAY
  rm -f "$number_file"
}

open_window() { # how many times as large, how many times as fast
  (cd "$demo" && exec env QT_SCALE_FACTOR="$1" QT_QPA_PLATFORM=xcb ./velorn-fast "$2") \
    >"$demo/velorn.out" 2>&1 &
  velorn=$!
  started+=("$velorn")
  window=
  for _ in $(seq 100); do
    window=$(xdotool search --all --onlyvisible --pid "$velorn" --name '^Velorn *V' 2>/dev/null | tail -n 1) || true
    [ -n "$window" ] && break
    kill -0 "$velorn" 2>/dev/null || { cat "$demo/velorn.out"; fail "Velorn ended early"; }
    sleep 0.1
  done
  [ -n "$window" ] || fail "no window came up"
  focus_main
  sleep "$((2500 / $2))e-3" # the program opens its port 1.6 s of its clock after its start
}

close_window() {
  python3 tools/close_window.py "$window"
  for _ in $(seq 100); do
    kill -0 "$velorn" 2>/dev/null || break
    sleep 0.1
  done
  if kill -0 "$velorn" 2>/dev/null; then
    picture bleibt-offen || true
    fail "the window does not close; see $pictures/bleibt-offen.png"
  fi
  wait "$velorn" || fail "Velorn ended with exit code $?"
}

# Waits for a window of the program and gives it the keyboard.
focus_on() { # title
  local found=
  for _ in $(seq 50); do
    found=$(xdotool search --all --onlyvisible --pid "$velorn" --name "$1" 2>/dev/null | tail -n 1) || true
    [ -n "$found" ] && break
    sleep 0.1
  done
  [ -n "$found" ] || { picture kein-fenster; fail "no window '$1' came up; see $pictures/kein-fenster.png"; }
  give_keyboard "$found"
  sleep 0.4
}

gone() { # title
  for _ in $(seq 50); do
    xdotool search --all --onlyvisible --pid "$velorn" --name "$1" >/dev/null 2>&1 || break
    sleep 0.1
  done
  sleep 0.3
  focus_main
}

# Waits until the plant's log holds a line.
comes() { # pattern
  for _ in $(seq 150); do
    grep -aq "$1" "$demo/plant.log" && return
    sleep 0.1
  done
  picture ohne-antwort
  fail "'$1' did not come about; see $pictures/ohne-antwort.png and demo/plant.log"
}

# Whether the program asks something within two seconds.
question() {
  for _ in $(seq 20); do
    xdotool search --all --onlyvisible --pid "$velorn" --name '^Velorn$' >/dev/null 2>&1 && return
    sleep 0.1
  done
  return 1
}

answer() { # key
  focus_on '^Velorn$'
  xdotool key "$1"
  gone '^Velorn$'
}

open_book() {
  focus_main
  xdotool key alt+a
  sleep 0.4
  xdotool key w
  focus_on '^Telefonbuch'
}

dial() { # what to search for
  xdotool key ctrl+f
  focus_on '^Suchen$'
  xdotool type --delay 30 "$1"
  xdotool key Return
  focus_on '^Weitersuchen$'
  xdotool key Escape
  focus_on '^Telefonbuch'
  xdotool key Return
  gone '^Telefonbuch'
}

# "Fernbedienung automatisch starten", the last line of the menu, changes to on or off.
toggle_automatic() {
  focus_main
  xdotool key alt+a
  sleep 0.4
  xdotool key Up Return
  sleep 0.4
}

# ---- unattended collections ----

collection_logs="$demo/laufwerke/s/Eigene Dateien/velorn/Viertelstundendaten/log"

# Name and password for the site that asks for them, in the open phone book, unless somebody has set them.
set_login() {
  [[ $(python3 tools/lan_settings.py "$demo/lan.par") != *login=1 ]] || return 0
  if [[ $(python3 tools/lan_settings.py "$demo/lan.par") == *automatic=0* ]]; then
    xdotool key alt+i
    sleep 0.3
    xdotool key Return
    sleep 0.3
  fi
  local downs='Down'
  for word in service bhkw; do
    xdotool key alt+i
    sleep 0.3
    # shellcheck disable=SC2086  # one key after the other
    xdotool key $downs Return
    focus_on ' IP-Verbindungen$'
    xdotool type --delay 30 "$word"
    xdotool key Return
    sleep 0.3
    focus_on '^Telefonbuch'
    downs='Down Down'
  done
}

newest_log() { find "$collection_logs" -name 'log*.txt' -newer "$demo/run.begun" 2>/dev/null | sort | tail -n 1; }

logged() { # pattern
  local log
  log=$(newest_log)
  [ -n "$log" ] && grep -aq "$1" "$log"
}

# Sets up a run in the phone book's panel and starts it. The start waits for the minute that the panel shows
# field by field, so that a change of the hour between the two would cost an hour: then it is set up anew.
begin_run() { # first index, last index, telnet on (1) or off (0), picture
  local before=$telnet
  for _ in 1 2; do
    touch "$demo/run.begun"
    open_book
    set_login
    if [[ $telnet != "$3" ]]; then
      xdotool key alt+t
      telnet=$3
      sleep 0.3
    fi
    xdotool key alt+h
    sleep 0.5
    xdotool key ctrl+a
    xdotool type --delay 30 "$1"
    xdotool key Tab ctrl+a
    xdotool type --delay 30 "$2"
    sleep 0.3
    picture "$4"
    xdotool key alt+s
    for _ in $(seq 50); do
      ! logged ' Start automatische Datenabholung' || return 0
      sleep 0.1
    done
    xdotool key Escape # takes the tick back too
    telnet=$before
    gone '^Telefonbuch'
  done
  picture ohne-abholung
  fail "the collection does not start; see $pictures/ohne-abholung.png"
}

finish_run() { # patience in seconds; then its log is in $run_log
  for _ in $(seq "$1"); do
    if logged ' Ende automatische Datenabholung'; then
      run_log=$(newest_log)
      return
    fi
    kill -0 "$velorn" 2>/dev/null || fail "Velorn ended during the collection; see demo/velorn.out"
    sleep 1
  done
  picture ohne-ende
  fail "the collection does not end; see $pictures/ohne-ende.png and $(newest_log)"
}
