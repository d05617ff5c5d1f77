#include "QuillaryCore/Find/ReplacementTemplate.h"

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// A match "abcd..." with as many groups, each of one letter, the last of which took no part.
SearchMatch matchWith(int groups) {
    SearchMatch match{{0, groups}};
    for (int i = 0; i < groups; ++i) {
        match.groups.emplace_back(TextRange{i, 1});
    }
    if (groups > 0) {
        match.groups.back().reset();
    }
    return match;
}

} // namespace

TEST(ReplacementTemplate, PutsGroupsInThePlaceOfTheirNumbers) {
    struct Case {
        QString replacementTemplate;
        int groups;
        QString expected;
    };

    const QString text = u"abcdefghijklmnopqrstuvwxyz"_s;
    const std::vector<Case> cases{
        {QString(), 2, QString()},
        {u"nessuno"_s, 2, u"nessuno"_s},
        {u"$1-x"_s, 2, u"a-x"_s},
        {u"$0$1"_s, 3, u"abca"_s},
        {u"[$2]"_s, 2, u"[]"_s},
        {u"[$3]"_s, 2, u"[]"_s},
        {u"[$1]"_s, 0, u"[]"_s},
        {u"$12"_s, 2, u"a2"_s},
        {u"$12"_s, 12, QString()},
        {u"$11"_s, 12, u"k"_s},
        {u"$1x"_s, 12, u"a"_s % u"x"_s},
        {u"$01"_s, 12, u"a"_s},
        {u"$01"_s, 2, u"ab1"_s},
        {u"$112"_s, 12, u"k2"_s},
        {u"$99"_s, 12, QString()},
        {u"$"_s, 2, u"$"_s},
        {u"$a $ $$1"_s, 2, u"$a $ $a"_s},
        {u"\\$1"_s, 2, u"$1"_s},
        {u"\\\\$1"_s, 2, u"\\a"_s},
        {u"\\n\\t"_s, 2, u"nt"_s},
        {u"a\\"_s, 2, u"a"_s},
        {u"$1\\2"_s, 2, u"a2"_s},
        {u"\\\U0001F44D"_s, 2, u"\U0001F44D"_s},
        {u"$\u0661"_s, 2, u"$\u0661"_s},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(expandedTemplate(each.replacementTemplate, matchWith(each.groups), text), each.expected)
            << each.replacementTemplate.toStdString() << " with " << each.groups;
    }
}

} // namespace quillary
