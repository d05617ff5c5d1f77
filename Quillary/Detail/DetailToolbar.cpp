#include "Quillary/Detail/DetailToolbar.h"

#include "Quillary/Detail/CopyContentButton.h"
#include "Quillary/Detail/EditableTitle.h"
#include "Quillary/Detail/FormatMenuButton.h"
#include "Quillary/Detail/PreviewButton.h"
#include "Quillary/Detail/SoloButton.h"
#include "Quillary/Theme/ElidedLabel.h"
#include "Quillary/Theme/Hairline.h"
#include "Quillary/Theme/SymbolLabel.h"
#include "Quillary/Theme/Theme.h"

#include <QHBoxLayout>
#include <QPainter>

namespace quillary {

namespace {

constexpr int symbolSize = 16;

} // namespace

DetailToolbar::DetailToolbar(NotesStore& store, AppSettings& settings, SoloController& solo, QWidget* parent)
    : QWidget(parent),
      m_title(new EditableTitle(store, this)),
      m_selectionImage(new SymbolLabel(this)),
      m_selectionTitle(new ElidedLabel(this)),
      m_format(new FormatMenuButton(store, this)),
      m_preview(new PreviewButton(store, settings, this)),
      m_solo(new SoloButton(solo, this)),
      m_copy(new CopyContentButton([&store] { store.copySelectedContent(); }, this)),
      m_store(store) {
    setAccessibleName(tr("Barra degli strumenti"));
    QFont font = Theme::sidebarTitle();
    font.setWeight(QFont::DemiBold);
    m_selectionTitle->setFont(font);
    m_selectionImage->setAccessibleName(tr("Selezione"));

    auto* const commands = new QHBoxLayout;
    commands->setSpacing(4);
    commands->addStretch();
    for (QToolButton* const button : std::initializer_list<QToolButton*>{m_format, m_preview, m_solo, m_copy}) {
        button->setIconSize({symbolSize, symbolSize});
        button->setFixedHeight(26);
        commands->addWidget(button);
    }
    m_format->setIconSize({10, 10});

    auto* const centre = new QHBoxLayout;
    centre->setSpacing(6);
    centre->addWidget(m_title);
    centre->addWidget(m_selectionImage);
    centre->addWidget(m_selectionTitle);

    // The same stretch on both sides keeps the title in the middle until there is no room for that.
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 7, 8, 8);
    layout->setSpacing(8);
    layout->addStretch(1);
    layout->addLayout(centre, 0);
    layout->addLayout(commands, 1);

    connect(&store, &NotesStore::noteChanged, this, [this](const NoteItem* note, NoteField field) {
        const bool concerns = field == NoteField::url || field == NoteField::showsPreview ||
                              field == NoteField::characterCount || field == NoteField::document;
        if (concerns && note == m_item.get()) {
            update();
        }
    });
    update();
}

void DetailToolbar::follow(const NoteItemPtr& item, const std::optional<QString>& selectionTitle) {
    m_item = item;
    // The title ends an edit that is under way, as long as it still stands.
    m_title->setItem(item);
    m_title->setVisible(item != nullptr);
    m_selectionImage->setVisible(selectionTitle.has_value());
    m_selectionTitle->setVisible(selectionTitle.has_value());
    if (selectionTitle) {
        m_selectionImage->setSymbol(m_store.isShowingDiff() ? Symbol::comparison : Symbol::checklist, symbolSize);
        m_selectionTitle->setText(*selectionTitle);
    }
    update();
}

void DetailToolbar::update() {
    m_title->update();
    m_format->setVisible(m_item != nullptr);
    m_format->setItem(m_item);
    m_preview->setItem(m_item);
    m_solo->setEnabled(m_item != nullptr && m_item->document() != nullptr);
    m_copy->setEnabled(m_item != nullptr && m_item->document() != nullptr);
}

void DetailToolbar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double line = Hairline::thicknessOn(*this);
    painter.fillRect(QRectF(0, height() - line, width(), line), Theme::separator(palette()));
}

} // namespace quillary
