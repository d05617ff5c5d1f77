#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/State/NoteDocument.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTest>

#include <gmock/gmock.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// Sends the same keys and clicks to the editor and to a QPlainTextEdit, on text that both can hold, and compares.
///
/// Left out, because the editor differs on purpose:
/// - page keys, whose way depends on the line pitch (1.2 here);
/// - End, or a click behind the last letter, in a wrapped row without a blank at its end: the caret stays at that row's
///   end; a QPlainTextEdit's goes to the start of the next one, or to before the last letter;
/// - Shift+Enter, which is Enter here and U+2028 there;
/// - Shift and a click some time after a double or triple click, where a QPlainTextEdit goes on from that old word or
/// line;
/// - what one undo takes back: a paste does not join with the typing around it here. All of them together agree.
class PlainTextEditComparison : public testing::TestWithParam<std::tuple<quint32, bool>> {
protected:
    static constexpr int textWidth = 200;

    void SetUp() override {
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPointSizeF(11);
        const bool wraps = std::get<1>(GetParam());
        const int margin = static_cast<int>(m_peer.document()->documentMargin());
        m_peer.setFrameShape(QFrame::NoFrame);
        m_peer.setFont(font);
        m_peer.setLineWrapMode(wraps ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
        m_peer.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_peer.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_peer.resize((wraps ? textWidth : 4000) + 2 * margin, 4000);
        m_view.setEditorFont(font);
        m_view.setWraps(wraps);
        m_view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_view.resize((wraps ? textWidth : 4000) + 2 * ZoomableTextView::horizontalInset, 4000);
        m_peer.show();
        m_view.show();
        m_lineHeight = QFontMetrics(font).lineSpacing();
    }

    void TearDown() override { QApplication::setDoubleClickInterval(400); }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&m_view, key, modifiers);
        // What the first one put on the clipboard is what the second one puts there.
        QTest::keyClick(&m_peer, key, modifiers);
    }

    void type(char letter) {
        QTest::keyClick(&m_view, letter);
        QTest::keyClick(&m_peer, letter);
    }

    QPoint inView(int row, int x) {
        return {ZoomableTextView::horizontalInset + x,
                ZoomableTextView::verticalInset + row * m_view.textLayout().pitch() + m_view.textLayout().pitch() / 2};
    }

    QPoint inPeer(int row, int x) const {
        const int margin = static_cast<int>(m_peer.document()->documentMargin());
        return {margin + x, margin + row * m_lineHeight + m_lineHeight / 2};
    }

    void click(int row, int x, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(m_view.viewport(), Qt::LeftButton, modifiers, inView(row, x));
        QTest::mouseClick(m_peer.viewport(), Qt::LeftButton, modifiers, inPeer(row, x));
    }

    /// A double click; the next click nearby is the third one, or is not, by the interval and no matter how slow we
    /// are.
    void doubleClick(int row, int x, bool waitsForThird) {
        QApplication::setDoubleClickInterval(waitsForThird ? 60'000 : 1);
        QTest::mouseDClick(m_view.viewport(), Qt::LeftButton, {}, inView(row, x));
        QTest::mouseDClick(m_peer.viewport(), Qt::LeftButton, {}, inPeer(row, x));
        if (!waitsForThird) {
            QTest::qWait(3);
            QCoreApplication::processEvents();
        }
    }

    void drag(int fromRow, int fromX, int toRow, int toX) {
        const auto dragOne = [](QWidget* widget, QPoint from, QPoint to) {
            QTest::mousePress(widget, Qt::LeftButton, {}, from);
            QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(widget, &move);
            QTest::mouseRelease(widget, Qt::LeftButton, {}, to);
        };
        dragOne(m_view.viewport(), inView(fromRow, fromX), inView(toRow, toX));
        dragOne(m_peer.viewport(), inPeer(fromRow, fromX), inPeer(toRow, toX));
    }

    bool endIsAmbiguous(const TextLayout::Row& row) {
        return !row.endsLine && m_view.storage().unitAt(row.contents.end() - 1) != u' ';
    }

    /// A place in a row to click at, as random wills.
    int randomX(QRandomGenerator& random, int index) {
        const int x = random.bounded(textWidth - 1);
        const TextLayout::Row row = m_view.textLayout().rowAt(index);
        return endIsAmbiguous(row) && x >= m_view.textLayout().xOf(row, row.contents.end() - 1) ? 0 : x;
    }

    /// One random step, and what it was.
    QString step(QRandomGenerator& random) {
        static constexpr std::array letters = {'a', 'b', 'c', 'd', 'e', '.', ',', '(', ')', '-', ' ', ' ', ' '};
        static constexpr std::array motions = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,
                                               Qt::Key_Down, Qt::Key_Home,  Qt::Key_End};
        const int rows = static_cast<int>(m_view.textLayout().rowCount());
        const int row = random.bounded(rows);
        const int x = randomX(random, row);
        const int otherRow = random.bounded(rows);
        const int otherX = randomX(random, otherRow);
        switch (random.bounded(18)) {
        case 0:
        case 1:
        case 2:
        case 3: {
            const int count = random.bounded(1, 8);
            for (int i = 0; i < count; ++i) {
                type(letters[static_cast<std::size_t>(random.bounded(static_cast<int>(letters.size())))]);
            }
            return u"typed"_s;
        }
        case 4:
            key(Qt::Key_Return);
            return u"Enter"_s;
        case 5:
            key(Qt::Key_Backspace, random.bounded(3) == 0 ? Qt::ControlModifier : Qt::NoModifier);
            return u"Backspace"_s;
        case 6:
            key(Qt::Key_Delete, random.bounded(3) == 0 ? Qt::ControlModifier : Qt::NoModifier);
            return u"Delete"_s;
        case 7:
        case 8:
        case 9:
        case 10:
        case 11: {
            const Qt::Key motion = motions[static_cast<std::size_t>(random.bounded(static_cast<int>(motions.size())))];
            Qt::KeyboardModifiers modifiers;
            const bool isVertical = motion == Qt::Key_Up || motion == Qt::Key_Down;
            modifiers.setFlag(Qt::ControlModifier, !isVertical && random.bounded(3) == 0);
            modifiers.setFlag(Qt::ShiftModifier, random.bounded(3) == 0);
            if (motion == Qt::Key_End && !(modifiers & Qt::ControlModifier) &&
                endIsAmbiguous(m_view.textLayout().rowHolding(m_view.selection().caret))) {
                return u"nothing"_s;
            }
            key(motion, modifiers);
            return QKeySequence(QKeyCombination(modifiers, motion)).toString();
        }
        case 12:
            click(row, x);
            return u"click %1 %2"_s.arg(row).arg(x);
        case 13:
            click(row, x);
            click(otherRow, otherX);
            click(row, x, Qt::ShiftModifier);
            return u"shift-click %1 %2"_s.arg(row).arg(x);
        case 14:
            doubleClick(row, x, false);
            return u"double click %1 %2"_s.arg(row).arg(x);
        case 15:
            doubleClick(row, x, true);
            click(row, x);
            return u"triple click %1 %2"_s.arg(row).arg(x);
        case 16:
            // A drag that begins in a selection is drag and drop to a QPlainTextEdit.
            if (m_view.selection().isEmpty()) {
                drag(row, x, otherRow, otherX);
                return u"drag from %1 %2"_s.arg(row).arg(x);
            }
            return u"nothing"_s;
        case 17: {
            static constexpr std::array commands = {Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_K};
            const Qt::Key command = commands[static_cast<std::size_t>(random.bounded(4))];
            key(command, Qt::ControlModifier);
            return QKeySequence(QKeyCombination(Qt::ControlModifier, command)).toString();
        }
        case 18:
        default:
            return u"nothing"_s;
        }
    }

    NoteDocument m_document{QString()};
    ZoomableTextView m_view{m_document};
    QPlainTextEdit m_peer;
    int m_lineHeight = 1;
};

TEST_P(PlainTextEditComparison, TextCaretAndSelectionAgree) {
    QRandomGenerator random(std::get<0>(GetParam()));
    QGuiApplication::clipboard()->setText(u"tre parole\nqui"_s);
    const QString start = u"Una riga di testo, come tante altre.\n\n  Un'altra (con parentesi) e blanks  \nfine"_s;
    QGuiApplication::clipboard()->setText(start);
    key(Qt::Key_V, Qt::ControlModifier);
    QStringList steps;
    for (int i = 0; i < 1000; ++i) {
        const qsizetype caret = m_view.selection().caret;
        steps += u"%1 (%2)"_s.arg(step(random)).arg(caret);
        const QTextCursor cursor = m_peer.textCursor();
        const TextSelection expected{cursor.anchor(), cursor.position()};
        const QString trail = QStringList(steps.mid(std::max<qsizetype>(0, steps.size() - 6))).join(u"; "_s);
        ASSERT_EQ(m_view.storage().text().toStdString(), m_peer.toPlainText().toStdString()) << qPrintable(trail);
        ASSERT_EQ(m_view.selection(), expected)
            << qPrintable(trail) << '\n'
            << expected.anchor << ' ' << expected.caret << " but " << m_view.selection().anchor << ' '
            << m_view.selection().caret << " in\n"
            << qPrintable(m_peer.toPlainText());
        if (m_view.storage().length() > 1200) {
            key(Qt::Key_A, Qt::ControlModifier);
            key(Qt::Key_V, Qt::ControlModifier);
        }
    }
    const QString last = m_view.storage().text();
    for (int i = 0; i < 2000; ++i) {
        key(Qt::Key_Z, Qt::ControlModifier);
    }
    EXPECT_EQ(m_view.storage().text(), QString());
    EXPECT_EQ(m_peer.toPlainText(), QString());
    for (int i = 0; i < 2000; ++i) {
        key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    }
    EXPECT_EQ(m_view.storage().text(), last);
    EXPECT_EQ(m_peer.toPlainText(), last);
}

INSTANTIATE_TEST_SUITE_P(Seeds, PlainTextEditComparison,
                         testing::Combine(testing::Values(1U, 2U, 3U), testing::Bool()));

} // namespace

} // namespace quillary
