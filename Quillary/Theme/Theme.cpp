#include "Quillary/Theme/Theme.h"

#include "Quillary/Theme/Palettes.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>

namespace quillary::Theme {

namespace {

QColor rgb(double red, double green, double blue) {
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}

QColor textAt(const QPalette& palette, float opacity) {
    QColor color = palette.color(QPalette::Text);
    color.setAlphaF(opacity);
    return color;
}

/// A point of a font is 1/72 inch, and a logical pixel 1/96.
QFont sized(QFont font, double size, QFont::Weight weight) {
    constexpr double pointsPerPixel = 0.75;
    font.setPointSizeF(size * pointsPerPixel);
    font.setWeight(weight);
    return font;
}

} // namespace

const AdaptiveColor sidebarBackground{rgb(0.115, 0.115, 0.125), rgb(0.957, 0.953, 0.943)};
const AdaptiveColor diffRemoved{rgb(0.95, 0.45, 0.42), rgb(0.80, 0.24, 0.22)};
const AdaptiveColor diffAdded{rgb(0.42, 0.82, 0.54), rgb(0.16, 0.55, 0.32)};
const AdaptiveColor jsonString{rgb(0.56, 0.82, 0.62), rgb(0.13, 0.48, 0.30)};
const AdaptiveColor jsonNumber{rgb(0.55, 0.73, 1.00), rgb(0.10, 0.36, 0.74)};
const AdaptiveColor jsonLiteral{rgb(0.84, 0.62, 0.92), rgb(0.58, 0.24, 0.62)};
const QColor accentDot = rgb(0.91, 0.36, 0.10);
const QColor findHighlight = rgb(1.00, 0.84, 0.04);
const QColor findHighlightedText = rgb(0.11, 0.11, 0.12);

const AdaptiveColor& syntaxColor(SyntaxTokenKind kind) {
    static const AdaptiveColor keyword{rgb(0.99, 0.43, 0.68), rgb(0.61, 0.13, 0.58)};
    static const AdaptiveColor string{rgb(0.99, 0.50, 0.42), rgb(0.77, 0.16, 0.12)};
    static const AdaptiveColor comment{rgb(0.50, 0.56, 0.53), rgb(0.45, 0.50, 0.47)};
    static const AdaptiveColor number{rgb(0.84, 0.77, 0.52), rgb(0.11, 0.20, 0.78)};
    static const AdaptiveColor constant{rgb(0.76, 0.62, 0.98), rgb(0.42, 0.20, 0.70)};
    static const AdaptiveColor tag{rgb(0.40, 0.76, 0.95), rgb(0.00, 0.44, 0.58)};
    static const AdaptiveColor attribute{rgb(0.99, 0.70, 0.36), rgb(0.55, 0.36, 0.00)};
    static const AdaptiveColor variable{rgb(0.42, 0.83, 0.78), rgb(0.13, 0.44, 0.48)};
    static const AdaptiveColor function{rgb(0.55, 0.72, 0.99), rgb(0.20, 0.36, 0.60)};
    switch (kind) {
    case SyntaxTokenKind::keyword:
        return keyword;
    case SyntaxTokenKind::string:
        return string;
    case SyntaxTokenKind::comment:
        return comment;
    case SyntaxTokenKind::number:
        return number;
    case SyntaxTokenKind::constant:
        return constant;
    case SyntaxTokenKind::tag:
        return tag;
    case SyntaxTokenKind::attribute:
        return attribute;
    case SyntaxTokenKind::variable:
        return variable;
    case SyntaxTokenKind::function:
        return function;
    }
    Q_UNREACHABLE();
}

QColor separator(const QPalette& palette) {
    return textAt(palette, isHighContrast(palette) ? 0.6F : 0.12F);
}

QColor editorBackground(const QPalette& palette) {
    return palette.color(QPalette::Base);
}

QColor secondaryText(const QPalette& palette) {
    return palette.color(QPalette::PlaceholderText);
}

QColor subtleFill(const QPalette& palette) {
    return textAt(palette, 0.045F);
}

QColor rowHover(const QPalette& palette) {
    return textAt(palette, 0.035F);
}

QColor searchFill(const QPalette& palette) {
    return textAt(palette, 0.055F);
}

QColor rowSelection(const QPalette& palette) {
    return textAt(palette, isHighContrast(palette) ? 0.2F : 0.075F);
}

QColor formatTint(NoteFormat format, const QPalette& palette) {
    switch (format) {
    case NoteFormat::plain: {
        QColor color = secondaryText(palette);
        color.setAlphaF(0.7F);
        return color;
    }
    case NoteFormat::markdown:
        return secondaryText(palette);
    case NoteFormat::json:
        return jsonNumber.in(palette);
    case NoteFormat::csv:
        return jsonString.in(palette);
    case NoteFormat::html:
        return syntaxColor(SyntaxTokenKind::tag).in(palette);
    case NoteFormat::css:
        return syntaxColor(SyntaxTokenKind::attribute).in(palette);
    case NoteFormat::javascript:
        return syntaxColor(SyntaxTokenKind::keyword).in(palette);
    case NoteFormat::php:
        return syntaxColor(SyntaxTokenKind::variable).in(palette);
    }
    Q_UNREACHABLE();
}

QColor folderColor(FolderColor color, const QPalette& palette) {
    const auto of = [&palette](QRgb dark, QRgb light) {
        return AdaptiveColor{QColor::fromRgb(dark), QColor::fromRgb(light)}.in(palette);
    };
    switch (color) {
    case FolderColor::red:
        return of(0xffff453a, 0xffe5342b);
    case FolderColor::orange:
        return of(0xffff9f0a, 0xffcc6200);
    case FolderColor::yellow:
        return of(0xffffd60a, 0xff9f7c00);
    case FolderColor::green:
        return of(0xff32d74b, 0xff23943d);
    case FolderColor::teal:
        return of(0xff6ac4dc, 0xff348ca2);
    case FolderColor::blue:
        return of(0xff409cff, 0xff0a72e8);
    case FolderColor::purple:
        return of(0xffbf5af2, 0xff9f4bcf);
    case FolderColor::gray:
        return of(0xff98989d, 0xff808086);
    }
    Q_UNREACHABLE();
}

QString folderColorName(FolderColor color) {
    const auto text = [](const char* name) { return QCoreApplication::translate("quillary::Theme", name); };
    switch (color) {
    case FolderColor::red:
        return text("Rosso");
    case FolderColor::orange:
        return text("Arancione");
    case FolderColor::yellow:
        return text("Giallo");
    case FolderColor::green:
        return text("Verde");
    case FolderColor::teal:
        return text("Verde acqua");
    case FolderColor::blue:
        return text("Blu");
    case FolderColor::purple:
        return text("Viola");
    case FolderColor::gray:
        return text("Grigio");
    }
    Q_UNREACHABLE();
}

QFont font(double size, QFont::Weight weight) {
    return sized(QGuiApplication::font(), size, weight);
}

QFont monospacedFont(double size, QFont::Weight weight) {
    return sized(QFontDatabase::systemFont(QFontDatabase::FixedFont), size, weight);
}

double textScale() {
    constexpr double ordinary = 96;
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen == nullptr ? 1 : screen->logicalDotsPerInch() / ordinary;
}

QFont sidebarTitle() {
    return font(12.5, QFont::Medium);
}

QFont sidebarDetail() {
    return font(11);
}

QFont caption() {
    return font(10.5);
}

} // namespace quillary::Theme
