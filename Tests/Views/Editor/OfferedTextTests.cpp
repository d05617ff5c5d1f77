#include "Quillary/Editor/OfferedText.h"

#include "QuillaryCore/Text/TextStorage.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <memory>

namespace quillary {

using namespace Qt::StringLiterals;

TEST(OfferedText, IsThePlainTextOfItsRange) {
    const TextStorage storage(u"uno d\u00E9ux tre"_s);
    const OfferedText offer(storage, {4, 4});
    EXPECT_TRUE(offer.hasText());
    EXPECT_FALSE(offer.hasHtml() || offer.hasUrls());
    EXPECT_EQ(offer.formats(), QStringList(u"text/plain"_s));
    EXPECT_EQ(offer.text(), u"d\u00E9ux"_s);
    EXPECT_EQ(offer.data(u"text/plain"_s), QByteArray("d\xC3\xA9ux"));
    EXPECT_TRUE(offer.data(u"text/html"_s).isEmpty());
}

TEST(OfferedText, IsCopiedWhenTheTextIsAboutToChangeAndNotBefore) {
    TextStorage storage(u"uno due tre"_s);
    const OfferedText offer(storage, {4, 3});
    EXPECT_EQ(offer.text(), u"due"_s);
    EXPECT_TRUE(offer.isLazy()) << "who asks makes no copy that stays";
    storage.replace({0, 7}, u"x");
    EXPECT_FALSE(offer.isLazy());
    EXPECT_EQ(offer.text(), u"due"_s);
    storage.setText(u"altro"_s);
    EXPECT_EQ(offer.text(), u"due"_s);
}

TEST(OfferedText, OutlivesTheText) {
    auto storage = std::make_unique<TextStorage>(u"uno due tre"_s);
    const OfferedText offer(*storage, {0, 3});
    storage.reset();
    EXPECT_EQ(offer.text(), u"uno"_s);
}

} // namespace quillary
