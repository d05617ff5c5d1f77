#include "QuillaryCore/Notes/NoteFileInfo.h"

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

TEST(NoteFileInfo, EqualsOneThatAgreesInAllFiveFields) {
    const NoteFileInfo info{FilePath::fromText(u"/n/a.md"), Moment(std::chrono::seconds(5)),
                            Moment(std::chrono::seconds(6)), 12, u"Idee"_s};
    EXPECT_EQ(info, NoteFileInfo(info));
    NoteFileInfo other = info;
    other.url = FilePath::fromText(u"/n/b.md");
    EXPECT_NE(info, other);
    other = info;
    other.created += std::chrono::nanoseconds(1);
    EXPECT_NE(info, other);
    other = info;
    other.modified += std::chrono::nanoseconds(1);
    EXPECT_NE(info, other);
    other = info;
    other.size = 13;
    EXPECT_NE(info, other);
    other = info;
    other.folder.reset();
    EXPECT_NE(info, other);
}

TEST(NoteFileInfo, KnowsNothingAtFirst) {
    const NoteFileInfo info;
    EXPECT_EQ(info.created, distantPast);
    EXPECT_EQ(info.modified, distantPast);
    EXPECT_EQ(info.size, 0);
    EXPECT_EQ(info.folder, std::nullopt);
}

} // namespace quillary
