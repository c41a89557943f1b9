#include "platform/linux/hotkeys/GrabProbe.h"

#include <utility>

GrabProbe::GrabProbe(X11HotkeyService &service)
    : m_service(service)
{
    connect(&service, &X11HotkeyService::refusalsChanged, this, &GrabProbe::changed);
}

bool GrabProbe::isHeldElsewhere(VirtualKey key, quint32 modifiers)
{
    const KeyCombination combination{key, modifiers};
    if (const auto isRefused = m_service.isRefused(key, modifiers)) {
        // Used if the registration ends, until a probe knows better.
        m_answers.insert_or_assign(combination, Answer{*isRefused, false});
        return *isRefused;
    }
    const auto answer = m_answers.find(combination);
    const bool isKnown = answer != m_answers.end();
    if (!isKnown || !answer->second.isUpToDate) {
        if (m_questions.empty())
            QMetaObject::invokeMethod(this, &GrabProbe::probe, Qt::QueuedConnection);
        m_questions.insert(combination);
    }
    return isKnown && answer->second.isHeld;
}

void GrabProbe::invalidate()
{
    m_service.retryRefused();
    bool hasProbed = false;
    for (auto &[combination, answer] : m_answers)
        hasProbed |= std::exchange(answer.isUpToDate, false);
    if (hasProbed)
        Q_EMIT changed();
}

void GrabProbe::probe()
{
    // Combinations that have been registered meanwhile need no probe.
    std::erase_if(m_questions, [this](const KeyCombination &combination) {
        return m_service.isRefused(combination.key, combination.modifiers).has_value();
    });
    const auto held = m_service.probe(m_questions);
    bool hasNews = false;
    for (const KeyCombination &combination : std::exchange(m_questions, {})) {
        const bool isHeld = held.contains(combination);
        const auto former = m_answers.find(combination);
        hasNews |= isHeld != (former != m_answers.end() && former->second.isHeld);
        m_answers.insert_or_assign(combination, Answer{isHeld, true});
    }
    if (hasNews)
        Q_EMIT changed();
}
