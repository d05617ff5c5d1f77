#include "Quillary/SendPanel/ProjectPicker.h"

#include "Quillary/SendPanel/SearchBox.h"
#include "Quillary/Solo/SoloSessions.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace quillary {

namespace {

constexpr int idRole = Qt::UserRole;

/// As wide as the check mark, so that the names of all rows begin at one place.
QIcon emptyIcon() {
    QPixmap nothing(16, 16);
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
    connect(m_list, &QListWidget::itemActivated, this, &ProjectPicker::choose);
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
        row->setToolTip(project.path);
        if (isSelected) {
            row->setData(Qt::AccessibleDescriptionRole, tr("scelto"));
            m_list->setCurrentItem(row);
        }
    }
    m_list->setVisible(!found.isEmpty());
    m_none->setVisible(found.isEmpty());
}

void ProjectPicker::choose(const QListWidgetItem* row) {
    Q_EMIT chosen(row->data(idRole).toLongLong());
}

} // namespace quillary
