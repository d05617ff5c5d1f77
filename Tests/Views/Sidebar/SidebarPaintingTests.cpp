#include "DrawnTexts.h"
#include "Quillary/Sidebar/FolderHeader.h"
#include "Quillary/Sidebar/InsertionLine.h"
#include "Quillary/Sidebar/NoteRow.h"
#include "Quillary/Sidebar/SectionHeader.h"
#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Theme.h"
#include "SidebarTest.h"

#include <QImage>
#include <QtMath>

#include <algorithm>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

const QString longTitle = u"Un titolo che non sta nella larghezza della lista e va troncato"_s;
const QString longText = u"un testo che segue nella riga sotto e non sta nella sua larghezza nemmeno lui"_s;

/// A folder and notes whose rows show all there is to show.
class SidebarPaintingTest : public SidebarTest {
protected:
    SidebarPaintingTest()
        : SidebarTest({{u"breve.md"_s, u"inizio del testo"_s},
                       {u"vuota.txt"_s, {}},
                       {longTitle % u".json"_s, longText},
                       {u"Lavoro/dentro.csv"_s, u"a,b"_s}}) {
        EXPECT_TRUE(QTest::qWaitFor([this] {
            return std::ranges::all_of(store().notes(),
                                       [](const NoteItemPtr& item) { return item->document() != nullptr; });
        }));
        note(u"vuota"_s)->setModified(now() - std::chrono::days(400));
        rows();
    }

    /// What a row shows, each text with its place in the list.
    QList<DrawnText> shownIn(const QString& title) {
        QWidget& viewport = *m_list->viewport();
        const QRect row = m_list->rowRect(rowOf(title));
        QList<DrawnText> texts =
            drawnTexts(viewport.size(), [&](QPainter& painter) { viewport.render(&painter, {}, {}, {}); });
        texts.removeIf([&](const DrawnText& text) { return !row.contains(text.place.center().toPoint()); });
        return texts;
    }

    QStringList textsIn(const QString& title) {
        QStringList texts;
        for (const DrawnText& text : shownIn(title)) {
            texts.append(text.text);
        }
        texts.sort();
        return texts;
    }

    QImage picture(const QString& title) { return m_list->viewport()->grab(m_list->rowRect(rowOf(title))).toImage(); }

    static bool hasColor(const QImage& picture, const QColor& color) {
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y).rgb() == color.rgb()) {
                    return true;
                }
            }
        }
        return false;
    }
};

QStringList sorted(QStringList texts) {
    texts.sort();
    return texts;
}

} // namespace

// A note's row

TEST_F(SidebarPaintingTest, ANotesRowShowsTitleDateBeginningAndFormat) {
    const NoteItemPtr shown = note(u"breve"_s);
    EXPECT_EQ(textsIn(u"breve"_s),
              sorted({u"breve"_s, m_list->model().dateText(*shown), u"inizio del testo"_s, u"MD"_s}));
    EXPECT_EQ(textsIn(u"vuota"_s),
              sorted({u"vuota"_s, m_list->model().dateText(*note(u"vuota"_s)), u"Vuota"_s, u"TXT"_s}));
    EXPECT_TRUE(textsIn(u"dentro"_s).contains(u"CSV"_s));
}

TEST_F(SidebarPaintingTest, TheDateFollowsTheOrderOfTheList) {
    const NoteItemPtr shown = note(u"vuota"_s);
    const QString modified = m_list->model().dateText(*shown);
    EXPECT_TRUE(textsIn(u"vuota"_s).contains(modified));
    m_folder.settings().setSortOrder(NoteSortOrder::created);
    const QString created = m_list->model().dateText(*shown);
    ASSERT_NE(created, modified);
    EXPECT_TRUE(textsIn(u"vuota"_s).contains(created));
    EXPECT_FALSE(textsIn(u"vuota"_s).contains(modified));
}

TEST_F(SidebarPaintingTest, DatesFormatsAndNumbersEndOnOneLine) {
    QList<double> ends;
    for (const QString& title : {u"breve"_s, u"vuota"_s, u"dentro"_s, longTitle, u"Lavoro"_s}) {
        double end = 0;
        for (const DrawnText& text : shownIn(title)) {
            end = std::max(end, text.place.right());
        }
        ends.append(end);
    }
    // An advance may end within a pixel.
    const auto [least, most] = std::ranges::minmax(ends);
    EXPECT_LT(most - least, 1.5);
}

TEST_F(SidebarPaintingTest, NotesOfAFolderStandIn) {
    const auto startOf = [this](const QString& title) {
        for (const DrawnText& text : shownIn(title)) {
            if (text.text == title) {
                return text.place.left();
            }
        }
        return 0.0;
    };
    EXPECT_NEAR(startOf(u"dentro"_s), startOf(u"breve"_s) + SidebarMetrics::indentation, 0.5);
}

TEST_F(SidebarPaintingTest, LongTextsAreCutBeforeDateAndFormat) {
    QList<DrawnText> texts = shownIn(longTitle);
    const QString date = m_list->model().dateText(*note(longTitle));
    const auto find = [&](auto condition) {
        const auto found = std::ranges::find_if(texts, condition);
        return found == texts.end() ? DrawnText() : *found;
    };
    const DrawnText title = find([](const DrawnText& text) { return text.text.startsWith(u"Un titolo"); });
    const DrawnText excerpt = find([](const DrawnText& text) { return text.text.startsWith(u"un testo"); });
    const DrawnText shownDate = find([&](const DrawnText& text) { return text.text == date; });
    const DrawnText format = find([](const DrawnText& text) { return text.text == u"JSON"; });
    EXPECT_TRUE(title.text.endsWith(QChar(0x2026))) << title.text.toStdString();
    EXPECT_TRUE(excerpt.text.endsWith(QChar(0x2026))) << excerpt.text.toStdString();
    EXPECT_LT(title.place.right(), shownDate.place.left());
    EXPECT_LT(excerpt.place.right(), format.place.left());
}

// A folder's header

TEST_F(SidebarPaintingTest, AHeaderShowsItsNameAndTheNumberOfItsNotes) {
    EXPECT_EQ(textsIn(u"Lavoro"_s), sorted({u"Lavoro"_s, u"1"_s}));
    store().move({note(u"breve"_s)}, u"Lavoro"_s);
    EXPECT_EQ(textsIn(u"Lavoro"_s), sorted({u"Lavoro"_s, u"2"_s}));
    store().toggleCollapsed(u"Lavoro"_s);
    EXPECT_EQ(textsIn(u"Lavoro"_s), sorted({u"Lavoro"_s, u"2"_s}));
}

TEST_F(SidebarPaintingTest, AHeaderShowsWhetherItIsOpen) {
    const QImage open = picture(u"Lavoro"_s);
    store().toggleCollapsed(u"Lavoro"_s);
    EXPECT_NE(picture(u"Lavoro"_s), open);
    store().toggleCollapsed(u"Lavoro"_s);
    EXPECT_EQ(picture(u"Lavoro"_s), open);
}

TEST_F(SidebarPaintingTest, AHeaderShowsItsColour) {
    for (const FolderColor color : allFolderColors) {
        const QColor shown = Theme::folderColor(color, m_list->palette());
        store().setColor(std::nullopt, u"Lavoro"_s);
        EXPECT_FALSE(hasColor(picture(u"Lavoro"_s), shown)) << shown.name().toStdString();
        store().setColor(color, u"Lavoro"_s);
        EXPECT_TRUE(hasColor(picture(u"Lavoro"_s), shown)) << shown.name().toStdString();
    }
}

TEST_F(SidebarPaintingTest, TheHighlightIsTheStores) {
    select(u"breve"_s);
    const QImage selected = picture(u"breve"_s);
    const QImage plain = picture(u"vuota"_s);
    const QPoint beside(SidebarMetrics::margin + 3, selected.height() / 2);
    EXPECT_NE(selected.pixelColor(beside), plain.pixelColor(beside));
    store().setSelectedFolder(u"Lavoro"_s);
    EXPECT_EQ(picture(u"breve"_s).pixelColor(beside), plain.pixelColor(beside));
}

// Everywhere

TEST(SidebarPainting, EveryTextCanBeReadInEveryState) {
    const SidebarMetrics metrics = SidebarMetrics::measured();
    const QRect row(0, 0, 260, metrics.noteHeight);
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        const SidebarLook look{.metrics = metrics, .palette = palette, .isListFocused = true};
        for (const bool isSelected : {false, true}) {
            for (const bool isHovered : {false, true}) {
                const QColor ground = look.ground(isSelected, isHovered);
                const auto expectReadable = [&](const std::function<void(QPainter&)>& draw) {
                    const QList<DrawnText> texts = drawnTexts(row.size(), draw);
                    EXPECT_FALSE(texts.isEmpty());
                    for (const DrawnText& text : texts) {
                        EXPECT_GE(contrast(text.color, ground), textContrast) << text.text.toStdString();
                    }
                };
                for (const NoteFormat format : allNoteFormats) {
                    expectReadable([&](QPainter& painter) {
                        NoteRow{.title = u"Titolo"_s,
                                .date = u"12:30"_s,
                                .excerpt = u"Inizio"_s,
                                .format = format,
                                .isSelected = isSelected,
                                .isHovered = isHovered}
                            .paint(painter, row, look);
                    });
                }
                expectReadable([&](QPainter& painter) {
                    FolderHeader{.name = u"Cartella"_s,
                                 .count = 3,
                                 .color = {},
                                 .isSelected = isSelected,
                                 .isHovered = isHovered}
                        .paint(painter, row, look);
                });
            }
        }
        const QList<DrawnText> heading = drawnTexts(
            row.size(), [&](QPainter& painter) { SectionHeader{.title = u"Oggi"_s}.paint(painter, row, look); });
        ASSERT_EQ(heading.size(), 1);
        EXPECT_GE(contrast(heading.constFirst().color, look.ground(false, false)), textContrast);
    }
}

TEST(SidebarPainting, TheInsertionLineIsARingAndASharpLineAtEveryScale) {
    const SidebarMetrics metrics = SidebarMetrics::measured();
    const QPalette palette = lightPalette();
    const SidebarLook look{.metrics = metrics, .palette = palette};
    const QRgb accent = look.accent().rgb();
    constexpr int width = 200;
    constexpr int left = 8;
    constexpr int right = 192;
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        for (int y = 0; y < 40; ++y) {
            QImage picture(QSizeF(width * scale, 60 * scale).toSize(), QImage::Format_RGB32);
            picture.setDevicePixelRatio(scale);
            picture.fill(Qt::white);
            QPainter painter(&picture);
            painter.setRenderHint(QPainter::Antialiasing);
            InsertionLine::paint(painter, left, right, y, look);
            painter.end();
            // Across the line: 2 points of the colour itself, and nothing half covered beside it.
            const int middle = qRound(width * 0.5 * scale);
            int covered = 0;
            int partly = 0;
            for (int row = 0; row < picture.height(); ++row) {
                covered += picture.pixel(middle, row) == accent ? 1 : 0;
                partly += picture.pixel(middle, row) != accent && picture.pixel(middle, row) != qRgb(255, 255, 255);
            }
            EXPECT_EQ(covered, qRound(2 * scale)) << scale << " at " << y;
            EXPECT_EQ(partly, 0) << scale << " at " << y;
            // It fills the width, and the ring before it is 6 points high between the middles of its stroke.
            EXPECT_NE(picture.pixel(qFloor((right - 1) * scale), qRound(std::max(y, 4) * scale)), qRgb(255, 255, 255));
            int top = picture.height();
            int bottom = 0;
            for (int row = 0; row < picture.height(); ++row) {
                for (int x = 0; x < qRound((left + 4) * scale); ++x) {
                    if (qBlue(picture.pixel(x, row)) != 255 || qRed(picture.pixel(x, row)) != 255) {
                        top = std::min(top, row);
                        bottom = std::max(bottom, row + 1);
                    }
                }
            }
            EXPECT_NEAR((bottom - top) / scale, 7.5, 2 / scale) << scale << " at " << y;
        }
    }
}

TEST_F(SidebarPaintingTest, NoPixelIsHalfPaintedWhereTheListEndsBetweenTwo) {
    QWidget& viewport = *m_list->viewport();
    const QRgb ground = Theme::sidebarBackground.in(m_list->palette()).rgb();
    const QRgb unpainted = qRgb(255, 0, 255);
    for (const double scale : {1.25, 1.5, 1.75}) {
        for (int height = 301; height < 305; ++height) {
            viewport.resize(viewport.width(), height);
            QImage picture((QSizeF(viewport.size()) * scale).toSize() + QSize(2, 2), QImage::Format_RGB32);
            picture.setDevicePixelRatio(scale);
            picture.fill(unpainted);
            viewport.render(&picture);
            for (int y = 0; y < picture.height(); ++y) {
                const QRgb pixel = picture.pixel(2, y);
                EXPECT_TRUE(pixel == ground || pixel == unpainted) << scale << ", " << height << " at " << y;
            }
        }
    }
}
