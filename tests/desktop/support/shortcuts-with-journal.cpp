// The companion program, but that the journal is the one that JOURNAL_OF_TEST names.

#include "companion/Companion.h"

int main(int argc, char *argv[])
{
    return companionMain(argc, argv, qEnvironmentVariable("JOURNAL_OF_TEST"));
}
