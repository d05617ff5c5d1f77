#pragma once

#include <QWidget>

class QBoxLayout;

namespace quillary {

class ElidedLabel;

/// The bar above a preview: what the note holds at the left, controls at the right, or below it where there is no room
/// beside each other.
class PreviewHeader : public QWidget {
    Q_OBJECT

public:
    explicit PreviewHeader(QWidget* parent = nullptr);

    QString summary() const;

    void setSummary(const QString& summary);

    /// Puts a control behind those at the right, and takes it over.
    void addControl(QWidget* control);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void arrange();

    ElidedLabel* m_summary;
    QBoxLayout* m_layout;
    QBoxLayout* m_controls;
};

} // namespace quillary
