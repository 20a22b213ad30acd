#pragma once

#include "consolerecorder.h"
#include "framecoalescer.h"
#include "keyhistory.h"
#include "keyshortcuts.h"

#include <QHash>
#include <QWidget>

class QBoxLayout;
class QGroupBox;
class QLabel;

namespace Orvane::ConsolePanel {

class KeyCap;
class LightBar;
class TBarLever;

/// Dark, as a console in a dark hall; for the windows around it too.
QPalette consolePalette();

/// The console on the screen: its keys in their groups, with lights and labels as the console has them, the
/// T-Bar with its light bar, and what else it shows. It is worked with the mouse, with fingers and from the
/// keyboard; a key stays down as long as a hand is on it, and comes up when the window loses the keyboard.
///
/// It shows what a recorder has taken in: `consoleChanged` after each datagram, as often as it likes. Keys
/// that are lit and stand in no group get one of their own. On the GUI thread.
class ConsoleWidget : public QWidget {
    Q_OBJECT

public:
    /// `console` outlives the widget.
    ConsoleWidget(const ConsoleLayout& layout, const ConsoleRecorder& console, QWidget* parent = nullptr);

    /// Lets go of every key.
    ~ConsoleWidget() override;

    void consoleChanged() { m_frames.noteChange(); }
    /// Puts the T-Bar's lever where a script moved it, without reporting it.
    void showLever(quint32 position);
    /// Shows the recorder's state now, as the next frame would.
    void refresh();
    /// What hovering a key tells; whoever owns the link notes the messages here.
    KeyHistory& history() { return m_history; }
    const FrameCoalescer& frames() const { return m_frames; }

Q_SIGNALS:
    /// A key went down or came up; `key` is the console's number.
    void signalKeyMoved(quint16 key, bool isDown);
    void signalTBarMoved(quint32 position, quint8 direction);

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QWidget* createTBar();
    QGroupBox* createGroup(const ConsoleLayout::Group& group);
    KeyCap* createKey(const QString& group, const ConsoleLayout::Key& key);
    void addKeysOutsideLayout();
    void flash();
    void showKey(KeyCap& cap);
    QString lampText() const;
    QString toolTipOf(const KeyCap& cap) const;
    bool moveKeyOf(const QKeyEvent& event, bool isDown);

    ConsoleLayout m_layout;
    const ConsoleRecorder& m_console;
    const KeyShortcuts m_shortcuts;
    KeyHistory m_history;
    FrameCoalescer m_frames;
    QTimer m_flashing;
    bool m_bFlashOn = true;
    /// By the console's number. A key that stands in two groups has a cap in each.
    QMultiHash<quint16, KeyCap*> m_keys;
    QHash<const KeyCap*, QString> m_functions;
    QBoxLayout* m_pGroups = nullptr;
    QGroupBox* m_pOthers = nullptr;
    std::size_t m_nOthers = 0;
    TBarLever* m_pLever = nullptr;
    LightBar* m_pLightBar = nullptr;
    QLabel* m_pLamps = nullptr;
    QLabel* m_pFacts = nullptr;
};

} // namespace Orvane::ConsolePanel
