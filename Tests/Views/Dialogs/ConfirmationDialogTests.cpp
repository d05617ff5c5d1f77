#include "Quillary/Dialogs/ConfirmationDialog.h"

#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Palettes.h"

#include <QImage>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

constexpr auto destructiveText = "Sposta nel Cestino"_L1;

/// The dialog with a destructive answer, which Return gives if it is the default one.
class DestructiveAnswer {
public:
    DestructiveAnswer(const QPalette& palette, bool isDefault) {
        m_dialog.setPalette(palette);
        m_dialog.setTexts(u"Spostare «Alfa» nel Cestino?"_s, u"Potrai recuperarla dal Cestino del Finder."_s);
        m_dialog.setAnswers({{.text = destructiveText, .isDestructive = true}}, isDefault ? 0 : -1);
        m_dialog.show();
        for (QPushButton* const button : m_dialog.findChildren<QPushButton*>()) {
            if (button->text() == destructiveText) {
                m_button = button;
            }
        }
    }

    QPushButton& button() { return *m_button; }

    QColor text() const { return m_button->palette().color(QPalette::ButtonText); }

    /// The least contrast of the text to what is painted behind it: the columns beside the text, edges left out.
    double leastContrast() {
        const QImage picture = m_button->grab().toImage();
        constexpr int edge = 4;
        constexpr int columns = 4;
        double least = 21;
        for (int y = edge; y < picture.height() - edge; ++y) {
            for (int x = edge; x < edge + columns; ++x) {
                least = std::min(least, contrast(text(), picture.pixelColor(x, y)));
            }
        }
        return least;
    }

private:
    ConfirmationDialog m_dialog{nullptr};
    QPushButton* m_button = nullptr;
};

/// A state of a button that changes what is painted behind its text.
struct ButtonState {
    const char* name;
    void (*enter)(QPushButton& button);
};

constexpr ButtonState buttonStates[] = {
    {"at rest", [](QPushButton&) {}},
    {"under the mouse", [](QPushButton& button) { button.setAttribute(Qt::WA_UnderMouse); }},
    {"pressed", [](QPushButton& button) { button.setDown(true); }},
};

} // namespace

TEST(ConfirmationDialog, ADestructiveAnswerCanBeReadInEveryState) {
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        for (const bool isDefault : {false, true}) {
            for (const ButtonState& state : buttonStates) {
                DestructiveAnswer answer(palette, isDefault);
                state.enter(answer.button());
                EXPECT_GE(answer.leastContrast(), textContrast)
                    << state.name << (isDefault ? ", default" : "") << ", on "
                    << palette.color(QPalette::Button).name().toStdString();
            }
        }
    }
}

TEST(ConfirmationDialog, ADestructiveAnswerIsRedAndFollowsTheAppearance) {
    ConfirmationDialog dialog(nullptr);
    dialog.setPalette(lightPalette());
    dialog.setAnswers({{.text = u"Tieni le note"_s}, {.text = destructiveText, .isDestructive = true}}, 0);
    const auto textOf = [&dialog](const QString& name) {
        QColor text;
        for (const QPushButton* const button : dialog.findChildren<QPushButton*>()) {
            text = button->text() == name ? button->palette().color(QPalette::ButtonText) : text;
        }
        return text;
    };
    for (const QPalette& palette : {darkPalette(), lightPalette()}) {
        dialog.setPalette(palette);
        const QColor red = textOf(destructiveText);
        EXPECT_GT(red.red(), 4 * std::max(red.green(), red.blue()) / 3);
        EXPECT_EQ(textOf(u"Tieni le note"_s), palette.color(QPalette::ButtonText));
        EXPECT_EQ(textOf(u"Annulla"_s), palette.color(QPalette::ButtonText));
    }
}
