#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace quillary {

/// The bar above a preview: what the note holds at the left, controls at the right.
class PreviewHeader : public QWidget {
    Q_OBJECT

public:
    explicit PreviewHeader(QWidget* parent = nullptr);

    QString summary() const;

    void setSummary(const QString& summary);

    /// Puts a control behind those at the right, and takes it over.
    void addControl(QWidget* control);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* m_summary;
    QHBoxLayout* m_layout;
};

} // namespace quillary
