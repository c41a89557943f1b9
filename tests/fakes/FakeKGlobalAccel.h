// Plasma's service for global shortcuts: it answers when told to, and notes what it is asked.
#pragma once

#include "platform/linux/hotkeys/KGlobalAccel.h"

#include <QMap>
#include <QSet>
#include <deque>

class FakeKGlobalAccel : public KGlobalAccel
{
    Q_OBJECT

public:
    void start() override { Q_EMIT appeared(); }

    void readActions(NamesHandler handler) override
    {
        note(QStringLiteral("read"));
        answer(
            [this, handler] { handler(isThere ? std::optional(actions.keys()) : std::nullopt); });
    }

    void set(const QString &name, const QString &title, const QList<int> &codes,
             CodesHandler handler) override
    {
        note(QStringLiteral("set %1 '%2' to %3").arg(name, title, textOf(codes)));
        answer([=, this] {
            if (fails)
                return handler(std::nullopt);
            QList<int> granted;
            for (const int code : codes) {
                if (!foreignCodes.contains(code) && isFree(code, name))
                    granted << code;
            }
            actions.insert(name, granted);
            handler(granted);
        });
    }

    void setTitle(const QString &name, const QString &title) override
    {
        note(QStringLiteral("call %1 '%2'").arg(name, title));
    }

    void unregister(const QString &name, std::function<void()> handler) override
    {
        note(QStringLiteral("unregister %1").arg(name));
        answer([=, this] {
            actions.remove(name);
            handler();
        });
    }

    void unregisterNow(const QStringList &names) override
    {
        for (const QString &name : names)
            actions.remove(name);
    }

    /// Answers all calls, those that follow from the answers included.
    void serve()
    {
        while (!m_answers.empty())
            serveOne();
    }
    void serveOne()
    {
        const auto next = m_answers.front();
        m_answers.pop_front();
        next();
    }
    /// The calls will not be answered.
    void dropCalls() { m_answers.clear(); }

    QStringList takeCalls() { return std::exchange(m_calls, {}); }

    /// Of each action. Of a program that has crashed too.
    QMap<QString, QList<int>> actions;
    /// Others have them.
    QSet<int> foreignCodes;
    bool isThere = true;
    bool fails = false;

private:
    static QString textOf(const QList<int> &codes)
    {
        QStringList texts;
        for (const int code : codes)
            texts << QString::number(code, 16);
        return texts.join(u',');
    }
    bool isFree(int code, const QString &name) const
    {
        for (auto action = actions.begin(); action != actions.end(); ++action) {
            if (action.key() != name && action->contains(code))
                return false;
        }
        return true;
    }
    void note(const QString &call) { m_calls << call; }
    void answer(std::function<void()> give) { m_answers.push_back(std::move(give)); }

    QStringList m_calls;
    std::deque<std::function<void()>> m_answers;
};
