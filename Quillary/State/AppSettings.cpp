#include "Quillary/State/AppSettings.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView notesDirectoryKey("notesDirectory");
constexpr QLatin1StringView fontSizeKey("fontSize");
constexpr QLatin1StringView fontStyleKey("fontStyle");
constexpr QLatin1StringView wrapLinesKey("wrapLines");
constexpr QLatin1StringView defaultFormatKey("defaultFormat");
constexpr QLatin1StringView sortOrderKey("sortOrder");
constexpr QLatin1StringView autoDetectFormatKey("autoDetectFormat");
constexpr QLatin1StringView appearanceKey("appearance");
constexpr QLatin1StringView showsMenuBarExtraKey("showsMenuBarExtra");
constexpr QLatin1StringView soloModeKey("soloMode");
constexpr QLatin1StringView soloProjectIDKey("soloProjectID");
constexpr QLatin1StringView soloAgentToolIDKey("soloAgentToolID");
constexpr QLatin1StringView soloSubmitAfterPasteKey("soloSubmitAfterPaste");
constexpr QLatin1StringView soloBringToFrontKey("soloBringToFront");

FilePath storedDirectory(const QJsonValue& value) {
    return value.isString() ? FilePath::fromText(QDir::current().absoluteFilePath(value.toString()))
                            : AppSettings::defaultDirectory();
}

double storedFontSize(const QJsonValue& value) {
    const double size = value.toDouble();
    return size == 0 ? AppSettings::defaultFontSize : AppSettings::clampedFontSize(size);
}

std::optional<qint64> storedInteger(const QJsonValue& value) {
    // A number that is no integer gives whichever default is asked for.
    const qint64 integer = value.toInteger(0);
    return integer == value.toInteger(1) ? std::optional(integer) : std::nullopt;
}

QJsonValue integerToStore(std::optional<qint64> integer) {
    return integer ? QJsonValue(*integer) : QJsonValue(QJsonValue::Undefined);
}

} // namespace

FilePath AppSettings::defaultDirectory() {
    QString directory = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (directory.isEmpty()) {
        directory = QDir::homePath();
    }
    return FilePath::fromBytes(QFile::encodeName(directory)).appending(u"Quillary");
}

double AppSettings::clampedFontSize(double size) {
    return std::clamp(std::round(size), smallestFontSize, largestFontSize);
}

AppSettings::AppSettings(Preferences preferences, QObject* parent)
    : QObject(parent), m_preferences(std::move(preferences)) {
    const QJsonObject values = m_preferences.values();
    m_notesDirectory = storedDirectory(values[notesDirectoryKey]);
    m_fontSize = storedFontSize(values[fontSizeKey]);
    m_fontStyle = editorFontStyleFromRawValue(values[fontStyleKey].toString());
    m_wrapLines = values[wrapLinesKey].toBool(true);
    m_defaultFormat = noteFormatFromRawValue(values[defaultFormatKey].toString()).value_or(NoteFormat::markdown);
    m_sortOrder = noteSortOrderFromRawValue(values[sortOrderKey].toString()).value_or(NoteSortOrder::created);
    m_autoDetectFormat = values[autoDetectFormatKey].toBool(true);
    m_appearance = appAppearanceFromRawValue(values[appearanceKey].toString());
    m_showsMenuBarExtra = values[showsMenuBarExtraKey].toBool(true);
    m_soloMode = values[soloModeKey].toString(u"newSession"_s);
    m_soloProjectID = storedInteger(values[soloProjectIDKey]);
    m_soloAgentToolID = storedInteger(values[soloAgentToolIDKey]);
    m_soloSubmitAfterPaste = values[soloSubmitAfterPasteKey].toBool(true);
    m_soloBringToFront = values[soloBringToFrontKey].toBool(true);
    readShortcuts(values);
}

template <typename T>
void AppSettings::assign(T& field, const T& value, QLatin1StringView key, const QJsonValue& stored,
                         void (AppSettings::*changed)()) {
    const bool isChange = field != value;
    field = value;
    m_preferences.set(key, stored);
    if (isChange) {
        Q_EMIT(this->*changed)();
    }
}

void AppSettings::setNotesDirectory(const FilePath& directory) {
    assign(m_notesDirectory, directory, notesDirectoryKey, directory.text(), &AppSettings::notesDirectoryChanged);
}

void AppSettings::setFontSize(double size) {
    assign(m_fontSize, size, fontSizeKey, size, &AppSettings::fontSizeChanged);
}

void AppSettings::setFontStyle(EditorFontStyle style) {
    assign(m_fontStyle, style, fontStyleKey, rawValue(style), &AppSettings::fontStyleChanged);
}

void AppSettings::setWrapLines(bool wraps) {
    assign(m_wrapLines, wraps, wrapLinesKey, wraps, &AppSettings::wrapLinesChanged);
}

void AppSettings::setDefaultFormat(NoteFormat format) {
    assign(m_defaultFormat, format, defaultFormatKey, rawValue(format), &AppSettings::defaultFormatChanged);
}

void AppSettings::setSortOrder(NoteSortOrder order) {
    assign(m_sortOrder, order, sortOrderKey, rawValue(order), &AppSettings::sortOrderChanged);
}

void AppSettings::setAutoDetectFormat(bool detects) {
    assign(m_autoDetectFormat, detects, autoDetectFormatKey, detects, &AppSettings::autoDetectFormatChanged);
}

void AppSettings::setSoloMode(const QString& mode) {
    assign(m_soloMode, mode, soloModeKey, mode, &AppSettings::soloModeChanged);
}

void AppSettings::setSoloProjectID(std::optional<qint64> id) {
    assign(m_soloProjectID, id, soloProjectIDKey, integerToStore(id), &AppSettings::soloProjectIDChanged);
}

void AppSettings::setSoloAgentToolID(std::optional<qint64> id) {
    assign(m_soloAgentToolID, id, soloAgentToolIDKey, integerToStore(id), &AppSettings::soloAgentToolIDChanged);
}

void AppSettings::setSoloSubmitAfterPaste(bool submits) {
    assign(m_soloSubmitAfterPaste, submits, soloSubmitAfterPasteKey, submits,
           &AppSettings::soloSubmitAfterPasteChanged);
}

void AppSettings::setSoloBringToFront(bool brings) {
    assign(m_soloBringToFront, brings, soloBringToFrontKey, brings, &AppSettings::soloBringToFrontChanged);
}

void AppSettings::setShowsMenuBarExtra(bool shows) {
    assign(m_showsMenuBarExtra, shows, showsMenuBarExtraKey, shows, &AppSettings::showsMenuBarExtraChanged);
}

void AppSettings::setAppearance(AppAppearance appearance) {
    assign(m_appearance, appearance, appearanceKey, rawValue(appearance), &AppSettings::appearanceChanged);
    applyAppearance();
}

void AppSettings::applyAppearance() const {
    if (onApplyAppearance) {
        onApplyAppearance(m_appearance);
    }
}

} // namespace quillary
