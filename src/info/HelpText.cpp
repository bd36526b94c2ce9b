#include "info/Arguments.h"

const char* const kInfoUsage =
    "Usage: qsbinfo [--tree | --effects | --json | --check] [--all] FILE\n"
    "       qsbinfo diff [--tolerance T | --exact] [--all] FILE FILE\n"
    "       qsbinfo --help | --version\n";

const char* const kInfoHelp =
    "\n"
    "Tells what a QSA or QSB scene file holds. Nothing is written or changed.\n"
    "\n"
    "  FILE             counts, bounds, animation, materials, textures, warnings\n"
    "  --tree           the objects by their parents\n"
    "  --effects        the technique of each material's effect, and why none before it\n"
    "  --json           everything but vertices, faces and keys, as JSON\n"
    "  --check          looks for damage: exit status 0 for a sound file, else 1\n"
    "  diff A B         what differs, a line each: PATH: VALUE IN A | VALUE IN B\n"
    "  --tolerance T    numbers that differ by no more than T are the same; without it,\n"
    "                   those that the QSB format rounds to the same\n"
    "  --exact          only equal numbers are the same\n"
    "  --all            lists and comparisons in full length\n"
    "  --               all that follows are files\n"
    "  --help           this text\n"
    "  --version        the program's version\n"
    "\n"
    "Exit status: 0 well, 1 a fault (--check) or a difference (diff), 2 trouble.\n";

const char* const kInfoVersion = "qsbinfo " QSA_VERSION "\n";
