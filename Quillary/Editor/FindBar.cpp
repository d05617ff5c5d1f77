#include "Quillary/Editor/FindBar.h"

#include "Quillary/Editor/FindField.h"
#include "Quillary/Editor/FindStatusLabel.h"
#include "Quillary/Editor/IconButton.h"
#include "Quillary/Editor/OptionToggle.h"
#include "Quillary/Find/FindController.h"
#include "Quillary/Theme/Hairline.h"
#include "Quillary/Theme/Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillary {

namespace {

constexpr int rowSpacing = 6;

QHBoxLayout* rowLayout(QWidget* row) {
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    return layout;
}

} // namespace

FindBar::FindBar(FindController& find, QWidget* parent) : QWidget(parent), m_find(find) {
    auto* const rows = new QVBoxLayout;
    rows->setContentsMargins(12, 7, 8, 7);
    rows->setSpacing(rowSpacing);
    rows->addWidget(makeFindRow());
    rows->addWidget(makeReplaceRow());
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(rows);
    layout->addWidget(new Hairline(Qt::Horizontal, this));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    followController();
}

QWidget* FindBar::makeFindRow() {
    auto* const row = new QWidget(this);
    m_query = new FindField(tr("Trova"), Symbol::search, row);
    m_query->setSubmitsBackwards(true);
    m_caseSensitive = makeToggle(tr("Aa"), tr("Maiuscole/minuscole"));
    m_wholeWord = makeToggle(tr("W"), tr("Parola intera"));
    m_regex = makeToggle(tr(".*"), tr("Espressione regolare"));
    m_status = new FindStatusLabel(row);
    m_previous = new IconButton(Symbol::chevronUp, tr("Precedente (⇧⌘G)"), row);
    m_next = new IconButton(Symbol::chevronDown, tr("Successivo (⌘G)"), row);
    m_toggleReplace = new IconButton(Symbol::replace, tr("Sostituisci (⌥⌘F)"), row);
    auto* const closeButton = new IconButton(Symbol::close, tr("Chiudi (⎋)"), row);

    QHBoxLayout* const layout = rowLayout(row);
    layout->addWidget(m_query, 1);
    layout->addWidget(m_caseSensitive);
    layout->addWidget(m_wholeWord);
    layout->addWidget(m_regex);
    layout->addWidget(m_status);
    for (IconButton* const button : {m_previous, m_next, m_toggleReplace, closeButton}) {
        layout->addWidget(button);
    }

    connect(m_query, &QLineEdit::textChanged, this, [this](const QString& text) { m_find.setQuery(text); });
    connect(m_query, &FindField::submitted, this, [this] { m_find.step(1); });
    connect(m_query, &FindField::submittedBackwards, this, [this] { m_find.step(-1); });
    connect(m_previous, &QToolButton::clicked, this, [this] { m_find.step(-1); });
    connect(m_next, &QToolButton::clicked, this, [this] { m_find.step(1); });
    connect(m_toggleReplace, &QToolButton::clicked, this, &FindBar::toggleReplace);
    connect(closeButton, &QToolButton::clicked, this, [this] { m_find.close(); });
    return row;
}

QWidget* FindBar::makeReplaceRow() {
    m_replaceRow = new QWidget(this);
    m_replacement = new FindField(tr("Sostituisci con"), Symbol::replacement, m_replaceRow);
    m_replace = new QPushButton(tr("Sostituisci"), m_replaceRow);
    m_replaceAll = new QPushButton(tr("Tutte"), m_replaceRow);
    m_replaceAll->setToolTip(tr("Sostituisci tutte le occorrenze (annullabile con ⌘Z)"));
    for (QPushButton* const button : {m_replace, m_replaceAll}) {
        button->setFont(Theme::sidebarDetail());
        button->setAutoDefault(false);
        // As the flat buttons do: a click leaves the focus in the field.
        button->setFocusPolicy(Qt::TabFocus);
    }
    QHBoxLayout* const layout = rowLayout(m_replaceRow);
    layout->addWidget(m_replacement, 1);
    layout->addWidget(m_replace);
    layout->addWidget(m_replaceAll);

    connect(m_replacement, &QLineEdit::textChanged, this, [this](const QString& text) { m_find.setReplacement(text); });
    connect(m_replacement, &FindField::submitted, this, [this] { m_find.replaceCurrent(); });
    connect(m_replace, &QPushButton::clicked, this, [this] { m_find.replaceCurrent(); });
    connect(m_replaceAll, &QPushButton::clicked, this, [this] { m_find.replaceAll(); });
    return m_replaceRow;
}

OptionToggle* FindBar::makeToggle(const QString& label, const QString& help) {
    auto* const toggle = new OptionToggle(label, help, this);
    connect(toggle, &QToolButton::toggled, this, &FindBar::takeOptions);
    return toggle;
}

void FindBar::followController() {
    const auto showText = [](FindField* field, const QString& text) {
        // Setting an equal text would move the caret.
        if (field->text() != text) {
            field->setText(text);
        }
    };
    const auto showQuery = [this, showText] {
        showText(m_query, m_find.query());
        updateMatches();
    };
    const auto showReplacement = [this, showText] { showText(m_replacement, m_find.replacement()); };
    const auto showOptions = [this] {
        // All three are read at once, so none may tell of its change before the others have theirs.
        const SearchOptions options = m_find.options();
        for (const auto& [toggle, isOn] :
             {std::pair(m_caseSensitive, options.caseSensitive), std::pair(m_wholeWord, options.wholeWord),
              std::pair(m_regex, options.regex)}) {
            const QSignalBlocker blocker(toggle);
            toggle->setChecked(isOn);
        }
    };
    connect(&m_find, &FindController::isVisibleChanged, this, &FindBar::updateRows);
    connect(&m_find, &FindController::showsReplaceChanged, this, &FindBar::updateRows);
    connect(&m_find, &FindController::queryChanged, this, showQuery);
    connect(&m_find, &FindController::replacementChanged, this, showReplacement);
    connect(&m_find, &FindController::optionsChanged, this, showOptions);
    connect(&m_find, &FindController::matchCountChanged, this, &FindBar::updateMatches);
    connect(&m_find, &FindController::currentIndexChanged, this, &FindBar::updateMatches);
    connect(&m_find, &FindController::errorMessageChanged, this, &FindBar::updateMatches);
    connect(&m_find, &FindController::fieldFocusTokenChanged, this, &FindBar::focusAskedField);
    showQuery();
    showReplacement();
    showOptions();
    updateRows();
}

void FindBar::updateRows() {
    m_replaceRow->setVisible(m_find.showsReplace());
    m_toggleReplace->setIcon(symbolIcon(m_find.showsReplace() ? Symbol::replaceFilled : Symbol::replace));
    setVisible(m_find.isVisible());
}

void FindBar::updateMatches() {
    const bool hasMatches = m_find.matchCount() >= 1;
    for (QAbstractButton* const button :
         std::initializer_list<QAbstractButton*>{m_previous, m_next, m_replace, m_replaceAll}) {
        button->setEnabled(hasMatches);
    }
    m_status->follow(m_find);
}

void FindBar::takeOptions() {
    m_find.setOptions({m_caseSensitive->isChecked(), m_wholeWord->isChecked(), m_regex->isChecked()});
}

void FindBar::toggleReplace() {
    m_find.setShowsReplace(!m_find.showsReplace());
    focus(m_find.showsReplace() ? Field::replace : Field::find);
}

void FindBar::focus(Field field) {
    FindField* const target = field == Field::replace ? m_replacement : m_query;
    target->setFocus(Qt::OtherFocusReason);
    target->selectAll();
}

void FindBar::focusAskedField() {
    focus(m_find.focusesReplaceField() ? Field::replace : Field::find);
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        m_find.close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void FindBar::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // A window that comes back from its icon keeps the focus where it was.
    if (!event->spontaneous()) {
        focusAskedField();
    }
}

} // namespace quillary
