#include "Quillary/Theme/Palettes.h"

#include <QColor>

namespace quillary {

namespace {

struct PaletteColors {
    QRgb window;
    QRgb text;
    QRgb secondaryText;
    QRgb base;
    QRgb alternateBase;
    QRgb button;
    QRgb selection;
    QRgb accent;
    QRgb edge;
    QRgb shadow;
    QRgb tip;
};

QPalette paletteOf(const PaletteColors& colors) {
    QPalette palette;
    const auto set = [&palette](std::initializer_list<QPalette::ColorRole> roles, QRgb color) {
        for (const QPalette::ColorRole role : roles) {
            palette.setColor(role, QColor::fromRgb(color));
        }
    };
    set({QPalette::Window}, colors.window);
    set({QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText, QPalette::BrightText,
         QPalette::HighlightedText},
        colors.text);
    set({QPalette::PlaceholderText}, colors.secondaryText);
    set({QPalette::Base}, colors.base);
    set({QPalette::AlternateBase}, colors.alternateBase);
    set({QPalette::Button}, colors.button);
    set({QPalette::Highlight}, colors.selection);
    set({QPalette::Link, QPalette::LinkVisited}, colors.accent);
    set({QPalette::Light, QPalette::Midlight}, colors.button);
    set({QPalette::Mid, QPalette::Dark}, colors.edge);
    set({QPalette::Shadow}, colors.shadow);
    set({QPalette::ToolTipBase}, colors.tip);

    const QColor disabled = QColor::fromRgb(colors.secondaryText);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor::fromRgb(colors.edge));
    return palette;
}

} // namespace

QPalette lightPalette() {
    return paletteOf({.window = 0xfff4f3f0,
                      .text = 0xff1d1d1f,
                      .secondaryText = 0xff62615e,
                      .base = 0xffffffff,
                      .alternateBase = 0xfff7f6f4,
                      .button = 0xfffbfaf8,
                      .selection = 0xffb9d8fb,
                      .accent = 0xff0b57c4,
                      .edge = 0xffd3d1cc,
                      .shadow = 0xff8d8b86,
                      .tip = 0xfffffef8});
}

QPalette darkPalette() {
    return paletteOf({.window = 0xff1d1d20,
                      .text = 0xffe8e7e5,
                      .secondaryText = 0xff9c9b99,
                      .base = 0xff18181a,
                      .alternateBase = 0xff212124,
                      .button = 0xff2c2c30,
                      .selection = 0xff2f5682,
                      .accent = 0xff7fb2ff,
                      .edge = 0xff3d3d42,
                      .shadow = 0xff000000,
                      .tip = 0xff2c2c30});
}

QPalette highContrastLightPalette() {
    return paletteOf({.window = 0xffffffff,
                      .text = 0xff000000,
                      .secondaryText = 0xff333333,
                      .base = 0xffffffff,
                      .alternateBase = 0xfff7f7f7,
                      .button = 0xffffffff,
                      .selection = 0xff9cc8ff,
                      .accent = 0xff003a9e,
                      .edge = 0xff5a5a5a,
                      .shadow = 0xff000000,
                      .tip = 0xffffffff});
}

QPalette highContrastDarkPalette() {
    return paletteOf({.window = 0xff000000,
                      .text = 0xffffffff,
                      .secondaryText = 0xffececec,
                      .base = 0xff000000,
                      .alternateBase = 0xff1a1a1a,
                      .button = 0xff1a1a1a,
                      .selection = 0xff1c4c8c,
                      .accent = 0xff9fcbff,
                      .edge = 0xffa6a6a6,
                      .shadow = 0xff000000,
                      .tip = 0xff1a1a1a});
}

bool isHighContrast(const QPalette& palette) {
    const QRgb window = palette.color(QPalette::Window).rgb();
    const QRgb text = palette.color(QPalette::Active, QPalette::WindowText).rgb();
    constexpr QRgb black = 0xff000000;
    constexpr QRgb white = 0xffffffff;
    return (window == black && text == white) || (window == white && text == black);
}

} // namespace quillary
