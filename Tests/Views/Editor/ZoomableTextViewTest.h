#pragma once

#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/State/NoteDocument.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace quillary {

using namespace Qt::StringLiterals;

/// A text view of its own, on the screen and with the focus.
class ZoomableTextViewTest : public testing::Test {
protected:
    void open(const QString& text, QSize size = {400, 300}) {
        m_view.reset();
        m_document = std::make_unique<NoteDocument>(text);
        m_view = std::make_unique<ZoomableTextView>(*m_document);
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPointSizeF(10);
        m_view->setEditorFont(font);
        m_view->resize(size);
        m_view->show();
        m_view->activateWindow();
        m_view->setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_view.get()));
    }

    QString text() const { return m_view->storage().text(); }

    void putCaret(qsizetype position) { m_view->setSelection({position, position}); }

    qsizetype caret() const { return m_view->selection().caret; }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(m_view.get(), key, modifiers);
    }

    void type(const QString& letters) { QTest::keyClicks(m_view.get(), letters); }

    void paste(const QString& pasted) {
        QGuiApplication::clipboard()->setText(pasted);
        m_view->paste();
    }

    QImage image() { return m_view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    int rowTop(int row) { return ZoomableTextView::verticalInset + row * m_view->textLayout().pitch(); }

    std::unique_ptr<NoteDocument> m_document;
    std::unique_ptr<ZoomableTextView> m_view;
};

} // namespace quillary
