#pragma once

#include "../NotesFolder.h"
#include "Quillary/Dialogs/ConfirmationDialog.h"
#include "Quillary/State/AppActions.h"

#include "Tests/State/FakeDesktop.h"

#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace quillary {

/// A window whose dialog asks about notes in a real folder.
class DialogTest : public testing::Test {
protected:
    explicit DialogTest(const QList<std::pair<QString, QString>>& files) : m_folder(files) {
        AppActions::shared().desktop = &m_desktop;
        m_window.show();
    }

    ~DialogTest() override { AppActions::shared() = {}; }

    /// The dialog, which is there once it has asked.
    ConfirmationDialog* dialog() const { return m_window.findChild<ConfirmationDialog*>(); }

    bool isAsking() const { return dialog() != nullptr && dialog()->isVisible(); }

    NotesStore& store() { return m_folder.store(); }

    NoteItemPtr note(const QString& title) { return m_folder.note(title); }

    /// Title and message.
    QStringList texts() const {
        QStringList texts;
        for (const QLabel* const label : dialog()->findChildren<QLabel*>()) {
            texts.append(label->text());
        }
        return texts;
    }

    /// The buttons from left to right.
    QStringList buttons() const {
        QList<QPushButton*> found = dialog()->findChildren<QPushButton*>();
        std::ranges::sort(found, {}, [](const QPushButton* button) { return button->x(); });
        QStringList names;
        for (const QPushButton* const button : found) {
            names.append(button->text());
        }
        return names;
    }

    void click(const QString& text) {
        for (QPushButton* const button : dialog()->findChildren<QPushButton*>()) {
            if (button->text() == text) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        FAIL() << text.toStdString();
    }

    /// Presses a key where the focus of the dialog is.
    void press(Qt::Key key) {
        ASSERT_NE(dialog()->focusWidget(), nullptr);
        QTest::keyClick(dialog()->focusWidget(), key);
    }

    test::FakeDesktop m_desktop;
    NotesFolder m_folder;
    QWidget m_window;
};

} // namespace quillary
