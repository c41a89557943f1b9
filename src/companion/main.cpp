// Runs the Shortcut that its one argument, a link, names.

#include "companion/Companion.h"

int main(int argc, char *argv[])
{
    return companionMain(argc, argv, QStringLiteral("/run/systemd/journal/stdout"));
}
