// Plasma's service of key combinations, as other programs use it.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariant>

inline QDBusMessage askKGlobalAccel(const QString &method, const QVariantList &arguments)
{
    auto question = QDBusMessage::createMethodCall(QStringLiteral("org.kde.kglobalaccel"),
                                                   QStringLiteral("/kglobalaccel"),
                                                   QStringLiteral("org.kde.KGlobalAccel"), method);
    question.setArguments(arguments);
    return QDBusConnection::sessionBus().call(question);
}

/// Another program that has keys, until its end.
class PlasmaRival
{
public:
    explicit PlasmaRival(int code)
    {
        constexpr uint presentAndNotAutoloaded = 6;
        askKGlobalAccel(QStringLiteral("doRegister"), {m_id});
        askKGlobalAccel(QStringLiteral("setShortcut"),
                        {m_id, QVariant::fromValue(QList<int>{code}), presentAndNotAutoloaded});
    }
    ~PlasmaRival() { askKGlobalAccel(QStringLiteral("unregister"), {m_id.at(0), m_id.at(1)}); }
    Q_DISABLE_COPY_MOVE(PlasmaRival)

private:
    const QStringList m_id{QStringLiteral("rival"), QStringLiteral("act"), QStringLiteral("Rival"),
                           QStringLiteral("Act")};
};
