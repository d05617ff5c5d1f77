#pragma once

#include "Quillary/Solo/SoloController.h"

#include <QToolButton>

namespace quillary {

/// Opens the panel that sends the note to Solo, and shows once a text was sent that it was.
class SoloButton : public QToolButton {
    Q_OBJECT

public:
    explicit SoloButton(SoloController& solo, QWidget* parent = nullptr);

private:
    void update();

    SoloController& m_solo;
};

} // namespace quillary
