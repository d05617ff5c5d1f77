#include "Quillary/Solo/SoloSessions.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

const QList<SoloAgent> agents{
    {1, u"Alfa"_s, {}, {}, {}},          {2, u"Beta"_s, {}, 1, u"Progetto 10"_s},
    {3, u"Gamma"_s, {}, 2, u"Zeta"_s},   {4, u"Delta"_s, {}, 3, u"Progetto 2"_s},
    {5, u"Épsilon"_s, {}, 2, u"Zeta"_s},
};

/// The groups as "name: agent, agent".
QStringList shown(const QString& query) {
    QStringList result;
    for (const SoloSessionGroup& group : soloSessions(agents, query)) {
        QStringList names;
        for (const SoloAgent& agent : group.agents) {
            names.append(agent.name);
        }
        result.append(group.name + u": "_s + names.join(u", "));
    }
    return result;
}

QStringList projects(const QString& query) {
    QStringList result;
    for (const SoloProject& project : soloProjects({{1, u"Uno"_s, u"/home/a"_s}, {2, u"Due"_s, u"/home/B"_s}}, query)) {
        result.append(project.name);
    }
    return result;
}

} // namespace

TEST(SoloSessions, AreGroupedByProjectInTheOrderOfAPerson) {
    EXPECT_EQ(shown({}), QStringList({u"Progetto 2: Delta"_s, u"Progetto 10: Beta"_s, u"Senza progetto: Alfa"_s,
                                      u"Zeta: Gamma, Épsilon"_s}));
    EXPECT_EQ(shown(u"  \n"_s), shown({}));
}

TEST(SoloSessions, AreFoundByNameAndByProject) {
    EXPECT_EQ(shown(u" alfa "_s), QStringList(u"Senza progetto: Alfa"_s));
    EXPECT_EQ(shown(u"ZETA"_s), QStringList(u"Zeta: Gamma, Épsilon"_s)) << "all agents of a project that matches";
    EXPECT_EQ(shown(u"éps"_s), QStringList(u"Zeta: Épsilon"_s));
    EXPECT_EQ(shown(u"senza"_s), QStringList()) << "the heading is no project's name";
}

TEST(SoloProjects, AreFoundByNameAndByPath) {
    EXPECT_EQ(projects({}), QStringList({u"Uno"_s, u"Due"_s}));
    EXPECT_EQ(projects(u" uno"_s), QStringList(u"Uno"_s));
    EXPECT_EQ(projects(u"/b"_s), QStringList(u"Due"_s));
    EXPECT_EQ(projects(u"x"_s), QStringList());
}

} // namespace quillary
