#include "platform/linux/layout/KeyboardLayout.h"

#include <utility>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace
{
/// Returns what is free of the heap to the system. A freed key map would otherwise leave half a
/// megabyte behind, because what is allocated after it keeps the heap from shrinking.
void returnFreeMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}
} // namespace

void KeyboardLayout::setLayout(XkbKeymap keymap, quint32 layout, WithSymbols withSymbols)
{
    const LayoutKeys keys(keymap.get(), layout);
    const KeyLabels labels(keymap.get(), layout);
    const KeySymbols symbols =
        withSymbols == WithSymbols::yes ? KeySymbols(keymap.get(), layout) : KeySymbols();
    keymap.reset();
    returnFreeMemory();
    setKeys(keys);
    setLabels(labels);
    setSymbols(symbols);
}

void KeyboardLayout::setKeys(const LayoutKeys &keys)
{
    if (keys == m_keys)
        return;
    m_keys = keys;
    Q_EMIT changed();
}

void KeyboardLayout::setLabels(const KeyLabels &labels)
{
    if (labels == m_labels)
        return;
    m_labels = labels;
    Q_EMIT labelsChanged();
}

void KeyboardLayout::setSymbols(const KeySymbols &symbols)
{
    if (symbols == m_symbols)
        return;
    m_symbols = symbols;
    Q_EMIT symbolsChanged();
}
