#include "Quillary/Comparison/DiffHeader.h"

#include "Quillary/Comparison/NotePill.h"
#include "Quillary/Comparison/StatsView.h"

#include <QAbstractButton>
#include <QLayout>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

const QString longTitle = u"Verbale della riunione straordinaria del consiglio di amministrazione di gennaio"_s;
constexpr int readable = 180;

class DiffHeaderOf : public testing::Test {
protected:
    DiffHeaderOf() {
        m_header.setStats({1200, 34, 567});
        m_header.show();
    }

    void setWidth(int width) {
        m_header.resize(width, m_header.heightForWidth(width));
        m_header.layout()->activate();
    }

    /// What can be seen of the header, from left to right in its first line, then in the next.
    QList<QWidget*> parts() const {
        return {m_old,    button(u"Scambia i lati"_s), m_new,        m_stats,
                picker(), button(u"Tutte le righe"_s), m_closeButton};
    }

    QAbstractButton* button(const QString& name) const {
        for (QAbstractButton* const each : m_header.findChildren<QAbstractButton*>()) {
            if (each->text() == name || each->accessibleName() == name) {
                return each;
            }
        }
        return nullptr;
    }

    QWidget* picker() const { return button(u"Affiancato"_s)->parentWidget(); }

    bool isOneLine() const {
        return std::ranges::all_of(parts(), [this](const QWidget* part) {
            return std::abs(part->geometry().center().y() - m_old->geometry().center().y()) <= 1;
        });
    }

    static bool isWhole(const NotePill* pill) { return pill->width() >= pill->sizeHint().width(); }

    DiffHeader m_header;
    NotePill* m_old = m_header.findChildren<NotePill*>()[0];
    NotePill* m_new = m_header.findChildren<NotePill*>()[1];
    StatsView* m_stats = m_header.findChild<StatsView*>();
    QAbstractButton* m_closeButton = button(u"Chiudi il confronto (⎋)"_s);
};

} // namespace

TEST_F(DiffHeaderOf, ShowsShortTitlesWholeOnOneLine) {
    m_header.setTitles(u"Prima"_s, u"Seconda"_s);
    setWidth(900);
    EXPECT_TRUE(isOneLine());
    EXPECT_TRUE(isWhole(m_old));
    EXPECT_TRUE(isWhole(m_new));
    const QList<QWidget*> all = parts();
    for (qsizetype i = 1; i < all.size(); ++i) {
        EXPECT_GT(all[i]->x(), all[i - 1]->geometry().right()) << i;
    }
}

TEST_F(DiffHeaderOf, TheTitlesHaveALineForThemselvesBeforeTheyCanNotBeRead) {
    m_header.setTitles(longTitle, longTitle);
    for (int width = 1600; width >= 300; width -= 20) {
        setWidth(width);
        if (isOneLine()) {
            EXPECT_GE(std::min(m_old->width(), m_new->width()), readable) << width;
        } else {
            EXPECT_GT(m_stats->y(), m_old->geometry().bottom()) << width;
        }
        EXPECT_LE(std::abs(m_old->width() - m_new->width()), 1) << width;
    }
    EXPECT_FALSE(isOneLine());
}

TEST_F(DiffHeaderOf, WhatAShortTitleLeavesIsTheOthers) {
    for (const bool isFirstShort : {true, false}) {
        m_header.setTitles(isFirstShort ? u"A"_s : longTitle, isFirstShort ? longTitle : u"A"_s);
        for (const int width : {1000, 500, 300}) {
            setWidth(width);
            const NotePill* const shortOne = isFirstShort ? m_old : m_new;
            const NotePill* const longOne = isFirstShort ? m_new : m_old;
            EXPECT_TRUE(isWhole(shortOne)) << width;
            EXPECT_GT(longOne->width(), width / 3) << width;
        }
    }
}

TEST_F(DiffHeaderOf, NothingIsCutOrCoveredInAnyWidth) {
    const std::pair<QString, QString> titles[] = {
        {u"A"_s, u"B"_s}, {longTitle, u"B"_s}, {u"A"_s, longTitle}, {longTitle, longTitle}, {QString(), QString()}};
    for (const auto& [oldTitle, newTitle] : titles) {
        m_header.setTitles(oldTitle, newTitle);
        for (int width = 240; width < 1400; width += 13) {
            setWidth(width);
            const QList<QWidget*> all = parts();
            for (qsizetype i = 0; i < all.size(); ++i) {
                const QRect place = all[i]->geometry();
                EXPECT_TRUE(m_header.rect().contains(place)) << width << ' ' << i;
                if (all[i] != m_old && all[i] != m_new) {
                    EXPECT_GE(place.width(), all[i]->sizeHint().width()) << width << ' ' << i;
                }
                for (qsizetype j = 0; j < i; ++j) {
                    EXPECT_FALSE(place.intersects(all[j]->geometry())) << width << ' ' << i << ' ' << j;
                }
            }
        }
    }
}

TEST_F(DiffHeaderOf, TheTabKeyGoesFromLeftToRight) {
    m_header.setTitles(u"A"_s, u"B"_s);
    m_header.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_header));
    button(u"Scambia i lati"_s)->setFocus();
    // The picker is one stop, at its choice.
    for (const QString& next : {u"Affiancato"_s, u"Tutte le righe"_s, u"Chiudi il confronto (⎋)"_s}) {
        QTest::keyClick(m_header.focusWidget(), Qt::Key_Tab);
        ASSERT_EQ(m_header.focusWidget(), button(next)) << qPrintable(next);
    }
}

TEST_F(DiffHeaderOf, TheArrowsChooseInThePicker) {
    m_header.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_header));
    QSignalSpy chosen(&m_header, &DiffHeader::modeChosen);
    button(u"Affiancato"_s)->setFocus();
    QTest::keyClick(m_header.focusWidget(), Qt::Key_Right);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen.first().first().value<DiffMode>(), DiffMode::unified);
    EXPECT_TRUE(button(u"Unificato"_s)->hasFocus());
    QTest::keyClick(m_header.focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(button(u"Tutte le righe"_s)->hasFocus());
    QTest::keyClick(m_header.focusWidget(), Qt::Key_Backtab);
    EXPECT_TRUE(button(u"Unificato"_s)->hasFocus());
}
