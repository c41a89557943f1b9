// Offers texts below a field of one line while the user types in it.
#pragma once

#include <QCompleter>
#include <QStringList>
#include <functional>

class QLineEdit;
class QStringListModel;

namespace viewkit
{

/// Those that contain what is typed, in any case; Down shows all below an empty field. They are
/// asked for anew each time that the field gets the focus.
class Suggestions final : public QCompleter
{
public:
    /// Belongs to the field. The source must not be empty.
    Suggestions(QLineEdit *field, std::function<QStringList()> source);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    bool filterOfField(QEvent *event);
    bool filterOfPopup(QEvent *event);

    QLineEdit *m_field;
    QAbstractItemView *m_popup = nullptr;
    QStringListModel *m_model;
    std::function<QStringList()> m_source;
};

} // namespace viewkit
