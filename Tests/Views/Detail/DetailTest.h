#pragma once

#include "../NotesFolder.h"
#include "Quillary/Detail/DetailView.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/Theme/Symbol.h"

#include "Tests/State/FakeDesktop.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

namespace quillary {

/// The texts of the labels on show in a widget, in the order of their making.
inline QStringList shownTexts(const QWidget& widget) {
    QStringList texts;
    for (const QLabel* const label : widget.findChildren<QLabel*>()) {
        if (label->isVisibleTo(&widget) && !label->text().isEmpty()) {
            texts.append(label->text());
        }
    }
    return texts;
}

/// The button on show that says this of itself: as its text, its help or its accessible name. Null if there is none.
inline QAbstractButton* buttonOf(const QWidget& widget, const QString& text) {
    for (QAbstractButton* const button : widget.findChildren<QAbstractButton*>()) {
        const bool says = button->text() == text || button->toolTip() == text || button->accessibleName() == text;
        if (says && button->isVisibleTo(&widget)) {
            return button;
        }
    }
    return nullptr;
}

/// Whether a button shows this symbol.
inline bool shows(const QAbstractButton& button, Symbol symbol) {
    return button.icon().pixmap(32).toImage() == symbolIcon(symbol).pixmap(32).toImage();
}

/// The detail pane in a window with the focus, over a folder of real notes.
class DetailTest : public testing::Test {
protected:
    using Files = QList<std::pair<QString, QString>>;

    explicit DetailTest(const Files& files)
        : m_folder(files), m_view(m_folder.store(), m_folder.settings(), m_folder.find(), m_folder.solo()) {
        AppActions::shared().desktop = &m_desktop;
        m_view.resize(700, 500);
        m_view.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_view));
    }

    ~DetailTest() override { AppActions::shared() = {}; }

    NotesStore& store() { return m_folder.store(); }

    void select(const QString& title) { store().setSelectedID(m_folder.note(title)->id()); }

    void selectAll(const QStringList& titles) {
        QList<NoteID> ids;
        for (const QString& title : titles) {
            ids.append(m_folder.note(title)->id());
        }
        store().setMultiSelection(ids);
    }

    QAbstractButton* button(const QString& text) const { return buttonOf(m_view, text); }

    void click(const QString& text) {
        QAbstractButton* const found = button(text);
        ASSERT_NE(found, nullptr) << text.toStdString();
        QTest::mouseClick(found, Qt::LeftButton);
    }

    test::FakeDesktop m_desktop;
    NotesFolder m_folder;
    DetailView m_view;
};

} // namespace quillary
