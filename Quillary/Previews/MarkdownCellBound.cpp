#include "Quillary/Previews/MarkdownCellBound.h"

#include "Quillary/Previews/MarkdownFormats.h"

#include <QFontMetricsF>
#include <QRawFont>

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillary {

namespace {

constexpr double unknown = std::numeric_limits<double>::infinity();
/// Units below this one are letters that stand each for itself, and signs.
constexpr char16_t firstUnknown = 0x0250;
constexpr char16_t softHyphen = 0x00AD;
/// What a pair of letters of a word may move apart, and a letter reach beyond its advance, by the size of the font.
constexpr double slackFactor = 0.06;

/// A word as far as it is read.
struct Word {
    void add(double advance, double slackOfFont) {
        width += advance;
        widest = std::max(widest, advance);
        slack = std::max(slack, slackOfFont);
    }

    qsizetype start = 0;
    double width = 0;
    double widest = 0;
    double slack = 0;
};

/// Whether no line is ever broken beside the unit in a word that has room in a line.
bool holdsTogether(QChar unit) {
    return unit.isLetterOrNumber() || unit == u'\'' || unit == u'.' || unit == u',';
}

} // namespace

struct MarkdownCellBound::Look {
    explicit Look(const QFont& font)
        : metrics(font), raw(QRawFont::fromFont(font)), slack(metrics.height() * slackFactor) {
        advances.fill(-1);
    }

    double advance(char16_t unit) {
        if (unit >= firstUnknown) {
            return unknown;
        }
        double& known = advances.at(unit);
        if (known < 0) {
            const bool isPlain = QChar::isPrint(unit) && unit != softHyphen && raw.supportsCharacter(QChar(unit));
            known = isPlain ? metrics.horizontalAdvance(QChar(unit)) : unknown;
        }
        return known;
    }

    QFontMetricsF metrics;
    QRawFont raw;
    double slack;
    std::array<double, firstUnknown> advances;
};

MarkdownCellBound::MarkdownCellBound(const QFont& font) : m_font(font) {}

std::size_t MarkdownCellBound::placeOf(const MarkdownStyledText::Run& run) {
    return (run.code ? 1U : 0U) | (run.strong ? 2U : 0U) | (run.emphasis ? 4U : 0U);
}

MarkdownCellBound::Look& MarkdownCellBound::lookOf(const MarkdownStyledText::Run& run) {
    std::shared_ptr<Look>& look = m_looks.at(placeOf(run));
    if (!look) {
        look = std::make_shared<Look>(MarkdownFormats::fontOf(run, m_font));
    }
    return *look;
}

double MarkdownCellBound::heightOf(const MarkdownStyledText& text, double width) {
    const double lines = lineCount(text, width);
    return lines == unknown ? unknown : lines * lineHeight(text);
}

double MarkdownCellBound::lineCount(const MarkdownStyledText& text, double width) {
    double lines = 1;
    double filled = 0;
    Word word;
    const auto endWord = [&](qsizetype end) {
        const double wide = word.width + word.slack;
        if (end == word.start || filled + wide <= width) {
            filled += wide;
        } else if (wide <= width) {
            ++lines;
            filled = wide;
        } else if (const QStringView units = QStringView(text.text).sliced(word.start, end - word.start);
                   wide < unknown && std::all_of(units.begin(), units.end(), holdsTogether)) {
            // It begins a line, and leaves room for less than its widest letter in each but its last.
            const auto most = static_cast<double>(units.size());
            const double room = width - word.widest;
            lines += (filled > 0 ? 1 : 0) + (room > 0 ? std::min(std::ceil(wide / room), most) : most) - 1;
            filled = width;
        } else {
            lines = unknown;
        }
    };
    for (const MarkdownStyledText::Run& run : text.runs) {
        Look& look = lookOf(run);
        for (qsizetype place = run.start; place < run.end(); ++place) {
            const char16_t unit = text.text[place].unicode();
            if (unit != u' ' && unit != u'\n') {
                word.add(look.advance(unit), look.slack);
                continue;
            }
            endWord(place);
            word = {.start = place + 1};
            filled = unit == u' ' ? filled + look.advance(unit) : 0;
            lines += unit == u' ' ? 0 : 1;
        }
    }
    endWord(text.text.size());
    return lines;
}

/// The most that a line takes: the highest reach of any font above the baseline and of any below it, with each line's
/// height rounded up as the layout does.
double MarkdownCellBound::lineHeight(const MarkdownStyledText& text) {
    std::array<bool, lookCount> isUsed = {true};
    for (const MarkdownStyledText::Run& run : text.runs) {
        isUsed.at(placeOf(run)) = true;
    }
    const QFontMetricsF& plain = lookOf({}).metrics;
    double above = plain.ascent();
    double below = plain.height() - plain.ascent();
    for (std::size_t i = 0; i < lookCount; ++i) {
        for (std::size_t j = 0; j < lookCount; ++j) {
            if (isUsed.at(i) && isUsed.at(j)) {
                const double ascent = m_looks.at(i)->metrics.ascent();
                above = std::max(above, ascent);
                below = std::max(below, std::ceil(ascent + m_looks.at(j)->metrics.descent()) - ascent);
            }
        }
    }
    return above + below;
}

} // namespace quillary
