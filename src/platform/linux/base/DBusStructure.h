// Reads and writes D-Bus structures member by member.
#pragma once

#include <QDBusArgument>

template <typename... Members>
QDBusArgument &writeStructure(QDBusArgument &argument, const Members &...members)
{
    argument.beginStructure();
    (argument << ... << members);
    argument.endStructure();
    return argument;
}

template <typename... Members>
const QDBusArgument &readStructure(const QDBusArgument &argument, Members &...members)
{
    argument.beginStructure();
    (argument >> ... >> members);
    argument.endStructure();
    return argument;
}
