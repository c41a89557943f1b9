#include "settings/ApplicationPanel.h"

#include "settings/ApplicationList.h"
#include "settings/FilePanel.h"
#include "settings/Targets.h"
#include "viewkit/FocusRing.h"
#include "viewkit/View.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// Chosen by eye: twelve rows, with the names of most applications in full.
constexpr QSize initialPanelSize(420, 520);
constexpr int iconSide = 24;
constexpr int rowPadding = 4;

/// Makes rows as wide as the list, so that long names are elided, and pads them. The names line up
/// whatever size the icons have.
class RowDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const override
    {
        return {1, std::max(iconSide, option.fontMetrics.height()) + 2 * rowPadding};
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->decorationSize = {iconSide, iconSide};
        option->decorationAlignment = Qt::AlignCenter;
    }
};

bool movesSelection(const QKeyEvent &press)
{
    constexpr std::array keys{Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp};
    return std::ranges::find(keys, press.key()) != keys.end();
}
} // namespace

ApplicationPanel::ApplicationPanel(InstalledApplications &applications,
                                   std::function<void(const QString &path)> onChoose,
                                   QWidget *parent)
    : QDialog(parent)
    , m_applications(applications)
    , m_onChoose(std::move(onChoose))
    , m_model(new ApplicationList(applications.all()))
    , m_list(new QListView)
    , m_body(new View)
{
    setWindowTitle(u"Choose App"_s);
    resize(initialPanelSize);
    m_body->setBody(Column{
        padding(20),
        spacing(12),
        searchField(),
        stretched(list()),
        shownWhen([this] { return m_isRejected; },
                  announced(tinted(TextColor::error,
                                   text(TextStyle::callout, u"That file is not an app."_s)))),
        Row{
            spacing(8),
            button(u"Browse…"_s, [this] { browse(); }),
            Spacer{},
            button(u"Cancel"_s, [this] { reject(); }),
            enabledWhen([this] { return selected().has_value(); },
                        defaultButton(u"Choose App"_s, [this] { chooseSelected(); })),
        },
    });
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_body);
}

Item ApplicationPanel::searchField()
{
    const Item item = viewkit::searchField({
        .get = [this] { return m_searched; },
        .set = [this](const QString &text) { search(text); },
    });
    item.widget->installEventFilter(this);
    return item;
}

Item ApplicationPanel::list()
{
    m_model->setParent(this);
    m_list->setModel(m_model);
    m_list->setItemDelegate(new RowDelegate(m_list));
    m_list->setAccessibleName(u"Apps"_s);
    m_list->setIconSize({iconSide, iconSide});
    m_list->setUniformItemSizes(true);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    new FocusRing(m_list, 1);
    connect(m_list, &QListView::activated, this, &ApplicationPanel::chooseSelected);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ApplicationPanel::selectionChanged);

    const Item emptyText = shownWhen(
        [this] { return m_model->rowCount() == 0; },
        announced(tinted(TextColor::secondary, text(TextStyle::body, u"No apps found"_s))));
    emptyText.widget->setAttribute(Qt::WA_TransparentForMouseEvents);
    // The text lies over the list, not in it: inside the list screen readers find only the rows.
    auto *const both = new QWidget;
    auto *const layout = new QGridLayout(both);
    layout->setContentsMargins({});
    layout->addWidget(m_list, 0, 0);
    layout->addWidget(emptyText.widget, 0, 0, Qt::AlignCenter);

    Item item =
        widget(both, [this] { m_model->setSymbolColor(color(TextColor::secondary, palette())); });
    item.rules += emptyText.rules;
    return item;
}

bool ApplicationPanel::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !movesSelection(*static_cast<QKeyEvent *>(event)))
        return QDialog::eventFilter(object, event);
    QCoreApplication::sendEvent(m_list, event);
    return true;
}

std::optional<QString> ApplicationPanel::selected() const
{
    const QModelIndexList indexes = m_list->selectionModel()->selectedIndexes();
    return indexes.isEmpty() ? std::nullopt : std::optional(m_model->path(indexes.constFirst()));
}

void ApplicationPanel::search(const QString &text)
{
    m_searched = text;
    m_model->search(text);
    if (!text.trimmed().isEmpty())
        m_list->setCurrentIndex(m_model->index(0));
    selectionChanged();
}

void ApplicationPanel::selectionChanged()
{
    m_isRejected = false;
    m_body->refresh();
}

void ApplicationPanel::chooseSelected()
{
    if (const auto path = selected())
        choose(*path);
}

void ApplicationPanel::choose(const QString &path)
{
    m_onChoose(path);
    accept();
}

void ApplicationPanel::browse()
{
    auto *const panel = new FilePanel(
        FilePanel::Choosable::files, windowTitle(), windowTitle(),
        [this](const QString &path) { browsed(path); }, this);
    // "All files" comes first, because any executable file is an app too.
    panel->setNameFilters({u"All files (*)"_s, u"Apps (*.desktop)"_s});
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->open();
}

void ApplicationPanel::browsed(const QString &path)
{
    if (isApplication(path, m_applications)) {
        choose(path);
        return;
    }
    // Hide it first: screen readers announce a message only when it appears.
    for (const bool isShown : {false, true}) {
        m_isRejected = isShown;
        m_body->refresh();
    }
}
