// A window with what windows consist of, to be used from outside. Its last line says which signals
// came of that.

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{
class Row : public QWidget
{
    Q_OBJECT

public:
    explicit Row(const QString &name)
    {
        setAccessibleName(name);
        auto *const layout = new QHBoxLayout(this);
        layout->addWidget(new QLabel(name));
        auto *const remove = new QPushButton(u"Remove"_s);
        layout->addWidget(remove);
        connect(remove, &QPushButton::clicked, this, &QObject::deleteLater);
    }
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *const row = qobject_cast<Row *>(object);
    return row ? new QAccessibleWidget(row, QAccessible::ListItem) : nullptr;
}

class Window : public QWidget
{
public:
    Window()
    {
        setWindowTitle(u"Sample"_s);
        new QVBoxLayout(this);
        addTexts();
        addButtons();
        addChoices();
        addRows();
        layout()->addWidget(m_said);
        resize(500, 500);
    }

private:
    void say(const QString &text) { m_said->setText(text); }

    template <typename Widget>
    Widget *add(Widget *widget)
    {
        layout()->addWidget(widget);
        return widget;
    }

    void addTexts()
    {
        m_name = add(new QLineEdit);
        m_name->setAccessibleName(u"Name"_s);
        auto *const fixed = add(new QLineEdit(u"as it is"_s));
        fixed->setAccessibleName(u"Fixed"_s);
        fixed->setReadOnly(true);
        auto *const off = add(new QLineEdit);
        off->setAccessibleName(u"Off"_s);
        off->setEnabled(false);
    }

    void addButtons()
    {
        auto *const greet = add(new QPushButton(u"Greet"_s));
        greet->setToolTip(u"Says hello"_s);
        connect(greet, &QPushButton::clicked, this, [this] { say(u"Hello, "_s + m_name->text()); });
        connect(add(new QPushButton(u"Ask"_s)), &QPushButton::clicked, this, &Window::ask);
        add(new QPushButton(u"Off"_s))->setEnabled(false);
        add(new QPushButton(u"Hidden"_s))->hide();
    }

    void addChoices()
    {
        auto *const light = add(new QCheckBox(u"Light"_s));
        connect(light, &QCheckBox::toggled, this,
                [this](bool isOn) { say(isOn ? u"on"_s : u"off"_s); });
        auto *const color = add(new QComboBox);
        color->addItems({u"Red"_s, u"Green"_s, u"Blue"_s});
        connect(color, &QComboBox::currentTextChanged, this, &Window::say);
    }

    void addRows()
    {
        auto *const list = new QWidget;
        auto *const rows = new QVBoxLayout(list);
        for (int i = 1; i <= 100; ++i)
            rows->addWidget(new Row(u"Row %1"_s.arg(i)));
        auto *const area = add(new QScrollArea);
        area->setWidget(list);
    }

    /// A closed one stays, and nobody sees it.
    void ask()
    {
        auto *const dialog = new QDialog(this);
        dialog->setWindowTitle(u"Question"_s);
        auto *const yes = new QPushButton(u"Yes"_s);
        (new QVBoxLayout(dialog))->addWidget(yes);
        connect(yes, &QPushButton::clicked, dialog, &QDialog::accept);
        connect(dialog, &QDialog::accepted, this, [this] { say(u"Yes"_s); });
        dialog->open();
    }

    QLineEdit *m_name = nullptr;
    QLabel *m_said = new QLabel;
};
} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QAccessible::installFactory(&makeAccessible);
    Window window;
    window.show();
    return QApplication::exec();
}

#include "accessible-window.moc"
