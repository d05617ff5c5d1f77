#pragma once

#include "Quillary/State/NoteItem.h"
#include "Quillary/Theme/AdaptiveColor.h"

#include <QFrame>

#include <optional>

class QLabel;

namespace quillary {

class ElidedLabel;
class WrappingLabel;

/// One selected note as a card: its title, a label in a tint where the cards are to be told apart, how its text begins,
/// its length and its format.
class NoteCard : public QFrame {
    Q_OBJECT

public:
    explicit NoteCard(QWidget* parent = nullptr);

    /// Shows a note as it is now.
    void setItem(const NoteItem& item, const QString& label = {}, std::optional<AdaptiveColor> tint = {});

    /// How far the cards behind stand out in a pile: enough to read their titles.
    int headerHeight() const;

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void applyTint();

    std::optional<AdaptiveColor> m_tint;
    QLabel* m_label;
    ElidedLabel* m_title;
    QLabel* m_badge;
    WrappingLabel* m_snippet;
    ElidedLabel* m_count;
};

} // namespace quillary
