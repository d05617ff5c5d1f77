#include "Quillary/Solo/SoloSessions.h"

#include "QuillaryCore/Unicode/Collation.h"
#include "QuillaryCore/Unicode/LocalizedContainment.h"

#include <QCoreApplication>

#include <algorithm>

namespace quillary {

QList<SoloSessionGroup> soloSessions(const QList<SoloAgent>& agents, const QString& query) {
    const QString trimmed = query.trimmed();
    const TextMatcher matcher(trimmed);
    const QString withoutProject = QCoreApplication::translate("SoloSessions", "Senza progetto");

    QList<SoloSessionGroup> groups;
    for (const SoloAgent& agent : agents) {
        if (!trimmed.isEmpty() && !matcher.matches(agent.name) &&
            !matcher.matches(agent.projectName.value_or(QString()))) {
            continue;
        }
        const QString name = agent.projectName.value_or(withoutProject);
        auto group = std::ranges::find(groups, name, &SoloSessionGroup::name);
        if (group == groups.end()) {
            group = groups.insert(groups.end(), SoloSessionGroup{name, {}});
        }
        group->agents.append(agent);
    }
    std::ranges::stable_sort(groups, [](const SoloSessionGroup& a, const SoloSessionGroup& b) {
        return localizedStandardCompare(a.name, b.name) < 0;
    });
    return groups;
}

QList<SoloProject> soloProjects(const QList<SoloProject>& projects, const QString& query) {
    const QString trimmed = query.trimmed();
    const TextMatcher matcher(trimmed);
    QList<SoloProject> found;
    std::ranges::copy_if(projects, std::back_inserter(found), [&](const SoloProject& project) {
        return trimmed.isEmpty() || matcher.matches(project.name) || matcher.matches(project.path);
    });
    return found;
}

} // namespace quillary
