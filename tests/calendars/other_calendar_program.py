#!/usr/bin/env python3
"""Reads and writes a folder of calendar files with the icalendar library of Python.

Usage: other_calendar_program.py read FOLDER       a JSON record for each event, by start
       other_calendar_program.py write FOLDER      makes the events that the test looks for
       other_calendar_program.py rename FOLDER OLD NEW
"""
import datetime
import json
import pathlib
import sys
import uuid

import icalendar
import pytz


def calendars(folder):
    for path in sorted(pathlib.Path(folder).glob("*.ics")):
        yield path, icalendar.Calendar.from_ical(path.read_bytes())


def moment(value):
    if not isinstance(value, datetime.datetime):
        return value.isoformat()
    return value.astimezone(datetime.timezone.utc).strftime("%Y-%m-%d %H:%M")


def record(event):
    excluded = event.get("EXDATE", [])
    excluded = excluded if isinstance(excluded, list) else [excluded]
    return {
        "uid": str(event["UID"]),
        "summary": str(event["SUMMARY"]),
        "start": moment(event.decoded("DTSTART")),
        "end": moment(event.decoded("DTEND")) if "DTEND" in event else None,
        "location": str(event["LOCATION"]) if "LOCATION" in event else None,
        "description": str(event["DESCRIPTION"]) if "DESCRIPTION" in event else None,
        "recurrence": moment(event.decoded("RECURRENCE-ID")) if "RECURRENCE-ID" in event else None,
        "excluded": [moment(time.dt) for entry in excluded for time in entry.dts],
        "errors": [str(error) for error in event.errors],
    }


def read(folder):
    records = []
    for _, calendar in calendars(folder):
        zones = {str(zone["TZID"]) for zone in calendar.walk("VTIMEZONE")}
        for event in calendar.walk("VEVENT"):
            named = event["DTSTART"].params.get("TZID")
            assert named is None or named in zones, f"{named} is not defined"
            records.append(record(event))
    records.sort(key=lambda entry: (entry["start"], entry["recurrence"] or ""))
    print(json.dumps(records))


def write(folder):
    berlin = pytz.timezone("Europe/Berlin")  # of other zones the library writes "CEST" for a name
    plain = icalendar.Event()
    plain.add("summary", "Fahrrad; Öl, Kette")
    plain.add("dtstart", berlin.localize(datetime.datetime(2025, 5, 1, 15, 0)))
    plain.add("dtend", berlin.localize(datetime.datetime(2025, 5, 1, 16, 0)))
    plain.add("description", "first\nsecond " + "long " * 40)
    day = icalendar.Event()
    day.add("summary", "Whole day")
    day.add("dtstart", datetime.date(2025, 5, 2))
    series = icalendar.Event()
    series.add("summary", "Series")
    series.add("dtstart", berlin.localize(datetime.datetime(2025, 3, 28, 9, 0)))
    series.add("duration", datetime.timedelta(minutes=20))
    series.add("rrule", {"freq": "daily", "count": 4})
    series.add("exdate", [berlin.localize(datetime.datetime(2025, 3, 29, 9, 0))])
    for number, event in enumerate([plain, day, series]):
        event.add("uid", f"other-{number}")
        event.add("dtstamp", datetime.datetime(2025, 1, 1, tzinfo=datetime.timezone.utc))
        calendar = icalendar.Calendar()
        calendar.add("version", "2.0")
        calendar.add("prodid", "-//Other//EN")
        calendar.add_component(event)
        pathlib.Path(folder, f"{uuid.uuid4()}.ics").write_bytes(calendar.to_ical())


def rename(folder, old, new):
    for path, calendar in calendars(folder):
        for event in calendar.walk("VEVENT"):
            if str(event["SUMMARY"]) == old:
                event["SUMMARY"] = icalendar.vText(new)
                path.write_bytes(calendar.to_ical())


{"read": read, "write": write, "rename": rename}[sys.argv[1]](*sys.argv[2:])
