#pragma once

#include <QString>
#include <QVarLengthArray>

#include <span>

namespace quillary {

/// Full case folding (Unicode Standard, "C" and "F" of CaseFolding.txt), as ICU's regular expressions fold a literal
/// of more than one character and the text that they compare it with.
namespace case_folding {

/// For each unit the one unit that it folds to; 0 for one that folds to several, and for half of a character.
std::span<const char16_t, 0x10000> singleFoldings();

/// The folding of one code point; as a rule one code point, "ß" gives two.
using Folding = QVarLengthArray<char16_t, 4>;

/// The folding of the code point at a position of a text, which moves behind it.
Folding foldNext(QStringView text, qsizetype& position);

/// The folding of the code point before a position of a text, which moves to it.
Folding foldPrevious(QStringView text, qsizetype& position);

QString fold(QStringView text);

/// What stands for a unit in its folding alone: itself, if it does, and the letters that fold to it and nothing else.
/// Empty for a surrogate.
QVarLengthArray<char16_t, 4> unitsThatFoldTo(char16_t unit);

/// The foldings that are more than one code point.
std::span<const QString> longFoldings();

} // namespace case_folding

} // namespace quillary
