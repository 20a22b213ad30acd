#pragma once

#include "eckeytrace.h"

#include <QWidget>

class QTreeWidget;
class QTreeWidgetItem;

namespace Orvane::ConsoleHost {

class KeyExplainer;

/// Shows what became of each event of a key, the newest at the top: a line an event with the reason when
/// nothing came of it, and below it, opened, its whole way. Events are explained while the window is shown.
/// It never takes the focus, which is where the keypad types, and no dialog stops it.
class ExplainerWindow : public QWidget {
    Q_OBJECT

public:
    explicit ExplainerWindow(KeyExplainer& explainer);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void addTraces(const QList<ECProxy::Client::ECKeyTrace>& traces);

    KeyExplainer& m_explainer;
    QTreeWidget* const m_pTree;
};

} // namespace Orvane::ConsoleHost
