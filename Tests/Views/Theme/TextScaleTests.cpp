#include "Quillary/Detail/NoteCard.h"
#include "Quillary/Previews/CSVGrid.h"
#include "Quillary/Previews/CSVPreview.h"
#include "Quillary/Previews/JSONPreview.h"
#include "Quillary/Previews/JSONRowsView.h"
#include "Quillary/State/NoteItem.h"
#include "Quillary/Theme/SegmentedPicker.h"
#include "Quillary/Theme/Style.h"
#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/WrappingLabel.h"
#include "QuillaryCore/Notes/NoteFileInfo.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFontMetrics>
#include <QHeaderView>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>

// The tests of a desktop that wants larger texts, but nothing else larger.

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

constexpr double baseSize = 13;

int textHeight() {
    return QFontMetrics(Theme::font(baseSize)).height();
}

} // namespace

TEST(TextScale, IsThatOfTheDesktop) {
    EXPECT_DOUBLE_EQ(Theme::textScale(), 1.5);
}

TEST(TextScale, ARowOfJSONIsNoLowerThanItsText) {
    const JSONPreview preview(uR"({"a": 1})"_s, baseSize, {});
    const auto* const rows = preview.findChild<JSONRowsView*>();
    ASSERT_NE(rows, nullptr);
    EXPECT_GE(rows->visualRect(rows->model()->index(0, 0)).height(), textHeight());
}

TEST(TextScale, ALineOfWhatIsNoJSONIsNoLowerThanItsText) {
    const JSONPreview preview(u"{\n\n"_s, baseSize, {});
    int lowest = 0;
    for (const QWidget* const widget : preview.findChildren<QWidget*>()) {
        if (widget->accessibleName().startsWith(u"1  {"_s)) {
            lowest = widget->minimumHeight() / static_cast<int>(widget->accessibleName().count(u'\n') + 1);
        }
    }
    EXPECT_GE(lowest, QFontMetrics(Theme::monospacedFont(baseSize)).height());
}

TEST(TextScale, ATableHasRoomForItsTexts) {
    const CSVPreview preview(u"nome,valore\nuno,2\n"_s, baseSize);
    const auto* const grid = preview.findChild<CSVGrid*>();
    ASSERT_NE(grid, nullptr);
    EXPECT_GE(grid->verticalHeader()->defaultSectionSize(), textHeight());
    EXPECT_GE(grid->horizontalHeader()->height(), textHeight());
    EXPECT_NEAR(grid->columnWidth(0), preview.columnWidths().first() * Theme::textScale(), 1);
}

TEST(TextScale, ACardHasRoomForFourLinesOfItsNote) {
    NoteCard card;
    NoteItem item({.url = FilePath::fromBytes("/note/Nota.md"), .folder = std::nullopt});
    item.setSnippet(QString(u"parola "_s).repeated(100));
    card.setItem(item, u"A"_s, std::nullopt);
    card.resize(card.maximumWidth(), card.height());
    card.show();
    const auto* const snippet = card.findChild<WrappingLabel*>();
    ASSERT_NE(snippet, nullptr);
    EXPECT_GE(snippet->height(), 4 * snippet->fontMetrics().lineSpacing());
}

TEST(TextScale, ASegmentIsNoLowerThanItsText) {
    for (const SegmentedPicker::Place place : {SegmentedPicker::Place::panel, SegmentedPicker::Place::toolbar}) {
        SegmentedPicker picker(nullptr, place);
        picker.addSegment(0, u"Uno"_s);
        const auto* const segment = picker.findChild<QAbstractButton*>();
        ASSERT_NE(segment, nullptr);
        EXPECT_GT(segment->minimumHeight(), segment->fontMetrics().height());
    }
}

int main(int argc, char** argv) {
    qputenv("LC_ALL", "C.UTF-8");
    std::setlocale(LC_ALL, "C.UTF-8");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    qputenv("QT_FONT_DPI", "144");
    const QApplication application(argc, argv);
    QApplication::setStyle(new Style);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
