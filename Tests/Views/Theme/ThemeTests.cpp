#include "Quillary/Theme/Theme.h"

#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Style.h"
#include "Quillary/Theme/Symbol.h"

#include <QApplication>
#include <QPixmap>
#include <QStyleOptionSlider>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// Relative luminance and contrast as the Web Content Accessibility Guidelines 2.1 define them.
double luminance(const QColor& color) {
    const auto linear = [](float component) {
        const double value = component;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& first, const QColor& second) {
    const double a = luminance(first);
    const double b = luminance(second);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor over(const QColor& top, const QColor& bottom) {
    const float alpha = top.alphaF();
    const auto mix = [alpha](float above, float below) { return above * alpha + below * (1 - alpha); };
    return QColor::fromRgbF(mix(top.redF(), bottom.redF()), mix(top.greenF(), bottom.greenF()),
                            mix(top.blueF(), bottom.blueF()));
}

class EachAppearance : public testing::TestWithParam<bool> {
protected:
    QPalette palette() const { return GetParam() ? darkPalette() : lightPalette(); }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Theme, EachAppearance, testing::Bool(),
                         [](const auto& instance) { return instance.param ? "Dark" : "Light"; });

TEST_P(EachAppearance, IsToldFromThePalette) {
    EXPECT_EQ(isDark(palette()), GetParam());
    EXPECT_EQ(Theme::sidebarBackground.in(palette()).lightness() < 128, GetParam());
}

TEST_P(EachAppearance, TextIsReadableOnEveryGround) {
    const QPalette colors = palette();
    const QColor sidebar = Theme::sidebarBackground.in(colors);
    const QColor base = colors.color(QPalette::Base);
    const QColor text = colors.color(QPalette::Text);
    constexpr double readable = 4.5;
    EXPECT_GE(contrast(text, base), readable);
    EXPECT_GE(contrast(text, sidebar), readable);
    EXPECT_GE(contrast(text, over(Theme::rowSelection(colors), sidebar)), readable);
    EXPECT_GE(contrast(text, colors.color(QPalette::Highlight)), readable);
    EXPECT_GE(contrast(text, colors.color(QPalette::Button)), readable);
    EXPECT_GE(contrast(text, colors.color(QPalette::ToolTipBase)), readable);
    EXPECT_GE(contrast(Theme::secondaryText(colors), base), readable);
    EXPECT_GE(contrast(Theme::secondaryText(colors), over(Theme::rowSelection(colors), sidebar)), readable);
    EXPECT_GE(contrast(colors.color(QPalette::Link), base), readable);
}

TEST(Theme, FoldersHaveItalianColourNames) {
    const QStringList names = {u"Rosso"_s,       u"Arancione"_s, u"Giallo"_s, u"Verde"_s,
                               u"Verde acqua"_s, u"Blu"_s,       u"Viola"_s,  u"Grigio"_s};
    QStringList given;
    for (const FolderColor color : allFolderColors) {
        given.append(Theme::folderColorName(color));
    }
    EXPECT_EQ(given, names);
}

TEST(Theme, FormatTintsAreThoseOfTheirTokens) {
    const QPalette palette = lightPalette();
    EXPECT_EQ(Theme::formatTint(NoteFormat::json, palette), Theme::jsonNumber.light);
    EXPECT_EQ(Theme::formatTint(NoteFormat::csv, palette), Theme::jsonString.light);
    EXPECT_EQ(Theme::formatTint(NoteFormat::markdown, palette), Theme::secondaryText(palette));
    EXPECT_NEAR(Theme::formatTint(NoteFormat::plain, palette).alphaF(), 0.7, 0.01);
    EXPECT_EQ(Theme::formatTint(NoteFormat::html, palette), QColor::fromRgbF(0.00F, 0.44F, 0.58F));
    EXPECT_EQ(Theme::formatTint(NoteFormat::css, palette), QColor::fromRgbF(0.55F, 0.36F, 0.00F));
    EXPECT_EQ(Theme::formatTint(NoteFormat::javascript, palette), QColor::fromRgbF(0.61F, 0.13F, 0.58F));
    EXPECT_EQ(Theme::formatTint(NoteFormat::php, palette), QColor::fromRgbF(0.13F, 0.44F, 0.48F));
}

TEST(Symbol, TakesTheColourOfTheTextWheneverItIsDrawn) {
    const auto darkest = [] {
        const QImage image = symbolIcon(Symbol::note).pixmap(32, 32).toImage();
        QColor strongest(0, 0, 0, 0);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                strongest = pixel.alpha() > strongest.alpha() ? pixel : strongest;
            }
        }
        return strongest;
    };
    const QPalette before = QApplication::palette();
    QApplication::setPalette(lightPalette());
    EXPECT_LT(darkest().lightness(), 100);
    QApplication::setPalette(darkPalette());
    EXPECT_GT(darkest().lightness(), 150);
    QApplication::setPalette(before);
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
