"""What the genres play: tempi, and grooves written down as steps of a sixteenth.

In a line of steps `X` is an accent, `x` a stroke, `o` a ghost note, `?` a stroke that comes half
of the time. Voices are those of samples.py. Several lines of a voice are used one a bar.
"""

from dataclasses import dataclass


@dataclass(frozen=True)
class Genre:
    """How a kind of music goes; the tempo is the one DJs and shops give for it."""

    slowest: float
    fastest: float
    grooves: tuple
    # Lines of steps for the bass.
    bass: tuple
    # Of "pad", "stab", "skank", "arpeggio" and "none".
    chords: tuple = ("pad", "stab")
    # At most so far is every second sixteenth late, in sixteenths.
    swing: float = 0.0
    # The share of pieces with a played loop below or instead of the groove.
    loops: float = 0.0
    # Milliseconds that strokes are off at most.
    looseness: float = 2.0


def groove(**voices):
    return {voice: tuple(lines.split()) for voice, lines in voices.items()}


FOUR = "X...X...X...X..."
BACK = "....X.......X..."
OFF_HAT = "..x...x...x...x."
EIGHTHS = "x.x.x.x.x.x.x.x."
ALL = "xoxoxoxoxoxoxoxo"
HALF_BACK = "........X......."
OFF_BASS = "..x...x...x...x."
ROLLING = ".xxx.xxx.xxx.xxx"

GENRES = {
    "house": Genre(118, 128, (
        groove(kick=FOUR, clap=BACK, open=OFF_HAT),
        groove(kick=FOUR, clap=BACK, open=OFF_HAT, hat=ALL, perc="..x..x...?x..x.."),
        groove(kick=FOUR, snare=BACK, hat=EIGHTHS, perc="x..x..x...x.x...")),
        ("x.....x...x.....", OFF_BASS, "x..x..x...x..x.."), swing=0.25),
    "tech house": Genre(122, 130, (
        groove(kick=FOUR, clap=BACK, hat=".xx..xx..xx..xx.", perc="?.x..x..x.x..?x."),
        groove(kick=FOUR, open=OFF_HAT, rim="...x..x....x..x.", hat=ALL)),
        ("..xx..x...xx..x.", "x..x...x..x..x.."), ("stab", "none"), swing=0.2),
    "techno": Genre(126, 148, (
        groove(kick=FOUR, open=OFF_HAT),
        groove(kick=FOUR, hat=ALL, clap="............x...", perc="..x..x..x..x..x."),
        groove(kick=FOUR, ride="..x...x...x...x.", rim="...x.....?x....."),
        groove(kick=FOUR, hat="..x...x...x...x.", tom="x..x..x..x..x..x")),
        (ROLLING, OFF_BASS, "xxxxxxxxxxxxxxxx"), ("stab", "none", "pad")),
    "trance": Genre(132, 142, (
        groove(kick=FOUR, clap=BACK, open=OFF_HAT),
        groove(kick=FOUR, snare=BACK, open=OFF_HAT, hat=ALL)),
        (OFF_BASS, ROLLING), ("pad", "arpeggio")),
    "psytrance": Genre(138, 148, (
        groove(kick=FOUR, open=OFF_HAT, clap=BACK),
        groove(kick=FOUR, hat=OFF_HAT, perc="..x..x....x..x..")),
        (ROLLING,), ("arpeggio", "none")),
    "disco": Genre(112, 124, (
        groove(kick=FOUR, snare=BACK, open=OFF_HAT, hat="x...x...x...x..."),
        groove(kick=FOUR, snare=BACK, hat="xoxxxoxxxoxxxoxx", perc="x.xxx.x.x.xxx.x.")),
        ("x.x.x.x.x.x.x.x.", "x..xx.x.x..xx.x."), ("stab", "skank"), looseness=8),
    "garage": Genre(128, 136, (
        groove(kick="X.........x.....", clap=BACK, hat="..x..ox...x..ox.", rim="...?..x....x..?."),
        groove(kick="X.....x...x..... X......x..x.....", snare=BACK, hat="x.x.xox.x.x.xoxo")),
        ("x.....x...x..x..", "x..x......x....."), ("stab", "pad"), swing=0.5),
    "breaks": Genre(126, 138, (
        groove(kick="X.........X.....", snare=BACK, hat=EIGHTHS),
        groove(kick="X..x......X..x..", snare="....X..o.o..X...", hat=EIGHTHS)),
        ("x..x..x...x.....", "x.....x.x..x...."), loops=0.5, swing=0.15),
    "electro": Genre(124, 136, (
        groove(kick="X..x..x...x.....", snare=BACK, hat=ALL, perc="x..x..x...x..x.."),
        groove(kick="X.....x...x..x..", clap=BACK, hat=EIGHTHS)),
        ("x.xx.x.xx.xx.x.x", "x..x..x.x..x..x."), ("stab", "arpeggio")),
    "pop": Genre(96, 126, (
        groove(kick="X.......X.......", snare=BACK, hat=EIGHTHS),
        groove(kick=FOUR, clap=BACK, hat=EIGHTHS),
        groove(kick="X..x....X.x.....", snare=BACK, hat=EIGHTHS, perc="xoxoxoxoxoxoxoxo")),
        ("x.x.x.x.x.x.x.x.", "x.......x.x....."), ("pad", "stab"), looseness=5),
    "rock": Genre(100, 150, (
        groove(kick="X.......X.......", snare=BACK, hat=EIGHTHS),
        groove(kick="X.x.....X.x.....", snare=BACK, ride=EIGHTHS),
        groove(kick="X......xX.......", snare=BACK, open="x...x...x...x...")),
        ("x.x.x.x.x.x.x.x.", "x...x...x...x..."), ("stab", "pad"), looseness=10),
    "funk": Genre(94, 114, (
        groove(kick="X.x.......x..x..", snare="....X..o.o.oX..o", hat=ALL),
        groove(kick="X..x..x...x.....", snare="....X..o.o..X..o", hat=EIGHTHS)),
        ("x.....xx.x.x..x.", "x..x..x..x.x..x."), ("skank", "stab"), loops=0.2, looseness=8,
        swing=0.2),
    "drum and bass": Genre(168, 178, (
        groove(kick="X.........X.....", snare=BACK, hat=EIGHTHS),
        groove(kick="X.........X.....", snare="....X..o....X..o", hat=ALL),
        groove(kick="X.....?...X.....", snare="....X....o..X...", ride="x.x.x.x.x.x.x.x."),
        groove(kick="X..............." " X.........X.....", snare=BACK, hat="..x...x...x...x."),
        groove(kick="X.........x..x..", snare="....X..o.o..X..o", hat=EIGHTHS, perc=ALL)),
        ("x...............", "x.........x.....", "x.x...x...x.x...", "xxxxxxxxxxxxxxxx"),
        ("pad", "none", "stab"), loops=0.25),
    "jungle": Genre(158, 174, (
        groove(kick="X.X.......XX....", snare="....X..o.o..X..o", ride=EIGHTHS),
        groove(kick="X.X.......X..... X.X.......X.....", snare="....X..o.o..X..o ....X..o.o....X.",
               hat=EIGHTHS),
        groove(kick="X.......x.X..... ..X.......X.....", snare="....X..X.o..X..o ....X..o.o.X..X.",
               ride="x.x.x.x.x.x.x.x.")),
        ("x...............", "x.....x.........", "x...x.......x..."), ("pad", "none", "skank"),
        loops=0.7, looseness=6),
    "halftime": Genre(165, 174, (
        groove(kick="X...............", snare=HALF_BACK, hat=EIGHTHS),
        groove(kick="X.....X.........", snare=HALF_BACK, hat=ALL, perc="..x..x....x..x.?"),
        groove(kick="X...........x.x.", snare=HALF_BACK, hat="x.x.x.xxx.x.xxx.", rim="..x.....x.....x.")),
        ("x...............", "x.....x.....x...", "x.x.x.x...x.x.x."), ("pad", "none")),
    "dubstep": Genre(138, 144, (
        groove(kick="X...............", snare=HALF_BACK, hat="x.x.x.x.x.x.x.x."),
        groove(kick="X.....x......... X...........x...", snare=HALF_BACK, hat="x..x..x.x..x..x."),
        groove(kick="X..........x....", snare=HALF_BACK, hat="..x...x...x...x.", rim="...x..x....x..?."),
        groove(kick="X.....X.....x...", clap=HALF_BACK, hat=EIGHTHS, perc="..x..x....x..x..")),
        ("xxxxxxxxxxxxxxxx", "x.x.x.x.x.x.x.x.", "x..x..x..x..x..x", "x.......x......."),
        ("pad", "none"), swing=0.15),
    "trap": Genre(130, 152, (
        groove(kick="X.....x...x.....", snare=HALF_BACK, hat="x.x.x.x.x.x.x.x."),
        groove(kick="X..........x.... X.....x.....x...", clap=HALF_BACK,
               hat="x.x.xxx.x.x.x.xx x.x.x.xxx.xxx.x."),
        groove(kick="X..x......x.....", snare=HALF_BACK, hat=ALL, open="..............x.")),
        ("x..........x....", "x.....x...x....."), ("pad", "arpeggio", "none")),
    "footwork": Genre(156, 164, (
        groove(kick="X..X..X.X..X..X.", clap=HALF_BACK, hat=OFF_HAT),
        groove(kick="X.....X.....X... X..X..X...X...X.", snare="............X...", hat=OFF_HAT,
               perc="x..x..x..x..x..x"),
        groove(kick="X..X..X..X..X.X.", clap="....x.......X...", hat=EIGHTHS, rim="..x..x..x..x..x.")),
        ("x..x..x.x..x..x.", "x...............", "xxxxxx..x..x..x."), ("stab", "none", "pad")),
    "hip hop": Genre(82, 102, (
        groove(kick="X.......X.x.....", snare=BACK, hat=EIGHTHS),
        groove(kick="X..x...x..x.....", snare=BACK, hat=EIGHTHS, open="..............x."),
        groove(kick="X......x.xx.....", snare="....X..o....X..o", hat="x.xxx.x.x.xxx.x.")),
        ("x.......x.x.....", "x..x...x..x....."), ("stab", "pad", "skank"), swing=0.5, loops=0.15,
        looseness=10),
    "reggaeton": Genre(88, 102, (
        groove(kick=FOUR, snare="...x..x....x..x."),
        groove(kick=FOUR, snare="...x..x....x..x.", hat=EIGHTHS),
        groove(kick="X.......X.......", rim="...x..x....x..x.", hat=ALL)),
        ("x..x..x.x..x..x.", "x.....x.x.....x."), ("stab", "pad")),
    "dub": Genre(64, 78, (
        groove(rim=HALF_BACK, kick=HALF_BACK, hat="x.x.x.x.x.x.x.x."),
        groove(kick="X.......X.......", snare=HALF_BACK, hat="x.xox.xox.xox.xo"),
        groove(kick=FOUR, rim=HALF_BACK, hat="x.x.x.x.x.x.x.x.")),
        ("x..x..x.....x...", "x.....x.x.x.....", "....x.x.x.....x."), ("skank",), swing=0.3,
        looseness=8),
    "downtempo": Genre(80, 104, (
        groove(kick="X.......x.......", snare=BACK, hat=EIGHTHS),
        groove(kick="X.....x...x.....", rim=BACK, hat="..x...x...x...x.", perc="x..x..x...x..x..")),
        ("x...............", "x.......x......."), ("pad", "arpeggio"), swing=0.3, loops=0.15),
}
