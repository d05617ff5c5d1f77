#include "Quillary/Theme/Symbol.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>

// The resources of a static library are linked in only when somebody asks for them by name.
static void registerSymbols() {
    Q_INIT_RESOURCE(symbols);
}

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

struct SymbolNames {
    /// The drawing in `symbols`, without extension.
    QLatin1StringView drawing;
    /// By the Icon Naming Specification; empty where that has nothing like it.
    QLatin1StringView desktopIcon;
};

SymbolNames namesOf(Symbol symbol) {
    switch (symbol) {
    case Symbol::add:
        return {"add"_L1, "list-add"_L1};
    case Symbol::check:
        return {"check"_L1, {}};
    case Symbol::checkedBox:
        return {"checked-box"_L1, {}};
    case Symbol::checklist:
        return {"checklist"_L1, {}};
    case Symbol::chevronDown:
        return {"chevron-down"_L1, "go-down"_L1};
    case Symbol::chevronLeft:
        return {"chevron-left"_L1, "go-previous"_L1};
    case Symbol::chevronRight:
        return {"chevron-right"_L1, "go-next"_L1};
    case Symbol::chevronUp:
        return {"chevron-up"_L1, "go-up"_L1};
    case Symbol::clear:
        return {"clear"_L1, "edit-clear"_L1};
    case Symbol::close:
        return {"close"_L1, "window-close"_L1};
    case Symbol::comparison:
        return {"comparison"_L1, {}};
    case Symbol::copy:
        return {"copy"_L1, "edit-copy"_L1};
    case Symbol::edit:
        return {"edit"_L1, "accessories-text-editor"_L1};
    case Symbol::equal:
        return {"equal"_L1, {}};
    case Symbol::expand:
        return {"expand"_L1, {}};
    case Symbol::folder:
        return {"folder"_L1, "folder"_L1};
    case Symbol::fontSize:
        return {"font-size"_L1, "preferences-desktop-font"_L1};
    case Symbol::keyboard:
        return {"keyboard"_L1, "input-keyboard"_L1};
    case Symbol::more:
        return {"more"_L1, {}};
    case Symbol::newFolder:
        return {"new-folder"_L1, "folder-new"_L1};
    case Symbol::newNote:
        return {"new-note"_L1, "document-new"_L1};
    case Symbol::note:
        return {"note"_L1, "text-x-generic"_L1};
    case Symbol::openFolder:
        return {"open-folder"_L1, "folder-open"_L1};
    case Symbol::preview:
        return {"preview"_L1, "document-print-preview"_L1};
    case Symbol::refresh:
        return {"refresh"_L1, "view-refresh"_L1};
    case Symbol::remove:
        return {"remove"_L1, "list-remove"_L1};
    case Symbol::replace:
        return {"replace"_L1, "edit-find-replace"_L1};
    case Symbol::replaceFilled:
        return {"replace-filled"_L1, "edit-find-replace"_L1};
    case Symbol::replacement:
        return {"replacement"_L1, {}};
    case Symbol::search:
        return {"search"_L1, "edit-find"_L1};
    case Symbol::send:
        return {"send"_L1, "document-send"_L1};
    case Symbol::sent:
        return {"sent"_L1, "document-send"_L1};
    case Symbol::settings:
        return {"settings"_L1, "preferences-system"_L1};
    case Symbol::swap:
        return {"swap"_L1, {}};
    case Symbol::trash:
        return {"trash"_L1, "user-trash"_L1};
    case Symbol::uncheckedBox:
        return {"unchecked-box"_L1, {}};
    case Symbol::warning:
        return {"warning"_L1, "dialog-warning"_L1};
    }
    Q_UNREACHABLE();
}

/// The drawing in one colour, with as many pixels as asked for on each side.
QPixmap tinted(Symbol symbol, int side, QRgb color) {
    registerSymbols();
    const QLatin1StringView drawing = namesOf(symbol).drawing;
    const QString key = u"quillary-symbol-%1-%2-%3"_s.arg(drawing).arg(side).arg(color, 0, 16);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) {
        return pixmap;
    }
    pixmap = QPixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(u":/quillary/symbols/"_s % drawing % u".svg"_s).render(&painter, pixmap.rect());
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), QColor::fromRgba(color));
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

class SymbolEngine : public QIconEngine {
public:
    explicit SymbolEngine(Symbol symbol) : m_symbol(symbol) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QGuiApplication::palette();
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        drawSymbol(*painter, m_symbol, rect, palette.color(group, QPalette::ButtonText));
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

    QString iconName() override { return namesOf(m_symbol).desktopIcon; }

private:
    Symbol m_symbol;
};

} // namespace

QIcon symbolIcon(Symbol symbol) {
    return QIcon(new SymbolEngine(symbol));
}

void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& rect, const QColor& color) {
    const double side = std::min(rect.width(), rect.height());
    const double scale = painter.device()->devicePixelRatioF();
    const int pixels = qRound(side * scale);
    if (pixels <= 0) {
        return;
    }
    QPixmap pixmap = tinted(symbol, pixels, color.rgba());
    pixmap.setDevicePixelRatio(scale);
    // On whole pixels, or every line would be blurred.
    const auto settled = [scale](double place) { return qRound(place * scale) / scale; };
    painter.drawPixmap(QPointF(settled(rect.center().x() - side / 2), settled(rect.center().y() - side / 2)), pixmap);
}

} // namespace quillary
