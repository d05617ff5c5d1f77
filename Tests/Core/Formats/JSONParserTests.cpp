#include "QuillaryCore/Formats/JSONParser.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// A value as a line that tells its cases apart: object{k=v}, array[v], "text", #number, true, null.
std::string outline(const JSONValue& value) {
    std::string result;
    switch (value.kind()) {
    case JSONValue::Kind::object:
        result = "{";
        for (const JSONMember& member : value.members()) {
            result += (result.size() > 1 ? "," : "") + member.key.toStdString() + "=" + outline(member.value);
        }
        return result + "}";
    case JSONValue::Kind::array:
        result = "[";
        for (const JSONValue& element : value.elements()) {
            result += (result.size() > 1 ? "," : "") + outline(element);
        }
        return result + "]";
    case JSONValue::Kind::string:
        return '"' + value.string().toStdString() + '"';
    case JSONValue::Kind::number:
        return '#' + value.number().toStdString();
    case JSONValue::Kind::boolean:
        return value.boolean() ? "true" : "false";
    case JSONValue::Kind::null:
        break;
    }
    return "null";
}

std::string parsed(const Result<JSONValue, JSONParseError>& result) {
    return result ? outline(*result) : "failed: " + result.error().description().toStdString();
}

struct AcceptedCase {
    const char* name;
    QByteArray text;
    std::string outline;
};

class AcceptedJSON : public testing::TestWithParam<AcceptedCase> {};

TEST_P(AcceptedJSON, GivesTheValue) {
    EXPECT_EQ(parsed(JSONParser::parse(GetParam().text)), GetParam().outline);
}

const AcceptedCase acceptedCases[] = {
    {"ANumber", "42", "#42"},
    {"AString", R"("a")", R"("a")"},
    {"Null", "null", "null"},
    {"True", "true", "true"},
    {"False", "false", "false"},
    {"AnEmptyObject", "{}", "{}"},
    {"AnEmptyArray", "[]", "[]"},
    {"EmptyContainersWithBlanks", "[ { \n } , [\t] ]", "[{},[]]"},
    {"BlanksOnBothSides", " \t\r\n 1 \t\r\n ", "#1"},
    {"LongIndentation", "[\n" + QByteArray(50, ' ') + "1\n" + QByteArray(17, '\t') + "]", "[#1]"},
    {"BlanksEverywhere", R"( { "a" : [ 1 , 2 ] , "b" : null } )", "{a=[#1,#2],b=null}"},
    {"NoBlanks", R"({"a":[1,2],"b":null})", "{a=[#1,#2],b=null}"},
    {"OrderOfMembers", R"({"z":1,"a":2,"m":3})", "{z=#1,a=#2,m=#3}"},
    {"DuplicateKeys", R"({"a":1,"a":2})", "{a=#1,a=#2}"},
    {"AnEmptyKey", R"({"":0})", "{=#0}"},
    {"NestedSiblings", R"([[1],[[2],3],{"a":{"b":[]}},4])", "[[#1],[[#2],#3],{a={b=[]}},#4]"},
    {"ATrailingZero", "1.50", "#1.50"},
    {"MinusZero", "-0", "#-0"},
    {"ZeroAsAFraction", "0.0", "#0.0"},
    {"Exponents", "[1e5,1E+2,1e-07,-1.25E10]", "[#1e5,#1E+2,#1e-07,#-1.25E10]"},
    {"ManyDigits", "123456789012345678901234567890.123456789012345678901234567890",
     "#123456789012345678901234567890.123456789012345678901234567890"},
    {"AHugeExponent", "1e999999999999", "#1e999999999999"},
    {"NumbersAtEveryDistanceFromTheEnd", "[1,22,333,4444,-0.5,1e1]", "[#1,#22,#333,#4444,#-0.5,#1e1]"},
    {"AMarkAtTheStart", "\xEF\xBB\xBF{}", "{}"},
    {"AMarkThenBlanks", "\xEF\xBB\xBF \n1", "#1"},
    {"AMarkInAString",
     "\"\xEF\xBB\xBF"
     "a\"",
     "\"\xEF\xBB\xBF"
     "a\""},
    {"Accents", "\"perch\xC3\xA9\"", "\"perch\xC3\xA9\""},
    {"Emoji", "\"\xF0\x9F\x98\x80\"", "\"\xF0\x9F\x98\x80\""},
    {"DeleteIsNoControl", "\"\x7F\"", "\"\x7F\""},
    {"LongString", '"' + QByteArray(100, 'x') + '"', '"' + std::string(100, 'x') + '"'},
    {"LongStringBeyondASCII", '"' + QByteArray("\xC3\xA0").repeated(40) + "x\"",
     '"' + QByteArray("\xC3\xA0").repeated(40).toStdString() + "x\""},
    {"AnUnescapedSlash", R"("a/b")", R"("a/b")"},
    {"IllFormedBytes",
     "\"a\xFF"
     "b\xE2\x82\"",
     "\"a\xEF\xBF\xBD"
     "b\xEF\xBF\xBD\""},
    {"IllFormedBytesInAKey", "{\"\xC3\":1}", "{\xEF\xBF\xBD=#1}"},
    {"AnEscapeAfterATruncatedSequence", "\"\xC3\\u00e9\"", "\"\xEF\xBF\xBD\xC3\xA9\""},
    {"AnEscapedKey", R"({"\u0061\n":1})", "{a\n=#1}"},
};

INSTANTIATE_TEST_SUITE_P(Table, AcceptedJSON, testing::ValuesIn(acceptedCases),
                         [](const auto& each) { return each.param.name; });

struct EscapeCase {
    const char* name;
    QByteArray written;
    QString text;
};

class JSONEscape : public testing::TestWithParam<EscapeCase> {};

TEST_P(JSONEscape, GivesTheText) {
    const auto value = JSONParser::parse('"' + GetParam().written + '"');
    ASSERT_TRUE(value.hasValue()) << value.error().description().toStdString();
    EXPECT_EQ(value->string().toStdU16String(), GetParam().text.toStdU16String());
}

const EscapeCase escapeCases[] = {
    {"Quote", R"(\")", u"\""_s},
    {"Backslash", R"(\\)", u"\\"_s},
    {"Slash", R"(\/)", u"/"_s},
    {"Backspace", R"(\b)", u"\b"_s},
    {"FormFeed", R"(\f)", u"\f"_s},
    {"LineFeed", R"(\n)", u"\n"_s},
    {"CarriageReturn", R"(\r)", u"\r"_s},
    {"Tab", R"(\t)", u"\t"_s},
    {"Nul", R"(\u0000)", QString(QChar(0))},
    {"LowercaseHex", R"(\u00e8)", u"è"_s},
    {"UppercaseHex", R"(\u00E8)", u"è"_s},
    {"Euro", R"(\u20AC)", u"€"_s},
    {"BelowTheSurrogates", R"(\uD7FF)", QString(QChar(0xD7FF))},
    {"AboveTheSurrogates", R"(\uE000\uFFFF)", QString(QChar(0xE000)) + QChar(0xFFFF)},
    {"APair", R"(\uD83D\uDE00)", u"😀"_s},
    {"TheLastPair", R"(\udbff\udfff)", QString::fromUcs4(U"\U0010FFFF", 1)},
    {"ALowSurrogateAlone", R"(a\uDE00b)", u"a\uFFFDb"_s},
    {"AHighSurrogateAtTheEnd", R"(\uD83D)", u"\uFFFD"_s},
    {"AHighSurrogateBeforeALetter", R"(\uD83Dx)", u"\uFFFDx"_s},
    {"AHighSurrogateBeforeAnotherEscape", R"(\uD83D\n)", u"\uFFFD\n"_s},
    {"AHighSurrogateSwallowsALetterEscape", R"(\uD83D\u0041)", u"\uFFFD"_s},
    {"AHighSurrogateSwallowsAnother", R"(\uD83D\uD83D\uDE00)", u"\uFFFD\uFFFD"_s},
    {"AnEscapedBackslashBeforeAU", R"(\\u0041)", u"\\u0041"_s},
    {"EscapedQuotesInARow", R"(\"\"\")", u"\"\"\""_s},
    {"EscapesBetweenLongRuns", QByteArray(20, 'x') + R"(\n)" + QByteArray(20, 'y'),
     QString(20, u'x') + u'\n' + QString(20, u'y')},
    {"EscapesBetweenAccents", "\xC3\xA0\\t\xC3\xA8", u"à\tè"_s},
};

INSTANTIATE_TEST_SUITE_P(Table, JSONEscape, testing::ValuesIn(escapeCases),
                         [](const auto& each) { return each.param.name; });

struct RefusedCase {
    const char* name;
    QByteArray text;
    QString message;
    qint64 line;
    qint64 column;
};

class RefusedJSON : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedJSON, TellsWhatAndWhere) {
    const auto value = JSONParser::parse(GetParam().text);
    ASSERT_FALSE(value.hasValue());
    EXPECT_EQ(value.error().message().toStdString(), GetParam().message.toStdString());
    EXPECT_EQ(value.error().line(), GetParam().line);
    EXPECT_EQ(value.error().column(), GetParam().column);
}

const QByteArray family = "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";
const QString noEnd = u"Fine inattesa del testo"_s;
const QString afterEnd = u"Contenuto inatteso dopo la fine del JSON"_s;
const QString noKey = u"Attesa una chiave tra virgolette"_s;
const QString noColon = u"Attesi i due punti «:»"_s;
const QString noComma = u"Attesa «,» oppure «}»"_s;
const QString noCommaInArray = u"Attesa «,» oppure «]»"_s;
const QString openString = u"Stringa non terminata"_s;
const QString control = u"Carattere di controllo non ammesso in una stringa"_s;
const QString badEscape = u"Sequenza di escape non valida"_s;
const QString shortEscape = u"Escape \\u incompleto"_s;
const QString badHex = u"Escape \\u non valido"_s;
const QString badNumber = u"Numero non valido"_s;
const QString badExponent = u"Esponente non valido"_s;

const RefusedCase refusedCases[] = {
    {"Nothing", "", noEnd, 1, 1},
    {"BlanksOnly", " \n\t ", noEnd, 2, 3},
    {"OnlyAMark", "\xEF\xBB\xBF", noEnd, 1, 2},
    {"AfterAColon", R"({"a":)", noEnd, 1, 6},
    {"AfterAnOpeningBracket", "[", noEnd, 1, 2},
    {"AfterACommaInAnArray", "[1,", noEnd, 1, 4},
    {"AfterACommaAndBlanksInAnArray", "[1, \n ", noEnd, 2, 2},

    {"ACommaBeforeABracket", "[1,]", u"Carattere inatteso «]»"_s, 1, 4},
    {"ADotFirst", ".5", u"Carattere inatteso «.»"_s, 1, 1},
    {"APlusFirst", "+1", u"Carattere inatteso «+»"_s, 1, 1},
    {"AnIdentifier", "{\n\"a\": x", u"Carattere inatteso «x»"_s, 2, 6},
    {"AnAccent", "\xC3\xA8", u"Carattere inatteso «è»"_s, 1, 1},
    {"AnAccentOfTwoScalars", "e\xCC\x81", u"Carattere inatteso «e\u0301»"_s, 1, 1},
    {"AnEmoji", "\xF0\x9F\x98\x80\xF0\x9F\x98\x80", u"Carattere inatteso «😀»"_s, 1, 1},
    {"AFamilyCutAfterFourBytes", family, u"Carattere inatteso «👨»"_s, 1, 1},
    {"AFlagCutAfterFourBytes", "\xF0\x9F\x87\xAE\xF0\x9F\x87\xB9", u"Carattere inatteso «\U0001F1EE»"_s, 1, 1},
    {"AnotherCharacterCutOff", "\xE4\xB8\xAD\xE6\x96\x87", u"Carattere inatteso «中»"_s, 1, 1},
    {"AnIllFormedByte", "\xFF", u"Carattere inatteso «\uFFFD»"_s, 1, 1},
    {"ACarriageReturnLineFeedInOne", "[\x01\r\n]", u"Carattere inatteso «\u0001»"_s, 1, 2},
    {"ANul", QByteArray("\0", 1), u"Carattere inatteso «"_s + QChar(0) + u"»"_s, 1, 1},
    {"ANoBreakSpace",
     "\xC2\xA0"
     "1",
     u"Carattere inatteso «\u00A0»"_s, 1, 1},
    {"AFormFeed", "\f1", u"Carattere inatteso «\f»"_s, 1, 1},
    {"ASecondMark",
     "\xEF\xBB\xBF\xEF\xBB\xBF"
     "1",
     u"Carattere inatteso «\uFEFF»"_s, 1, 2},
    {"AMarkAfterABlank",
     " \xEF\xBB\xBF"
     "1",
     u"Carattere inatteso «\uFEFF»"_s, 1, 2},
    {"AComment", "// a\n1", u"Carattere inatteso «/»"_s, 1, 1},
    {"SingleQuotes", "'a'", u"Carattere inatteso «'»"_s, 1, 1},
    {"AClosingBracket", "]", u"Carattere inatteso «]»"_s, 1, 1},
    {"AClosingBrace", "}", u"Carattere inatteso «}»"_s, 1, 1},
    {"ACapitalLiteral", "True", u"Carattere inatteso «T»"_s, 1, 1},
    {"TwoCommas", "[1,,2]", u"Carattere inatteso «,»"_s, 1, 4},
    {"ACommaFirst", "[,1]", u"Carattere inatteso «,»"_s, 1, 2},

    {"ASecondValue", "1 2", afterEnd, 1, 3},
    {"ALeadingZero", "01", afterEnd, 1, 2},
    {"ANegativeLeadingZero", "-01", afterEnd, 1, 3},
    {"ALongerWord", "nullx", afterEnd, 1, 5},
    {"ATrailingComma", "{},", afterEnd, 1, 3},
    {"AFurtherBracket", "[]]", afterEnd, 1, 3},
    {"ANulAtTheEnd", QByteArray("1\0", 2), afterEnd, 1, 2},
    {"TwoExponents", "1e5e5", afterEnd, 1, 4},
    {"TwoFractions", "1.5.5", afterEnd, 1, 4},

    {"ACommaBeforeABrace", R"({"a":1,})", noKey, 1, 8},
    {"AnUnquotedKey", "{a:1}", noKey, 1, 2},
    {"ANumberAsKey", "{1:1}", noKey, 1, 2},
    {"AnOpenObjectAtTheEnd", "{", noKey, 1, 2},
    {"AfterACommaInAnObject", R"({"a":1,)", noKey, 1, 8},
    {"AfterACommaAndBlanksInAnObject", "{\"a\":1,\n  ", noKey, 2, 3},
    {"ACommaFirstInAnObject", "{,}", noKey, 1, 2},
    {"AClosingBracketForABrace", "{]", noKey, 1, 2},

    {"NoColon", R"({"a" 1})", noColon, 1, 6},
    {"AnEqualsSign", R"({"a"=1})", noColon, 1, 5},
    {"AKeyAtTheEnd", R"({"a")", noColon, 1, 5},
    {"AKeyAlone", R"({"a"})", noColon, 1, 5},

    {"NoCommaBetweenMembers", R"({"a":1 "b":2})", noComma, 1, 8},
    {"AMemberAtTheEnd", R"({"a":1)", noComma, 1, 7},
    {"ABracketAfterAMember", R"({"a":1])", noComma, 1, 7},
    {"ALeadingZeroInAnObject", R"({"a":01})", noComma, 1, 7},

    {"NoCommaBetweenElements", "[1 2]", noCommaInArray, 1, 4},
    {"AnElementAtTheEnd", "[1", noCommaInArray, 1, 3},
    {"ABraceAfterAnElement", "[1}", noCommaInArray, 1, 3},
    {"ALeadingZeroInAnArray", "[01]", noCommaInArray, 1, 3},
    {"ALongerWordInAnArray", "[nullx]", noCommaInArray, 1, 6},
    {"ADigitAfterAMinus", "[1-2]", noCommaInArray, 1, 3},

    {"AnOpenString", R"("abc)", openString, 1, 5},
    {"AnOpenStringOfOneQuote", R"(")", openString, 1, 2},
    {"AnOpenStringAtABackslash", R"("abc\)", openString, 1, 6},
    {"AnEscapedQuoteAtTheEnd", R"("abc\")", openString, 1, 7},
    {"AnOpenKey", R"({"a)", openString, 1, 4},
    {"AnOpenStringBeyondASCII", "\"\xC3\xA0\xC3\xA8", openString, 1, 4},
    {"AnOpenLongString", '"' + QByteArray(33, 'x'), openString, 1, 35},

    {"ARawTab", "\"a\tb\"", control, 1, 3},
    {"ARawLineFeed", "\"a\nb\"", control, 1, 3},
    {"ARawNul", QByteArray("\"a\0b\"", 5), control, 1, 3},
    {"TheHighestControl", "\"\x1F\"", control, 1, 2},
    {"AControlInAKey", "{\"\x01\":1}", control, 1, 3},
    {"AControlFarIntoAString", '"' + QByteArray(40, 'x') + "\x02\"", control, 1, 42},
    {"AControlAfterAccents", "\"\xC3\xA0\xC3\xA8\n\"", control, 1, 4},

    {"AnUnknownEscape", R"("\x41")", badEscape, 1, 3},
    {"AnEscapedSingleQuote", R"("\'")", badEscape, 1, 3},
    {"ACapitalU", R"("\U0041")", badEscape, 1, 3},
    {"AnEscapedLineFeed", "\"\\\n\"", badEscape, 1, 3},
    {"AnEscapedAccent", "\"\\\xC3\xA0\"", badEscape, 1, 3},

    {"AUAtTheEnd", R"("\u)", shortEscape, 1, 3},
    {"ThreeDigitsAtTheEnd", R"("\u004)", shortEscape, 1, 3},
    {"ThreeDigitsAndAQuoteAreFourBytes", R"("\u004")", badHex, 1, 3},
    {"TwoDigitsAndAQuote", R"("\u04")", shortEscape, 1, 3},
    {"AShortSecondHalf", R"("\uD83D\uDE0)", shortEscape, 1, 9},
    {"ABadLetter", R"("\u00G0")", badHex, 1, 3},
    {"ASignAmongTheDigits", R"("\u+041")", badHex, 1, 3},
    {"ABlankAmongTheDigits", R"("\u 041")", badHex, 1, 3},
    {"ABadSecondHalf", R"("\uD83D\uDEx0")", badHex, 1, 9},

    {"AShortTrue", "tru", u"Valore non valido, atteso «true»"_s, 1, 1},
    {"AMisspelledTrue", "[trve]", u"Valore non valido, atteso «true»"_s, 1, 2},
    {"AShortFalse", "fals", u"Valore non valido, atteso «false»"_s, 1, 1},
    {"AMisspelledFalse", R"({"a": falsa})", u"Valore non valido, atteso «false»"_s, 1, 7},
    {"AShortNull", "nul", u"Valore non valido, atteso «null»"_s, 1, 1},
    {"NotANumber", "nan", u"Valore non valido, atteso «null»"_s, 1, 1},

    {"AMinusAlone", "-", badNumber, 1, 2},
    {"AMinusBeforeALetter", "-a", badNumber, 1, 2},
    {"TwoMinuses", "--1", badNumber, 1, 2},
    {"AMinusBeforeADot", "-.5", badNumber, 1, 2},
    {"ADotAtTheEnd", "1.", badNumber, 1, 3},
    {"ADotBeforeALetter", "[1.e5]", badNumber, 1, 4},
    {"ADotAfterManyDigits", "12345678901234567890.", badNumber, 1, 22},

    {"AnExponentAtTheEnd", "1e", badExponent, 1, 3},
    {"AnExponentSignAtTheEnd", "1e+", badExponent, 1, 4},
    {"AnExponentOfALetter", "[1Ex]", badExponent, 1, 4},
    {"TwoExponentSigns", "1e+-1", badExponent, 1, 4},

    {"AFamilyIsOneColumn", "[\"" + family + "\" x]", noCommaInArray, 1, 6},
    {"AMarkIsAColumn", "\xEF\xBB\xBF[1 2]", noCommaInArray, 1, 5},
    {"AMarkIsAColumnOfTheFirstLineOnly", "\xEF\xBB\xBF[\n1 2]", noCommaInArray, 2, 3},
    {"CarriageReturnLineFeedEndsALine", "[\r\n1 2]", noCommaInArray, 2, 3},
    {"CarriageReturnsAloneEndNoLine", "[\r1\r2]", noCommaInArray, 1, 5},
    {"IllFormedBytesAreColumns", "[\"\xFF\xE2\x82\" x]", noCommaInArray, 1, 7},
};

INSTANTIATE_TEST_SUITE_P(Table, RefusedJSON, testing::ValuesIn(refusedCases),
                         [](const auto& each) { return each.param.name; });

TEST(JSONParser, AcceptsAHundredLevels) {
    const auto value = JSONParser::parse(QByteArray(100, '[') + "1" + QByteArray(100, ']'));
    ASSERT_TRUE(value.hasValue());
    EXPECT_TRUE(JSONParser::parse(QByteArray(100, '[') + QByteArray(100, ']')).hasValue());
    EXPECT_TRUE(JSONParser::parse(QByteArray("{\"a\":").repeated(100) + "1" + QByteArray(100, '}')).hasValue());
}

TEST(JSONParser, PointsAtTheBracketOfTheHundredAndFirstLevel) {
    const auto value = JSONParser::parse(QByteArray(99, '[') + "\n{\"a\":\n [" + QByteArray(200, ']'));
    ASSERT_FALSE(value.hasValue());
    EXPECT_EQ(value.error().description(), u"Riga 3, colonna 2: Annidamento troppo profondo"_s);
}

TEST(JSONParser, SeesTheHundredAndFirstLevelBeforeWhatItHolds) {
    const QByteArray texts[] = {QByteArray(101, '['), QByteArray(100, '[') + "{x", QByteArray(1'000'000, '[')};
    for (const QByteArray& text : texts) {
        const auto value = JSONParser::parse(text);
        ASSERT_FALSE(value.hasValue());
        EXPECT_EQ(value.error().description(), u"Riga 1, colonna 101: Annidamento troppo profondo"_s);
    }
}

TEST(JSONParser, ComesUpAgainWhenAContainerIsClosed) {
    for (const QByteArray& each : {QByteArray("[]"), QByteArray("{}"), QByteArray("[1]"), QByteArray(R"({"a":[]})")}) {
        const auto value = JSONParser::parse('[' + QByteArray(each + ',').repeated(500) + each + ']');
        ASSERT_TRUE(value.hasValue()) << each.toStdString() << value.error().description().toStdString();
        EXPECT_EQ(value->childCount(), 501);
    }
}

TEST(JSONParser, TakesTextAsItTakesBytes) {
    EXPECT_EQ(parsed(JSONParser::parse(u"{\"città\": [\"😀\", 1]}"_s)), "{citt\xC3\xA0=[\"\xF0\x9F\x98\x80\",#1]}");
    EXPECT_EQ(parsed(JSONParser::parse(u"\uFEFF[1 2]"_s)), "failed: Riga 1, colonna 5: Attesa «,» oppure «]»");
    EXPECT_EQ(parsed(JSONParser::parse(QStringView())), "failed: Riga 1, colonna 1: Fine inattesa del testo");
}

TEST(JSONParser, ReadsALoneSurrogateAsAReplacementCharacter) {
    const char16_t units[] = {u'"', 0xD83D, u'"'};
    const auto value = JSONParser::parse(QStringView(units, 3));
    ASSERT_TRUE(value.hasValue());
    EXPECT_EQ(value->string(), QString(u'\uFFFD'));
}

TEST(JSONParser, KeepsTheTextForItsValues) {
    std::optional<JSONValue> value;
    {
        QByteArray text = R"({"a": "bc"})";
        value = JSONParser::parse(text).value();
        text.fill('x');
    }
    EXPECT_EQ(outline(*value), R"({a="bc"})");
}

TEST(JSONParser, ReadsBytesThatNoNulEnds) {
    // The bytes behind the end would make another number and another word.
    const QByteArray text = "[1234true";
    EXPECT_EQ(parsed(JSONParser::parse(QByteArray::fromRawData(text.constData() + 1, 2))), "#12");
    EXPECT_EQ(parsed(JSONParser::parse(QByteArray::fromRawData(text.constData() + 5, 3))),
              "failed: Riga 1, colonna 1: Valore non valido, atteso «true»");
}

// Cutting a text after any byte must give an error at its end or a value, never a read beyond it.
TEST(JSONParser, RefusesEveryBeginningOfAText) {
    const QByteArray text =
        "{\"chiave \\u00e8 \xC3\xA0\": [true, false, null, -12.5e+10, \"\\uD83D\\uDE00\", {}], \"b\": []}";
    ASSERT_TRUE(JSONParser::parse(text).hasValue());
    for (qsizetype size = 0; size < text.size(); ++size) {
        const std::unique_ptr<char[]> exact(new char[static_cast<std::size_t>(size)]);
        std::copy_n(text.constData(), size, exact.get());
        const auto value = JSONParser::parse(QByteArray::fromRawData(exact.get(), size));
        ASSERT_FALSE(value.hasValue()) << size;
        EXPECT_EQ(value.error().line(), 1);
        EXPECT_GE(value.error().column(), 1);
    }
}

} // namespace

} // namespace quillary
