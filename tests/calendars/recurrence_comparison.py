#!/usr/bin/env python3
"""Compares this program's expansion of recurrence rules with that of python-dateutil.

Usage: recurrence_comparison.py PROBE [RULES] [SEED]

The rules are made at random, from a seed so that a failure can be had again. What dateutil does not
tell is the start as the first occurrence, which the comparison adds, and the change from wall time
to UTC, which the zone database of Python does.
"""
import datetime
import random
import subprocess
import sys
import zoneinfo

from dateutil import rrule

DAYS = ["MO", "TU", "WE", "TH", "FR", "SA", "SU"]
ZONES = ["America/New_York", "Europe/Berlin", "Australia/Lord_Howe", "America/Sao_Paulo",
         "Asia/Kolkata", "Africa/Casablanca", "Pacific/Apia", "UTC", "", "DATE"]
WINDOW_DAYS = [40, 400, 1500]
MOST = 9000  # this program keeps the first 10,000


def some(rng, values, most):
    return sorted(rng.sample(list(values), rng.randint(1, most)))


def joined(numbers):
    return ",".join(map(str, numbers))


def time_parts(rng, freq):
    parts = []
    if rng.random() < 0.15:
        parts.append("BYHOUR=" + joined(some(rng, range(24), 3)))
    if rng.random() < 0.15:
        parts.append("BYMINUTE=" + joined(some(rng, range(60), 3)))
    if freq == "SECONDLY" or (freq == "MINUTELY" and rng.random() < 0.8):
        parts = ["BYHOUR=" + joined(some(rng, range(24), 2)),
                 "BYMINUTE=" + joined(some(rng, range(60), 2))]
    return parts


def day_parts(rng, freq):
    parts = []
    if rng.random() < 0.35:
        parts.append("BYMONTH=" + joined(some(rng, range(1, 13), 4)))
    kind = rng.choice(["none", "weekday", "ordinal", "monthday", "yearday", "weekno", "both"])
    weekdays = some(rng, DAYS, 3)
    if kind == "weekday" or kind == "both":
        parts.append("BYDAY=" + ",".join(weekdays))
    if kind in ("monthday", "both") and freq != "WEEKLY":
        parts.append("BYMONTHDAY=" + joined(some(rng, [*range(1, 32), -1, -2, -15, -31], 5)))
    if kind == "ordinal" and freq in ("MONTHLY", "YEARLY"):
        parts.append("BYDAY=" + ",".join(
            str(rng.choice([1, 2, 3, 4, 5, -1, -2, -5])) + day for day in weekdays))
    if kind == "yearday" and freq in ("HOURLY", "YEARLY"):
        parts.append("BYYEARDAY=" + joined(some(rng, [*range(1, 367), -1, -100, -366], 5)))
    # Of the weeks that reach over the end of a year dateutil has half.
    if kind == "weekno" and freq == "YEARLY":
        parts.append("BYWEEKNO=" + joined(some(rng, [*range(2, 52)], 4)))
        parts.append("BYDAY=" + ",".join(weekdays))
    return parts


def random_rule(rng, is_date):
    freq = rng.choice(["YEARLY", "MONTHLY", "WEEKLY", "DAILY"] * 3
                      + ([] if is_date else ["HOURLY", "MINUTELY", "SECONDLY"]))
    # dateutil steps through every second.
    parts = ["FREQ=" + freq] + (day_parts(rng, freq) if freq != "SECONDLY" else [])
    if not is_date:
        parts += time_parts(rng, freq)
    by_week = any(part.startswith("BYWEEKNO") for part in parts)
    if rng.random() < 0.5 and not by_week:
        parts.append("INTERVAL=%d" % rng.choice([2, 3, 4, 5, 7, 13]))
    if rng.random() < 0.3:
        parts.append("WKST=" + rng.choice(DAYS))
    # A place that no set has sends dateutil to the year 9999.
    names = " ".join(parts)
    long_sets = freq in ("MONTHLY", "YEARLY") and "BY" in names and not by_week
    short_sets = "BYHOUR" in names if freq == "DAILY" else "BYDAY" in names and freq == "WEEKLY"
    if rng.random() < 0.3 and (long_sets or short_sets):
        parts.append("BYSETPOS=" + joined(some(rng, [1, 2, 3, -1, -2] if long_sets else [1, -1], 2)))
    if rng.random() < 0.3:
        parts.append("COUNT=%d" % rng.choice([1, 2, 5, 17, 100]))
    return ";".join(parts)


def utc(wall, zone):
    name = {"": "America/New_York", "DATE": "America/New_York"}.get(zone, zone)
    return wall.replace(tzinfo=zoneinfo.ZoneInfo(name)).astimezone(datetime.timezone.utc)


def expected(start, rule, zone, first, last):
    day = datetime.timedelta(days=2)
    begin, end = first.replace(tzinfo=None) - day, last.replace(tzinfo=None) + day
    # Without an end dateutil would look for what never comes until the year 9999.
    parts = [part for part in rule.split(";") if not part.startswith("COUNT=")]
    parts.append(end.strftime("UNTIL=%Y%m%dT%H%M%S"))
    try:
        times = rrule.rrulestr(";".join(parts), dtstart=start)
    except ValueError: # for an interval that never meets the minutes or hours asked for
        times = rrule.rruleset()
    if "COUNT=" in rule:
        count = int(rule.split("COUNT=")[1].split(";")[0])
        walls = [start] + times.between(start, end)[:count - 1]
    else:
        walls = [start] + times.between(begin, end, inc=True)
    found = set()
    for wall in walls:
        moment = utc(wall, zone)
        if first <= moment <= last:
            found.add(moment)
    return sorted(found)


# From the start on, for it does so without an end as well.
def window(rng, start, rule):
    if "SECONDLY" in rule or "MINUTELY" in rule:
        return start.replace(tzinfo=datetime.timezone.utc), 2
    year = start.year if "HOURLY" in rule else rng.randint(start.year, 2027)
    first = datetime.datetime(year, rng.randint(1, 12), 1, tzinfo=datetime.timezone.utc)
    return first, 40 if "HOURLY" in rule else rng.choice(WINDOW_DAYS)


def main():
    probe = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    rng = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 5545)
    cases = []
    for _ in range(count):
        zone = rng.choice(ZONES)
        start = datetime.datetime(rng.randint(1998, 2026), rng.randint(1, 12), rng.randint(1, 28),
                                  rng.choice([0, 1, 2, 3, 9, 23]), rng.choice([0, 15, 30]))
        if zone == "DATE":
            start = start.replace(hour=0, minute=0)
        rule = random_rule(rng, zone == "DATE")
        first, days = window(rng, start, rule)
        cases.append((zone, start, rule, first, first + datetime.timedelta(days=days)))
    form = "%Y%m%dT%H%M%S"
    lines = ["|".join([first.strftime(form) + "Z", last.strftime(form) + "Z", zone,
                       start.strftime("%Y%m%d" if zone == "DATE" else form), rule])
             for zone, start, rule, first, last in cases]
    answers = subprocess.run([probe], input="\n".join(lines) + "\n", text=True, check=True,
                             capture_output=True).stdout.split("\n")
    wrong = compared = filled = 0
    for case, line, answer in zip(cases, lines, answers):
        zone, start, rule, first, last = case
        wanted = expected(start, rule, zone, first, last)
        if len(wanted) > MOST:
            continue
        compared += 1
        filled += bool(wanted)
        # A day lasts, and touches a window that begins within it.
        got = [text for text in answer.split() if text >= first.strftime(form)]
        if got != [moment.strftime(form) + "Z" for moment in wanted]:
            wrong += 1
            if wrong <= 5:
                print("differs:", line, "\n  here:     ", got[:6], len(got),
                      "\n  elsewhere:", [m.strftime(form) for m in wanted[:6]], len(wanted))
    print(f"{compared} rules compared, {filled} of them with occurrences, {wrong} differ")
    sys.exit(1 if wrong or compared < count * 0.8 or filled < count * 0.2 else 0)


main()
