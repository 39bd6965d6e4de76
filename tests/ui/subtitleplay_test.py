#!/usr/bin/python3
"""A WebVTT file played from the caption script window of the real program,
driven over the accessibility bus as the screen reader test drives it: the
file is chosen in the program's own file dialog, Play is pressed, and each
change of the sign must arrive within 50 ms of its cue time, counted from
the first frame Play sends.
    tests/ui/subtitleplay_test.py build/zelvan21
Exits 77 (skipped) when the bus or its Python bindings are missing.
"""

import os
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import screenreader_test as bus  # noqa: E402  (the bus session and the program rig)
from screenreader_test import act, find, wait_for  # noqa: E402

# NOTE and STYLE blocks, cue settings, voice and italic tags, a cue of 54
# characters, an overlap, a gap and a five-line cue on a three-row sign.
VTT = """WEBVTT - a short scene

STYLE
::cue { color: yellow }

NOTE for the editor,
over two lines

1
00:00:01.000 --> 00:00:03.000 align:start position:10%
<v Anna>We're actually at the Lucern Hotel, just down the street

00:00:02.500 --> 00:00:04.000 line:0
<i>[music]</i> \u266a la la \u266a

00:00:05.000 --> 00:00:06.500
<v.loud Ben>Over here!</v>

00:00:07.000 --> 00:00:09.000
One
Two
Three
Four
Five
"""

# When each change reaches the sign, in ms from the first, and a text it
# holds as the sign's bytes (reversed, the music note as 0x7F).
EXPECTED = [
    (0, None),
    (1000, b"nrecuL eht ta yllautca er'eW"),
    (2500, b"\x7f al al \x7f ]cisum["),
    (3000, None),
    (4000, None),
    (5000, b"!ereh revO"),
    (6500, None),
    (7000, b"eerhT"),
    (8000, b"eviF"),
    (9000, None),
]
LIMIT_MS = 50


def choose_file(program, path):
    main = program.window("Zelvan 21")
    act(find(main, "menu item", "TDS File", depth=20), "Press")
    tds = program.window("Input: TDS File")
    act(find(tds, "push button", "Browse"), "Press")
    dialog = wait_for(lambda: (program.app.clear_cache(), find(program.app, "dialog", depth=3))[1])
    name = find(dialog, "text", "File name:", depth=20)
    name.set_text_contents(path)
    name.grab_focus()
    time.sleep(0.3)
    bus.Atspi.generate_keyboard_event(0xFF0D, None, bus.Atspi.KeySynthType.SYM)  # Return
    return tds


def changes_while_playing(program, play, seconds):
    """Each burst of frames the sign gets, with its arrival time."""
    program.sign.take()
    act(play, "Press")
    start, bursts = time.monotonic(), []
    while time.monotonic() - start < seconds:
        got = program.sign.take(5)
        if got:
            bursts.append((time.monotonic(), got))
    return bursts


def main(binary):
    if os.environ.get("ZELVAN_IN_SESSION") != "1":
        return bus.in_a_session_of_its_own(binary, __file__)
    folder = tempfile.mkdtemp(prefix="zelvan-vtt-")
    path = os.path.join(folder, "scene.vtt")
    with open(path, "w", encoding="utf-8") as f:
        f.write(VTT)
    program = bus.Program(binary)
    try:
        assert wait_for(lambda: program.sign.take()), "the startup caption never came"
        tds = choose_file(program, path)
        play = wait_for(lambda: (tds.clear_cache(), find(tds, "push button", "Play"))[1])
        assert play, "no Play button after the file was chosen"
        bursts = changes_while_playing(program, play, 10.5)
    finally:
        program.end()
    assert len(bursts) == len(EXPECTED), [b for _, b in bursts]
    first = bursts[0][0]
    for (at, got), (due, text) in zip(bursts, EXPECTED):
        late = (at - first) * 1000 - due
        print(f"{due:6d} ms  {late:+6.1f} ms  {got[-40:]!r}")
        assert abs(late) <= LIMIT_MS, f"the change due at {due} ms came {late:+.1f} ms off"
        assert text is None or text in got, f"{text!r} missing at {due} ms"
    print("ok")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
