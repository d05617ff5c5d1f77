#pragma once

#include "QuillaryCore/Solo/SoloProject.h"

#include <QList>
#include <QWidget>

#include <optional>

class QLabel;
class QListWidget;
class QListWidgetItem;

namespace quillary {

class SearchBox;

/// Lets the user choose one of Solo's projects from a list that a search narrows.
class ProjectPicker : public QWidget {
    Q_OBJECT

public:
    explicit ProjectPicker(QWidget* parent = nullptr);

    /// The projects, and the id of the chosen one.
    void setProjects(const QList<SoloProject>& projects, std::optional<qint64> selection);

Q_SIGNALS:
    /// The user chose the project of this id.
    void chosen(qint64 id);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fill();
    void choose(const QListWidgetItem* row);

    QList<SoloProject> m_projects;
    std::optional<qint64> m_selection;
    SearchBox* m_query;
    QListWidget* m_list;
    QLabel* m_none;
};

} // namespace quillary
