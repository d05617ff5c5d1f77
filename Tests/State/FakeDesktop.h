#pragma once

#include "Quillary/State/Desktop.h"

#include <QStringList>

#include <functional>
#include <utility>

namespace quillary::test {

/// A desktop that gives the answers of a test and keeps what it was asked for.
class FakeDesktop : public Desktop {
public:
    void beep() override { ++beeps; }

    std::optional<QString> clipboardText() const override { return clipboard; }

    void setClipboardText(const QString& text) override { clipboard = text; }

    QList<FilePath> chooseFiles(const QString& message, const QString& prompt) override {
        runPanel({message, prompt});
        return chosenFiles;
    }

    std::optional<FilePath> chooseDirectory(const FilePath& start, const QString& prompt) override {
        runPanel({start.text(), prompt});
        return chosenDirectory;
    }

    std::optional<FilePath> chooseDestination(const QString& name) override {
        runPanel({name});
        return chosenDestination;
    }

    void open(const FilePath& path) override { opened.append(path.text()); }

    void openURL(const QString& url) override { opened.append(url); }

    void reveal(const FilePath& path) override { revealed.append(path.text()); }

    /// What the user does in the panels; nothing chosen is a panel dismissed.
    QList<FilePath> chosenFiles;
    std::optional<FilePath> chosenDirectory;
    std::optional<FilePath> chosenDestination;

    /// What happens while a panel is on screen.
    std::function<void()> duringPanel;

    std::optional<QString> clipboard;
    int beeps = 0;

    /// The texts that each panel was given.
    QList<QStringList> panels;

    /// Paths and URLs, in the order in which they were asked for.
    QStringList opened;
    QStringList revealed;

private:
    void runPanel(const QStringList& texts) {
        panels.append(texts);
        if (duringPanel) {
            duringPanel();
        }
    }
};

} // namespace quillary::test
