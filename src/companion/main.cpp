// Runs the Shortcut named by a link, the only argument.

#include "companion/Companion.h"

int main(int argc, char *argv[])
{
    return companionMain(argc, argv, QStringLiteral("/run/systemd/journal/stdout"));
}
