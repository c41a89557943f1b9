// Takes the exit status of started programs, so that none stays behind as a zombie.
#pragma once

#include <QObject>
#include <sys/types.h>

/// Watches each child by a descriptor of its own, and so never takes a child of somebody else.
class ChildReaper : public QObject
{
public:
    void reapWhenEnded(pid_t child);
};
