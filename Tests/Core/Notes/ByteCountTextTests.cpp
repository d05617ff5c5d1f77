#include "QuillaryCore/Notes/ByteCountText.h"

#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillary {

using namespace Qt::StringLiterals;

TEST(ByteCountText, IsDecimalWithItsUnit) {
    const struct {
        qint64 bytes;
        QString text;
    } cases[] = {
        {0, u"0 byte"_s},
        {1, u"1 byte"_s},
        {999, u"999 byte"_s},
        {1'000, u"1 KB"_s},
        {1'499, u"1 KB"_s},
        {1'500, u"2 KB"_s},
        {999'499, u"999 KB"_s},
        {999'500, u"1 MB"_s},
        {33'554'433, u"33,6 MB"_s},
        {40'000'000, u"40 MB"_s},
        {999'949'999, u"999,9 MB"_s},
        {999'950'000, u"1 GB"_s},
        {1'254'000'000, u"1,25 GB"_s},
        {123'456'000'000, u"123,46 GB"_s},
        {2'000'000'000'000, u"2 TB"_s},
        {std::numeric_limits<qint64>::max(), u"9,22 EB"_s},
    };

    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(byteCountText(bytes), text) << bytes;
    }
}

TEST(ByteCountText, WritesNumbersAsTheInterfacesLocaleDoes) {
    const QString before = interfaceLocale();
    setInterfaceLocale(u"en_US"_s);
    EXPECT_EQ(byteCountText(33'554'433), u"33.6 MB"_s);
    setInterfaceLocale(before);
}

} // namespace quillary
