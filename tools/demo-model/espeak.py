"""Speech synthesis through the library of espeak-ng."""

import ctypes
from dataclasses import dataclass, field

import numpy as np

# Values of espeak-ng's speak_lib.h.
_AUDIO_OUTPUT_SYNCHRONOUS = 2
_INITIALIZE_PHONEME_EVENTS = 1
_POSITION_CHARACTER = 1
_CHARACTERS_UTF8 = 1
_EVENT_LIST_TERMINATED, _EVENT_WORD, _EVENT_PHONEME = 0, 1, 7
_RATE, _PITCH, _RANGE = 1, 3, 4


class _EventId(ctypes.Union):
    _fields_ = [("number", ctypes.c_int), ("name", ctypes.c_char_p),
                ("string", ctypes.c_char * 8)]


class _Event(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int),
                ("unique_identifier", ctypes.c_uint),
                ("text_position", ctypes.c_int), ("length", ctypes.c_int),
                ("audio_position", ctypes.c_int), ("sample", ctypes.c_int),
                ("user_data", ctypes.c_void_p), ("id", _EventId)]


_Samples = ctypes.POINTER(ctypes.c_short)
_Callback = ctypes.CFUNCTYPE(ctypes.c_int, _Samples, ctypes.c_int,
                             ctypes.POINTER(_Event))


@dataclass
class Speech:
    """What was spoken, and when. Times are seconds from the start."""

    sample_rate: int
    chunks: list[np.ndarray] = field(default_factory=list)
    # (index of the word's first character in the text, time)
    words: list[tuple[int, float]] = field(default_factory=list)
    # (phoneme mnemonic, time); pauses are empty or begin with "_"
    phonemes: list[tuple[str, float]] = field(default_factory=list)

    @property
    def samples(self) -> np.ndarray:
        """Return the sound, int16, at sample_rate."""
        return np.concatenate(self.chunks)


class Espeak:
    """The synthesizer. The library has global state: make one per process."""

    def __init__(self) -> None:
        """Load and initialise the library."""
        self._library = ctypes.CDLL("libespeak-ng.so.1")
        self.sample_rate: int = self._library.espeak_Initialize(
            _AUDIO_OUTPUT_SYNCHRONOUS, 0, None, _INITIALIZE_PHONEME_EVENTS)
        if self.sample_rate <= 0:
            raise RuntimeError("espeak-ng cannot be initialised")
        self._speech = Speech(self.sample_rate)
        # The library keeps only the address, so the object has to stay alive.
        self._callback = _Callback(self._receive)
        self._library.espeak_SetSynthCallback(self._callback)

    def _receive(self, samples, count: int, events) -> int:
        """Take over what the library has spoken; 0 asks it to go on."""
        if count > 0 and samples:
            chunk = np.ctypeslib.as_array(samples, (count,))
            self._speech.chunks.append(chunk.copy())
        index = 0
        while events[index].type != _EVENT_LIST_TERMINATED:
            event = events[index]
            time = event.audio_position / 1000.0
            if event.type == _EVENT_WORD:
                # The library counts characters from 1.
                self._speech.words.append((event.text_position - 1, time))
            elif event.type == _EVENT_PHONEME:
                phoneme = event.id.string.decode("latin1")
                self._speech.phonemes.append((phoneme, time))
            index += 1
        return 0

    def say(self, text: str, voice: str, rate: int, pitch: int,
            pitch_range: int) -> Speech:
        """Speak a text.

        rate is in words per minute; pitch and pitch_range are 0..100.
        """
        self._speech = Speech(self.sample_rate)
        if self._library.espeak_SetVoiceByName(voice.encode()) != 0:
            raise ValueError(f"espeak-ng has no voice {voice}")
        for parameter, value in ((_RATE, rate), (_PITCH, pitch),
                                 (_RANGE, pitch_range)):
            self._library.espeak_SetParameter(parameter, value, 0)
        encoded = text.encode() + b"\0"
        self._library.espeak_Synth(encoded, len(encoded), 0,
                                   _POSITION_CHARACTER, 0, _CHARACTERS_UTF8,
                                   None, None)
        self._library.espeak_Synchronize()
        return self._speech
