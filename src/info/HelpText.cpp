#include "info/Arguments.h"

const char* const kInfoUsage =
    "Usage: qsbinfo [--tree | --effects | --json | --check] [--all] FILE\n"
    "       qsbinfo diff [--tolerance T | --exact] [--all] FILE FILE\n"
    "       qsbinfo --help | --version\n";

const char* const kInfoVersion = "qsbinfo " QSA_VERSION "\n";
