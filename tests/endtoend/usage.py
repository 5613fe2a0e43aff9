"""Usage logs in the form in which the program stores them, for tests, pictures and benchmarks."""

import datetime
import json
import random
import uuid

import dictation

REFERENCE_DATE = 978307200  # 2001-01-01 00:00:00 UTC, from which the log counts its seconds, as Unix time

# Desktop-file id, name, slot and share of the dictations.
APPLICATIONS = [
    ("org.mozilla.Thunderbird", "Thunderbird", 1, 30),
    ("org.gnome.TextEditor", "Text Editor", 2, 22),
    ("libreoffice-writer", "LibreOffice Writer", 3, 16),
    ("chromium", "Chromium", 4, 14),
    ("org.gnome.Terminal", "Terminal", None, 8),
    ("org.signal.Signal", "Signal", 5, 7),
    ("md.obsidian.Obsidian", "Obsidian", None, 3),
]

WORDS_PER_MINUTE = 130  # of somebody who dictates


def event(moment, words, application=(None, None), slot=None, minutes=None, chance=random):
    """A dictation at this moment (a datetime); application is the desktop-file id and the name."""
    record = {
        "id": str(uuid.UUID(int=chance.getrandbits(128), version=4)).upper(),
        "timestamp": moment.timestamp() - REFERENCE_DATE,
        "wordCount": words,
        "durationMinutes": words / WORDS_PER_MINUTE if minutes is None else minutes,
    }
    optional = {"slotIndex": slot, "targetBundleIdentifier": application[0], "targetAppName": application[1]}
    return {**record, **{key: value for key, value in optional.items() if value is not None}}


def store(events):
    """Puts them, oldest first, in the place of the user's log."""
    file = dictation.stored_document("usage")
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(json.dumps(sorted(events, key=lambda event: event["timestamp"])))


def year(now, seed=1):
    """A year of somebody who dictates at work, more and more, and hardly ever at weekends or on holiday."""
    chance = random.Random(seed)
    holidays = {start + day for start in (20, 130, 250) for day in range(chance.randrange(6, 16))}
    events = []
    for age in range(364, -1, -1):
        day = now - datetime.timedelta(days=age)
        habit = 0.35 + 0.65 * (1 - age / 365)
        habit *= 0.12 if day.weekday() >= 5 else 0.08 if age in holidays else 1.0
        for _ in range(round(chance.gauss(16, 5) * habit)):
            moment = day.replace(hour=8, minute=0) + datetime.timedelta(minutes=chance.triangular(0, 640, 150))
            events.append(_dictation_at(moment, chance))
    return [entry for entry in events if entry["timestamp"] <= now.timestamp() - REFERENCE_DATE]


def spread(count, now, seed=1):
    """So many dictations evenly over the year before now, in the slots' applications."""
    chance = random.Random(seed)
    step = datetime.timedelta(days=360) / count
    return [_dictation_at(now - step * number, chance) for number in range(count)]


def _dictation_at(moment, chance):
    weights = [share for *_, share in APPLICATIONS]
    identifier, name, slot, _ = chance.choices(APPLICATIONS, weights)[0]
    words = max(1, round(chance.lognormvariate(3.2, 0.7)))
    minutes = words / chance.gauss(WORDS_PER_MINUTE, 15)
    return event(moment, words, (identifier, name), slot if chance.random() < 0.7 else None, minutes, chance)
