#include "Quillary/Previews/JSONPreview.h"

#include "Quillary/Previews/InvalidJSONView.h"
#include "Quillary/Previews/JSONRowView.h"
#include "Quillary/Previews/JSONRowsModel.h"
#include "Quillary/Previews/JSONRowsView.h"
#include "Quillary/Previews/PreviewHeader.h"
#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Formats/JSONFormatter.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// A preview on show.
class JSONPreviewOf {
public:
    explicit JSONPreviewOf(const QString& text)
        : view(text, 13, [this](const QString& formatted) { formattedTexts.append(formatted); }) {
        view.resize(500, 300);
        view.show();
        if (!QTest::qWaitForWindowExposed(&view)) {
            ADD_FAILURE() << "the view is not exposed";
        }
    }

    QString summary() const { return view.findChild<PreviewHeader*>()->summary(); }

    JSONRowsView& list() const { return *view.findChild<JSONRowsView*>(); }

    QStringList rows() const {
        QStringList texts;
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            texts.append(list().model()->index(row, 0).data().toString());
        }
        return texts;
    }

    QPushButton& button(const QString& text) const {
        for (QPushButton* const each : view.findChildren<QPushButton*>()) {
            if (each->text() == text) {
                return *each;
            }
        }
        ADD_FAILURE() << "no button " << text.toStdString();
        return *view.findChild<QPushButton*>();
    }

    void click(const QString& text) { QTest::mouseClick(&button(text), Qt::LeftButton); }

    void clickRow(int row) {
        const QRect place = list().visualRect(list().model()->index(row, 0));
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, {60, place.center().y()});
    }

    /// Chooses from the context menu of a row.
    void choose(int row, const QString& text) {
        const QPoint place = list().visualRect(list().model()->index(row, 0)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, list().viewport()->mapToGlobal(place));
        QApplication::sendEvent(list().viewport(), &event);
        // One that was closed may not be deleted yet.
        const QList<QMenu*> menus = list().findChildren<QMenu*>();
        ASSERT_FALSE(menus.isEmpty());
        QMenu* const menu = menus.last();
        for (QAction* const action : menu->actions()) {
            if (action->text() == text) {
                action->trigger();
                menu->close();
                return;
            }
        }
        FAIL() << "no command " << text.toStdString();
    }

    QStringList formattedTexts;
    JSONPreview view;
};

} // namespace

TEST(JSONPreview, TheSummaryNamesTheKindOfTheWhole) {
    EXPECT_EQ(JSONPreviewOf(u"{\"a\":1,\"a\":2}"_s).summary(), u"Oggetto · 2 chiavi"_s);
    EXPECT_EQ(JSONPreviewOf(u"[1,2,3]"_s).summary(), u"Array · 3 elementi"_s);
    EXPECT_EQ(JSONPreviewOf(u"[]"_s).summary(), u"Array · 0 elementi"_s);
    EXPECT_EQ(JSONPreviewOf(u"\"x\""_s).summary(), u"Valore singolo"_s);
    EXPECT_EQ(JSONPreviewOf(u"null"_s).summary(), u"Valore singolo"_s);
}

TEST(JSONPreview, RowsShowLabelsAndValues) {
    const JSONPreviewOf preview(
        uR"({"s":"a\"b","n":1E+2,"t":true,"f":false,"z":null,"o":{},"p":{"q":1},"l":[],"m":[7,8]})"_s);
    EXPECT_EQ(preview.rows(),
              (QStringList{u"{ 9 }"_s, u"s: \"a\\\"b\""_s, u"n: 1E+2"_s, u"t: true"_s, u"f: false"_s, u"z: null"_s,
                           u"o: { }"_s, u"p: { 1 }"_s, u"q: 1"_s, u"l: [ ]"_s, u"m: [ 2 ]"_s, u"0: 7"_s, u"1: 8"_s}));
}

TEST(JSONPreview, ValuesHaveTheColoursOfTheirKinds) {
    using Kind = JSONValue::Kind;
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        EXPECT_EQ(JSONRowView::valueColor(Kind::string, palette), Theme::jsonString.in(palette));
        EXPECT_EQ(JSONRowView::valueColor(Kind::number, palette), Theme::jsonNumber.in(palette));
        EXPECT_EQ(JSONRowView::valueColor(Kind::boolean, palette), Theme::jsonLiteral.in(palette));
        EXPECT_EQ(JSONRowView::valueColor(Kind::null, palette), Theme::jsonLiteral.in(palette));
        EXPECT_EQ(JSONRowView::valueColor(Kind::object, palette), Theme::secondaryText(palette));
        EXPECT_EQ(JSONRowView::valueColor(Kind::array, palette), Theme::secondaryText(palette));
    }
}

TEST(JSONPreview, TwoLevelsAreOpenAtFirst) {
    const JSONPreviewOf preview(uR"({"a":{"b":{"c":1}}})"_s);
    EXPECT_EQ(preview.rows(), (QStringList{u"{ 1 }"_s, u"a: { 1 }"_s, u"b: { 1 }"_s}));
}

TEST(JSONPreview, AClickOpensAndClosesAContainer) {
    JSONPreviewOf preview(uR"({"a":{"b":{"c":1}},"d":2})"_s);
    preview.clickRow(2);
    EXPECT_EQ(preview.rows(), (QStringList{u"{ 2 }"_s, u"a: { 1 }"_s, u"b: { 1 }"_s, u"c: 1"_s, u"d: 2"_s}));
    preview.clickRow(1);
    EXPECT_EQ(preview.rows(), (QStringList{u"{ 2 }"_s, u"a: { 1 }"_s, u"d: 2"_s}));
    preview.clickRow(2); // nothing to open
    EXPECT_EQ(preview.rows().size(), 3);
    preview.clickRow(1);
    EXPECT_EQ(preview.rows().size(), 5) << "what was open inside is open again";
}

TEST(JSONPreview, OpensAndClosesEverything) {
    JSONPreviewOf preview(uR"({"a":{"b":{"c":[1]}}})"_s);
    preview.click(u"Espandi tutto"_s);
    EXPECT_EQ(preview.rows().size(), 5);
    preview.clickRow(1);
    EXPECT_EQ(preview.rows().size(), 2) << "a single one can still be closed";
    preview.click(u"Espandi tutto"_s);
    EXPECT_EQ(preview.rows().size(), 5) << "what the user chose is forgotten";
    preview.click(u"Comprimi"_s);
    EXPECT_EQ(preview.rows(), (QStringList{u"{ 1 }"_s, u"a: { 1 }"_s})) << "the root stays open";
}

TEST(JSONPreview, AClickOnAButtonLeavesTheKeysToTheRows) {
    JSONPreviewOf preview(u"{\"a\": [1], \"b\": 2}"_s);
    preview.view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&preview.view));
    preview.list().setFocus();
    for (const QString& text : {u"Espandi tutto"_s, u"Comprimi"_s, u"Formatta testo"_s}) {
        preview.click(text);
        EXPECT_TRUE(preview.list().hasFocus()) << text.toStdString();
    }
    preview.button(u"Formatta testo"_s).setFocus();
    for (const QString& text : {u"Espandi tutto"_s, u"Comprimi"_s}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(preview.button(text).hasFocus()) << text.toStdString();
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(preview.list().hasFocus());
}

TEST(JSONPreview, KeysWalkThroughTheTree) {
    JSONPreviewOf preview(uR"({"a":{"b":{"c":1}},"d":2})"_s);
    JSONRowsView& list = preview.list();
    preview.list().setCurrentIndex(list.model()->index(0, 0));
    QTest::keyClick(&list, Qt::Key_Right);
    QTest::keyClick(&list, Qt::Key_Right);
    EXPECT_EQ(list.currentIndex().row(), 2);
    QTest::keyClick(&list, Qt::Key_Right);
    EXPECT_EQ(preview.rows().size(), 5);
    QTest::keyClick(&list, Qt::Key_Right);
    EXPECT_EQ(list.currentIndex().row(), 3);
    QTest::keyClick(&list, Qt::Key_Left);
    EXPECT_EQ(list.currentIndex().row(), 2);
    QTest::keyClick(&list, Qt::Key_Left);
    EXPECT_EQ(preview.rows().size(), 4);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(preview.rows().size(), 5);
}

TEST(JSONPreview, KeysMoveByRowByPageAndToTheEnds) {
    JSONPreviewOf preview(u"["_s % QString(u"1,"_s).repeated(500) % u"1]"_s);
    JSONRowsView& list = preview.list();
    const int page = list.viewport()->height() / list.visualRect(list.model()->index(0, 0)).height();

    struct Case {
        Qt::Key key;
        int row;
    };

    list.setCurrentIndex(list.model()->index(0, 0));
    for (const Case& each :
         {Case{Qt::Key_Up, 0}, Case{Qt::Key_Down, 1}, Case{Qt::Key_PageDown, 1 + page}, Case{Qt::Key_PageUp, 1},
          Case{Qt::Key_PageUp, 0}, Case{Qt::Key_End, 501}, Case{Qt::Key_Down, 501}, Case{Qt::Key_PageDown, 501},
          Case{Qt::Key_Up, 500}, Case{Qt::Key_Home, 0}}) {
        QTest::keyClick(&list, each.key);
        EXPECT_EQ(list.currentIndex().row(), each.row);
        EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.currentIndex())));
    }
    QTest::keyClick(&list, Qt::Key_End);
    EXPECT_EQ(list.verticalScrollBar()->value(), list.verticalScrollBar()->maximum());
    QTest::keyClick(&list, Qt::Key_Home);
    EXPECT_EQ(list.verticalScrollBar()->value(), 0);
}

TEST(JSONPreview, TheMouseSelectsRowsAndStretchesOfThem) {
    JSONPreviewOf preview(uR"([10,11,12,13,14])"_s);
    JSONRowsView& list = preview.list();
    const auto place = [&](int row) { return list.visualRect(list.model()->index(row, 0)).center(); };
    const auto selected = [&] {
        QList<int> rows;
        for (const QModelIndex& index : list.selectionModel()->selectedIndexes()) {
            rows.append(index.row());
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    };
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place(2));
    EXPECT_EQ(selected(), QList<int>{2});
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ShiftModifier, place(4));
    EXPECT_EQ(selected(), (QList<int>{2, 3, 4}));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, place(3));
    EXPECT_EQ(selected(), (QList<int>{2, 4}));
    EXPECT_EQ(list.indexAt({5, list.viewport()->height() - 1}), QModelIndex()) << "below the last row is none";
    EXPECT_EQ(list.indexAt({5, 2}), QModelIndex()) << "nor is there one above the first";
}

TEST(JSONPreview, RowsAreScrolledToWhereTheyAreWanted) {
    JSONPreviewOf preview(u"["_s % QString(u"1,"_s).repeated(500) % u"1]"_s);
    JSONRowsView& list = preview.list();
    const QModelIndex index = list.model()->index(250, 0);
    const int room = list.viewport()->height();
    list.scrollTo(index, QAbstractItemView::PositionAtTop);
    EXPECT_EQ(list.visualRect(index).top(), 0);
    list.scrollTo(index, QAbstractItemView::PositionAtBottom);
    EXPECT_EQ(list.visualRect(index).bottom() + 1, room);
    list.scrollTo(index, QAbstractItemView::PositionAtCenter);
    EXPECT_NEAR(list.visualRect(index).center().y(), room / 2.0, 1);
    const int before = list.verticalScrollBar()->value();
    list.scrollTo(index);
    EXPECT_EQ(list.verticalScrollBar()->value(), before) << "it is in view";
    EXPECT_EQ(list.indexAt(list.visualRect(index).center()), index);
}

TEST(JSONPreview, FormattingIsOfferedWhereThereIsSomethingToDo) {
    struct Case {
        QString text;
        bool isOffered;
    };

    const QList<Case> cases = {
        {u"{\"a\":1}"_s, true},
        {u"{\n  \"a\": 1\n}"_s, false},
        {u"{\n  \"a\": 1\n}\n"_s, true}, // no line feed at the end
        {u"{\n    \"a\": 1\n}"_s, true},
        {u"[]"_s, false},
        {u"1"_s, false},
        {u" 1"_s, true},
        {u"{\n  \"a\": [\n    1,\n    {\n      \"b\": []\n    }\n  ]\n}"_s, false},
        {u"[\n  1,\n  2 \n]"_s, true},
    };
    for (const Case& each : cases) {
        const JSONPreviewOf preview(each.text);
        EXPECT_EQ(preview.button(u"Formatta testo"_s).isEnabled(), each.isOffered) << each.text.toStdString();
        EXPECT_EQ(JSONFormatter::prettyPrinted(*preview.view.parsed(), 2) != each.text, each.isOffered);
    }
}

TEST(JSONPreview, WhetherATextIsFormattedIsKnownWithoutFormattingHugeOnes) {
    // Formatted, each element of the innermost array would stand behind 198 blanks.
    const QString text = QString(99, u'[') % QString(u"1,"_s).repeated(400'000) % u"1"_s % QString(99, u']');
    const auto value = JSONParser::parse(QStringView(text));
    ASSERT_TRUE(value);
    EXPECT_FALSE(JSONPreview::isPrettyPrinted(text, *value));
}

TEST(JSONPreview, FormattingHandsOverTheFormattedText) {
    JSONPreviewOf preview(u"{\"b\":[1, 2],\"a\":{}}"_s);
    preview.click(u"Formatta testo"_s);
    EXPECT_EQ(preview.formattedTexts, QStringList(u"{\n  \"b\": [\n    1,\n    2\n  ],\n  \"a\": {}\n}"_s));
}

TEST(JSONPreview, TheContextMenuCopiesPathAndValue) {
    JSONPreviewOf preview(uR"({"a.b":"x\"y","k":1,"k":{"z":[1,true]}})"_s);

    struct Case {
        int row;
        QString path;
        QString value;
    };

    const QList<Case> cases = {
        {1, u"$[\"a.b\"]"_s, u"x\"y"_s},
        {2, u"$.k"_s, u"1"_s},
        {3, u"$.k"_s, u"{\n  \"z\": [\n    1,\n    true\n  ]\n}"_s},
    };
    for (const Case& each : cases) {
        preview.choose(each.row, u"Copia percorso"_s);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), each.path);
        preview.choose(each.row, u"Copia valore"_s);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), each.value);
    }
}

TEST(JSONPreview, CopyTakesTheValuesOfTheSelectedRows) {
    JSONPreviewOf preview(uR"(["a","b",3])"_s);
    preview.list().setCurrentIndex(preview.list().model()->index(1, 0));
    QTest::keyClick(&preview.list(), Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&preview.list(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"a\nb"_s);
}

TEST(JSONPreview, ANewTextKeepsWhatIsOpenAndThePlace) {
    QString elements = u"{\"x\":{\"y\":{}}}"_s;
    for (int i = 0; i < 500; ++i) {
        elements += u",%1"_s.arg(i);
    }
    JSONPreviewOf preview(u"["_s % elements % u"]"_s);
    preview.clickRow(2);
    preview.list().scrollTo(preview.list().model()->index(200, 0), QAbstractItemView::PositionAtTop);
    const QString top = preview.list().indexAt({20, 2}).data().toString();
    preview.view.rebuild(u"["_s % elements % u",\"nuovo\"]"_s, 13);
    EXPECT_EQ(preview.summary(), u"Array · 502 elementi"_s);
    EXPECT_EQ(preview.list().indexAt({20, 2}).data().toString(), top);
    EXPECT_EQ(preview.rows().at(3), u"y: { }"_s);
}

TEST(JSONPreview, InvalidTextShowsTheErrorAndTheLinesAroundIt) {
    const QString text = u"[1,\n2,\n}\n4"_s;
    const JSONPreviewOf preview(text);
    EXPECT_FALSE(preview.view.findChild<PreviewHeader*>()->isVisible());
    EXPECT_FALSE(preview.list().isVisible());
    auto* const invalid = preview.view.findChild<InvalidJSONView*>();
    ASSERT_NE(invalid, nullptr);
    EXPECT_TRUE(invalid->isVisible());
    EXPECT_EQ(invalid->error().line(), 3);
    const QList<QLabel*> labels = invalid->findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
        return label->text() == u"JSON non valido — "_s % invalid->error().description() &&
               label->textFormat() == Qt::PlainText;
    }));
}

TEST(JSONPreview, BecomesValidAndInvalidAgain) {
    JSONPreviewOf preview(u"{"_s);
    EXPECT_NE(preview.view.findChild<InvalidJSONView*>(), nullptr);
    preview.view.rebuild(u"{}"_s, 13);
    EXPECT_EQ(preview.view.findChild<InvalidJSONView*>(), nullptr);
    EXPECT_TRUE(preview.list().isVisible());
    preview.view.rebuild(QString(), 13);
    EXPECT_NE(preview.view.findChild<InvalidJSONView*>(), nullptr);
}

TEST(JSONPreview, RowsStandAtTheirDepthBehindTheirMarks) {
    JSONPreviewOf preview(uR"({"a":{"b":1},"c":[[]]})"_s);
    preview.view.setPalette(lightPalette());
    for (const double size : {9.0, 13.0, 28.0}) {
        preview.view.rebuild(uR"({"a":{"b":1},"c":[[]]})"_s, size);
        JSONRowsView& list = preview.list();
        EXPECT_EQ(list.visualRect(list.model()->index(0, 0)).top(), 12);
        const QImage image = list.viewport()->grab().toImage();
        const QList<int> depths = {0, 1, 2, 1, 2};
        for (int row = 0; row < depths.size(); ++row) {
            SCOPED_TRACE(testing::Message() << row << " at " << size);
            const QRect place = list.visualRect(list.model()->index(row, 0));
            const auto hasInk = [&](int from, int to) {
                for (int x = from; x < to; ++x) {
                    for (int y = place.top(); y <= place.bottom(); ++y) {
                        if (image.pixelColor(x, y) != lightPalette().color(QPalette::Base)) {
                            return true;
                        }
                    }
                }
                return false;
            };
            const int mark = 18 + depths[row] * 16;
            EXPECT_FALSE(hasInk(0, mark));
            EXPECT_EQ(hasInk(mark, mark + 14), row != 2) << "the mark of a container";
            EXPECT_TRUE(hasInk(mark + 14, mark + 14 + static_cast<int>(size * 0.95)));
        }
    }
}

TEST(JSONPreview, ButtonsHaveAirAroundTheirTexts) {
    const JSONPreviewOf preview(u"{}"_s);
    for (const QString& text : {u"Formatta testo"_s, u"Espandi tutto"_s, u"Comprimi"_s}) {
        const QPushButton& button = preview.button(text);
        EXPECT_GE(button.width(), button.fontMetrics().horizontalAdvance(text) + 20) << text.toStdString();
    }
}

TEST(JSONPreview, AStringIsNeverCutWithinACharacter) {
    const JSONPreviewOf preview(u"[\""_s % QString(499, u'x') % u"\U0001F600\U0001F600\"]"_s);
    EXPECT_EQ(preview.rows().at(1), QString(u"0: \""_s % QString(499, u'x') % QChar(0x2026)));
}

TEST(InvalidJSONView, TintsTheLineOfTheFaultAndKeepsNumbersInTheGutter) {
    for (const double size : {9.0, 13.0, 28.0}) {
        for (const int line : {1, 111, 11'111}) {
            SCOPED_TRACE(testing::Message() << line << " at " << size);
            const QString text = u"[1,\n"_s % QString(u"1,\n"_s).repeated(std::max(line - 2, 0));
            JSONPreview view(line == 1 ? u"}\n1\n1"_s : QString(text % u"}\n1\n1"_s), size, {});
            view.setPalette(lightPalette());
            view.resize(500, 700);
            view.show();
            ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
            QWidget* const lines = view.findChild<QScrollArea*>()->widget();
            const QImage image = lines->grab().toImage();
            const int count = std::min(line - 1, 6) + 3;
            const int height = qRound(size * 1.55);
            const QColor ground = lightPalette().color(QPalette::Base);
            const double opacity = 0.12;
            const auto mix = [&](int below, int above) { return qRound(below + (above - below) * opacity); };
            const QColor& dot = Theme::accentDot;
            const QColor tinted(mix(ground.red(), dot.red()), mix(ground.green(), dot.green()),
                                mix(ground.blue(), dot.blue()));
            for (int row = 0; row < count; ++row) {
                const QColor found = image.pixelColor(image.width() - 2, row * height + height / 2);
                const QColor& expected = row == std::min(line - 1, 6) ? tinted : ground;
                EXPECT_NEAR(found.red(), expected.red(), 1) << row;
                EXPECT_NEAR(found.green(), expected.green(), 1) << row;
                EXPECT_NEAR(found.blue(), expected.blue(), 1) << row;
            }
            const auto hasInk = [&](int from, int to) {
                for (int x = from; x < to; ++x) {
                    for (int y = 0; y < height * count; ++y) {
                        if (image.pixelColor(x, y).lightness() < 170) {
                            return true;
                        }
                    }
                }
                return false;
            };
            EXPECT_TRUE(hasInk(1, 36));
            EXPECT_FALSE(hasInk(0, 1)) << "no number is cut off";
            EXPECT_FALSE(hasInk(36, 46));
            EXPECT_TRUE(hasInk(46, 46 + static_cast<int>(size)));
        }
    }
}

TEST(InvalidJSONView, ShowsSixLinesBeforeAndBehind) {
    QStringList lines;
    for (int i = 1; i <= 30; ++i) {
        lines.append(u"riga %1"_s.arg(i));
    }
    const QString text = lines.join(u'\n');
    const auto numbers = [&](qint64 line) {
        const QList<InvalidJSONView::ContextLine> shown = InvalidJSONView::contextLines(text, line);
        for (const InvalidJSONView::ContextLine& each : shown) {
            EXPECT_EQ(each.text, u"riga %1"_s.arg(each.number));
        }
        return std::pair(shown.first().number, shown.last().number);
    };
    EXPECT_EQ(numbers(1), std::pair(qint64(1), qint64(7)));
    EXPECT_EQ(numbers(7), std::pair(qint64(1), qint64(13)));
    EXPECT_EQ(numbers(15), std::pair(qint64(9), qint64(21)));
    EXPECT_EQ(numbers(30), std::pair(qint64(24), qint64(30)));
}

TEST(InvalidJSONView, KeepsEmptyLinesAndEndsLinesAtLineFeedsOnly) {
    using Line = InvalidJSONView::ContextLine;
    EXPECT_EQ(InvalidJSONView::contextLines(u"a\n\nb\rc\n"_s, 2),
              (QList<Line>{{1, u"a"_s}, {2, QString()}, {3, u"b\rc"_s}, {4, QString()}}));
    EXPECT_EQ(InvalidJSONView::contextLines(QString(), 1), (QList<Line>{{1, QString()}}));
}

TEST(JSONPreview, ShowsTextsOfAnyShape) {
    JSONPreviewOf numbers(u"["_s % QString(u"1,"_s).repeated(200'000) % u"1]"_s);
    EXPECT_EQ(numbers.rows().size(), 200'002);
    numbers.list().scrollToBottom();
    numbers.list().viewport()->repaint();

    JSONPreviewOf deep(QString(100, u'[') % QString(100, u']'));
    deep.click(u"Espandi tutto"_s);
    EXPECT_EQ(deep.rows().size(), 100);
    EXPECT_TRUE(QTest::qWaitFor([&] { return deep.list().horizontalScrollBar()->maximum() > 0; }));
    deep.list().viewport()->repaint();

    JSONPreviewOf longString(u"{\""_s % QString(400'000, u'k') % u"\":\""_s % QString(400'000, u'v') % u"\"}"_s);
    EXPECT_LT(longString.rows().at(1).size(), 1100);
    longString.list().viewport()->repaint();

    // One line of a million units, with the fault in it.
    const JSONPreviewOf longLine(u"["_s % QString(u"1,"_s).repeated(400'000) % u"x]"_s);
    longLine.view.findChild<InvalidJSONView*>()->repaint();
}
