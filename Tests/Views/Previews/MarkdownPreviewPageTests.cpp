#include "MarkdownPreviewOf.h"

using namespace quillary;
using namespace Qt::StringLiterals;

// The page

TEST(MarkdownPreview, ThePageIsNoWiderThanItsColumn) {
    const MarkdownPreviewOf wide(u"testo"_s, {1200, 300});
    EXPECT_EQ(wide.view.contentRect(0).width(), 720);
    EXPECT_EQ(wide.view.contentRect(0).top(), 32);
    const MarkdownPreviewOf narrow(u"testo"_s, {400, 300});
    EXPECT_EQ(narrow.view.contentRect(0).width(), narrow.view.viewport()->width() - 2 * 26);
    EXPECT_EQ(narrow.view.contentRect(0).left(), 26);
}

TEST(MarkdownPreview, TopLevelBlocksStandApartByTheSize) {
    for (const double size : {9.0, 13.0, 28.0}) {
        const MarkdownPreviewOf preview(u"uno\n\ndue"_s, {600, 400}, size);
        EXPECT_NEAR(preview.view.contentRect(1).top() - preview.view.contentRect(0).bottom(), size * 0.85, 0.01);
    }
}

TEST(MarkdownPreview, AnEmptyTextIsAnEmptyPage) {
    MarkdownPreviewOf preview{QString()};
    EXPECT_EQ(preview.bar().maximum(), 0);
    QTest::keyClick(&preview.view, Qt::Key_End);
    QTest::mouseClick(preview.view.viewport(), Qt::LeftButton, {}, {50, 50});
    QTest::keyClick(&preview.view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(preview.view.selectedText(), QString());
    preview.painted();
}

TEST(MarkdownPreview, OnlyWhatIsNearTheViewportIsLaidOut) {
    const MarkdownPreviewOf preview(manyParagraphs(10'000));
    EXPECT_LT(preview.view.laidOutRowCount(), 60);
}

TEST(MarkdownPreview, TheNextPageIsLaidOutWhenThereIsNothingElseToDo) {
    const MarkdownPreviewOf preview(manyParagraphs(3000));
    preview.bar().setValue(preview.bar().maximum() / 2);
    preview.rest();
    for (const auto action :
         {QAbstractSlider::SliderPageStepSub, QAbstractSlider::SliderPageStepAdd, QAbstractSlider::SliderPageStepAdd,
          QAbstractSlider::SliderPageStepSub, QAbstractSlider::SliderToMinimum, QAbstractSlider::SliderPageStepAdd,
          QAbstractSlider::SliderToMaximum, QAbstractSlider::SliderPageStepSub}) {
        const bool isPage =
            action == QAbstractSlider::SliderPageStepAdd || action == QAbstractSlider::SliderPageStepSub;
        const qsizetype known = preview.view.laidOutRowCount();
        preview.bar().triggerAction(action);
        EXPECT_TRUE(!isPage || preview.view.laidOutRowCount() == known) << action;
        preview.rest();
    }
    EXPECT_LT(preview.view.laidOutRowCount(), 200);
}

TEST(MarkdownPreview, PagesThatAreLaidOutAheadMoveNothing) {
    // Of narrow letters more fit into a line than are counted with.
    MarkdownPreviewOf preview(QString(QString(u"ili "_s).repeated(200) + u"\n\n"_s).repeated(900));
    preview.bar().setValue(preview.bar().maximum() / 2);
    for (const int step : {200, -200}) {
        preview.bar().setValue(preview.bar().value() + step);
        const QImage before = preview.painted();
        const double lower = preview.view.contentRect(preview.view.topRow() + 1).top();
        const int range = preview.bar().maximum();
        preview.rest();
        EXPECT_EQ(preview.view.contentRect(preview.view.topRow() + 1).top(), lower);
        EXPECT_EQ(preview.painted(), before);
        EXPECT_NE(preview.bar().maximum(), range) << "the better estimate reaches the scroll bar";
        // A step from there is as exact as any.
        const qsizetype row = preview.view.topRow() + 2;
        const double place = preview.view.contentRect(row).top();
        preview.bar().setValue(preview.bar().value() + 40);
        EXPECT_NEAR(preview.view.contentRect(row).top(), place - 40, 1);
    }
}

TEST(MarkdownPreview, TheWholePageComesToRestAtBothEnds) {
    const MarkdownPreviewOf preview(manyParagraphs(12));
    preview.rest();
    EXPECT_EQ(preview.view.laidOutRowCount(), 12);
    preview.bar().setValue(preview.bar().maximum());
    preview.rest();
    preview.bar().setValue(0);
    preview.rest();
    EXPECT_EQ(preview.view.laidOutRowCount(), 12);
}

// Scrolling

TEST(MarkdownPreview, TheEndOfThePageIsAtTheBottom) {
    MarkdownPreviewOf preview(manyParagraphs(3000));
    preview.bar().setValue(preview.bar().maximum());
    const double bottom = preview.view.contentRect(2999).bottom();
    EXPECT_NEAR(bottom, preview.view.viewport()->height() - 32, 1);
    EXPECT_EQ(preview.bar().value(), preview.bar().maximum());
    preview.bar().setValue(0);
    EXPECT_EQ(preview.view.topRow(), 0);
    EXPECT_EQ(preview.view.contentRect(0).top(), 32);
}

TEST(MarkdownPreview, StepsUpAndDownMoveTheRowsByTheStep) {
    MarkdownPreviewOf preview(manyParagraphs(3000) + u"# Titolo\n\n- a\n- b\n"_s);
    preview.bar().setValue(preview.bar().maximum() / 2);
    for (const int step : {17, -40, 300, -299, 3, -390}) {
        const qsizetype row = preview.view.topRow() + 2;
        const double before = preview.view.contentRect(row).top();
        preview.bar().setValue(preview.bar().value() + step);
        EXPECT_NEAR(preview.view.contentRect(row).top(), before - step, 0.01);
    }
}

TEST(MarkdownPreview, ScrollingDownAndUpAgainEndsWhereItBegan) {
    MarkdownPreviewOf preview(manyParagraphs(400));
    for (int i = 0; i < 100; ++i) {
        preview.bar().triggerAction(QAbstractSlider::SliderPageStepAdd);
    }
    for (int i = 0; i < 200 && preview.bar().value() > 0; ++i) {
        preview.bar().triggerAction(QAbstractSlider::SliderPageStepSub);
    }
    EXPECT_EQ(preview.view.contentRect(0).top(), 32);
}

TEST(MarkdownPreview, KeysScrollByPagesAndToTheEnds) {
    MarkdownPreviewOf preview(manyParagraphs(500));
    QTest::keyClick(&preview.view, Qt::Key_PageDown);
    EXPECT_EQ(preview.bar().value(), preview.view.viewport()->height());
    QTest::keyClick(&preview.view, Qt::Key_Space);
    QTest::keyClick(&preview.view, Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(preview.bar().value(), preview.view.viewport()->height());
    QTest::keyClick(&preview.view, Qt::Key_End);
    EXPECT_EQ(preview.bar().value(), preview.bar().maximum());
    QTest::keyClick(&preview.view, Qt::Key_Home);
    EXPECT_EQ(preview.bar().value(), 0);
    QTest::keyClick(&preview.view, Qt::Key_Down);
    EXPECT_GT(preview.bar().value(), 0);
}

TEST(MarkdownPreview, AnotherWidthKeepsTheTopRow) {
    MarkdownPreviewOf preview(manyParagraphs(2000));
    preview.bar().setValue(preview.bar().maximum() / 2);
    const qsizetype row = preview.view.topRow();
    preview.view.resize(350, 400);
    EXPECT_EQ(preview.view.topRow(), row);
    preview.view.resize(700, 300);
    EXPECT_EQ(preview.view.topRow(), row);
}

// Another text

TEST(MarkdownPreview, ANewTextKeepsThePlaceWhereTheTextIsStillThere) {
    const QString text = manyParagraphs(1000);
    MarkdownPreviewOf preview(text);
    preview.bar().setValue(preview.bar().maximum() / 2);
    const qsizetype row = preview.view.topRow();
    const QString top = preview.view.rowText(row);
    const double place = preview.view.contentRect(row).top();

    preview.view.rebuild(u"Nuovo\n\nAltro\n\n"_s + text + u"coda\n"_s, 13);
    EXPECT_EQ(preview.view.topRow(), row + 2);
    EXPECT_EQ(preview.view.rowText(preview.view.topRow()), top);
    EXPECT_NEAR(preview.view.contentRect(row + 2).top(), place, 1);

    preview.view.rebuild(text, 13);
    EXPECT_EQ(preview.view.rowText(preview.view.topRow()), top);

    preview.view.rebuild(text, 20);
    EXPECT_EQ(preview.view.rowText(preview.view.topRow()), top);

    preview.view.rebuild(u"corto"_s, 13);
    EXPECT_EQ(preview.view.topRow(), 0);
}
