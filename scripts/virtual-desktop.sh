# shellcheck shell=bash
# A desktop for machines without one: an X server, a session bus, a window manager and a tray. Sourced.

desktop_pids=()

# start_desktop FOLDER: sets DISPLAY and DBUS_SESSION_BUS_ADDRESS; logs and settings go to FOLDER.
start_desktop() {
    local folder=$1
    mkdir -p "$folder"
    exec {display_fd}<> <(:)
    Xvfb -displayfd "$display_fd" -screen 0 1280x800x24 -nolisten tcp -noreset >"$folder/xvfb.log" 2>&1 &
    desktop_pids+=($!)
    local number
    if ! read -r -t 20 -u "$display_fd" number; then
        echo "The virtual display didn't start; see $folder/xvfb.log." >&2
        return 1
    fi
    export DISPLAY=:$number
    unset WAYLAND_DISPLAY
    xsetroot -solid '#c9d6e6'

    exec {bus_fd}<> <(:)
    dbus-daemon --session --nofork --print-address="$bus_fd" >"$folder/bus.log" 2>&1 &
    desktop_pids+=($!)
    read -r -t 20 -u "$bus_fd" DBUS_SESSION_BUS_ADDRESS
    export DBUS_SESSION_BUS_ADDRESS

    openbox >"$folder/openbox.log" 2>&1 &
    desktop_pids+=($!)
    tray_settings >"$folder/tint2rc"
    tint2 -c "$folder/tint2rc" >"$folder/tint2.log" 2>&1 &
    desktop_pids+=($!)
    wait_until 20 "a tray" has_tray
}

tray_settings() {
    cat <<'SETTINGS'
rounded = 0
border_width = 0
background_color = #f5f5f7 92
panel_items = FSC
panel_size = 100% 28
panel_position = top center horizontal
panel_background_id = 1
systray_padding = 6 4 6
systray_icon_size = 18
time1_format = %H:%M
time1_font = Inter 9
clock_font_color = #1d1d1f 100
clock_padding = 10 0
SETTINGS
}

has_tray() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q '0x' && xdotool search --class tint2 >/dev/null 2>&1; }

# wait_until SECONDS WHAT COMMAND…: until the command succeeds; says what is missing when it never does.
wait_until() {
    local end=$((SECONDS + $1)) what=$2
    shift 2
    until "$@"; do
        if [ $SECONDS -ge "$end" ]; then
            echo "Waited in vain for $what." >&2
            return 1
        fi
        sleep 0.1
    done
}

# wait_for_window CLASS PID: until a window of CLASS shows; fails when process PID ends before.
wait_for_window() {
    local end=$((SECONDS + 20))
    until xdotool search --onlyvisible --class "$1" >/dev/null 2>&1; do
        kill -0 "$2" 2>/dev/null || return 1
        [ $SECONDS -lt "$end" ] || return 1
        sleep 0.1
    done
}

# take_picture FILE: of the whole screen, once two pictures in a row are alike.
take_picture() {
    local before='' now='' end=$((SECONDS + 10))
    while :; do
        import -window root "$1" || return 1
        now=$(identify -format '%#' "$1")
        [ "$now" != "$before" ] && [ $SECONDS -lt "$end" ] || return 0
        before=$now
        sleep 0.3
    done
}

stop_desktop() {
    local index
    for ((index = ${#desktop_pids[@]} - 1; index >= 0; index--)); do
        kill "${desktop_pids[index]}" 2>/dev/null || true
    done
    wait 2>/dev/null || true
}
