#pragma once

#include <QToolButton>

#include <functional>

namespace quillary {

/// Copies the note's text, and shows for a moment that it did.
class CopyContentButton : public QToolButton {
    Q_OBJECT

public:
    explicit CopyContentButton(std::function<void()> action, QWidget* parent = nullptr);

    /// Whether a click copied within the last 1.2 seconds.
    bool didCopy() const { return m_didCopy; }

private:
    void copy();
    void setDidCopy(bool didCopy);

    std::function<void()> m_action;
    bool m_didCopy = false;
};

} // namespace quillary
