#include "Quillary/Previews/PreviewHeader.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// A header with two controls, at the top of a window.
class PreviewHeaderOf {
public:
    PreviewHeaderOf() {
        auto* const layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(&header);
        layout->addStretch();
        window.setMinimumWidth(100);
        header.setSummary(u"Oggetto · 9 chiavi"_s);
        for (const QString& text : {u"Espandi tutto"_s, u"Comprimi"_s}) {
            buttons.append(new QPushButton(text));
            header.addControl(buttons.last());
        }
    }

    void show(int width) {
        window.show();
        window.resize(width, 200);
        QCoreApplication::sendPostedEvents();
    }

    const QLabel& summary() const { return *header.findChild<QLabel*>(); }

    QWidget window;
    PreviewHeader header{&window};
    QList<QPushButton*> buttons;
};

} // namespace

TEST(PreviewHeader, ControlsStandAtTheRightOfTheSummary) {
    PreviewHeaderOf shown;
    shown.show(500);
    EXPECT_EQ(shown.summary().x(), 18);
    EXPECT_EQ(shown.buttons.last()->geometry().right() + 1, 500 - 12);
    EXPECT_EQ(shown.buttons.first()->y(), shown.buttons.last()->y());
    EXPECT_LE(shown.buttons.first()->y(), shown.summary().geometry().center().y());
    EXPECT_GE(shown.buttons.first()->geometry().bottom(), shown.summary().geometry().center().y());
}

TEST(PreviewHeader, WhereThereIsNoRoomControlsStandBelowTheSummary) {
    PreviewHeaderOf shown;
    shown.show(500);
    const int height = shown.header.height();
    shown.show(260);
    EXPECT_GT(shown.header.height(), height);
    EXPECT_GT(shown.buttons.first()->y(), shown.summary().geometry().bottom());
    EXPECT_GE(shown.summary().width(), shown.summary().sizeHint().width()) << "nothing is cut off";
    for (const QPushButton* const button : shown.buttons) {
        EXPECT_GE(button->width(), button->sizeHint().width());
    }
    shown.show(500);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown.header.height() == height; })) << "and beside it again";
}

TEST(PreviewHeader, ALongerSummaryTakesTheRoomThatItNeeds) {
    PreviewHeaderOf shown;
    shown.show(400);
    EXPECT_LE(shown.buttons.first()->y(), shown.summary().geometry().center().y());
    shown.header.setSummary(u"123456789 righe · 123456789 colonne · separatore «tab»"_s);
    shown.show(400);
    EXPECT_GT(shown.buttons.first()->y(), shown.summary().geometry().bottom());
}
