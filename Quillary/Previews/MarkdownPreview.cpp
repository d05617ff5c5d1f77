#include "Quillary/Previews/MarkdownPreview.h"

#include "Quillary/Previews/MarkdownPreviewAccessible.h"
#include "QuillaryCore/Formats/MarkdownLinks.h"
#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include <QEasingCurve>
#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace quillary {

namespace {

constexpr std::chrono::milliseconds scrollTime(250);
/// What is kept laid out beyond the viewport, in rows.
constexpr std::size_t keptLayouts = 400;
constexpr int keptTokens = 400'000;
constexpr double leastPageWidth = 60;

} // namespace

MarkdownPreview::MarkdownPreview(const QString& text, double baseSize, OpenLink openLink, QWidget* parent)
    : QAbstractScrollArea(parent), m_style(baseSize), m_openLink(std::move(openLink)), m_tokens(keptTokens) {
    MarkdownPreviewAccessible::install();
    setAccessibleName(tr("Anteprima Markdown"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setMouseTracking(true);
    viewport()->setCursor(Qt::IBeamCursor);
    m_animation.setDuration(static_cast<int>(scrollTime.count()));
    m_animation.setEasingCurve(QEasingCurve::InOutQuad);
    rebuild(text, baseSize);
}

MarkdownPreview::~MarkdownPreview() = default;

void MarkdownPreview::rebuild(const QString& text, double baseSize) {
    m_animation.stop();
    ++m_revision;
    const MarkdownRows old = std::exchange(m_rows, MarkdownRows::of(text));
    const double oldHeight = m_heights.count() > 0 ? m_heights.height(m_anchor.row) : 0;
    m_style = MarkdownStyle(baseSize);
    m_tokens.clear();
    m_codeOffsets.clear();
    m_tableOffsets.clear();
    m_hoveredLink.reset();
    m_pressedLink.reset();
    m_focusedLink.reset();
    m_draggedThumb.reset();
    m_selecting = Selecting::nothing;
    m_dragTimer.stop();
    m_selectionStart = m_selectionEnd = {};
    m_selectionOrigin = {};
    const bool isAtTop = old.rows.empty() || (m_anchor.row == 0 && m_anchor.offset <= 0);
    const qsizetype anchorRow = isAtTop ? 0 : rowLike(old, m_anchor.row);
    forgetLayouts();
    if (rowCount() > 0 && !isAtTop) {
        const double growth = oldHeight > 0 ? heightOf(anchorRow) / oldHeight : 1;
        setAnchor({anchorRow, m_anchor.offset * growth});
    } else {
        setAnchor({0, -MarkdownStyle::paddingAlong});
    }
    MarkdownPreviewAccessible::announceText(*this);
    Q_EMIT selectionChanged();
}

// The row of the present text that says what a row of the old one said. Edits leave what stands before and behind them
// as it was.
qsizetype MarkdownPreview::rowLike(const MarkdownRows& old, qsizetype oldRow) const {
    const auto oldCount = static_cast<qsizetype>(old.rows.size());
    const MarkdownRow& wanted = old.rows[static_cast<std::size_t>(oldRow)];
    const qsizetype fromEnd = rowCount() - (oldCount - oldRow);
    const auto isLike = [&](qsizetype candidate) {
        return candidate >= 0 && candidate < rowCount() && MarkdownRows::saySame(old, wanted, m_rows, row(candidate));
    };
    constexpr qsizetype reach = 200;
    for (qsizetype distance = 0; distance <= reach; ++distance) {
        for (const qsizetype candidate :
             {oldRow - distance, oldRow + distance, fromEnd - distance, fromEnd + distance}) {
            if (isLike(candidate)) {
                return candidate;
            }
        }
    }
    return std::clamp<qsizetype>(oldRow, 0, std::max<qsizetype>(rowCount() - 1, 0));
}

void MarkdownPreview::forgetLayouts() {
    m_layouts.clear();
    m_columns.clear();
    m_codeWidths.clear();
    m_headerBound = MarkdownCellBound(m_style.headerCell);
    m_cellBound = MarkdownCellBound(m_style.cell);
    std::vector<float> heights;
    heights.reserve(m_rows.rows.size());
    for (const MarkdownRow& each : m_rows.rows) {
        heights.push_back(static_cast<float>(estimatedHeight(each)));
    }
    m_heights.assign(std::move(heights));
}

double MarkdownPreview::estimatedHeight(const MarkdownRow& row) const {
    const double gap = m_style.gap(row.gap);
    switch (row.kind) {
    case MarkdownRow::Kind::code: {
        const auto lines = static_cast<double>(m_rows.rawText(row).count(u'\n') + 1);
        return gap + lines * (m_style.codeLineHeight + m_style.codeLineSpacing) +
               ((row.isFirst ? 1 : 0) + (row.isLast ? 1 : 0)) * MarkdownStyle::codePadding;
    }
    case MarkdownRow::Kind::table:
        return gap + m_style.lineHeight + 2 * MarkdownStyle::cellPaddingAlong + MarkdownStyle::hairline;
    case MarkdownRow::Kind::rule:
        return gap + 2 * m_style.ruleMargin + MarkdownStyle::hairline;
    case MarkdownRow::Kind::blank:
        return gap + m_style.lineHeight;
    case MarkdownRow::Kind::heading:
    case MarkdownRow::Kind::paragraph:
        break;
    }
    const bool isHeading = row.kind == MarkdownRow::Kind::heading;
    const double scale = isHeading ? m_style.headingSize(row.level) / m_style.baseSize : 1;
    const QStringView raw = m_rows.rawText(row);
    const double width =
        static_cast<double>(row.isPiece ? m_rows.lengthOf(row) : raw.size()) * m_style.averageAdvance * scale;
    double lines = static_cast<double>(raw.count(u'\n') + 1);
    // Of half a million rows most have a word or none, and fit however narrow the page is.
    if (width > m_style.leastWidth(leastPageWidth)) {
        lines = std::max(lines, std::ceil(width / std::max(contentWidth(row), 1.0)));
    }
    double height = lines * m_style.lineHeight * scale;
    if (!isHeading) {
        height += (lines - 1) * m_style.lineSpacing;
    } else if (MarkdownStyle::hasLine(row.level)) {
        height += m_style.headingMargin + MarkdownStyle::headingLineGap + MarkdownStyle::hairline;
    }
    return gap + height;
}

double MarkdownPreview::pageWidth() const {
    return std::clamp(viewport()->width() - 2 * MarkdownStyle::paddingAcross, leastPageWidth,
                      MarkdownStyle::columnWidth);
}

double MarkdownPreview::pageLeft() const {
    return std::max(MarkdownStyle::paddingAcross, std::floor((viewport()->width() - pageWidth()) / 2));
}

double MarkdownPreview::contentLeft(const MarkdownRow& row) const {
    return pageLeft() + m_style.left(m_rows, row.frame, pageWidth());
}

double MarkdownPreview::contentWidth(const MarkdownRow& row) const {
    return pageWidth() - m_style.left(m_rows, row.frame, pageWidth());
}

const MarkdownTableColumns& MarkdownPreview::columnsOf(const MarkdownRow& row) const {
    std::unique_ptr<MarkdownTableColumns>& columns = m_columns[row.part.source];
    if (!columns) {
        columns = std::make_unique<MarkdownTableColumns>(m_rows.tables[static_cast<std::size_t>(row.part.source)],
                                                         m_style, contentWidth(row));
    }
    return *columns;
}

const QList<SyntaxToken>* MarkdownPreview::tokensOf(const MarkdownRow& row) const {
    const MarkdownRows::Code& code = m_rows.codes[static_cast<std::size_t>(row.part.source)];
    const std::optional<SyntaxLanguage> language = syntaxLanguageFromFenceName(code.language);
    if (!language) {
        return nullptr;
    }
    if (const QList<SyntaxToken>* const known = m_tokens.object(row.part.source)) {
        return known;
    }
    auto* const tokens = new QList<SyntaxToken>(SyntaxHighlighter::tokens(code.text, *language));
    m_tokens.insert(row.part.source, tokens, static_cast<int>(std::min<qsizetype>(tokens->size() + 1, keptTokens)));
    return m_tokens.object(row.part.source);
}

const MarkdownRowLayout& MarkdownPreview::layoutOf(qsizetype index) const {
    std::unique_ptr<MarkdownRowLayout>& layout = m_layouts[index];
    if (layout) {
        return *layout;
    }
    const MarkdownRow& laidOut = row(index);
    MarkdownRowLayout::Context context{m_rows, m_style, palette(), contentWidth(laidOut)};
    if (laidOut.kind == MarkdownRow::Kind::table) {
        context.columns = &columnsOf(laidOut);
        context.viewLeft = sideways(laidOut);
        context.cellBound = laidOut.part.start == 0 ? &m_headerBound : &m_cellBound;
    } else if (laidOut.kind == MarkdownRow::Kind::code) {
        context.tokens = tokensOf(laidOut);
    }
    layout = std::make_unique<MarkdownRowLayout>(laidOut, context);
    m_heights.setHeight(index, m_style.gap(laidOut.gap) + layout->height());
    if (laidOut.kind == MarkdownRow::Kind::code) {
        double& width = m_codeWidths[laidOut.part.source];
        if (layout->naturalWidth() > width) {
            width = layout->naturalWidth();
            // The thumb of the block may be in view where this row is not.
            viewport()->update();
        }
    }
    return *layout;
}

/// With the gap above it.
double MarkdownPreview::heightOf(qsizetype index) const {
    layoutOf(index);
    const MarkdownRow& wanted = row(index);
    // Cells beside may turn out to be higher than any bound: in fonts whose letters move apart.
    if (MarkdownRowLayout& layout = *m_layouts[index];
        wanted.kind == MarkdownRow::Kind::table && layout.reveal(sideways(wanted))) {
        m_heights.setHeight(index, m_style.gap(wanted.gap) + layout.height());
    }
    return m_heights.height(index);
}

void MarkdownPreview::dropFarLayouts() {
    if (m_layouts.size() <= keptLayouts) {
        return;
    }
    const double page = viewport()->height();
    constexpr qsizetype margin = keptLayouts / 8;
    const qsizetype first = anchorAt(placeOf(m_anchor) - page).row - margin;
    const qsizetype last = anchorAt(placeOf(m_anchor) + 2 * page).row + margin;
    // Each scrolling asks where the page ends.
    const qsizetype end = lastAnchor().row;
    std::erase_if(m_layouts,
                  [&](const auto& entry) { return (entry.first < first || entry.first > last) && entry.first < end; });
}

QRectF MarkdownPreview::contentRect(qsizetype index) const {
    const MarkdownRow& wanted = row(index);
    const double top = m_heights.top(index) - m_heights.top(m_anchor.row) - m_anchor.offset;
    const double gap = m_style.gap(wanted.gap);
    return {contentLeft(wanted), top + gap, contentWidth(wanted), m_heights.height(index) - gap};
}

bool MarkdownPreview::followLink(const QString& url) {
    const MarkdownLinks::Target target = MarkdownLinks::target(url);
    const auto* const anchor = std::get_if<MarkdownLinks::Anchor>(&target);
    if (!anchor) {
        return m_openLink && m_openLink(url);
    }
    const std::optional<qsizetype> found = m_rows.rowOfAnchor(anchor->slug);
    if (found) {
        scrollToRow(*found, true);
    }
    return found.has_value();
}

bool MarkdownPreview::event(QEvent* event) {
    // Keys that shortcuts of the window may want, but that mean something here.
    if (event->type() == QEvent::ShortcutOverride) {
        auto* const key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::SelectAll)) {
            key->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void MarkdownPreview::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    // Layouts hold colours, and a change of the desktop's fonts reaches the style.
    if (event->type() == QEvent::PaletteChange) {
        m_layouts.clear();
        viewport()->update();
    } else if (event->type() == QEvent::ApplicationFontChange) {
        m_style = MarkdownStyle(m_style.baseSize);
        forgetLayouts();
        setAnchor(m_anchor);
    }
}

void MarkdownPreview::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    if (event->oldSize().width() == event->size().width() || rowCount() == 0) {
        setAnchor(m_anchor);
        return;
    }
    // The page may be as wide as before, but rows that were cut out of view may be in it now.
    const double part = m_anchor.offset > 0 ? m_anchor.offset / m_heights.height(m_anchor.row) : 0;
    forgetLayouts();
    setAnchor({m_anchor.row, part > 0 ? part * heightOf(m_anchor.row) : m_anchor.offset});
}

} // namespace quillary
