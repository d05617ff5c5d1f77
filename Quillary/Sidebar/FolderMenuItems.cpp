#include "Quillary/Sidebar/FolderMenuItems.h"

#include "Quillary/State/AppActions.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QIconEngine>
#include <QMenu>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <utility>

namespace quillary {

namespace {

QString folderMenuText(const char* literal) {
    return QCoreApplication::translate("quillary::FolderMenuItems", literal);
}

/// A disc in a folder's colour, drawn at whatever scale it is needed; larger and with a mark on it for the present one.
class ColorDisc : public QIconEngine {
public:
    ColorDisc(const QColor& color, const QColor& mark, bool isPresent)
        : m_color(color), m_mark(mark), m_isPresent(isPresent) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        const double side = std::min(rect.width(), rect.height());
        const double diameter = side * (m_isPresent ? 1.0 : 0.7);
        const QPointF center = QRectF(rect).center();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(m_color);
        painter->drawEllipse(center, diameter / 2, diameter / 2);
        if (m_isPresent) {
            const double inset = side / 8;
            drawSymbol(*painter, Symbol::check, QRectF(rect).adjusted(inset, inset, -inset, -inset), m_mark);
        }
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new ColorDisc(*this); }

private:
    QColor m_color;
    QColor m_mark;
    bool m_isPresent;
};

} // namespace

void FolderMenuItems::addTo(QMenu& menu) const {
    const auto add = [&menu](const char* literal, auto run) {
        return menu.addAction(folderMenuText(literal), &menu, std::move(run));
    };
    add("Nuova nota qui", [&store = store, folder = folder] { store.makeNote({}, {}, {}, false, folder); });
    add("Rinomina", [&store = store, folder = folder] { store.setRenamingFolder(folder); });
    addColorsTo(*menu.addMenu(folderMenuText("Colore")));
    menu.addSeparator();
    const qsizetype place = store.folders().indexOf(folder);
    add("Sposta su", [&store = store, folder = folder] { store.moveFolder(folder, -1); })->setEnabled(place > 0);
    add("Sposta giù", [&store = store, folder = folder] {
        store.moveFolder(folder, +1);
    })->setEnabled(place >= 0 && place + 1 < store.folders().size());
    add("Mostra nel Finder", [&store = store, folder = folder] {
        if (Desktop* const desktop = AppActions::shared().desktop) {
            desktop->reveal(store.fileStore().directory().appending(folder));
        }
    });
    menu.addSeparator();
    add("Elimina cartella…", [&store = store, folder = folder] { store.setPendingFolderDeletion(folder); });
}

void FolderMenuItems::addColorsTo(QMenu& menu) const {
    const auto& colors = store.folderColors();
    const auto present = colors.constFind(folder);
    auto* const group = new QActionGroup(&menu);
    const auto addColor = [&](const QString& name, std::optional<FolderColor> color, bool isPresent) {
        QAction* const action =
            menu.addAction(name, &menu, [&store = store, folder = folder, color] { store.setColor(color, folder); });
        action->setCheckable(true);
        action->setChecked(isPresent);
        group->addAction(action);
        return action;
    };
    addColor(folderMenuText("Nessuno"), std::nullopt, present == colors.constEnd());
    const QPalette palette = menu.palette();
    for (const FolderColor color : allFolderColors) {
        const bool isPresent = present != colors.constEnd() && *present == color;
        addColor(Theme::folderColorName(color), color, isPresent)
            ->setIcon(
                QIcon(new ColorDisc(Theme::folderColor(color, palette), palette.color(QPalette::Base), isPresent)));
    }
}

} // namespace quillary
