// What was asked of the fakes of one platform, in its order.
#pragma once

#include <QStringList>

/// The fakes that share it write into it; those without one write nothing.
class CallLog
{
public:
    explicit CallLog(QStringList *lines = nullptr)
        : m_lines(lines)
    {
    }

    void note(const QString &line) const
    {
        if (m_lines)
            m_lines->append(line);
    }

private:
    QStringList *m_lines;
};
