#pragma once

#include <QWidget>

class QPushButton;

namespace quillary {

class FindController;
class FindField;
class FindStatusLabel;
class IconButton;
class OptionToggle;

/// The panel above the editor that shows the state of the search and hands the user's keys and clicks to it: a row for
/// the query and, while it is open, a row for the replacement. It is there while the controller says so.
class FindBar : public QWidget {
    Q_OBJECT

public:
    enum class Field { find, replace };

    /// The controller must outlive the bar.
    explicit FindBar(FindController& find, QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeFindRow();
    QWidget* makeReplaceRow();
    OptionToggle* makeToggle(const QString& label, const QString& help);
    void followController();
    void focus(Field field);
    void focusAskedField();
    void toggleReplace();
    void takeOptions();
    void updateRows();
    void updateMatches();

    FindController& m_find;
    FindField* m_query = nullptr;
    OptionToggle* m_caseSensitive = nullptr;
    OptionToggle* m_wholeWord = nullptr;
    OptionToggle* m_regex = nullptr;
    FindStatusLabel* m_status = nullptr;
    IconButton* m_previous = nullptr;
    IconButton* m_next = nullptr;
    IconButton* m_toggleReplace = nullptr;
    QWidget* m_replaceRow = nullptr;
    FindField* m_replacement = nullptr;
    QPushButton* m_replace = nullptr;
    QPushButton* m_replaceAll = nullptr;
};

} // namespace quillary
