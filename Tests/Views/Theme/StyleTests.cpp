#include "Quillary/Theme/Style.h"

#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Palettes.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QStyleOptionButton>
#include <QStyleOptionSlider>
#include <QTabBar>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <limits>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// The style of a desktop that wants images on the buttons of dialogs.
class StyleWithImages : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 1
                                                           : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

class StyleInEachAppearance : public testing::TestWithParam<bool> {
protected:
    StyleInEachAppearance() { QApplication::setPalette(GetParam() ? darkPalette() : lightPalette()); }

    ~StyleInEachAppearance() override { QApplication::setPalette(m_before); }

    /// The box of a check box, as it is drawn on a window or on the ground of an editor.
    static QImage boxOf(QCheckBox& checkBox, QPalette::ColorRole ground) {
        checkBox.setBackgroundRole(ground);
        checkBox.setAutoFillBackground(true);
        checkBox.adjustSize();
        QStyleOptionButton option;
        option.initFrom(&checkBox);
        const QRect box = checkBox.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &checkBox);
        return checkBox.grab(box).toImage();
    }

    static double greatestContrast(const QImage& image, const QColor& ground) {
        double greatest = 1;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                greatest = std::max(greatest, contrast(image.pixelColor(x, y), ground));
            }
        }
        return greatest;
    }

    /// By how much the pixel that has changed most stands out from what it was.
    static double greatestChange(const QImage& before, const QImage& after) {
        double greatest = 1;
        for (int y = 0; y < before.height(); ++y) {
            for (int x = 0; x < before.width(); ++x) {
                greatest = std::max(greatest, contrast(before.pixelColor(x, y), after.pixelColor(x, y)));
            }
        }
        return greatest;
    }

    static QImage pictureOf(QMenu& menu) {
        menu.adjustSize();
        return menu.grab().toImage();
    }

private:
    QPalette m_before = QApplication::palette();
};

} // namespace

TEST(Style, ButtonsOfDialogsHaveNoImagesWhateverTheDesktopWants) {
    Style style;
    style.setBaseStyle(new StyleWithImages);
    ASSERT_EQ(style.baseStyle()->styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons), 1);
    EXPECT_EQ(style.styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons, nullptr, nullptr, nullptr), 0);
}

INSTANTIATE_TEST_SUITE_P(Style, StyleInEachAppearance, testing::Bool(),
                         [](const auto& instance) { return instance.param ? "Dark" : "Light"; });

TEST_P(StyleInEachAppearance, AnItemThatIsDisabledIsNotDrawnTwice) {
    QMenu menu;
    EXPECT_EQ(menu.style()->styleHint(QStyle::SH_EtchDisabledText, nullptr, &menu), 0);
}

TEST_P(StyleInEachAppearance, ACheckBoxStandsOutFromItsGround) {
    QCheckBox checkBox(u"Scelta"_s);
    for (const QPalette::ColorRole ground : {QPalette::Window, QPalette::Base}) {
        const QColor color = checkBox.palette().color(ground);
        checkBox.setChecked(false);
        const QImage empty = boxOf(checkBox, ground);
        EXPECT_GE(greatestContrast(empty, color), markContrast);
        EXPECT_EQ(empty.pixelColor(empty.rect().center()), color);

        checkBox.setChecked(true);
        const QImage checked = boxOf(checkBox, ground);
        const QColor fill = checkBox.palette().color(QPalette::Link);
        EXPECT_GE(contrast(fill, color), markContrast);
        EXPECT_EQ(checked.pixelColor(checked.width() / 2, 2), fill);
        EXPECT_GE(greatestContrast(checked.copy(checked.rect().adjusted(3, 3, -3, -3)), fill), markContrast);
    }
}

TEST_P(StyleInEachAppearance, ACheckBoxShowsEachOfItsStates) {
    QCheckBox checkBox(u"Scelta"_s);
    checkBox.setTristate(true);
    QList<QImage> pictures;
    for (const bool isEnabled : {true, false}) {
        checkBox.setEnabled(isEnabled);
        for (const Qt::CheckState state : {Qt::Unchecked, Qt::PartiallyChecked, Qt::Checked}) {
            checkBox.setCheckState(state);
            const QImage picture = boxOf(checkBox, QPalette::Window);
            EXPECT_FALSE(pictures.contains(picture));
            pictures.append(picture);
        }
    }
}

TEST_P(StyleInEachAppearance, AMenuMarksWhatIsChosenAndNothingElse) {
    QMenu menu;
    QAction* const action = menu.addAction(u"Voce"_s);
    const QImage plain = pictureOf(menu);
    action->setCheckable(true);
    EXPECT_EQ(pictureOf(menu), plain);
    action->setChecked(true);
    const QImage checked = pictureOf(menu);
    EXPECT_NE(checked, plain);

    // One choice of several has the same mark.
    QActionGroup group(&menu);
    group.addAction(action);
    EXPECT_EQ(pictureOf(menu), checked);
    action->setChecked(false);
    EXPECT_EQ(pictureOf(menu), plain);
}

TEST_P(StyleInEachAppearance, AMenuAndItsGroupsHaveEdgesThatAreSeen) {
    QMenu menu;
    menu.addAction(u"Prima"_s);
    QAction* const separator = menu.addSeparator();
    menu.addAction(u"Seconda"_s);
    const QImage picture = pictureOf(menu);
    const QRect group = menu.actionGeometry(separator);
    const QPoint line = group.center();
    for (const QPoint edge : {QPoint(line.x(), 0), QPoint(line.x(), picture.height() - 1), QPoint(0, line.y()),
                              QPoint(picture.width() - 1, line.y())}) {
        EXPECT_GE(contrast(picture.pixelColor(edge), menu.palette().color(QPalette::Base)), 1.8);
    }
    const QColor ground = picture.pixelColor(line.x(), group.top() - 1);
    EXPECT_GE(greatestContrast(picture.copy(line.x(), group.top(), 1, group.height()), ground), 1.3);
}

TEST_P(StyleInEachAppearance, AFieldHasAnEdgeThatIsSeen) {
    QWidget window;
    QLineEdit line(&window);
    QSpinBox number(&window);
    for (QWidget* const field : std::initializer_list<QWidget*>{&line, &number}) {
        field->resize(120, 26);
        const QImage picture = field->grab().toImage();
        const QColor ground = window.palette().color(QPalette::Window);
        EXPECT_GE(greatestContrast(picture.copy(60, 0, 1, 3), ground), 1.5);
        EXPECT_GE(greatestContrast(picture.copy(0, 13, 3, 1), ground), 1.5);
    }
}

TEST_P(StyleInEachAppearance, WhatHasTheKeyboardHasARingThatStandsOut) {
    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    auto* const flat = new QToolButton;
    flat->setAutoRaise(true);
    flat->setText(u"Apri"_s);
    flat->setFocusPolicy(Qt::TabFocus);
    auto* const picker = new QComboBox;
    picker->addItem(u"Uno"_s);
    auto* const tabs = new QTabBar;
    tabs->addTab(u"Generale"_s);
    const QList<QWidget*> controls{
        flat, picker, tabs, new QPushButton(u"Bottone"_s), new QCheckBox(u"Scelta"_s), new QLineEdit, new QSpinBox};
    for (QWidget* const control : controls) {
        layout->addWidget(control);
    }
    QWidget other;
    layout->addWidget(&other);
    other.setFocusPolicy(Qt::StrongFocus);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_Tab);

    for (QWidget* const control : controls) {
        other.setFocus();
        const QImage without = control->grab().toImage();
        control->setFocus();
        ASSERT_TRUE(control->hasFocus());
        // Only the upper edge, which is far from the caret of a field.
        const QRect edge = control == tabs ? tabs->rect() : QRect(0, 0, control->width(), 4);
        EXPECT_GE(greatestChange(without.copy(edge), control->grab(edge).toImage()), markContrast)
            << control->metaObject()->className();
    }
}

TEST_P(StyleInEachAppearance, AClickAloneLeavesNoRingOnAButton) {
    QWidget window;
    QPushButton first(u"Uno"_s, &window);
    QPushButton second(u"Due"_s, &window);
    second.move(0, 60);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    first.setFocus(Qt::MouseFocusReason);
    const QImage clicked = first.grab().toImage();
    QTest::keyClick(&window, Qt::Key_Tab);
    ASSERT_TRUE(second.hasFocus());
    const QImage without = first.grab().toImage();
    QTest::keyClick(&window, Qt::Key_Backtab);
    ASSERT_TRUE(first.hasFocus());
    EXPECT_GE(greatestChange(without, first.grab().toImage()), markContrast);
    EXPECT_LT(greatestChange(without, clicked), markContrast);
}

TEST_P(StyleInEachAppearance, WhereScrollBarsMeetIsTheirGround) {
    QWidget pane;
    pane.setBackgroundRole(QPalette::Base);
    pane.setAutoFillBackground(true);
    QScrollArea area(&pane);
    area.setFrameShape(QFrame::NoFrame);
    area.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area.resize(200, 100);
    pane.resize(200, 100);
    pane.show();
    const QImage image = pane.grab().toImage();
    const QPoint corner(area.verticalScrollBar()->mapTo(&pane, QPoint()).x(),
                        area.horizontalScrollBar()->mapTo(&pane, QPoint()).y());
    ASSERT_LT(corner.x(), 199);
    for (int y = corner.y(); y < 100; ++y) {
        for (int x = corner.x(); x < 200; ++x) {
            ASSERT_EQ(image.pixelColor(x, y), pane.palette().color(QPalette::Base)) << x << ' ' << y;
        }
    }
}

TEST(Style, AScrollBarIsAllThumbAndPagesAndTheThumbStandsForWhatIsShown) {
    Style style;
    QStyleOptionSlider bar;
    bar.orientation = Qt::Vertical;
    bar.rect = QRect(0, 0, 12, 400);
    bar.minimum = 0;
    bar.maximum = 300;
    bar.pageStep = 100;
    const auto part = [&](QStyle::SubControl control) {
        return style.subControlRect(QStyle::CC_ScrollBar, &bar, control, nullptr);
    };
    bar.sliderPosition = 0;
    EXPECT_EQ(part(QStyle::SC_ScrollBarSlider), QRect(0, 0, 12, 100));
    EXPECT_TRUE(part(QStyle::SC_ScrollBarAddLine).isEmpty());
    EXPECT_EQ(part(QStyle::SC_ScrollBarAddPage), QRect(0, 100, 12, 300));
    bar.sliderPosition = 300;
    EXPECT_EQ(part(QStyle::SC_ScrollBarSlider), QRect(0, 300, 12, 100));
    EXPECT_EQ(part(QStyle::SC_ScrollBarSubPage), QRect(0, 0, 12, 300));

    // Of a very long text the thumb stays long enough to be caught, and of the longest it does not overflow.
    bar.maximum = std::numeric_limits<int>::max();
    bar.sliderPosition = bar.maximum;
    EXPECT_EQ(part(QStyle::SC_ScrollBarSlider).height(), 28);
    EXPECT_EQ(part(QStyle::SC_ScrollBarSlider).bottom(), 399);
    bar.maximum = 0;
    EXPECT_TRUE(part(QStyle::SC_ScrollBarSlider).isEmpty());
}
