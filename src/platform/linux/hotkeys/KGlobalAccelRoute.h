// Registers key combinations at Plasma's service for global shortcuts.
#pragma once

#include "platform/linux/hotkeys/HotkeyRoute.h"
#include "platform/linux/hotkeys/KGlobalAccel.h"
#include "platform/linux/layout/KeyboardLayout.h"
#include "platform/linux/layout/PlasmaCodes.h"

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

/// Compares what is wanted with what the service has. It has at most one call under way for each
/// combination, and starts over when there is a new service. The service works on symbols, so
/// another layout means other codes.
class KGlobalAccelRoute final : public HotkeyRoute
{
    Q_OBJECT

public:
    /// Asks the compositor, at a press, for the token that lets a started program come to the
    /// front; empty if there is none.
    using TokenRequest = std::function<QByteArray()>;

    /// The layout must outlive it.
    KGlobalAccelRoute(std::unique_ptr<KGlobalAccel> service, const KeyboardLayout &layout,
                      PlasmaVersion version, TokenRequest requestToken);

    void start() override;
    void hold(const WantedHotkeys &wanted) override;
    void letGo() override;
    HotkeyReach reach() const override { return HotkeyReach::registered; }
    std::optional<KeyCombination> otherKeys(const KeyCombination &combination) const override;
    bool isHeldElsewhere(VirtualKey key, quint32 modifiers) override;
    void invalidate() override;

private:
    /// What the service is to have for a combination.
    struct Keys {
        QList<int> codes;
        QString title;
    };
    struct Action {
        /// What the service has; nothing if it has no such action.
        std::optional<Keys> held;
        /// What the service refused; empty if it is to be asked.
        QList<int> refusedCodes;
        /// Whether others had the keys when the service last answered.
        bool isTaken = false;
        bool isCalling = false;
        /// The keys that the user has set in the desktop's settings; nothing as a rule.
        std::optional<QList<int>> usersCodes;
        /// Since the last press or repeat; invalid once the keys are up.
        QElapsedTimer sinceDown;
    };

    void restart();
    void beginWith(const QStringList &leftovers);
    void forgetService();
    void update();
    void update(const KeyCombination &combination, Action &action);
    bool isOutdated(const KeyCombination &combination, const Action &action) const;
    void release(const KeyCombination &combination, Action &action);
    void request(const KeyCombination &combination, Action &action, const Keys &keys);
    void takeAnswer(const KeyCombination &combination, const Keys &keys,
                    const std::optional<QList<int>> &granted);
    void retryRefused(const QList<int> &codes);
    void setTaken(Action &action, bool isTaken);
    void dropUnwanted();
    QList<int> codesOf(const KeyCombination &combination) const;
    std::optional<Keys> wantedKeys(const KeyCombination &combination) const;
    void takePress(const QString &name);
    void takeRelease(const QString &name);
    void takeUsersCodes(const QString &name, const QList<int> &codes);
    void forgetUsersCodes(Action &action);
    Action *actionNamed(const QString &name);

    /// A call's answer, unless the service has been replaced meanwhile.
    template <typename Handler>
    auto fromThisService(Handler handler);

    const std::unique_ptr<KGlobalAccel> m_service;
    const KeyboardLayout &m_layout;
    const PlasmaVersion m_version;
    const TokenRequest m_requestToken;
    WantedHotkeys m_wanted;
    std::map<KeyCombination, Action> m_actions;
    /// Whether what a former instance has left behind is known.
    bool m_isReady = false;
    bool m_hasNews = false;
    /// Counts the services.
    quint64 m_serviceNumber = 0;
    QTimer m_retry;
    int m_retriesLeft = 0;
};
