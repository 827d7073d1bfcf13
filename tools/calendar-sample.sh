#!/usr/bin/env bash
# Writes sample calendars into a throw-away HOME, with times counted from now, so the calendar page
# and the closed notch's meeting countdown can be seen without touching anyone's own calendars:
#   tools/calendar-sample.sh DIR && tools/screenshots.sh --seed DIR --pages calendar
# Two calendars (khal's vdir layout, with display names and colours), a meeting 7 minutes from now
# with a Zoom link, a weekly stand-up, an all-day offsite, a declined invitation and a Norva-only
# meeting in Norva's own data folder.
set -euo pipefail
home=${1:?usage: calendar-sample.sh DIR}
cal=$home/.local/share/calendars
mkdir -p "$cal/work" "$cal/home" "$home/.local/share/Norva"
printf 'Work' > "$cal/work/displayname"
printf '#4f8cff' > "$cal/work/color"
printf 'Home' > "$cal/home/displayname"
printf '#e5a50a' > "$cal/home/color"

utc() { date -u -d "$1" +%Y%m%dT%H%M%SZ; }
day() { date -d "$1" +%Y%m%d; }
event() { # folder uid start end summary [extra lines]
    local folder=$1 uid=$2 start=$3 end=$4 summary=$5 extra=${6:-}
    {
        printf 'BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Norva sample//EN\r\nBEGIN:VEVENT\r\n'
        printf 'UID:%s\r\nDTSTAMP:%s\r\n%s\r\n%s\r\nSUMMARY:%s\r\n' "$uid" "$(utc now)" "$start" "$end" "$summary"
        [ -z "$extra" ] || printf '%b' "$extra"
        printf 'END:VEVENT\r\nEND:VCALENDAR\r\n'
    } > "$cal/$folder/$uid.ics"
}
soon=$(( $(date +%s) / 60 * 60 + 7 * 60 ))
event work design-review "DTSTART:$(utc "@$soon")" "DTEND:$(utc "@$((soon + 30 * 60))")" "Design review" \
    'LOCATION:Zoom\r\nDESCRIPTION:Join Zoom Meeting https://acme.zoom.us/j/83451234567?pwd=abc\r\n'
event work standup "DTSTART:$(utc "tomorrow 09:30")" "DTEND:$(utc "tomorrow 09:45")" "Stand-up" \
    'RRULE:FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR\r\nURL:https://meet.google.com/abc-defg-hij\r\n'
event work planning "DTSTART:$(utc "+2 days 14:00")" "DTEND:$(utc "+2 days 15:00")" "Quarter planning" \
    'DESCRIPTION:Click here to join the meeting<https://teams.microsoft.com/l/meetup-join/19%3ameeting_NjQ5%40thread.v2/0>\r\n'
event work allhands "DTSTART:$(utc "+3 days 16:00")" "DTEND:$(utc "+3 days 17:00")" "All hands" \
    'ATTENDEE;PARTSTAT=DECLINED:mailto:you@example.com\r\nATTENDEE;PARTSTAT=ACCEPTED:mailto:boss@example.com\r\n'
event home offsite "DTSTART;VALUE=DATE:$(day "+5 days")" "DTEND;VALUE=DATE:$(day "+7 days")" "Team offsite"
event home dentist "DTSTART:$(utc "+8 days 11:00")" "DTEND:$(utc "+8 days 11:30")" "Dentist"

start=$(date -u -d "+1 day 17:00" +%Y-%m-%dT%H:%M:%S.000Z)
end=$(date -u -d "+1 day 17:30" +%Y-%m-%dT%H:%M:%S.000Z)
cat > "$home/.local/share/Norva/meetings.json" <<JSON
[{"id": "5b7f3c2a-1d4e-4f6a-9b8c-0a1b2c3d4e5f", "title": "Call with Sam", "start": "$start", "end": "$end",
  "joinURL": "https://whereby.com/sam-and-me"}]
JSON
