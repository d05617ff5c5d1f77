#include "Quillary/Theme/Theme.h"

#include "Quillary/Theme/Appearance.h"
#include "Quillary/Theme/Hairline.h"
#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/SymbolLabel.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPainter>
#include <QPixmap>
#include <QTest>

#include <gtest/gtest.h>

#include <array>
#include <cmath>

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

double contrastRatio(const QColor& first, const QColor& second) {
    const double a = luminance(first);
    const double b = luminance(second);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor blendedOver(const QColor& top, const QColor& bottom) {
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
    EXPECT_GE(contrastRatio(text, base), readable);
    EXPECT_GE(contrastRatio(text, sidebar), readable);
    EXPECT_GE(contrastRatio(text, blendedOver(Theme::rowSelection(colors), sidebar)), readable);
    EXPECT_GE(contrastRatio(text, colors.color(QPalette::Highlight)), readable);
    EXPECT_GE(contrastRatio(text, colors.color(QPalette::Button)), readable);
    EXPECT_GE(contrastRatio(text, colors.color(QPalette::ToolTipBase)), readable);
    EXPECT_GE(contrastRatio(Theme::secondaryText(colors), base), readable);
    EXPECT_GE(contrastRatio(Theme::secondaryText(colors), blendedOver(Theme::rowSelection(colors), sidebar)), readable);
    EXPECT_GE(contrastRatio(colors.color(QPalette::Link), base), readable);
}

TEST(Theme, HighContrastIsHigh) {
    EXPECT_FALSE(isHighContrast(lightPalette()));
    EXPECT_FALSE(isHighContrast(darkPalette()));
    for (const QPalette& colors : {highContrastLightPalette(), highContrastDarkPalette()}) {
        EXPECT_TRUE(isHighContrast(colors));
        const bool dark = isDark(colors);
        EXPECT_EQ(dark, colors.color(QPalette::Window) == QColor(Qt::black));
        const QColor base = colors.color(QPalette::Base);
        const QColor window = colors.color(QPalette::Window);
        const QColor sidebar = Theme::sidebarBackground.in(colors);
        const QColor selectedRow = blendedOver(Theme::rowSelection(colors), sidebar);
        const QColor text = colors.color(QPalette::Text);
        const QColor secondary = Theme::secondaryText(colors);
        const QColor accent = colors.color(QPalette::Link);
        constexpr double readable = 7;
        for (const QColor& ground : {base, window, sidebar, selectedRow, colors.color(QPalette::Highlight),
                                     colors.color(QPalette::Button), colors.color(QPalette::ToolTipBase)}) {
            EXPECT_GE(contrastRatio(text, ground), readable) << dark << ground.name().toStdString();
        }
        for (const QColor& ground : {base, window, sidebar, selectedRow, colors.color(QPalette::Button)}) {
            EXPECT_GE(contrastRatio(secondary, ground), readable) << dark << ground.name().toStdString();
        }
        constexpr double visible = 3;
        for (const QColor& ground : {base, window, sidebar}) {
            EXPECT_GE(contrastRatio(accent, ground), readable) << dark << ground.name().toStdString();
            EXPECT_GE(contrastRatio(blendedOver(Theme::separator(colors), ground), ground), visible) << dark;
            EXPECT_GE(contrastRatio(colors.color(QPalette::Mid), ground), visible) << dark;
        }
    }
}

TEST(Theme, ColoursAreThoseOfTheDesign) {
    struct Case {
        const char* name;
        const AdaptiveColor& color;
        std::array<float, 3> dark;
        std::array<float, 3> light;
    };

    const auto token = [](SyntaxTokenKind kind) -> const AdaptiveColor& { return Theme::syntaxColor(kind); };
    const std::array cases = {
        Case{"sidebarBackground", Theme::sidebarBackground, {0.115F, 0.115F, 0.125F}, {0.957F, 0.953F, 0.943F}},
        Case{"diffRemoved", Theme::diffRemoved, {0.95F, 0.45F, 0.42F}, {0.80F, 0.24F, 0.22F}},
        Case{"diffAdded", Theme::diffAdded, {0.42F, 0.82F, 0.54F}, {0.16F, 0.55F, 0.32F}},
        Case{"jsonString", Theme::jsonString, {0.56F, 0.82F, 0.62F}, {0.13F, 0.48F, 0.30F}},
        Case{"jsonNumber", Theme::jsonNumber, {0.55F, 0.73F, 1.00F}, {0.10F, 0.36F, 0.74F}},
        Case{"jsonLiteral", Theme::jsonLiteral, {0.84F, 0.62F, 0.92F}, {0.58F, 0.24F, 0.62F}},
        Case{"keyword", token(SyntaxTokenKind::keyword), {0.99F, 0.43F, 0.68F}, {0.61F, 0.13F, 0.58F}},
        Case{"string", token(SyntaxTokenKind::string), {0.99F, 0.50F, 0.42F}, {0.77F, 0.16F, 0.12F}},
        Case{"comment", token(SyntaxTokenKind::comment), {0.50F, 0.56F, 0.53F}, {0.45F, 0.50F, 0.47F}},
        Case{"number", token(SyntaxTokenKind::number), {0.84F, 0.77F, 0.52F}, {0.11F, 0.20F, 0.78F}},
        Case{"constant", token(SyntaxTokenKind::constant), {0.76F, 0.62F, 0.98F}, {0.42F, 0.20F, 0.70F}},
        Case{"tag", token(SyntaxTokenKind::tag), {0.40F, 0.76F, 0.95F}, {0.00F, 0.44F, 0.58F}},
        Case{"attribute", token(SyntaxTokenKind::attribute), {0.99F, 0.70F, 0.36F}, {0.55F, 0.36F, 0.00F}},
        Case{"variable", token(SyntaxTokenKind::variable), {0.42F, 0.83F, 0.78F}, {0.13F, 0.44F, 0.48F}},
        Case{"function", token(SyntaxTokenKind::function), {0.55F, 0.72F, 0.99F}, {0.20F, 0.36F, 0.60F}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(each.color.in(darkPalette()), QColor::fromRgbF(each.dark[0], each.dark[1], each.dark[2]))
            << each.name;
        EXPECT_EQ(each.color.in(lightPalette()), QColor::fromRgbF(each.light[0], each.light[1], each.light[2]))
            << each.name;
    }
    EXPECT_EQ(Theme::accentDot, QColor::fromRgbF(0.91F, 0.36F, 0.10F));
}

TEST_P(EachAppearance, FillsAreTheTextColourAtALowOpacity) {
    const QColor text = palette().color(QPalette::Text);
    const auto expectFill = [&](const QColor& fill, double opacity) {
        EXPECT_EQ(fill.rgb(), text.rgb());
        EXPECT_NEAR(fill.alphaF(), opacity, 0.0001);
    };
    expectFill(Theme::subtleFill(palette()), 0.045);
    expectFill(Theme::rowHover(palette()), 0.035);
    expectFill(Theme::searchFill(palette()), 0.055);
    expectFill(Theme::rowSelection(palette()), 0.075);
    EXPECT_EQ(Theme::editorBackground(palette()), palette().color(QPalette::Base));
}

TEST_P(EachAppearance, FoldersOfEachColourAreToldApart) {
    QSet<QRgb> seen;
    for (const FolderColor color : allFolderColors) {
        seen.insert(Theme::folderColor(color, palette()).rgb());
        EXPECT_GE(contrastRatio(Theme::folderColor(color, palette()), Theme::sidebarBackground.in(palette())), 3);
    }
    EXPECT_EQ(seen.size(), std::ssize(allFolderColors));
}

TEST(Theme, FontsAreOfTheirSizesInLogicalPixels) {
    const auto expectFont = [](const QFont& font, double size, QFont::Weight weight) {
        EXPECT_DOUBLE_EQ(font.pointSizeF(), size * 0.75);
        EXPECT_EQ(font.weight(), weight);
        EXPECT_EQ(font.family(), QApplication::font().family());
    };
    expectFont(Theme::sidebarTitle(), 12.5, QFont::Medium);
    expectFont(Theme::sidebarDetail(), 11, QFont::Normal);
    expectFont(Theme::caption(), 10.5, QFont::Normal);
    expectFont(Theme::font(20, QFont::Bold), 20, QFont::Bold);
    EXPECT_EQ(Theme::monospacedFont(12).family(), QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    EXPECT_DOUBLE_EQ(Theme::monospacedFont(12).pointSizeF(), 9);
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

TEST(Appearance, ASwitchRepaintsWithoutRebuilding) {
    const QPalette before = QApplication::palette();
    Appearance appearance;
    appearance.apply(AppAppearance::light);
    Hairline line(Qt::Horizontal);
    line.resize(10, 1);
    line.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&line));
    const auto drawn = [&line] {
        QImage image(line.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        line.render(&image, {}, {}, {});
        return image.pixelColor(5, 0);
    };
    const auto isSettled = [&line](bool dark) {
        return QTest::qWaitFor([&] { return isDark(line.palette()) == dark; });
    };
    EXPECT_TRUE(isSettled(false));
    EXPECT_LT(drawn().lightness(), 100);
    appearance.apply(AppAppearance::dark);
    EXPECT_TRUE(isSettled(true));
    EXPECT_GT(drawn().lightness(), 150);
    appearance.apply(AppAppearance::light);
    EXPECT_TRUE(isSettled(false));
    EXPECT_LT(drawn().lightness(), 100);
    QApplication::setPalette(before);
}

TEST(Hairline, FillsItsAxisAndIsAsThinAsTheScreenAllows) {
    for (const Qt::Orientation axis : {Qt::Horizontal, Qt::Vertical}) {
        Hairline line(axis);
        EXPECT_EQ(line.axis(), axis);
        EXPECT_DOUBLE_EQ(line.thickness(), std::max(0.5, 1 / line.devicePixelRatioF()));
        const bool isHorizontal = axis == Qt::Horizontal;
        EXPECT_EQ(line.sizePolicy().horizontalPolicy(), isHorizontal ? QSizePolicy::Expanding : QSizePolicy::Fixed);
        EXPECT_EQ(line.sizePolicy().verticalPolicy(), isHorizontal ? QSizePolicy::Fixed : QSizePolicy::Expanding);
        line.resize(6, 6);
        QImage image(12, 12, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(2);
        image.fill(Qt::transparent);
        line.render(&image, {}, {}, {});
        int painted = 0;
        for (int y = 0; y < 12; ++y) {
            for (int x = 0; x < 12; ++x) {
                painted += image.pixelColor(x, y).alpha() > 0;
            }
        }
        EXPECT_EQ(painted, 12 * qRound(2 * line.thickness()));
        EXPECT_GT(image.pixelColor(isHorizontal ? 11 : 0, isHorizontal ? 0 : 11).alpha(), 0);
    }
}

TEST(Hairline, ForLinesThatOthersPaintIsAsThinAsWhatTheyPaintOn) {
    for (const auto& [ratio, thickness] :
         {std::pair(1.0, 1.0), std::pair(1.25, 0.8), std::pair(2.0, 0.5), std::pair(3.0, 0.5)}) {
        QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        EXPECT_DOUBLE_EQ(Hairline::thicknessOn(image), thickness);
    }
}

TEST(SymbolLabel, HasTheColourOfTheTextInEveryAppearance) {
    SymbolLabel label;
    label.setSymbol(Symbol::checklist, 16);
    EXPECT_EQ(label.sizeHint(), QSize(16, 16));
    label.resize(16, 16);
    for (const QPalette& palette : {lightPalette(), darkPalette(), lightPalette()}) {
        label.setPalette(palette);
        QImage expected(16, 16, QImage::Format_ARGB32_Premultiplied);
        expected.fill(Qt::transparent);
        QPainter painter(&expected);
        drawSymbol(painter, Symbol::checklist, expected.rect(), palette.color(QPalette::WindowText));
        painter.end();
        QImage drawn(16, 16, QImage::Format_ARGB32_Premultiplied);
        drawn.fill(Qt::transparent);
        label.render(&drawn, {}, {}, {});
        EXPECT_EQ(drawn, expected);
    }
}

TEST(Symbol, EachHasADrawingThatFillsItsPlaceAndStaysInIt) {
    QSet<QByteArray> drawings;
    for (int i = 0; i <= static_cast<int>(Symbol::warning); ++i) {
        // One pixel of air around shows what would be cut off.
        QImage image(66, 66, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawSymbol(painter, static_cast<Symbol>(i), QRectF(1, 1, 64, 64), Qt::red);
        painter.end();
        QRect bounds;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (pixel.alpha() > 0) {
                    bounds |= QRect(x, y, 1, 1);
                    EXPECT_EQ(pixel.green() + pixel.blue(), 0);
                }
            }
        }
        EXPECT_GE(std::max(bounds.width(), bounds.height()), 32) << i;
        EXPECT_GT(bounds.left(), 1) << i;
        EXPECT_GT(bounds.top(), 1) << i;
        EXPECT_LT(bounds.right(), 64) << i;
        EXPECT_LT(bounds.bottom(), 64) << i;
        drawings.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes()));
    }
    EXPECT_EQ(drawings.size(), static_cast<int>(Symbol::warning) + 1);
}

TEST(Symbol, AnIconHasTheDesktopsNameForIt) {
    EXPECT_EQ(symbolIcon(Symbol::search).name(), u"edit-find"_s);
    EXPECT_EQ(symbolIcon(Symbol::equal).name(), QString());
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
