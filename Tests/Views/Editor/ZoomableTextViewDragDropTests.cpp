#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include <gmock/gmock.h>

namespace quillary {

namespace {

class ZoomableTextViewDragDropTest : public ZoomableTextViewTest {
protected:
    /// The middle of the left edge of a character.
    QPoint placeOf(qsizetype position) {
        const QRect rect = m_view->characterRect(position);
        return {rect.left() + 1, rect.center().y()};
    }

    /// As when something from another program is dragged to a place and let go there.
    bool drop(const QMimeData& content, QPoint place) {
        QDragEnterEvent enter(place, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(m_view->viewport(), &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QDragMoveEvent move(place, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_view->viewport(), &move);
        QDropEvent drop(place, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
        drop.ignore();
        QApplication::sendEvent(m_view->viewport(), &drop);
        return move.isAccepted() && drop.isAccepted();
    }
};

TEST_F(ZoomableTextViewDragDropTest, DroppedTextGoesWhereItIsDroppedAndIsSelected) {
    open(u"uno tre"_s);
    QMimeData content;
    content.setText(u"due "_s);
    EXPECT_TRUE(drop(content, placeOf(4)));
    EXPECT_EQ(text(), u"uno due tre"_s);
    EXPECT_EQ(m_view->selectedText(), u"due "_s);
    EXPECT_TRUE(m_view->hasFocus());
    m_view->undo();
    EXPECT_EQ(text(), u"uno tre"_s);
}

TEST_F(ZoomableTextViewDragDropTest, OnlyPlainTextIsTaken) {
    open(u"abc"_s);
    QMimeData image;
    image.setImageData(QImage(4, 4, QImage::Format_RGB32));
    EXPECT_FALSE(drop(image, placeOf(1)));
    EXPECT_EQ(text(), u"abc"_s);

    QMimeData rich;
    rich.setHtml(u"<b>x</b>"_s);
    rich.setText(u"x"_s);
    EXPECT_TRUE(drop(rich, placeOf(1)));
    EXPECT_EQ(text(), u"axbc"_s);

    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(u"/tmp/un file.png"_s), QUrl::fromLocalFile(u"/tmp/altro.txt"_s)});
    EXPECT_TRUE(drop(files, placeOf(0)));
    EXPECT_EQ(text(), u"/tmp/un file.png\n/tmp/altro.txtaxbc"_s);

    QMimeData link;
    link.setUrls({QUrl(u"https://example.org/a%20b"_s)});
    m_view->selectAll();
    m_view->deleteSelection();
    EXPECT_TRUE(drop(link, {30, 30}));
    EXPECT_TRUE(text().startsWith(u"https://example.org/"_s));
}

TEST_F(ZoomableTextViewDragDropTest, APastedImageOrFileIsPlainTextOrNothing) {
    open(u"a"_s);
    auto* image = new QMimeData;
    image->setImageData(QImage(4, 4, QImage::Format_RGB32));
    QGuiApplication::clipboard()->setMimeData(image);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(text(), u"a"_s);
    auto* rich = new QMimeData;
    rich->setHtml(u"<i>b\u00a0c</i>"_s);
    rich->setText(u"b\u00a0c"_s);
    QGuiApplication::clipboard()->setMimeData(rich);
    putCaret(1);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(text(), u"ab\u00a0c"_s);
}

TEST_F(ZoomableTextViewDragDropTest, AReadOnlyViewTakesNoDrop) {
    open(u"abc"_s);
    m_view->setReadOnly(true);
    QMimeData content;
    content.setText(u"x"_s);
    EXPECT_FALSE(drop(content, placeOf(1)));
    EXPECT_EQ(text(), u"abc"_s);
}

TEST_F(ZoomableTextViewDragDropTest, ThePlaceOfTheDropShowsWhileTextIsDraggedOverIt) {
    open(u"abc"_s);
    putCaret(0);
    const QImage before = image();
    QMimeData content;
    content.setText(u"x"_s);
    QDragEnterEvent enter(placeOf(2), Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &enter);
    QDragMoveEvent move(placeOf(2), Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &move);
    EXPECT_NE(image(), before);
    QDragLeaveEvent leave;
    QApplication::sendEvent(m_view->viewport(), &leave);
    EXPECT_EQ(image(), before);
}

TEST_F(ZoomableTextViewDragDropTest, AClickOnSelectedTextPutsTheCaretThere) {
    open(u"uno due tre"_s);
    m_view->setSelection({4, 7});
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, placeOf(5));
    EXPECT_EQ(m_view->selection(), (TextSelection{4, 7})) << "it may yet be dragged";
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, placeOf(5));
    EXPECT_EQ(m_view->selection(), (TextSelection{5, 5}));
}

} // namespace

} // namespace quillary
