#include "QuillaryCore/Unicode/ClusterRestart.h"

#include <unicode/uchar.h>

namespace quillary {

namespace {

/// Below this one no code point extends, joins or precedes its neighbours, but for CR before LF.
constexpr char32_t firstJoining = 0x300;

UGraphemeClusterBreak clusterBreak(char32_t point) {
    return static_cast<UGraphemeClusterBreak>(
        u_getIntPropertyValue(static_cast<UChar32>(point), UCHAR_GRAPHEME_CLUSTER_BREAK));
}

bool isControl(UGraphemeClusterBreak kind) {
    return kind == U_GCB_CONTROL || kind == U_GCB_CR || kind == U_GCB_LF;
}

/// Rules GB6 to GB8: what makes one Hangul syllable.
bool areOneSyllable(UGraphemeClusterBreak before, UGraphemeClusterBreak after) {
    switch (before) {
    case U_GCB_L:
        return after == U_GCB_L || after == U_GCB_V || after == U_GCB_LV || after == U_GCB_LVT;
    case U_GCB_LV:
    case U_GCB_V:
        return after == U_GCB_V || after == U_GCB_T;
    case U_GCB_LVT:
    case U_GCB_T:
        return after == U_GCB_T;
    default:
        return false;
    }
}

} // namespace

bool isClusterRestart(char32_t before, char32_t after) {
    if (before < firstJoining && after < firstJoining) {
        return !(before == U'\r' && after == U'\n');
    }
    const UGraphemeClusterBreak left = clusterBreak(before);
    const UGraphemeClusterBreak right = clusterBreak(after);
    if (isControl(left) || isControl(right)) {
        return true;
    }
    if (right == U_GCB_EXTEND || right == U_GCB_ZWJ || right == U_GCB_SPACING_MARK || left == U_GCB_PREPEND) {
        return false;
    }
    if (left == U_GCB_REGIONAL_INDICATOR && right == U_GCB_REGIONAL_INDICATOR) {
        return false;
    }
    if (left == U_GCB_ZWJ && u_hasBinaryProperty(static_cast<UChar32>(after), UCHAR_EXTENDED_PICTOGRAPHIC)) {
        return false;
    }
    // A consonant may be joined to an earlier one by a virama, which is among the extending marks.
    if ((left == U_GCB_EXTEND || left == U_GCB_ZWJ) &&
        u_getIntPropertyValue(static_cast<UChar32>(after), UCHAR_INDIC_SYLLABIC_CATEGORY) != U_INSC_OTHER) {
        return false;
    }
    return !areOneSyllable(left, right);
}

} // namespace quillary
