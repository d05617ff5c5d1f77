#include "Quillary/Comparison/DiffTexts.h"

#include <QCoreApplication>

namespace quillary::DiffTexts {

namespace {

QString translated(const char* text) {
    return QCoreApplication::translate("quillary::DiffTexts", text);
}

QString beginning(QStringView line) {
    constexpr qsizetype mostUnits = 1000;
    return line.first(std::min(line.size(), mostUnits)).toString();
}

QString numberedText(const DiffSide& side) {
    return QString::number(side.number) + QStringView(u": ") + beginning(side.segments.line());
}

} // namespace

QString description(const DiffRow& row) {
    switch (row.kind) {
    case DiffRow::Kind::unchanged: {
        const QString numbers = row.oldSide->number == row.newSide->number
                                    ? QString::number(row.oldSide->number)
                                    : translated("%1, ora %2").arg(row.oldSide->number).arg(row.newSide->number);
        return translated("Riga uguale ") + numbers + QStringView(u": ") + beginning(row.oldSide->segments.line());
    }
    case DiffRow::Kind::changed:
        return translated("Riga modificata ") + numberedText(*row.oldSide) + translated("; ora riga ") +
               numberedText(*row.newSide);
    case DiffRow::Kind::removed:
        return translated("Riga rimossa ") + numberedText(*row.oldSide);
    case DiffRow::Kind::added:
        return translated("Riga aggiunta ") + numberedText(*row.newSide);
    }
    Q_UNREACHABLE();
}

QString fold(qsizetype count) {
    return QString::number(count) + translated(" righe uguali");
}

QString sentence(const DiffStats& stats) {
    return QString::number(stats.added) + translated(" righe aggiunte, ") + QString::number(stats.removed) +
           translated(" rimosse, ") + QString::number(stats.changed) + translated(" modificate");
}

} // namespace quillary::DiffTexts
