#!/usr/bin/env bash
# tour.sh HOST DIR [ROUND]: plays the program on displays of its own with the keys and the mouse.
#
# A round is named by its screen, its scale and its colours. The first one is the main job from end to
# end; it leaves its pictures straight in DIR, and the query that was saved on the way. Each other round
# shows all windows, and the tabs with every criterion on, and leaves its pictures in a folder of its
# name. Without ROUND all of them are played, one more at a time than there are processors, since each
# waits now and then for what has to come up.
#
# Positions are those of the windows' design, in twips; at 100 % the display has 96 dots per inch, 15
# twips each. TestTour holds them against the windows: the element at a place is named behind it.
set -euo pipefail
rounds="1920x1080-100-light
    1366x768-100-light 1366x768-100-dark 1366x768-100-black-on-white
    1366x768-125-light 1366x768-150-light 1366x768-150-dark 1366x768-150-white-on-black
    1024x600-100-light 1024x600-100-dark 1024x600-100-yellow-on-black
    1920x1080-150-dark 1920x1080-200-light 1920x1080-200-dark"
main_round=1920x1080-100-light
host=$(realpath "$1")
mkdir -p "$2"
out=$(cd "$2" && pwd)
# The pictures of an earlier tour are replaced; what others keep in a folder is left alone.
if [ ! -e "$out/.tour" ] && [ -n "$(ls -A "$out")" ]; then
    printf 'tour: the folder %s holds other files; name an empty or a new one\n' "$out" >&2
    exit 1
fi
touch "$out/.tour"
round=${3:-}
work=$(mktemp -d)
pids=()

finish() {
    local result=$?
    trap - EXIT
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait || true
    rm -rf "$work"
    exit $result
}
trap finish EXIT

fail() {
    maim "$out/failed.png" 2>/dev/null || true
    printf 'tour %s: %s; the screen at that moment is %s\n' "$round" "$*" "$out/failed.png" >&2
    exit 1
}

play_all_rounds() {
    local name at_a_time
    at_a_time=$(($(nproc) + 1))
    for name in $rounds; do
        if [ ${#pids[@]} -ge $at_a_time ]; then wait -n; fi
        "${BASH_SOURCE[0]}" "$host" "$out" "$name" &
        pids+=($!)
    done
    while [ -n "$(jobs -rp)" ]; do wait -n; done
    pids=()
}

# A desktop makes windows larger in one of two ways: it gives programs a factor, or it tells them more
# dots per inch. The dark rounds have the other, the rest the one.
start_display() {
    export QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=1 LC_ALL=C.UTF-8
    unset WAYLAND_DISPLAY XAUTHORITY QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE QT_FONT_DPI
    local dots=96
    if [ "$colours" = dark ]; then
        dots=$((96 * percent / 100))
    else
        QT_SCALE_FACTOR=$((percent / 100)).$((percent % 100))
    fi
    # Xvfb picks a free number and tells it.
    mkfifo "$work/number"
    Xvfb -displayfd 3 -screen 0 "${screen}x24" -dpi 96 \
        -nolisten tcp -noreset 3>"$work/number" >"$work/xvfb.log" 2>&1 &
    pids+=($!)
    read -r -t 20 number <>"$work/number" || { cat "$work/xvfb.log" >&2; exit 1; }
    export DISPLAY=:$number
    xprop -root -f RESOURCE_MANAGER 8s -set RESOURCE_MANAGER $'Xft.dpi:\t'"$dots"$'\n'
    HOME=$work openbox >"$work/openbox.log" 2>&1 &
    pids+=($!)
    # A window that comes up before its manager is there may stay unseen.
    local deadline=$((SECONDS + 30))
    until xdotool get_num_desktops >/dev/null 2>&1; do
        [ $SECONDS -lt $deadline ] || fail "the window manager did not start"
        sleep 0.05
    done
}

# await NAME: the window whose whole title matches comes up; it becomes the one that keys and clicks go to.
await() {
    local deadline=$((SECONDS + 30))
    until window=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | tail -n 1) && [ -n "$window" ]; do
        [ $SECONDS -lt $deadline ] || fail "the window \"$1\" did not come up"
        sleep 0.05
    done
    xdotool windowactivate "$window" 2>/dev/null || true
    settle
}

# gone NAME: no window has that title any more.
gone() {
    local deadline=$((SECONDS + 30))
    while xdotool search --onlyvisible --name "^$1\$" >/dev/null 2>&1; do
        [ $SECONDS -lt $deadline ] || fail "the window \"$1\" did not close"
        sleep 0.05
    done
}

# Nobody of the display, the window manager and the host has anything left to do: a process that has
# unread events would be running or about to.
all_sleep() {
    local pid stat
    for pid in "${pids[@]}"; do
        for stat in /proc/"$pid"/task/*/stat; do
            [[ $(<"$stat") =~ \)\ S ]] || return 1
        done
    done 2>/dev/null
}

# Waits until what was sent is worked off and the window looks the same twice, or is gone.
settle() {
    local deadline=$((SECONDS + 30)) before= now
    while :; do
        until all_sleep && all_sleep; do
            [ $SECONDS -lt $deadline ] || fail "the programs do not come to rest"
            sleep 0.02
        done
        now=$(maim -u -f bmp -i "$window" 2>/dev/null | cksum) || now=
        [ -n "$now" ] && [ "$now" = "$before" ] && return
        [ -n "$now" ] || xdotool getwindowname "$window" >/dev/null 2>&1 || return 0
        [ $SECONDS -lt $deadline ] || fail "the window does not come to rest"
        before=$now
        sleep 0.05
    done
}

# picture NAME: the window with its frame and what lies over it, as the user sees it.
pictures=0
picture() {
    pictures=$((pictures + 1))
    local left top width height l r t b edges
    read -r left top width height < <(xwininfo -id "$window" |
        awk '/Absolute upper-left X/ {l=$NF} /Absolute upper-left Y/ {t=$NF} /Width:/ {w=$NF} /Height:/ {h=$NF}
             END {print l, t, w, h}')
    edges=$(xprop -id "$window" _NET_FRAME_EXTENTS | sed -n 's/.*= //p' | tr -d ,)
    read -r l r t b <<<"${edges:-0 0 0 0}"
    [ $((left - l)) -ge 0 ] && [ $((top - t)) -ge 0 ] &&
        [ $((left + width + r)) -le "${screen%x*}" ] && [ $((top + height + b)) -le "${screen#*x}" ] ||
        fail "the window for the picture \"$1\" reaches over the edge of the screen"
    maim -u -g "$((width + l + r))x$((height + t + b))+$((left - l))+$((top - t))" \
        "$out/$(printf '%02d' $pictures)-$1.png"
}

press() { xdotool key --clearmodifiers "$@"; settle; }
# The keyboard is switched to the language of the text, so that each letter is one plain key.
write() {
    case $1 in
        *[а-яА-ЯёЁ]*) setxkbmap ru ;;
        *) setxkbmap us ;;
    esac
    xdotool type --delay 20 "$1"
    setxkbmap us
    settle
}
# click LEFT TOP [BUTTON]: twips inside the window.
click() {
    xdotool mousemove --window "$window" $(($1 * percent / 1500)) $(($2 * percent / 1500)) click "${3:-1}"
    settle
}

# How many windows are up on the display, with or without a name.
windows_up() { xdotool search --onlyvisible --class '' 2>/dev/null | wc -l; }

# hover LEFT TOP: the pointer rests there until its tool tip comes up, which is a window of its own.
hover() {
    local deadline=$((SECONDS + 30)) before
    before=$(windows_up)
    xdotool mousemove --window "$window" $(($1 * percent / 1500)) $(($2 * percent / 1500))
    until [ "$(windows_up)" -gt "$before" ]; do
        [ $SECONDS -lt $deadline ] || fail "the tool tip did not come up"
        sleep 0.05
    done
    settle
}

# WIDTH and HEIGHT of the window, in pixels.
measure_window() { eval "$(xdotool getwindowgeometry --shell "$window" | grep -E '^(WIDTH|HEIGHT)=')"; }

# turn_wheel LEFT TOP BUTTON: as far as it goes, at a place where there is only bare ground; 4 is up, 5 down.
turn_wheel() {
    xdotool mousemove --window "$window" $(($1 * percent / 1500)) $(($2 * percent / 1500)) \
        click --repeat 12 --delay 4 "$3"
    settle
}

# What the pages need, and how much of the one that is open is out of sight; twips.
declare -A page_heights=([taxpayer]=7875 [accstream]=8415 [time]=4155 [template]=7395 [doc]=4965)
tab=
out_of_sight() {
    local WIDTH HEIGHT
    measure_window
    page_room=$((HEIGHT * 1500 / percent - 855 - 360 - 30))
    hidden=$((${page_heights[$tab]} - page_room))
    [ $hidden -gt 0 ] || hidden=0
}
scroll_page() { turn_wheel 110 600 "$1"; }

# on_page LEFT TOP [BUTTON]: the element at that place of the tab that is open.
on_page() {
    local hidden page_room top=$2
    out_of_sight
    if [ $hidden -gt 0 ]; then
        if [ $(($2 + 660)) -gt $page_room ]; then
            scroll_page 5
            top=$(($2 - hidden))
        else
            scroll_page 4
        fi
    fi
    click $(($1 + 30 + 120)) $((top + 360 + 120)) "${3:-1}"
}
# at_bottom LEFT: the button at that place of the dialog's bottom row, whose height is fixed.
at_bottom() {
    local WIDTH HEIGHT
    measure_window
    local left=$1
    [ "$left" -ge 0 ] || left=$((WIDTH * 1500 / percent + left))
    click $((left + 600)) $((HEIGHT * 1500 / percent - 855 + 180 + 240))
}

load=180 save=1800 save_as=3420 ok=-3450 cancel=-1875 # negative: from the right edge
tabs="taxpayer accstream time template doc"

declare -A tab_lefts=([taxpayer]=1125 [accstream]=3300 [time]=5550 [template]=7575 [doc]=9750)

# open_tab KEY: a click on the tab.
open_tab() {
    tab=$1
    click "${tab_lefts[$1]}" 180
}

# A page that is scrolled is shown from above and from below.
pictures_of_tabs() {
    local name hidden page_room
    for name in $tabs; do
        open_tab "$name"
        out_of_sight
        [ $hidden = 0 ] || scroll_page 4
        picture "$1-$name"
        [ $hidden = 0 ] && continue
        scroll_page 5
        picture "$1-$name-below"
    done
}

# A query file as a colleague might have left it. Its lists name records of the sample office.
write_colleagues_query() {
    iconv -f UTF-8 -t CP1251 >"$1" <<'QUERY'
<?xml version="1.0" encoding="windows-1251"?>
<VkDocQuery ver="1">
    <DocCriteria IsNotes="1" NotesMode="1"/>
    <TemplateCriteria IsTemplate="1" TemplatesMode="1">
        <Templates><i id="1001"/><i id="1002"/><i id="1003"/></Templates>
    </TemplateCriteria>
    <PeriodCriteria IsPeriods="1" PeriodCriterion="1" OnePeriodYear="2025" OnePeriodMonthID="16"
        RangePeriodYear1="2025" RangePeriodMonth1="1" RangePeriodYear2="2025" RangePeriodMonth2="12"/>
    <AccStreamCriteria IsAccStreamsList="1">
        <AccStreamsList><i id="9001"/><i id="9003"/></AccStreamsList>
    </AccStreamCriteria>
    <TaxpayersCriteria IsTaxpayers="1" TaxpayersType="1">
        <TaxpayersList><i id="101"/><i id="102"/><i id="103"/></TaxpayersList>
    </TaxpayersCriteria>
    <OtherOptions LastTab="taxpayer"/>
</VkDocQuery>
QUERY
}

dialog="Поиск документов"
question="Норвик: Критерии поиска документов"

# look_at_empty_dialog TAB ...: the first tabs.
look_at_empty_dialog() {
    local name
    press F7
    await "$dialog"
    for name in "$@"; do
        picture "empty-$name"
        press ctrl+Tab
    done
}

# look_at_picker LEFT TOP TITLE NAME: the picker that a button "Добавить ..." opens, left without a choice.
look_at_picker() {
    on_page "$1" "$2"
    await "$3"
    picture "$4"
    press Escape
    gone "$3"
    await "$dialog"
}

# With a name that is longer than its column.
look_at_streams() {
    on_page 8280 7620   # theAccStreamAdd
    await "Добавление комплектов отчетности"
    hover 3000 1560
    picture pick-streams
    press Escape
    gone "Добавление комплектов отчетности"
    await "$dialog"
}

# look_at_pickers all|some: some are those with the most columns.
look_at_pickers() {
    open_tab taxpayer
    on_page 420 180     # theIsTaxpayers
    look_at_picker 8340 6900 "Добавление налогоплательщиков, сдающих отчетность" pick-taxpayers # theTaxpayerAdd
    on_page 4260 540    # theOptMainOrgs
    [ "$1" = some ] ||
        look_at_picker 8340 6900 "Добавление головных организаций" pick-main-organisations # theTaxpayerAdd
    open_tab accstream
    on_page 420 3300    # theIsAccStreamsList
    look_at_streams
    open_tab template
    on_page 420 180     # theIsTemplate
    [ "$1" = some ] ||
        look_at_picker 8220 6420 "Добавление бланков отчетных документов" pick-forms # theTemplatesAdd
    on_page 3780 600    # theOptTemplate
    look_at_picker 8220 6420 "Бланки отчетных документов в различных версиях" pick-versions # theTemplatesAdd
}

# Two taxpayers are found by typing, marked and added to those of the query.
pick_taxpayers() {
    local title="Добавление налогоплательщиков, сдающих отчетность"
    open_tab taxpayer
    on_page 8340 6900   # theTaxpayerAdd
    await "$title"
    write "филиал"
    press Down space
    press Down space
    picture pick-with-filter
    press Return
    gone "$title"
    await "$dialog - .*"
    picture after-add
}

# A query with all criteria on. One thing is missing in it, the surname.
write_full_query() {
    iconv -f UTF-8 -t CP1251 >"$1" <<'QUERY'
<?xml version="1.0" encoding="windows-1251"?>
<VkDocQuery ver="1">
    <DocCriteria IsDocStatus="1" DocStatuses="15" IsNotes="1" NotesMode="2" Notes="срочно"
        IsSignDate="1" SignDate1="01.10.2025" SignDate2="31.12.2025" IsSignerFio="1" SignerSurname=""
        IsDocNum="1" DocNumMode="0" DocNum1="1" DocNum2="250" WholePfrCluster="1"/>
    <TemplateCriteria IsTemplate="1" TemplatesMode="1">
        <Templates><i id="1001"/><i id="1002"/><i id="1003"/></Templates>
    </TemplateCriteria>
    <PeriodCriteria IsPeriods="1" PeriodCriterion="2" OnePeriodYear="2025" OnePeriodMonthID="16"
        RangePeriodYear1="2025" RangePeriodMonth1="1" RangePeriodYear2="2025" RangePeriodMonth2="12"
        IsPeriodTypes="1" PeriodTypes="127"/>
    <AccStreamCriteria IsAccStreamType="1" AccStreamTypes="319" IsAccStreamOpeness="1" AccStreamOpen="1"
        IsContoraPrefix1="1" ContoraPrefix1="7701, 7702" IsContoraPrefix2="1" ContoraPrefix2="7703"
        ContoraJoining="1" IsAccStreamsList="1">
        <AccStreamsList><i id="9001"/><i id="9003"/></AccStreamsList>
    </AccStreamCriteria>
    <TaxpayersCriteria IsTaxpayers="1" TaxpayersType="2" IncludeMainOrgDocs="1">
        <TaxpayersList><i id="101"/><i id="102"/><i id="103"/></TaxpayersList>
    </TaxpayersCriteria>
    <OtherOptions LastTab="taxpayer"/>
</VkDocQuery>
QUERY
}

# load_query FILE
load_query() {
    at_bottom $load
    await "Открыть файл критериев поиска"
    write "$1"
    picture open-file
    press Return
    await "$dialog - \[$1\]"
}

state_search() {
    open_tab accstream
    on_page 420 180     # theIsAccStreamType
    on_page 900 660     # theAccStreamTypes(0)
    on_page 900 960     # theAccStreamTypes(1)
    on_page 5340 180    # theIsAccStreamOpeness
    on_page 5340 1500   # theIsContoraPrefix1
    on_page 9180 1500   # theContoraPrefix1
    write "7701, 7702"

    open_tab time
    on_page 720 1520    # theRangePeriods
    on_page 8280 660    # theIsPeriodTypes
    on_page 8700 1440   # thePeriodTypes(1)
    on_page 8700 1740   # thePeriodTypes(2)

    open_tab doc
    on_page 420 180     # theIsDocStatus
    on_page 1110 870    # theDocStatuses(1)
    on_page 1110 1170   # theDocStatuses(2)
    on_page 5280 150    # theIsSignDate
    on_page 5820 540    # theSignDate1
    press Home
    write "01.10.2025"
    on_page 5280 1260   # theIsSignerFio, with nothing in it yet
    on_page 465 3450    # theNotesLike
    on_page 2000 3405   # theNotes
    write "срочно"
    on_page 5280 2340   # theIsDocNum
}

be_warned_and_correct() {
    at_bottom $ok
    await "Параметры критериев поиска"
    picture fault
    press Return
    gone "Параметры критериев поиска"
    await "$dialog - .*"
    open_tab doc
    on_page 5900 1620   # theSignerSurname
    write "Петров"
    pictures_of_tabs filled
}

look_at_drop_downs() {
    open_tab time
    on_page 4300 1480   # thePerMonth1
    picture drop-down-month
    press Escape
    open_tab doc
    on_page 5820 540    # theSignDate1
    press alt+Down
    picture drop-down-date
    press Escape
    on_page 2000 3405 3 # theNotes, with the right button
    picture menu
    press Escape
}

save_query() {
    rm -f "$query"
    at_bottom $save_as
    await "Сохранить файл критериев поиска"
    press ctrl+a
    write "$query"
    picture save-file
    press Return
    await "$dialog - \[$query\]"
}

confirm() {
    at_bottom $ok
    await "$question"
    picture question
    press Tab Return    # no: the dialog stays
    gone "$question"
    await "$dialog - .*"
    at_bottom $ok
    await "$question"
    press Return        # yes is the default
    gone "$dialog - .*"
    await "Норвик"
    picture host-with-search
}

browser="Поиск бланков отчетных форм"

# find_form NAME TEXT: the text in place of the last one, and the first form that it leaves.
find_form() {
    click 5000 585      # theFilterA
    press ctrl+a
    write "$2"
    click 2000 1650     # theFormList, its first row
    picture "forms-$1"
}

browse_forms() {
    press F8
    await "$browser"
    picture forms-all
    write "декларация по"
    picture forms-letters
    find_form with-periods "ндс"
    find_form digits "1151"
    find_form other-and-empty-years "1150057"
    find_form other-alone "1150010"
    find_form nothing "такой формы нет"
    press Escape
    gone "$browser"
    await "Норвик"
}

look_at_browser() {
    press F8
    await "$browser"
    picture forms-all
    find_form with-periods "ндс"
    local WIDTH HEIGHT
    measure_window
    if [ $((HEIGHT * 1500 / percent)) -lt 8505 ]; then
        turn_wheel 200 990 5
        picture forms-with-periods-below
    fi
    press Escape
    gone "$browser"
    await "Норвик"
}

# What was typed and clicked has to be in the file.
check_query() {
    local wanted
    while IFS= read -r wanted; do
        iconv -f CP1251 -t UTF-8 "$query" | grep -F -- "$wanted" >/dev/null || fail "the saved query lacks: $wanted"
    done <<'WANTED'
IsDocStatus="1" DocStatuses="6"
IsNotes="1" NotesMode="2" Notes="срочно"
IsSignDate="1" SignDate1="01.10.2025" SignDate2=""
IsSignerFio="1" SignerSurname="Петров"
IsDocNum="1" DocNumMode="1"
IsTemplate="1" TemplatesMode="1"
<i id="1003" />
IsPeriods="1" PeriodCriterion="2"
IsPeriodTypes="1" PeriodTypes="6"
IsAccStreamType="1" AccStreamTypes="3"
IsAccStreamOpeness="1" AccStreamOpen="1"
IsContoraPrefix1="1" ContoraPrefix1="7701, 7702"
IsAccStreamsList="1"
IsTaxpayers="1" TaxpayersType="1"
WANTED
    [ "$(iconv -f CP1251 -t UTF-8 "$query" | sed -n '/<TaxpayersList>/,/<.TaxpayersList>/p' | grep -c "<i id=")" = 5 ] ||
        fail "the saved query has not three taxpayers and the two that were added"
}

start_host() {
    local options=()
    if [ "$colours" != light ]; then options=(--colours "$colours"); fi
    cd "$out"
    HOME=$work XDG_DATA_HOME=$work/data XDG_RUNTIME_DIR=$work "$host" "${options[@]}" &
    pids+=($!)
    await "Норвик"
    picture host
}

leave_host() {
    xdotool key ctrl+q
    gone "Норвик"
}

do_the_whole_job() {
    start_host
    # shellcheck disable=SC2086
    look_at_empty_dialog $tabs
    look_at_pickers all
    write_colleagues_query "$out/Colleague.qvk"
    load_query "$out/Colleague.qvk"
    pick_taxpayers
    state_search
    be_warned_and_correct
    look_at_drop_downs
    save_query
    confirm
    check_query
    browse_forms
    leave_host
}

look_at_all_windows() {
    start_host
    look_at_empty_dialog taxpayer
    look_at_pickers some
    write_full_query "$work/Full.qvk"
    load_query "$work/Full.qvk"
    be_warned_and_correct
    look_at_drop_downs
    save_query
    confirm
    look_at_browser
    leave_host
}

if [ -z "$round" ]; then
    play_all_rounds
    printf 'The tour is over: the pictures of the windows and the saved query are in %s\n' "$out"
    exit
fi
# shellcheck disable=SC2086
case " $(echo $rounds) " in
    *" $round "*) ;;
    *) printf 'tour: there is no round "%s", only %s\n' "$round" "$(echo $rounds)" >&2; exit 2 ;;
esac
IFS=- read -r screen percent colours <<<"$round"
if [ "$round" = $main_round ]; then
    road=do_the_whole_job
    query=$out/Query.qvk
else
    road=look_at_all_windows
    out=$out/$round
    query=$work/Query.qvk
    mkdir -p "$out"
fi
rm -f "$out"/[0-9][0-9]-*.png "$out/failed.png"
start_display
$road
printf 'tour %s: %d pictures of the windows are in %s\n' "$round" "$pictures" "$out"
