#pragma once

#include "Quillary/Previews/MarkdownPreview.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

/// A preview on show.
class MarkdownPreviewOf {
public:
    explicit MarkdownPreviewOf(const QString& text, QSize size = {600, 400}, double baseSize = 13)
        : view(text, baseSize, [this](const QString& url) {
              opened.append(url);
              return true;
          }) {
        view.resize(size);
        view.show();
        if (!QTest::qWaitForWindowExposed(&view)) {
            ADD_FAILURE() << "the view is not exposed";
        }
    }

    QScrollBar& bar() const { return *view.verticalScrollBar(); }

    /// The middle of a character.
    QPoint placeOf(qsizetype row, qsizetype offset) const { return view.rectOf({row, offset}).center().toPoint(); }

    void press(QPoint place) { QTest::mousePress(view.viewport(), Qt::LeftButton, {}, place); }

    void release(QPoint place) { QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, place); }

    void moveTo(QPoint place) {
        QMouseEvent event(QEvent::MouseMove, place, view.viewport()->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    }

    /// From before one character to before another.
    void drag(MarkdownPreview::Position from, MarkdownPreview::Position to) {
        const auto before = [this](MarkdownPreview::Position position) {
            const QRectF rect = view.rectOf(position);
            return QPointF(rect.left() + 1, rect.center().y()).toPoint();
        };
        press(before(from));
        moveTo(before(to));
        release(before(to));
    }

    void click(qsizetype row, qsizetype offset) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, placeOf(row, offset));
    }

    QImage painted() { return view.viewport()->grab().toImage(); }

    /// Lets the view do what it does when there is nothing else to do; it must come to an end.
    void rest() const {
        constexpr int manySteps = 10'000;
        for (int step = 0; QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents); ++step) {
            ASSERT_LT(step, manySteps) << "the view does not come to rest";
        }
    }

    QStringList opened;
    MarkdownPreview view;
};

inline QString manyParagraphs(int count) {
    QString text;
    for (int i = 0; i < count; ++i) {
        text += u"Capoverso %1, con qualche parola in più perché non sia troppo corto per una riga sola.\n\n"_s.arg(i);
    }
    return text;
}

} // namespace quillary
