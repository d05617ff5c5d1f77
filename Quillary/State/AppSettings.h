#pragma once

#include "Quillary/Keyboard/ShortcutAction.h"
#include "Quillary/State/AppAppearance.h"
#include "Quillary/State/EditorStyle.h"
#include "Quillary/State/Preferences.h"
#include "QuillaryCore/Notes/NoteFormat.h"
#include "QuillaryCore/Notes/NoteSortOrder.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QMap>
#include <QObject>
#include <QSet>

#include <functional>
#include <optional>

namespace quillary {

/// The user's preferences. Read once, when it is made; every assignment is stored at once, also that of an equal value,
/// while the signals tell of changes only. Bad stored values read as their defaults and stay stored until the user
/// changes them.
class AppSettings : public QObject {
    Q_OBJECT

public:
    static constexpr double smallestFontSize = 9;
    static constexpr double largestFontSize = 28;
    static constexpr double defaultFontSize = 13;

    /// "Quillary" in the user's documents directory, or in the home directory where there is none. Not made here.
    static FilePath defaultDirectory();

    /// A font size in points as users may have it: a whole number (halves away from zero) from 9 to 28.
    static double clampedFontSize(double size);

    explicit AppSettings(Preferences preferences, QObject* parent = nullptr);

    /// The directory of the notes.
    const FilePath& notesDirectory() const { return m_notesDirectory; }

    void setNotesDirectory(const FilePath& directory);

    /// The size of the font of editor and previews in points; taken as it comes, callers clamp.
    double fontSize() const { return m_fontSize; }

    void setFontSize(double size);

    EditorFontStyle fontStyle() const { return m_fontStyle; }

    void setFontStyle(EditorFontStyle style);

    /// Font size and style together.
    EditorStyle editorStyle() const { return {m_fontSize, m_fontStyle}; }

    bool wrapLines() const { return m_wrapLines; }

    void setWrapLines(bool wraps);

    /// The format of a note that is made without one.
    NoteFormat defaultFormat() const { return m_defaultFormat; }

    void setDefaultFormat(NoteFormat format);

    /// The order of the notes in the sidebar.
    NoteSortOrder sortOrder() const { return m_sortOrder; }

    void setSortOrder(NoteSortOrder order);

    /// Whether a text that arrives in an empty note decides its format.
    bool autoDetectFormat() const { return m_autoDetectFormat; }

    void setAutoDetectFormat(bool detects);

    /// The way of delivering to Solo that was last used, whatever it says.
    const QString& soloMode() const { return m_soloMode; }

    void setSoloMode(const QString& mode);

    /// The Solo project and agent tool that were last used.
    std::optional<qint64> soloProjectID() const { return m_soloProjectID; }

    void setSoloProjectID(std::optional<qint64> id);

    std::optional<qint64> soloAgentToolID() const { return m_soloAgentToolID; }

    void setSoloAgentToolID(std::optional<qint64> id);

    bool soloSubmitAfterPaste() const { return m_soloSubmitAfterPaste; }

    void setSoloSubmitAfterPaste(bool submits);

    bool soloBringToFront() const { return m_soloBringToFront; }

    void setSoloBringToFront(bool brings);

    bool showsMenuBarExtra() const { return m_showsMenuBarExtra; }

    void setShowsMenuBarExtra(bool shows);

    AppAppearance appearance() const { return m_appearance; }

    void setAppearance(AppAppearance appearance);

    /// Gives the application the look of `appearance`, through `onApplyAppearance`. It runs after every assignment to
    /// `appearance`; the shell calls it at the start, when there is an application to be given a look.
    void applyAppearance() const;

    // The user's shortcuts.

    /// The shortcuts that differ from the defaults.
    const QMap<ShortcutAction, KeyShortcut>& customShortcuts() const { return m_customShortcuts; }

    /// The actions that the user turned off.
    const QSet<ShortcutAction>& disabledShortcuts() const { return m_disabledShortcuts; }

    /// The keys of an action; none if it is turned off.
    std::optional<KeyShortcut> shortcut(ShortcutAction forAction) const;

    /// The first action that has these keys.
    std::optional<ShortcutAction> action(const KeyShortcut& forShortcut) const;

    /// Gives an action other keys; none turns it off. The default keys leave no trace.
    void setShortcut(const std::optional<KeyShortcut>& shortcut, ShortcutAction forAction);

    /// Gives an action its default keys.
    void resetShortcut(ShortcutAction ofAction);

    /// Whether the user left an action's keys as they were.
    bool isDefault(ShortcutAction action) const;

    /// How the application gets a look; set by the shell.
    std::function<void(AppAppearance)> onApplyAppearance;

Q_SIGNALS:
    void notesDirectoryChanged();
    void fontSizeChanged();
    void fontStyleChanged();
    void wrapLinesChanged();
    void defaultFormatChanged();
    void sortOrderChanged();
    void autoDetectFormatChanged();
    void soloModeChanged();
    void soloProjectIDChanged();
    void soloAgentToolIDChanged();
    void soloSubmitAfterPasteChanged();
    void soloBringToFrontChanged();
    void showsMenuBarExtraChanged();
    void appearanceChanged();
    void shortcutsChanged();

private:
    template <typename T>
    void assign(T& field, const T& value, QLatin1StringView key, const QJsonValue& stored,
                void (AppSettings::*changed)());
    void readShortcuts(const QJsonObject& values);
    void assignShortcuts(const QMap<ShortcutAction, KeyShortcut>& custom, const QSet<ShortcutAction>& disabled);

    Preferences m_preferences;
    FilePath m_notesDirectory;
    double m_fontSize = defaultFontSize;
    EditorFontStyle m_fontStyle = EditorFontStyle::monospaced;
    bool m_wrapLines = true;
    NoteFormat m_defaultFormat = NoteFormat::markdown;
    NoteSortOrder m_sortOrder = NoteSortOrder::created;
    bool m_autoDetectFormat = true;
    QString m_soloMode;
    std::optional<qint64> m_soloProjectID;
    std::optional<qint64> m_soloAgentToolID;
    bool m_soloSubmitAfterPaste = true;
    bool m_soloBringToFront = true;
    bool m_showsMenuBarExtra = true;
    AppAppearance m_appearance = AppAppearance::system;
    QMap<ShortcutAction, KeyShortcut> m_customShortcuts;
    QSet<ShortcutAction> m_disabledShortcuts;
};

} // namespace quillary
