#include "platform/linux/hotkeys/KGlobalAccelRoute.h"

#include "platform/ModifierForms.h"

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// Plasma never writes such actions to its files, so nothing of ours stays reserved after a crash
/// and a login.
const QString sessionPrefix = u"_k_session:"_s;

/// A held key repeats much sooner, except for the first time.
constexpr auto longestPause = 1000ms;
/// How late a repeat may be.
constexpr auto lateness = 200ms;

/// Calls fail only if the service is about to go, or has just come.
constexpr auto retryInterval = 1000ms;
constexpr int retries = 5;

QString nameOf(const KeyCombination &combination)
{
    return u"%1%2-%3"_s.arg(sessionPrefix).arg(quint32(combination.key)).arg(combination.modifiers);
}

/// Nothing for names that are not of this form.
std::optional<KeyCombination> combinationOf(const QString &name)
{
    const QStringList numbers = name.mid(sessionPrefix.size()).split(u'-');
    const KeyCombination combination{VirtualKey(numbers.value(0).toUInt()),
                                     numbers.value(1).toUInt()};
    return nameOf(combination) == name ? std::optional(combination) : std::nullopt;
}

bool containsAny(const QList<int> &codes, const QList<int> &others)
{
    return std::ranges::any_of(others, [&](int code) { return codes.contains(code); });
}
} // namespace

KGlobalAccelRoute::KGlobalAccelRoute(std::unique_ptr<KGlobalAccel> service,
                                     const KeyboardLayout &layout, PlasmaVersion version,
                                     TokenRequest requestToken)
    : m_service(std::move(service))
    , m_layout(layout)
    , m_version(version)
    , m_requestToken(std::move(requestToken))
{
    m_retry.setInterval(retryInterval);
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, [this] { update(); });
    connect(&m_layout, &KeyboardLayout::symbolsChanged, this, &KGlobalAccelRoute::invalidate);
    connect(m_service.get(), &KGlobalAccel::gone, this, &KGlobalAccelRoute::forgetService);
    connect(m_service.get(), &KGlobalAccel::appeared, this, &KGlobalAccelRoute::restart);
    connect(m_service.get(), &KGlobalAccel::pressed, this, &KGlobalAccelRoute::takePress);
    connect(m_service.get(), &KGlobalAccel::released, this, &KGlobalAccelRoute::takeRelease);
    connect(m_service.get(), &KGlobalAccel::codesChanged, this, &KGlobalAccelRoute::takeUsersCodes);
}

template <typename Handler>
auto KGlobalAccelRoute::fromThisService(Handler handler)
{
    return [this, number = m_serviceNumber, handler = std::move(handler)](const auto &...answer) {
        if (number == m_serviceNumber)
            handler(answer...);
    };
}

void KGlobalAccelRoute::start()
{
    m_service->start();
}

void KGlobalAccelRoute::forgetService()
{
    ++m_serviceNumber;
    m_isReady = false;
    m_retry.stop();
    m_retriesLeft = retries;
    for (auto &[combination, action] : m_actions) {
        forgetUsersCodes(action);
        action = Action{.isTaken = action.isTaken};
    }
}

void KGlobalAccelRoute::restart()
{
    forgetService();
    m_service->readActions(fromThisService([this](const std::optional<QStringList> &leftovers) {
        if (leftovers)
            beginWith(*leftovers);
    }));
}

/// A program that was killed has left its actions behind. They may have the keys of other actions
/// that are wanted now.
void KGlobalAccelRoute::beginWith(const QStringList &leftovers)
{
    for (const QString &name : leftovers)
        m_service->unregister(name, [] {});
    m_isReady = true;
    update();
}

void KGlobalAccelRoute::hold(const WantedHotkeys &wanted)
{
    m_wanted = wanted;
    for (const auto &[combination, purpose] : m_wanted)
        m_actions[combination].refusedCodes.clear();
    update();
}

void KGlobalAccelRoute::invalidate()
{
    for (auto &[combination, action] : m_actions)
        action.refusedCodes.clear();
    update();
}

void KGlobalAccelRoute::letGo()
{
    QStringList names;
    for (const auto &[combination, action] : m_actions) {
        if (action.held || action.isCalling)
            names << nameOf(combination);
    }
    forgetService();
    m_service->unregisterNow(names);
}

/// Gives up first what is not wanted any more, because the service refuses keys that another action
/// has, even one of ours.
void KGlobalAccelRoute::update()
{
    if (!m_isReady || m_layout.symbols().isEmpty())
        return;
    for (auto &[combination, action] : m_actions) {
        if (!action.isCalling && isOutdated(combination, action))
            release(combination, action);
    }
    for (auto &[combination, action] : m_actions)
        update(combination, action);
    dropUnwanted();
}

void KGlobalAccelRoute::update(const KeyCombination &combination, Action &action)
{
    if (action.isCalling)
        return;
    const auto wanted = wantedKeys(combination);
    if (isOutdated(combination, action)) {
        release(combination, action);
    } else if (action.held) {
        if (wanted->title != action.held->title)
            m_service->setTitle(nameOf(combination), wanted->title);
        action.held->title = wanted->title;
    } else if (wanted && wanted->codes.isEmpty()) {
        setTaken(action, true);
    } else if (wanted && wanted->codes != action.refusedCodes) {
        request(combination, action, *wanted);
    }
}

/// Keys that the user has set in the desktop's settings stay in every layout.
bool KGlobalAccelRoute::isOutdated(const KeyCombination &combination, const Action &action) const
{
    if (!action.held)
        return false;
    const auto wanted = wantedKeys(combination);
    return !wanted || (wanted->codes != action.held->codes && !action.usersCodes);
}

void KGlobalAccelRoute::release(const KeyCombination &combination, Action &action)
{
    action.isCalling = true;
    m_service->unregister(nameOf(combination), fromThisService([this, combination] {
                              Action &released = m_actions.at(combination);
                              released.isCalling = false;
                              const auto held = std::exchange(released.held, std::nullopt);
                              forgetUsersCodes(released);
                              update(combination, released);
                              if (held)
                                  retryRefused(held->codes);
                              dropUnwanted();
                          }));
}

void KGlobalAccelRoute::request(const KeyCombination &combination, Action &action, const Keys &keys)
{
    action.isCalling = true;
    m_service->set(
        nameOf(combination), keys.title, keys.codes,
        fromThisService([this, combination, keys](const std::optional<QList<int>> &granted) {
            takeAnswer(combination, keys, granted);
        }));
}

void KGlobalAccelRoute::takeAnswer(const KeyCombination &combination, const Keys &keys,
                                   const std::optional<QList<int>> &granted)
{
    Action &action = m_actions.at(combination);
    action.isCalling = false;
    if (!granted) {
        if (m_retriesLeft-- > 0)
            m_retry.start();
        return;
    }
    setTaken(action, granted->isEmpty());
    if (granted->isEmpty()) {
        // A refused action would stay in the user's settings, without keys.
        action.refusedCodes = keys.codes;
        release(combination, action);
    } else {
        action.held = keys;
        update(combination, action);
    }
}

/// Asks again for keys that an action of ours may have had.
void KGlobalAccelRoute::retryRefused(const QList<int> &codes)
{
    for (auto &[combination, action] : m_actions) {
        if (containsAny(action.refusedCodes, codes)) {
            action.refusedCodes.clear();
            update(combination, action);
        }
    }
}

void KGlobalAccelRoute::setTaken(Action &action, bool isTaken)
{
    if (std::exchange(action.isTaken, isTaken) == isTaken || std::exchange(m_hasNews, true))
        return;
    // Once for all answers that have arrived.
    const auto tell = [this] {
        m_hasNews = false;
        Q_EMIT changed();
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void KGlobalAccelRoute::dropUnwanted()
{
    std::erase_if(m_actions, [this](const auto &item) {
        const auto &[combination, action] = item;
        return !m_wanted.contains(combination) && !action.held && !action.isCalling;
    });
}

QList<int> KGlobalAccelRoute::codesOf(const KeyCombination &combination) const
{
    // A bare key would be lost to all programs.
    if (combination.modifiers == 0)
        return {};
    return plasmaCodes(m_layout.symbols(), combination.key, combination.modifiers, m_version);
}

std::optional<KGlobalAccelRoute::Keys>
KGlobalAccelRoute::wantedKeys(const KeyCombination &combination) const
{
    const auto wanted = m_wanted.find(combination);
    if (wanted == m_wanted.end())
        return std::nullopt;
    return Keys{codesOf(combination), wanted->second.title};
}

bool KGlobalAccelRoute::isHeldElsewhere(VirtualKey key, quint32 modifiers)
{
    const KeyCombination combination{key, modifiers};
    const auto action = m_actions.find(combination);
    if (action != m_actions.end() && m_wanted.contains(combination))
        return action->second.isTaken;
    return !m_layout.symbols().isEmpty() && codesOf(combination).isEmpty();
}

std::optional<KeyCombination> KGlobalAccelRoute::otherKeys(const KeyCombination &combination) const
{
    const auto action = m_actions.find(combination);
    if (action == m_actions.end() || !action->second.usersCodes)
        return std::nullopt;
    for (const int code : *action->second.usersCodes) {
        const auto accelerator = qtAccelerator(code);
        if (!accelerator)
            continue;
        const auto keys = m_layout.keys().keysWithKeysym(accelerator->keysym);
        if (keys.isEmpty())
            continue;
        const bool needsShift = accelerator->impliesShift && keys.constFirst().needsShift;
        return KeyCombination{
            keys.constFirst().virtualKey,
            converted(accelerator->modifiers, &ModifierForms::eventFlag, &ModifierForms::mask)
                | (needsShift ? quint32(shiftKey) : 0u)};
    }
    return std::nullopt;
}

void KGlobalAccelRoute::forgetUsersCodes(Action &action)
{
    if (std::exchange(action.usersCodes, std::nullopt))
        Q_EMIT outcomesChanged();
}

KGlobalAccelRoute::Action *KGlobalAccelRoute::actionNamed(const QString &name)
{
    const auto combination = combinationOf(name);
    if (!combination || !m_wanted.contains(*combination))
        return nullptr;
    const auto found = m_actions.find(*combination);
    return found == m_actions.end() ? nullptr : &found->second;
}

/// A press is repeated until the keys are released. A release may get lost with the service.
void KGlobalAccelRoute::takePress(const QString &name)
{
    Action *const action = actionNamed(name);
    if (!action)
        return;
    const auto pause =
        std::max<std::chrono::milliseconds>(longestPause, m_layout.keyRepeat().delay + lateness);
    const bool isRepeat =
        action->sinceDown.isValid() && !action->sinceDown.hasExpired(pause.count());
    action->sinceDown.start();
    if (!isRepeat)
        Q_EMIT pressed(*combinationOf(name),
                       {.startupId = {}, .activationToken = m_requestToken()});
}

void KGlobalAccelRoute::takeRelease(const QString &name)
{
    if (Action *const action = actionNamed(name))
        action->sinceDown.invalidate();
}

void KGlobalAccelRoute::takeUsersCodes(const QString &name, const QList<int> &codes)
{
    Action *const action = actionNamed(name);
    if (!action || !action->held)
        return;
    action->usersCodes = codes == action->held->codes ? std::nullopt : std::optional(codes);
    Q_EMIT outcomesChanged();
}
