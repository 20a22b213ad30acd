#pragma once

#include "journalmodel.h"

#include <QSortFilterProxyModel>
#include <QWidget>

class QLineEdit;
class QTableView;

namespace Orvane::ConsolePanel {

/// Shows the journal, with a field that leaves only the lines with a text in them. It follows the newest line
/// as long as nobody has scrolled away from it.
class JournalView : public QWidget {
    Q_OBJECT

public:
    explicit JournalView(JournalModel& journal, QWidget* parent = nullptr);

    /// Shows what was noted since the last call.
    void refresh();

protected:
    void changeEvent(QEvent* event) override;

private:
    void fitToFont();

    JournalModel& m_journal;
    QSortFilterProxyModel m_filtered;
    QLineEdit* m_pFilter = nullptr;
    QTableView* m_pTable = nullptr;
};

} // namespace Orvane::ConsolePanel
