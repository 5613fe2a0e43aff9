"""The dashboard window: its figures are those of the usage log, its slots those that dictations go to."""

import datetime
import unittest
from collections import Counter

import dictation
import targets
import usage
import windows
from test_applications import SENTENCES
from test_failures import DictationTestCase
from windows import BUTTON, RADIO_BUTTON, TAB

DICTATIONS = 10
EARLIER = [
    # days ago, words, application, slot
    (1, 40, ("org.xfce.mousepad", "Mousepad"), 1),
    (40, 30, ("debian-xterm", "XTerm"), None),
    (200, 25, ("debian-xterm", "XTerm"), None),
]


def moment(event):
    return datetime.datetime.fromtimestamp(event["timestamp"] + usage.REFERENCE_DATE)


def start_of_week(day):
    """Weeks begin on Monday in the tests' locale."""
    return day - datetime.timedelta(days=day.weekday())


def usage_card(events):
    """The three figures of a card as it shows them."""
    words = sum(event["wordCount"] for event in events)
    minutes = sum(event["durationMinutes"] for event in events)
    return [f"{len(events)} recordings", f"{words} words", f"{minutes:.1f} mins"]


class DashboardTestCase(DictationTestCase):
    def open_dashboard(self, program, tab=None):
        window = program.open_dashboard()
        if tab:
            window.find(tab, TAB).click()
        return window

    def find_after(self, window, title, count):
        """The texts that follow the text with this title."""
        texts = window.texts()
        start = texts.index(title) + 1
        return texts[start : start + count]


class Figures(DashboardTestCase):
    def setUp(self):
        dictation.prepare_profile(slots=["org.xfce.mousepad"])
        now = datetime.datetime.now()
        usage.store(
            [
                usage.event(now - datetime.timedelta(days=days), words, application, slot)
                for days, words, application, slot in EARLIER
            ]
        )

    def dictate_all(self):
        with targets.start("mousepad"), windows.Program() as program:
            for number in range(DICTATIONS):
                program.speak_and_insert(SENTENCES[number % len(SENTENCES)], slot=1 if number % 2 else None)

    def events_since(self, start):
        return [event for event in self.events if moment(event).date() >= start]

    def test_after_ten_dictations_they_are_what_the_log_implies(self):
        self.dictate_all()
        self.events = dictation.usage_events()
        self.assertEqual(len(self.events), DICTATIONS + len(EARLIER))
        with windows.Program() as program:
            dashboard = self.open_dashboard(program)
            self.check_overview(dashboard)
            dashboard.find("Usage Stats", TAB).click()
            self.check_statistics(dashboard)

    def check_overview(self, dashboard):
        today = datetime.date.today()
        dashboard.find("Usage Overview")
        cards = {
            "Today": self.events_since(today),
            "This Week": self.events_since(start_of_week(today)),
            "This Month": self.events_since(today.replace(day=1)),
        }
        for title, events in cards.items():
            self.assertEqual(self.find_after(dashboard, title, 3), usage_card(events), title)
        words = sum(event["wordCount"] for event in self.events)
        self.assertTrue(dashboard.has(f"Average words per recording: {words / len(self.events):.1f}"))

        applications = Counter(event["targetAppName"] for event in self.events)
        shown = self.find_after(dashboard, "Top Destination Apps", len(applications))
        self.assertEqual(shown, [f"{name}, {count} rec" for name, count in applications.most_common()])
        of_slot = sum(event.get("slotIndex") == 1 for event in self.events)
        self.assertEqual(self.find_after(dashboard, "Hotbar Slot Usage", 1), [f"Slot 1, {of_slot}"])

    def check_statistics(self, dashboard):
        last_30_days = self.events_since(datetime.date.today() - datetime.timedelta(days=29))
        for period, events in {"Daily": last_30_days, "Monthly": self.events}.items():
            dashboard.find("Bar", RADIO_BUTTON).click()
            dashboard.find(period, RADIO_BUTTON).click()
            dashboard.find(f"Recordings: {len(events)}")
            dashboard.find(f"Words: {sum(event['wordCount'] for event in events)}")
            dashboard.find(f"Minutes: {sum(event['durationMinutes'] for event in events):.1f}")

    def test_the_heatmap_and_the_period_agree(self):
        with windows.Program() as program:
            dashboard = self.open_dashboard(program, "Usage Stats")
            dashboard.find("Weekly", RADIO_BUTTON).click()
            dashboard.find("Heatmap", RADIO_BUTTON).click()
            self.wait_until(lambda: dashboard.find("Daily", RADIO_BUTTON).has_state("checked"))
            dashboard.find("Monthly", RADIO_BUTTON).click()
            self.wait_until(lambda: dashboard.find("Bar", RADIO_BUTTON).has_state("checked"))


class Slots(DashboardTestCase):
    def button(self, dashboard, name, slot):
        def of_slot():
            return [button for button in dashboard.all(name, BUTTON) if button.description == f"Slot {slot}"]

        return windows.wait_for(of_slot, f"{name} of slot {slot}")[0]

    def test_a_slot_gets_the_front_application_and_dictates_into_it(self):
        with targets.start("mousepad") as editor, windows.Program() as program:
            dashboard = self.open_dashboard(program, "Hotbar Apps")
            self.button(dashboard, "Assign Frontmost", 2).click()
            dashboard.find("Mousepad")
            dictation.wait_for_settings(lambda stored: "bundleIdentifier" in stored["hotbarAssignments"][1])
            slot = dictation.stored_settings()["hotbarAssignments"][1]
            self.assertEqual((slot["slotIndex"], slot["bundleIdentifier"]), (2, "org.xfce.mousepad"))
            text = program.speak_and_insert(SENTENCES[0], slot=2)
            self.assertEqual(editor.wait_for_text(text), text)

            self.button(dashboard, "Clear", 2).click()
            dashboard.wait_until_gone("Mousepad")
            dictation.wait_for_settings(lambda stored: "bundleIdentifier" not in stored["hotbarAssignments"][1])

    def record(self, dashboard, slot, chord, shown):
        self.button(dashboard, "Record Shortcut", slot).click()
        dashboard.find("Press a key combination now.")
        dictation.press(chord)
        dialog = dashboard.find("Record Shortcut", windows.DIALOG)
        dialog.find(shown)
        dialog.find("Save", BUTTON).click()
        dashboard.wait_until_gone("Save", BUTTON)

    def test_a_recorded_shortcut_is_the_slots_until_it_is_reset(self):
        with targets.start("mousepad") as editor, windows.Program() as program:
            dashboard = self.open_dashboard(program, "Hotbar Apps")
            self.button(dashboard, "Assign Frontmost", 1).click()
            self.record(dashboard, 1, "ctrl+alt+m", "⌥⌃M")
            dashboard.find("⌥⌃M")
            dictation.press("ctrl+alt+m")
            program.wait_for_state("recording")
            dictation.play(SENTENCES[0])
            dictation.press("ctrl+alt+m")
            text = program.wait_for_transcript()
            self.assertEqual(editor.wait_for_text(text), text)

            dashboard = program.bring_to_front("Dashboard")
            self.button(dashboard, "Reset Shortcut", 1).click()
            dashboard.wait_until_gone("⌥⌃M")
            dictation.wait_for_settings(lambda stored: "shortcut" not in stored["hotbarAssignments"][0])

    def test_shortcuts_that_are_taken_are_refused(self):
        refusals = {
            (dictation.MAIN_SHORTCUT, "⌘⇧Space"): "That shortcut conflicts with the main recording shortcut.",
            ("super+alt+1", "⌘⌥1"): "That shortcut is already used by slot 1.",
        }
        with windows.Program() as program:
            dashboard = self.open_dashboard(program, "Hotbar Apps")
            for (chord, shown), message in refusals.items():
                self.record(dashboard, 2, chord, shown)
                self.assertEqual(program.wait_for_error(), message)
                slots = dictation.stored_settings()["hotbarAssignments"]
                self.assertFalse([slot for slot in slots if "shortcut" in slot])
                popover = program.open_popover()
                popover.find(message)
                program.close_popover()


if __name__ == "__main__":
    unittest.main()
