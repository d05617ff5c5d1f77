#include "Quillary/Detail/StatusBar.h"

#include "Quillary/Detail/SaveMark.h"
#include "Quillary/Detail/ZoomControl.h"
#include "Quillary/Theme/ElidedLabel.h"
#include "Quillary/Theme/Hairline.h"
#include "Quillary/Theme/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype largeFile = 1'000'001;

} // namespace

StatusBar::StatusBar(NotesStore& store, AppSettings& settings, QWidget* parent) : QWidget(parent) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(14, 3, 8, 3);
    layout->setSpacing(6);
    const auto add = [this, layout](const QString& text = {}) {
        // What changes gives way where there is little room.
        QLabel* const label = text.isEmpty() ? new ElidedLabel(this) : new QLabel(text, this);
        label->setTextFormat(Qt::PlainText);
        label->setFont(Theme::sidebarDetail());
        label->setForegroundRole(QPalette::PlaceholderText);
        layout->addWidget(label);
        return label;
    };
    const QString separator = u"·"_s;
    m_format = add();
    add(separator);
    m_count = add();
    m_largeSeparator = add(separator);
    m_large = add(tr("File grande"));
    m_large->setToolTip(tr("Oltre 1 MB: anteprima formattata e colori della sintassi disattivati"));
    m_large->setAccessibleDescription(m_large->toolTip());
    add(separator);
    m_mark = new SaveMark(this);
    layout->addWidget(m_mark);
    m_saved = add();
    layout->addStretch();
    layout->addWidget(new ZoomControl(settings, this));

    connect(&store, &NotesStore::noteChanged, this, [this](const NoteItem* note, NoteField field) {
        const bool concerns =
            field == NoteField::url || field == NoteField::characterCount || field == NoteField::isDirty;
        if (concerns && note == m_item.get()) {
            update();
        }
    });
}

void StatusBar::setItem(const NoteItemPtr& item) {
    m_item = item;
    update();
}

void StatusBar::update() {
    if (m_item == nullptr) {
        return;
    }
    m_format->setText(displayName(m_item->format()));
    m_count->setText(tr("%1 caratteri").arg(m_item->characterCount()));
    const bool isLarge = m_item->characterCount() >= largeFile;
    m_largeSeparator->setVisible(isLarge);
    m_large->setVisible(isLarge);
    m_mark->setDirty(m_item->isDirty());
    m_saved->setText(m_item->isDirty() ? tr("Modificata") : tr("Salvata"));
}

void StatusBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(QRectF(0, 0, width(), Hairline::thicknessOn(*this)), Theme::separator(palette()));
}

} // namespace quillary
