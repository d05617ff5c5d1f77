#include "Quillary/SendPanel/ProjectPicker.h"

#include "Quillary/SendPanel/SearchBox.h"
#include "Quillary/Solo/SoloSessions.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/ToolTip.h"

#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace quillary {

namespace {

constexpr int idRole = Qt::UserRole;
constexpr int checkSize = 16;

/// As wide as the check mark, so that the names of all rows begin at one place.
QIcon emptyIcon() {
    QPixmap nothing(checkSize, checkSize);
    nothing.fill(Qt::transparent);
    return nothing;
}

} // namespace

ProjectPicker::ProjectPicker(QWidget* parent)
    : QWidget(parent),
      m_query(new SearchBox(this)),
      m_list(new QListWidget(this)),
      m_none(new QLabel(tr("Nessun progetto"), this)) {
    m_list->setAccessibleName(tr("Progetto"));
    m_list->setFont(Theme::font(12.5));
    m_list->setTextElideMode(Qt::ElideRight);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setMinimumHeight(96);
    m_list->setIconSize({checkSize, checkSize});
    m_query->setList(m_list);
    m_query->installEventFilter(this);
    m_list->installEventFilter(this);
    m_none->setAlignment(Qt::AlignCenter);
    m_none->setForegroundRole(QPalette::PlaceholderText);
    m_none->setMinimumHeight(96);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_query);
    layout->addWidget(m_list);
    layout->addWidget(m_none);

    connect(m_query, &QLineEdit::textChanged, this, &ProjectPicker::fill);
    connect(m_list, &QListWidget::itemClicked, this, &ProjectPicker::choose);
    fill();
}

void ProjectPicker::setProjects(const QList<SoloProject>& projects, std::optional<qint64> selection) {
    m_projects = projects;
    m_selection = selection;
    fill();
}

void ProjectPicker::fill() {
    const auto selected =
        std::ranges::find_if(m_projects, [this](const SoloProject& project) { return project.id == m_selection; });
    m_query->setPlaceholder(selected == m_projects.end() ? tr("Cerca progetto")
                                                         : tr("Cerca progetto (scelto: ") + selected->name + tr(")"));
    m_list->clear();
    const QList<SoloProject> found = soloProjects(m_projects, m_query->text());
    for (const SoloProject& project : found) {
        const bool isSelected = project.id == m_selection;
        auto* const row =
            new QListWidgetItem(isSelected ? symbolIcon(Symbol::check) : emptyIcon(), project.name, m_list);
        row->setData(idRole, project.id);
        row->setToolTip(plainToolTip(project.path));
        if (isSelected) {
            row->setData(Qt::AccessibleDescriptionRole, tr("scelto"));
            m_list->setCurrentItem(row);
        }
    }
    // What goes first: for a moment with both the panel would grow, and stay so.
    (found.isEmpty() ? static_cast<QWidget*>(m_list) : m_none)->hide();
    (found.isEmpty() ? static_cast<QWidget*>(m_none) : m_list)->show();
}

/// Return chooses: in the list the row with the keyboard, in a search the first that was found. It is kept from the
/// panel, whose default button would start a session in the project that was chosen before.
bool ProjectPicker::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(watched, event);
    }
    const int key = static_cast<const QKeyEvent*>(event)->key();
    const bool isSearch = watched == m_query && !m_query->text().trimmed().isEmpty();
    if ((key != Qt::Key_Return && key != Qt::Key_Enter) || (watched == m_query && !isSearch)) {
        return QWidget::eventFilter(watched, event);
    }
    if (const QListWidgetItem* const row = isSearch ? m_list->item(0) : m_list->currentItem()) {
        choose(row);
    }
    return true;
}

void ProjectPicker::choose(const QListWidgetItem* row) {
    Q_EMIT chosen(row->data(idRole).toLongLong());
}

} // namespace quillary
