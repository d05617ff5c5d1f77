#pragma once

#include "QuillaryCore/Solo/SoloAgent.h"
#include "QuillaryCore/Solo/SoloProject.h"

#include <QList>
#include <QString>

namespace quillary {

/// The running agents of one project, under its name.
struct SoloSessionGroup {
    QString name;
    QList<SoloAgent> agents;

    friend bool operator==(const SoloSessionGroup&, const SoloSessionGroup&) = default;
};

/// The agents whose name or project's name contains a query, blanks around it aside, grouped by project in the order
/// that a person expects; those without a project have a group of their own.
QList<SoloSessionGroup> soloSessions(const QList<SoloAgent>& agents, const QString& query);

/// The projects whose name or path contains a query, blanks around it aside.
QList<SoloProject> soloProjects(const QList<SoloProject>& projects, const QString& query);

} // namespace quillary
