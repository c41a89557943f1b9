// Offers suggestions below a one-line field while the user types.
#pragma once

#include <QCompleter>
#include <QStringList>
#include <functional>

class QLineEdit;
class QStringListModel;

namespace viewkit
{

/// Offers the texts that contain what is typed, ignoring case. Down in an empty field offers all.
/// The texts are fetched each time the field gets the focus.
class Suggestions final : public QCompleter
{
public:
    /// The field becomes the parent. The source must not be empty.
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
