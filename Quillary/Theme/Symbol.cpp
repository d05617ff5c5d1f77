#include "Quillary/Theme/Symbol.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

// The resources of a static library are linked in only when somebody asks for them by name.
static void registerSymbols() {
    Q_INIT_RESOURCE(symbols);
}

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

QString symbolFile(Symbol symbol) {
    switch (symbol) {
    case Symbol::clear:
        return u"clear"_s;
    case Symbol::folder:
        return u"folder"_s;
    case Symbol::newNote:
        return u"new-note"_s;
    case Symbol::note:
        return u"note"_s;
    case Symbol::search:
        return u"search"_s;
    case Symbol::warning:
        return u"warning"_s;
    }
    Q_UNREACHABLE();
}

QByteArray symbolDrawing(Symbol symbol) {
    registerSymbols();
    QFile file(u":/quillary/symbols/"_s % symbolFile(symbol) % u".svg"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class SymbolEngine : public QIconEngine {
public:
    explicit SymbolEngine(Symbol symbol) : m_symbol(symbol), m_drawing(symbolDrawing(symbol)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QGuiApplication::palette();
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        QByteArray drawing = m_drawing;
        drawing.replace("currentColor", palette.color(group, QPalette::ButtonText).name().toLatin1());
        QSvgRenderer(drawing).render(painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new SymbolEngine(m_symbol); }

    QString key() const override { return u"quillary-symbol"_s; }

private:
    Symbol m_symbol;
    QByteArray m_drawing;
};

} // namespace

QIcon symbolIcon(Symbol symbol) {
    return QIcon(new SymbolEngine(symbol));
}

} // namespace quillary
