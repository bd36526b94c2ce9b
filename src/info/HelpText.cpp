#include "info/Arguments.h"

const char* const kInfoUsage =
    "Usage: qsbinfo [--tree | --effects | --json | --check] [--all] FILE\n"
    "       qsbinfo diff [--tolerance T | --exact] [--all] FILE FILE\n"
    "       qsbinfo --disassemble FILE\n"
    "       qsbinfo --compile FILE -o FILE\n"
    "       qsbinfo --help | --version\n";

const InfoHelpTexts kInfoHelp = {
    .what = "Tells what a QSA or QSB scene file holds. Nothing is written or changed,\n"
            "except by --compile.",
    .end = "All arguments after -- are files.\n"
           "Exit status: 0 success, 1 damage (--check) or a difference (diff), 2 an error.",
    .help = "this text",
    .tree = "the tree of objects",
    .effects = "the technique chosen for each material's effect, and why earlier ones failed",
    .json = "everything but vertices, faces and keys, as JSON",
    .check = "look for damage: exit status 0 for a sound file, else 1",
    .disassemble = "the assembler text of a file with a shader (bytecode or assembler text);\n"
                   "of a compiled effect, its passes with their states and shaders",
    .compile = "write the compiled form of an effect's text (.fx) to the file of -o (.fxo)",
    .output = "for --compile: the file to write",
    .version = "the program's version",
    .all = "do not shorten lists and comparisons",
    .tolerance = "for diff: numbers that differ by at most T are equal;\n"
                 "by default, numbers that the QSB format rounds alike",
    .exact = "for diff: compare numbers exactly",
};

const char* const kInfoVersion = "qsbinfo " QSA_VERSION "\n";
