#include "Quillary/Detail/StatusBar.h"

#include "DetailTest.h"
#include "Quillary/Detail/SaveMark.h"
#include "Quillary/Detail/ZoomControl.h"
#include "Quillary/Editor/EditorView.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Theme/Theme.h"

#include <QSignalSpy>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class StatusBarTest : public DetailTest {
protected:
    StatusBarTest()
        : DetailTest({{u"a.md"_s, u"alfa 😀"_s},
                      {u"limite.md"_s, QString(1'000'000, u'x')},
                      {u"oltre.md"_s, QString(1'000'001, u'x')}}) {}

    QString status() const { return shownTexts(*m_view.findChild<StatusBar*>()).join(u' '); }
};

class ZoomControlTest : public testing::Test {
protected:
    ZoomControlTest() { m_control.show(); }

    AppSettings& settings() { return m_folder.settings(); }

    QAbstractButton* smaller() const { return buttonOf(m_control, u"Riduci testo (⌘−)"_s); }

    QAbstractButton* percentage() const { return buttonOf(m_control, u"Dimensione predefinita (⌘0)"_s); }

    QAbstractButton* larger() const {
        return buttonOf(m_control, u"Ingrandisci testo (⌘+)  ·  anche pizzicando il trackpad"_s);
    }

    NotesFolder m_folder = NotesFolder({});
    ZoomControl m_control{m_folder.settings()};
};

} // namespace

TEST_F(StatusBarTest, TellsFormatLengthAndState) {
    // The length is in UTF-16 units.
    EXPECT_EQ(status(), u"Markdown · 7 caratteri · Salvata"_s);
    store().changeFormat(*store().selectedItem(), NoteFormat::plain);
    EXPECT_EQ(status(), QString(displayName(NoteFormat::plain) + u" · 7 caratteri · Salvata"));
}

TEST_F(StatusBarTest, FollowsTheKeysAndTheSave) {
    auto* const editor = m_view.findChild<EditorView*>()->textView();
    QTest::keyClicks(editor, u"xy"_s);
    EXPECT_EQ(status(), u"Markdown · 9 caratteri · Modificata"_s);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !store().selectedItem()->isDirty(); }));
    EXPECT_EQ(status(), u"Markdown · 9 caratteri · Salvata"_s);
}

TEST_F(StatusBarTest, NamesALargeFileFromOneUnitOverAMillionOn) {
    select(u"limite"_s);
    EXPECT_EQ(status(), u"Markdown · 1000000 caratteri · Salvata"_s);
    select(u"oltre"_s);
    EXPECT_EQ(status(), u"Markdown · 1000001 caratteri · File grande · Salvata"_s);
    for (const QLabel* const label : m_view.findChildren<QLabel*>()) {
        if (label->text() == u"File grande"_s) {
            EXPECT_EQ(label->toolTip(), u"Oltre 1 MB: anteprima formattata e colori della sintassi disattivati"_s);
        }
    }
}

TEST_F(StatusBarTest, TheMarkIsRoundAndHasTheColourOfTheState) {
    const auto* const mark = m_view.findChild<SaveMark*>();
    EXPECT_EQ(mark->size(), QSize(5, 5));
    const auto colors = [this] {
        QImage image(5, 5, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        m_view.findChild<SaveMark*>()->render(&image, {}, {}, {});
        return std::pair(image.pixelColor(2, 2).rgb(), image.pixelColor(0, 0).alpha() < 255);
    };
    EXPECT_EQ(colors(), std::pair(Theme::diffAdded.in(m_view.palette()).rgb(), true));
    QTest::keyClicks(m_view.findChild<EditorView*>()->textView(), u"x"_s);
    EXPECT_EQ(colors(), std::pair(Theme::accentDot.rgb(), true));
    store().saveDirtyNotes();
    EXPECT_EQ(colors(), std::pair(Theme::diffAdded.in(m_view.palette()).rgb(), true));
}

TEST_F(ZoomControlTest, ButtonsShowWhatTheyDo) {
    EXPECT_TRUE(shows(*smaller(), Symbol::remove));
    EXPECT_TRUE(shows(*larger(), Symbol::add));
    EXPECT_FALSE(shows(*larger(), Symbol::remove));
}

TEST_F(ZoomControlTest, ShowsTheSizeAsAPercentageOfTheDefault) {
    const QList<std::pair<double, QString>> cases = {
        {13, u"100%"_s}, {9, u"69%"_s}, {28, u"215%"_s}, {20, u"154%"_s}, {13.4, u"103%"_s}};
    for (const auto& [size, text] : cases) {
        settings().setFontSize(size);
        EXPECT_EQ(percentage()->text(), text);
    }
}

TEST_F(ZoomControlTest, StepsRoundAndStayInTheLimits) {
    struct Case {
        double before;
        bool isLarger;
        double after;
    };

    for (const Case& step : {Case{13, true, 14}, Case{13, false, 12}, Case{13.4, true, 14}, Case{13.5, false, 13},
                             Case{27.8, true, 28}, Case{9.2, false, 9}, Case{40, false, 28}, Case{2, true, 9}}) {
        settings().setFontSize(step.before);
        QTest::mouseClick(step.isLarger ? larger() : smaller(), Qt::LeftButton);
        EXPECT_EQ(settings().fontSize(), step.after) << step.before;
    }
}

TEST_F(ZoomControlTest, TheEndsOfTheRangeDisableAButtonEach) {
    settings().setFontSize(9);
    EXPECT_FALSE(smaller()->isEnabled());
    EXPECT_TRUE(larger()->isEnabled());
    settings().setFontSize(28);
    EXPECT_TRUE(smaller()->isEnabled());
    EXPECT_FALSE(larger()->isEnabled());
    EXPECT_TRUE(percentage()->isEnabled());
    settings().setFontSize(13);
    EXPECT_TRUE(smaller()->isEnabled());
    EXPECT_TRUE(larger()->isEnabled());
}

TEST_F(ZoomControlTest, AClickOnThePercentageGoesBackToTheDefault) {
    settings().setFontSize(20);
    QTest::mouseClick(percentage(), Qt::LeftButton);
    EXPECT_EQ(settings().fontSize(), 13);
}
